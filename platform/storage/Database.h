#pragma once

#include <QByteArrayView>
#include <QHash>
#include <QString>
#include <QStringList>
#include <QVariant>
#include <QVariantList>
#include <memory>
#include <optional>

namespace platform::storage {

// The database password of the suite's accounting databases.
inline const QString DBPasswort = QStringLiteral("kellerabteil4");

enum class Engine { SqlCipher, PostgreSql };

// Kind of a value as the engine delivers it. Dates travel as ISO text ("2003-12-31").
enum class Wertart { Null, Ganzzahl, Kommazahl, Text, Datum };

// What the user of a connection may do with one table.
struct Tabellenrechte
{
    bool lesen = false;
    bool einfuegen = false;
    bool aendern = false;
    bool loeschen = false;
};

// A forward-only result of one query. Values are valid until the next call of next().
// The raw accessors avoid building a QVariant per value (record sets load tens of thousands
// of rows through them).
class Cursor
{
public:
    virtual ~Cursor() = default;

    virtual int spaltenAnzahl() const = 0;
    virtual QString spaltenName(int spalte) const = 0;

    // Advances to the next row; false when there is none.
    virtual bool next() = 0;

    virtual Wertart art(int spalte) const = 0;
    virtual qint64 ganzzahl(int spalte) const = 0;
    virtual double kommazahl(int spalte) const = 0;
    // UTF-8 bytes of a text or date value.
    virtual QByteArrayView utf8(int spalte) const = 0;

    // The value as QVariant: null, qlonglong, double, QString or QDate.
    QVariant wert(int spalte) const;
};

// What a record set needs to know about its table to write rows back.
struct Tabellenbeschreibung
{
    QStringList spalten; // in the table's order, as the engine names them
    QStringList schluessel; // primary key columns in key order; empty when there is none
};

// One connection to an accounting database: a SQLCipher file or a PostgreSQL database.
// SQL texts use '?' for parameters on both engines; values are always bound, never spliced.
// Every failure throws platform::RuntimeError with the number the code relies on
// (3021, 3022, 3024, 3031, 3078, 3151, 3197, 3265); any other engine error keeps the
// engine's number and text.
class Database
{
public:
    virtual ~Database() = default;

    // The shared connection of this process for `ort` (file path or postgresql:// URI),
    // opened on first use. A file must exist; a wrong or missing key fails with 3031 and
    // leaves the file unchanged. A file in the format of the earlier engine is moved to the
    // current one (see SqlCipherDatabase::oeffnen).
    static std::shared_ptr<Database> open(const QString &ort, const QString &passwort = DBPasswort);

    // A connection of its own, not shared (a second user in tests and stress programs).
    static std::unique_ptr<Database> openSeparate(const QString &ort,
                                                  const QString &passwort = DBPasswort);

    // A connection of its own that cannot change anything (for looking into a database): a
    // file is opened read-only and keeps its format, a PostgreSQL session is read-only.
    static std::unique_ptr<Database> openReadOnly(const QString &ort,
                                                  const QString &passwort = DBPasswort);

    // Makes a new, empty database: an encrypted SQLCipher file (SQLCipher 4's format, WAL
    // journal) or, for a URI, nothing to create (the PostgreSQL database must exist).
    // Fails when the file exists already.
    static std::shared_ptr<Database> create(const QString &ort,
                                            const QString &passwort = DBPasswort);

    // Encrypts an unencrypted SQLite file in place with `passwort`: encrypted copy next to it,
    // then atomic rename. Every row is kept; a crash leaves either the old or the new file.
    // Fails with 3031 when the file is encrypted already.
    static void verschluesseln(const QString &pfad, const QString &passwort = DBPasswort);

    static bool istPostgresUri(const QString &ort);

    // How long a write waits for another connection's write before it fails with 3218 (the
    // file's busy wait, the server's lock_timeout); for connections opened afterwards.
    // 15 seconds unless changed.
    static void setWartezeit(int millisekunden);
    static int wartezeit();

    virtual Engine engine() const = 0;
    const QString &ort() const { return m_ort; }

    // Runs a statement; returns the number of rows it changed.
    virtual qint64 execute(const QString &sql, const QVariantList &params = {}) = 0;
    virtual std::unique_ptr<Cursor> query(const QString &sql, const QVariantList &params = {}) = 0;
    // First value of the first row, or a null QVariant.
    QVariant scalar(const QString &sql, const QVariantList &params = {});

    virtual void begin() = 0;
    virtual void commit() = 0;
    virtual void rollback() = 0;
    virtual bool inTransaction() const = 0;

    // Schema questions; names are compared without regard to ASCII case. A missing table
    // fails with 3078. beschreiben() costs one server round trip.
    virtual bool hasTable(const QString &tabelle) = 0;
    virtual Tabellenbeschreibung beschreiben(const QString &tabelle) = 0;
    // Every table of the schema, by its name in lower case, in one round trip; empty where the
    // engine asks table by table.
    virtual QHash<QString, Tabellenbeschreibung> alleBeschreiben() { return {}; }
    QStringList columns(const QString &tabelle) { return beschreiben(tabelle).spalten; }
    QStringList primaryKey(const QString &tabelle) { return beschreiben(tabelle).schluessel; }

    // beschreiben(), remembered for this connection until a statement of its own changes the
    // schema (ALTER, CREATE, DROP); the first question describes every table at once where the
    // engine can. `erneuern` asks the engine again (another program may have added a column).
    std::shared_ptr<const Tabellenbeschreibung> beschreibung(const QString &tabelle,
                                                             bool erneuern = false);

    // What this connection's user may do with `tabelle`; nothing when there is no such table.
    // A read-only connection (or a write-protected file) may only read.
    virtual std::optional<Tabellenrechte> rechte(const QString &tabelle) = 0;
    // The user the connection logs in as ("" for a file).
    virtual QString benutzer() const { return {}; }

    // Nothing can be changed through this connection (a file the user may only read, a
    // connection opened with openReadOnly); the screens then show and allow nothing else.
    virtual bool schreibgeschuetzt() const { return false; }

    // Number of server round trips so far (0 for the embedded engine); for benchmarks.
    virtual qint64 roundTrips() const { return 0; }

protected:
    explicit Database(QString ort)
        : m_ort(std::move(ort))
    { }

    // For execute(): forgets the remembered descriptions when `sql` changes the schema.
    void schemaAenderungBeachten(const QString &sql);

private:
    QString m_ort;
    QHash<QString, std::shared_ptr<const Tabellenbeschreibung>> m_beschreibungen;
    bool m_alleBeschrieben = false;
};

// Rolls back unless committed.
class Transaktion
{
public:
    explicit Transaktion(Database &db);
    ~Transaktion();
    Transaktion(const Transaktion &) = delete;
    Transaktion &operator=(const Transaktion &) = delete;
    void commit();

private:
    Database &m_db;
    bool m_offen = true;
};

} // namespace platform::storage
