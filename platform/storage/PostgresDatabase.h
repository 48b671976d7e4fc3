#pragma once

#include "Database.h"

#include <QHash>

struct pg_conn;
struct pg_result;

namespace platform::storage {

// The engine for offices with several users: a PostgreSQL database reached through libpq.
// Unquoted identifiers fold to lower case there, so result column names come back in lower
// case; callers match names without regard to case.
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

    // For a missing table columns() and primaryKey() fail with 3078.
    bool hasTable(const QString &tabelle) override;
    QStringList columns(const QString &tabelle) override;
    QStringList primaryKey(const QString &tabelle) override;

    qint64 roundTrips() const override { return m_roundTrips; }

    // '?' placeholders to $1..$n, outside quoted literals, identifiers and comments.
    // Returns the converted text and the number of placeholders.
    static QPair<QByteArray, int> platzhalterUmsetzen(const QString &sql);

private:
    PostgresDatabase(const QString &uri, pg_conn *conn);

    void sitzungEinrichten();
    // Resets a lost connection once before the next statement; fails with 3151 if it stays lost.
    void verbindungPruefen();
    // Runs the statement; throws the mapped error unless the result is OK.
    pg_result *ausfuehren(const QString &sql, const QVariantList &params);
    [[noreturn]] void fehlerWerfen(pg_result *res);

    pg_conn *m_conn;
    qint64 m_roundTrips = 0;
    QHash<QString, QPair<QByteArray, int>> m_umgesetzt;
};

} // namespace platform::storage
