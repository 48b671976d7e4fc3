#pragma once

#include "Database.h"

#include <QString>
#include <QVariant>
#include <functional>
#include <optional>
#include <vector>

// The change log of the account tables: every insert, update and delete of
// ObjKanzleiKontenstamm and KreditorenKontenstamm appends one entry per changed field, written
// by triggers in the database itself, so that no write path of the product (screens, sibling
// components, year tools, import) can leave it out and the entries land in the writer's own
// transaction. Each entry's hash covers its content and the hash of the entry before it; a
// changed or removed entry breaks the chain. The product only ever appends.
namespace platform::storage {

struct Protokolleintrag
{
    qint64 nr = 0;
    QString zeit; // UTC, ISO 8601 text ("2026-11-23T14:30:00.123Z")
    QString wer;
    QString arbeitsplatz;
    QString quelle;
    QString tabelle;
    std::optional<int> jahr; // none for creditor accounts
    QString konto;
    QString feld;
    std::optional<QString> alt; // none: the field had no value (a new row)
    std::optional<QString> neu; // none: the row was deleted or the field emptied to NULL
    QString hash;
};

struct Pruefergebnis
{
    qint64 anzahl = 0; // entries read
    qint64 fehlerNr = 0; // first entry that does not fit (0: chain intact)
    QString meldung; // German, for the user; empty when intact
    QString letzterHash; // of the last entry that fits
    bool bisGefunden = false; // the hash asked for by `bis` is in the intact chain
};

namespace protokollquelle {
inline const QString Bildschirm = QStringLiteral("Bildschirm");
inline const QString Import = QStringLiteral("Import");
inline const QString Jahreswechsel = QStringLiteral("Jahreswechsel");
} // namespace protokollquelle

class Aenderungsprotokoll
{
public:
    static const QString tabelle;
    // Channel of the notifications a change sends on PostgreSQL.
    static const QString kanal;

    // Makes the functions the triggers of the file engine call known to every connection
    // opened from now on. Called before the first file is opened.
    static void vorbereiten();

    // Creates the log table and the triggers where the database has logged tables but lacks
    // them (an older database, or one whose columns grew), and tells the connection its
    // workstation. Nothing else of the database is touched.
    static void einrichten(Database &db);

    // Where the following writes of this connection come from (see protokollquelle).
    static void quelleSetzen(Database &db, const QString &quelle);

    // The hash of an entry, chained to the previous entry's hash (empty for the first).
    static QString hashBerechnen(const Protokolleintrag &e, const QString &vorher);

    // Walks the chain from the first entry. `bis`: a hash noted earlier that must be part of
    // the intact chain. `fortschritt` gets the number of entries read now and then.
    static Pruefergebnis pruefen(Database &db, const QString &bis = {},
                                 const std::function<void(qint64)> &fortschritt = {});

    // Entries of a table, newest first; filters are optional. `seit` is a date or a time in
    // ISO form, compared with the UTC time of the entry.
    static std::vector<Protokolleintrag> lesen(Database &db, const QString &tabelle,
                                               std::optional<int> jahr = {},
                                               const QString &konto = {}, const QString &seit = {});
};

// Sets the source of a connection's writes for as long as it lives, then restores the usual one.
class Protokollquelle
{
public:
    Protokollquelle(Database &db, const QString &quelle);
    ~Protokollquelle();
    Protokollquelle(const Protokollquelle &) = delete;
    Protokollquelle &operator=(const Protokollquelle &) = delete;

private:
    Database &m_db;
};

} // namespace platform::storage
