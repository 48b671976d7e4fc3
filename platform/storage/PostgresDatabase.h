#pragma once

#include "Database.h"
#include "platform/core/RuntimeError.h"

#include <QHash>
#include <functional>
#include <optional>

struct pg_conn;
struct pg_result;

namespace platform::storage {

class PostgresCursor;

// The engine for offices with several users: a PostgreSQL database reached through libpq.
// Unquoted identifiers fold to lower case there, so result column names come back in lower
// case; callers match names without regard to case.
//
// A query streams its rows (libpq's single-row mode): a year of half a million accounts never
// sits whole in client memory. While a cursor still has rows on the way, the connection belongs
// to it; any other statement on the connection first reads the rest of those rows into the
// cursor's own buffer, so both go on working. A cursor given up early is read to its end, or
// cancelled when much is left and no transaction is open.
class PostgresDatabase final : public Database
{
public:
    // Asked when the server wants a password that neither the address, PGPASSWORD, the password
    // file nor a service gave: the user and server to name, and why it asks again ("" the first
    // time). Returns the password, or nothing when the user cancelled.
    using KennwortAbfrage = std::function<std::optional<QString>(
        const QString &benutzer, const QString &server, const QString &grund)>;
    // Without one (the tools without a screen) a missing password fails with 3029.
    static void setKennwortAbfrage(KennwortAbfrage abfrage);

    // Connects to a postgresql:// or postgres:// URI (a password typed into the dialog is kept
    // for the process, so the address is asked for it once). Failure: the German error of
    // verbindungsfehler(); libpq's text follows as detail, the password masked.
    static std::unique_ptr<PostgresDatabase> oeffnen(const QString &uri);

    // The error for a connection libpq could not make, from its message (English or German):
    // 3029 login refused, 3152 unknown server, 3153 server not answering, 3154 certificate
    // or encryption refused, 3155 malformed address, else 3151.
    static RuntimeError verbindungsfehler(const QString &meldung, const QString &benutzer,
                                          const QString &server, const QString &port);

    ~PostgresDatabase() override;

    Engine engine() const override { return Engine::PostgreSql; }
    qint64 execute(const QString &sql, const QVariantList &params = {}) override;
    std::unique_ptr<Cursor> query(const QString &sql, const QVariantList &params = {}) override;

    void begin() override;
    void commit() override;
    void rollback() override;
    bool inTransaction() const override;

    bool hasTable(const QString &tabelle) override;
    Tabellenbeschreibung beschreiben(const QString &tabelle) override;
    QHash<QString, Tabellenbeschreibung> alleBeschreiben() override;

    std::optional<Tabellenrechte> rechte(const QString &tabelle) override;
    QString benutzer() const override;

    qint64 roundTrips() const override { return m_roundTrips; }

    // '?' placeholders to $1..$n, outside quoted literals, identifiers and comments.
    // Returns the converted text and the number of placeholders.
    static QPair<QByteArray, int> platzhalterUmsetzen(const QString &sql);

private:
    friend class PostgresCursor;

    PostgresDatabase(const QString &uri, pg_conn *conn);

    void sitzungEinrichten();
    // Makes the connection free for the next statement: the rows of a running stream go into
    // its cursor; a lost connection is reset once (3151 if it stays lost).
    void verbindungPruefen();
    // Sends the statement; with `zeilenweise` its rows come one by one (single-row mode).
    void senden(const QString &sql, const QVariantList &params, bool zeilenweise);
    // Runs the statement; throws the mapped error unless the result is OK.
    pg_result *ausfuehren(const QString &sql, const QVariantList &params);
    [[noreturn]] void fehlerWerfen(pg_result *res);

    pg_conn *m_conn;
    qint64 m_roundTrips = 0;
    QHash<QString, QPair<QByteArray, int>> m_umgesetzt;
    // The cursor whose rows are still arriving, if any.
    PostgresCursor *m_strom = nullptr;
};

} // namespace platform::storage
