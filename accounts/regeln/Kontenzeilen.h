#pragma once

#include "accounts/regeln/Konsistenz.h"
#include "platform/storage/Database.h"
#include "platform/storage/Zeilenspeicher.h"

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
    int index(const QString &name) const;

private:
    QStringList m_namen;
    QHash<QString, int> m_index;
    // The names as callers spell them: the checks ask some forty times per account.
    mutable QHash<QString, int> m_gefragt;
};

// The whole number a value shows (null: 0), as its text would be read; false when it is none
// or lies outside int.
bool ganzzahlVon(const QVariant &v, int &z);

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

// The accounts of a year packed as record sets keep them, a fraction of the memory of
// Kontozeile values; a Kontozeile is made when asked for.
class Kontenliste
{
public:
    Kontenliste() = default;
    Kontenliste(std::shared_ptr<const Spalten> spalten,
                std::shared_ptr<const platform::storage::Zeilenspeicher> zeilen);

    size_t size() const { return m_zeilen ? size_t(m_zeilen->anzahl()) : 0; }
    bool empty() const { return size() == 0; }
    Kontozeile operator[](size_t i) const;
    // A value without making the row (spalte: index in spalten()).
    platform::storage::RohWert feld(size_t i, int spalte) const;
    // All values of account `i` in one walk, into `ziel` (resized to the columns).
    void felder(size_t i, std::vector<platform::storage::RohWert> &ziel) const;
    QVariant wert(size_t i, int spalte) const { return m_zeilen->wert(int(i), spalte); }
    QString kontoNr(size_t i) const;
    const std::shared_ptr<const Spalten> &spalten() const { return m_spalten; }

    class Iterator
    {
    public:
        Iterator(const Kontenliste *liste, size_t i)
            : m_liste(liste)
            , m_i(i)
        { }
        Kontozeile operator*() const { return (*m_liste)[m_i]; }
        Iterator &operator++()
        {
            ++m_i;
            return *this;
        }
        bool operator!=(const Iterator &o) const { return m_i != o.m_i; }

    private:
        const Kontenliste *m_liste;
        size_t m_i;
    };
    Iterator begin() const { return Iterator(this, 0); }
    Iterator end() const { return Iterator(this, size()); }

private:
    std::shared_ptr<const Spalten> m_spalten;
    std::shared_ptr<const platform::storage::Zeilenspeicher> m_zeilen;
    int m_nummer = -1;
};

// Every account of `jahr`, ordered by number; progress while they arrive.
Kontenliste kontenLaden(Database &db, int jahr, const Fortschritt &fortschritt = {});

// Hands every account of `jahr` to `tun` as it arrives, ordered by number, without keeping any:
// a year of half a million accounts needs no more memory than one. `tun` must not use the
// database. Progress after every thousand.
void kontenDurchgehen(Database &db, int jahr, const std::function<void(const Kontozeile &)> &tun,
                      const Fortschritt &fortschritt = {});

// Accounts of `jahr`.
qint64 kontenAnzahl(Database &db, int jahr);

// The stored definitions the record checks read.
KontoDefinition definition(const Kontozeile &z);

} // namespace kontenregeln
