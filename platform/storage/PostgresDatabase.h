#pragma once

#include "Database.h"

#include <QHash>

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
    // Connects to a postgresql:// or postgres:// URI. Failure: 3151 with libpq's reason.
    static std::unique_ptr<PostgresDatabase> oeffnen(const QString &uri);

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
