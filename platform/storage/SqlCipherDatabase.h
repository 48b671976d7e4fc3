#pragma once

#include "Database.h"

#include <QHash>

struct sqlite3;
struct sqlite3_stmt;

namespace platform::storage {

class SqlCipherAnweisungen;

// The embedded engine: a SQLCipher file encrypted with the database password.
class SqlCipherDatabase final : public Database
{
public:
    // Opens an existing file. Missing file: 3024. Wrong or missing key: 3031, and the file is
    // left exactly as it was.
    using Zeiger = std::unique_ptr<SqlCipherDatabase>;

    static Zeiger oeffnen(const QString &pfad, const QString &passwort);
    // Makes a new file; an empty password makes an unencrypted one. Existing file: 3204.
    static Zeiger anlegen(const QString &pfad, const QString &passwort);
    static void verschluesseln(const QString &pfad, const QString &passwort);

    ~SqlCipherDatabase() override;

    Engine engine() const override { return Engine::SqlCipher; }
    qint64 execute(const QString &sql, const QVariantList &params = {}) override;
    std::unique_ptr<Cursor> query(const QString &sql, const QVariantList &params = {}) override;

    void begin() override;
    void commit() override;
    void rollback() override;
    bool inTransaction() const override;

    bool hasTable(const QString &tabelle) override;
    Tabellenbeschreibung beschreiben(const QString &tabelle) override;

private:
    SqlCipherDatabase(const QString &pfad, sqlite3 *db);

    QString tabellenName(const QString &tabelle);
    // Column name and pk position (0 = not in the key) from PRAGMA table_info.
    QList<QPair<QString, int>> tabellenInfo(const QString &tabelle);

    sqlite3 *m_db;
    std::shared_ptr<SqlCipherAnweisungen> m_anweisungen;
};

} // namespace platform::storage
