#pragma once

#include "accounts/regeln/Konsistenz.h"
#include "platform/storage/Database.h"

#include <QHash>
#include <QString>
#include <QStringList>
#include <QVariant>
#include <functional>
#include <memory>
#include <vector>

// The accounts of a booking year as plain rows, for the checks and tools that work on a whole
// year.
namespace kontenregeln {

using platform::storage::Database;

// Reports progress of long work: done of total (total 0 while unknown).
using Fortschritt = std::function<void(qint64 erledigt, qint64 gesamt)>;

// The column names of a set of rows and their positions (names compared without case).
class Spalten
{
public:
    Spalten() = default;
    explicit Spalten(QStringList namen);
    const QStringList &namen() const { return m_namen; }
    int index(const QString &name) const { return m_index.value(name.toLower(), -1); }

private:
    QStringList m_namen;
    QHash<QString, int> m_index;
};

// One account record.
struct Kontozeile
{
    std::shared_ptr<const Spalten> spalten;
    QVariantList werte;

    QVariant wert(const QString &spalte) const;
    // A text value with trailing blanks removed ("" for null).
    QString text(const QString &spalte) const;
    // A number (ersatz for null or a text that is no number).
    int zahl(const QString &spalte, int ersatz = 0) const;
    QString kontoNr() const { return text(QStringLiteral("KontoNr")); }
};

// Every account of `jahr`, ordered by number.
std::vector<Kontozeile> kontenLaden(Database &db, int jahr, const Fortschritt &fortschritt = {});

// The stored definitions the record checks read.
KontoDefinition definition(const Kontozeile &z);

} // namespace kontenregeln
