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
    using Zeiger = std::unique_ptr<SqlCipherDatabase>;

    // How a file is encrypted. The cipher settings of each format are written in one place,
    // SqlCipherDatabase.cpp.
    enum class Format {
        Unverschluesselt,
        // SQLCipher 4: PBKDF2-HMAC-SHA512 with 256,000 rounds, HMAC-SHA512, 4096-byte pages.
        Aktuell,
        // The product's files before the engine change: SQLCipher 3 with 4096-byte pages,
        // read and written in compatibility mode.
        Alt,
    };

    // Opens an existing file. Missing file: 3024. A file that does not open with the key is left
    // exactly as it was and named: 3344 a plain SQLite file, 3049 one of ours damaged or cut
    // off, 3343 no database of ours (also an empty file), 3031 encrypted with another key.
    // A file in the old format is moved to the current one first, in a verified copy; while
    // another connection has it open, it is used in compatibility mode and moved at a later
    // open. A file the process may not write, or in a folder it may not write, opens read-only
    // (schreibgeschuetzt()) and never gets -wal or -shm files beside it; 3051 when even that
    // fails.
    static Zeiger oeffnen(const QString &pfad, const QString &passwort);
    // For looking into a file: never writes to it and never moves its format.
    static Zeiger oeffnenNurLesen(const QString &pfad, const QString &passwort);
    // Makes a new file; an empty password makes an unencrypted one. Existing file: 3204.
    // Format::Alt serves only the trials of the move and the benchmarks.
    static Zeiger anlegen(const QString &pfad, const QString &passwort,
                          Format format = Format::Aktuell);
    static void verschluesseln(const QString &pfad, const QString &passwort);

    Format format() const { return m_format; }
    bool schreibgeschuetzt() const override { return m_schreibgeschuetzt; }

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
    std::optional<Tabellenrechte> rechte(const QString &tabelle) override;

private:
    SqlCipherDatabase(const QString &pfad, sqlite3 *db, Format format);
    static Zeiger oeffnenMit(const QString &pfad, const QString &passwort, bool nurLesen);

    QString tabellenName(const QString &tabelle);
    // Column name and pk position (0 = not in the key) from PRAGMA table_info.
    QList<QPair<QString, int>> tabellenInfo(const QString &tabelle);

    sqlite3 *m_db;
    Format m_format;
    bool m_schreibgeschuetzt = false;
    std::shared_ptr<SqlCipherAnweisungen> m_anweisungen;
};

} // namespace platform::storage
