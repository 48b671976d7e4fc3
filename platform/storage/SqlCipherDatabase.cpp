#include "SqlCipherDatabase.h"

#include "platform/core/RuntimeError.h"

#include <QDate>
#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <cstdio>
#include <fcntl.h>
#include <sqlcipher/sqlite3.h>
#include <unistd.h>

namespace platform::storage {

namespace {

constexpr int DatenbankExistiert = 3204;
constexpr qsizetype CacheGroesse = 64;

[[noreturn]] void werfen(int nummer, const QString &zusatz = {})
{
    QString text = RuntimeError::standardText(nummer);
    if (!zusatz.isEmpty())
        text += QStringLiteral(" (%1)").arg(zusatz);
    throw RuntimeError(nummer, text);
}

// Maps the engine's error to the numbers the code relies on; others keep SQLite's own.
[[noreturn]] void sqliteFehler(sqlite3 *db, int rc)
{
    const int erweitert = db ? sqlite3_extended_errcode(db) : rc;
    const QString meldung
        = db ? QString::fromUtf8(sqlite3_errmsg(db)) : QString::fromUtf8(sqlite3_errstr(rc));
    const auto nameNach = [&](QLatin1String vorspann) {
        const qsizetype pos = meldung.indexOf(vorspann);
        return pos < 0 ? QString() : meldung.mid(pos + vorspann.size()).trimmed();
    };
    if (meldung.startsWith(QLatin1String("no such table:")))
        werfen(fehlernummer::TabelleNichtGefunden, nameNach(QLatin1String("no such table:")));
    if (meldung.startsWith(QLatin1String("no such column:")))
        werfen(fehlernummer::FeldNichtGefunden, nameNach(QLatin1String("no such column:")));
    if (meldung.contains(QLatin1String("has no column named")))
        werfen(fehlernummer::FeldNichtGefunden, nameNach(QLatin1String("has no column named")));
    if (erweitert == SQLITE_CONSTRAINT_UNIQUE || erweitert == SQLITE_CONSTRAINT_PRIMARYKEY)
        werfen(fehlernummer::DoppelterSchluessel);
    if ((erweitert & 0xff) == SQLITE_NOTADB)
        werfen(fehlernummer::UngueltigesKennwort);
    throw RuntimeError(erweitert, meldung);
}

void pruefen(sqlite3 *db, int rc)
{
    if (rc != SQLITE_OK && rc != SQLITE_DONE && rc != SQLITE_ROW)
        sqliteFehler(db, rc);
}

int bindeText(sqlite3_stmt *stmt, int index, const QByteArray &text)
{
    return sqlite3_bind_text(stmt, index, text.constData(), int(text.size()), SQLITE_TRANSIENT);
}

void binden(sqlite3 *db, sqlite3_stmt *stmt, int index, const QVariant &wert)
{
    int rc = SQLITE_OK;
    if (wert.isNull()) {
        rc = sqlite3_bind_null(stmt, index);
    } else {
        switch (wert.typeId()) {
        case QMetaType::Bool:
            rc = sqlite3_bind_int64(stmt, index, wert.toBool() ? -1 : 0);
            break;
        case QMetaType::Int:
        case QMetaType::UInt:
        case QMetaType::Long:
        case QMetaType::LongLong:
        case QMetaType::ULong:
        case QMetaType::ULongLong:
        case QMetaType::Short:
        case QMetaType::UShort:
        case QMetaType::Char:
        case QMetaType::SChar:
        case QMetaType::UChar:
            rc = sqlite3_bind_int64(stmt, index, wert.toLongLong());
            break;
        case QMetaType::Double:
        case QMetaType::Float:
            rc = sqlite3_bind_double(stmt, index, wert.toDouble());
            break;
        case QMetaType::QDate: {
            const QByteArray iso = wert.toDate().toString(Qt::ISODate).toUtf8();
            rc = bindeText(stmt, index, iso);
            break;
        }
        case QMetaType::QDateTime: {
            const QByteArray iso
                = wert.toDateTime().toString(QStringLiteral("yyyy-MM-dd HH:mm:ss")).toUtf8();
            rc = bindeText(stmt, index, iso);
            break;
        }
        default: {
            const QByteArray text = wert.toString().toUtf8();
            rc = bindeText(stmt, index, text);
            break;
        }
        }
    }
    pruefen(db, rc);
}

// Quotes an identifier for the few statements that cannot take it as a parameter.
QString bezeichner(const QString &name)
{
    QString n = name;
    n.replace(QLatin1Char('"'), QLatin1String("\"\""));
    return QLatin1Char('"') + n + QLatin1Char('"');
}

QByteArray schluesselPragma(const QString &schema, const QString &passwort)
{
    QString p = passwort;
    p.replace(QLatin1Char('\''), QLatin1String("''"));
    const QString vorsatz = schema.isEmpty() ? QString() : schema + QLatin1Char('.');
    return QStringLiteral("PRAGMA %1key = '%2'").arg(vorsatz, p).toUtf8();
}

void direkt(sqlite3 *db, const char *sql)
{
    pruefen(db, sqlite3_exec(db, sql, nullptr, nullptr, nullptr));
}

void direkt(sqlite3 *db, const QByteArray &sql)
{
    direkt(db, sql.constData());
}

bool fsyncPfad(const QString &pfad, bool verzeichnis)
{
    const int fd = ::open(QFile::encodeName(pfad).constData(),
                          verzeichnis ? (O_RDONLY | O_DIRECTORY) : O_RDWR);
    if (fd < 0)
        return false;
    const bool ok = ::fsync(fd) == 0;
    ::close(fd);
    return ok;
}

struct Verbindung
{
    sqlite3 *db = nullptr;
    ~Verbindung()
    {
        if (db)
            sqlite3_close_v2(db);
    }
    sqlite3 *loslassen() { return std::exchange(db, nullptr); }
};

// Opens without creating; applies key and page size; proves the key by reading the schema.
// Nothing is written before the proof, so a wrong key leaves the file as it was.
void oeffnenUndPruefen(Verbindung &v, const QString &pfad, const QString &passwort,
                       int flags = SQLITE_OPEN_READWRITE)
{
    if (!QFileInfo(pfad).isFile())
        werfen(fehlernummer::DateiNichtGefunden, pfad);
    const int rc = sqlite3_open_v2(QFile::encodeName(pfad).constData(), &v.db, flags, nullptr);
    if (rc != SQLITE_OK) {
        if (rc == SQLITE_CANTOPEN)
            werfen(fehlernummer::DateiNichtGefunden, pfad);
        sqliteFehler(v.db, rc);
    }
    sqlite3_extended_result_codes(v.db, 1);
    if (!passwort.isEmpty()) {
        direkt(v.db, schluesselPragma({}, passwort));
        direkt(v.db, "PRAGMA cipher_page_size = 4096");
    }
    if (sqlite3_exec(v.db, "SELECT count(*) FROM sqlite_master", nullptr, nullptr, nullptr)
        != SQLITE_OK) {
        const int fehler = sqlite3_extended_errcode(v.db) & 0xff;
        if (fehler == SQLITE_NOTADB || fehler == SQLITE_CORRUPT)
            werfen(fehlernummer::UngueltigesKennwort, pfad);
        sqliteFehler(v.db, fehler);
    }
}

void einstellen(sqlite3 *db)
{
    // Several users on one file: a writer waits for another one's short transaction instead
    // of failing with "database is locked".
    sqlite3_busy_timeout(db, 15000);
    direkt(db, "PRAGMA journal_mode = WAL");
    direkt(db, "PRAGMA cache_size = -32768");
}

class SqlCipherCursor;

} // namespace

// Prepared statements by SQL text: record sets reload the same queries often. A statement in
// use by a cursor is taken out and given back when the cursor ends; cursors that outlive
// the connection finalize their own (sqlite3_close_v2 waits for them).
class SqlCipherAnweisungen
{
public:
    explicit SqlCipherAnweisungen(sqlite3 *db)
        : m_db(db)
    { }
    ~SqlCipherAnweisungen() { leeren(); }

    sqlite3_stmt *holen(const QString &sql)
    {
        if (sqlite3_stmt *s = m_frei.take(sql))
            return s;
        const QByteArray text = sql.toUtf8();
        sqlite3_stmt *stmt = nullptr;
        const int rc
            = sqlite3_prepare_v2(m_db, text.constData(), int(text.size()) + 1, &stmt, nullptr);
        if (rc != SQLITE_OK) {
            sqlite3_finalize(stmt);
            sqliteFehler(m_db, rc);
        }
        if (!stmt) {
            throw RuntimeError(SQLITE_MISUSE, QStringLiteral("Die SQL-Anweisung ist leer."));
        }
        return stmt;
    }

    void zurueck(const QString &sql, sqlite3_stmt *stmt)
    {
        sqlite3_reset(stmt);
        sqlite3_clear_bindings(stmt);
        if (m_frei.contains(sql) || m_frei.size() >= CacheGroesse) {
            sqlite3_finalize(stmt);
            return;
        }
        m_frei.insert(sql, stmt);
    }

    void leeren()
    {
        for (sqlite3_stmt *s : std::as_const(m_frei))
            sqlite3_finalize(s);
        m_frei.clear();
    }

private:
    sqlite3 *m_db;
    QHash<QString, sqlite3_stmt *> m_frei;
};

namespace {

// Binds the parameters and gives the statement back however the caller leaves.
class Anweisung
{
public:
    Anweisung(std::shared_ptr<SqlCipherAnweisungen> cache, sqlite3 *db, const QString &sql,
              const QVariantList &params)
        : m_cache(cache)
        , m_db(db)
        , m_sql(sql)
        , m_stmt(cache->holen(sql))
    {
        const int anzahl = sqlite3_bind_parameter_count(m_stmt);
        if (anzahl != params.size()) {
            throw RuntimeError(SQLITE_RANGE,
                               QStringLiteral("Die Anweisung erwartet %1 Parameter, übergeben "
                                              "wurden %2.")
                                   .arg(anzahl)
                                   .arg(params.size()));
        }
        for (int i = 0; i < anzahl; ++i)
            binden(m_db, m_stmt, i + 1, params.at(i));
    }
    ~Anweisung()
    {
        if (!m_stmt)
            return;
        if (auto cache = m_cache.lock())
            cache->zurueck(m_sql, m_stmt);
        else
            sqlite3_finalize(m_stmt);
    }
    Anweisung(const Anweisung &) = delete;
    Anweisung &operator=(const Anweisung &) = delete;

    sqlite3_stmt *stmt() const { return m_stmt; }
    sqlite3 *db() const { return m_db; }

    // Returns true for a row, false when done; throws the mapped error.
    bool schritt()
    {
        const int rc = sqlite3_step(m_stmt);
        if (rc == SQLITE_ROW)
            return true;
        if (rc == SQLITE_DONE)
            return false;
        // The reset error carries the detailed code of the failed step.
        sqlite3_reset(m_stmt);
        sqliteFehler(m_db, rc);
    }

private:
    std::weak_ptr<SqlCipherAnweisungen> m_cache;
    sqlite3 *m_db;
    QString m_sql;
    sqlite3_stmt *m_stmt;
};

class SqlCipherCursor final : public Cursor
{
public:
    explicit SqlCipherCursor(std::unique_ptr<Anweisung> a)
        : m_a(std::move(a))
        , m_stmt(m_a->stmt())
    {
        // The first step prepares a cached statement anew when another connection changed the
        // schema; only then do its columns (SELECT *) say what the rows hold.
        m_fertig = !m_a->schritt();
        const int n = sqlite3_column_count(m_stmt);
        m_datum.resize(n);
        for (int i = 0; i < n; ++i) {
            const char *typ = sqlite3_column_decltype(m_stmt, i);
            m_datum[i] = typ && QByteArrayView(typ).toByteArray().toUpper().contains("DATE");
        }
    }

    int spaltenAnzahl() const override { return int(m_datum.size()); }
    QString spaltenName(int spalte) const override
    {
        return QString::fromUtf8(sqlite3_column_name(m_stmt, spalte));
    }
    bool next() override
    {
        if (m_vorgelesen) {
            m_vorgelesen = false;
            return !m_fertig;
        }
        if (m_fertig)
            return false;
        m_fertig = !m_a->schritt();
        return !m_fertig;
    }
    Wertart art(int spalte) const override
    {
        switch (sqlite3_column_type(m_stmt, spalte)) {
        case SQLITE_NULL:
            return Wertart::Null;
        case SQLITE_INTEGER:
            return Wertart::Ganzzahl;
        case SQLITE_FLOAT:
            return Wertart::Kommazahl;
        default:
            return m_datum[spalte] ? Wertart::Datum : Wertart::Text;
        }
    }
    qint64 ganzzahl(int spalte) const override { return sqlite3_column_int64(m_stmt, spalte); }
    double kommazahl(int spalte) const override { return sqlite3_column_double(m_stmt, spalte); }
    QByteArrayView utf8(int spalte) const override
    {
        const auto *text = reinterpret_cast<const char *>(sqlite3_column_text(m_stmt, spalte));
        return QByteArrayView(text, sqlite3_column_bytes(m_stmt, spalte));
    }

private:
    std::unique_ptr<Anweisung> m_a;
    sqlite3_stmt *m_stmt;
    QList<bool> m_datum;
    bool m_fertig = false;
    bool m_vorgelesen = true;
};

} // namespace

SqlCipherDatabase::SqlCipherDatabase(const QString &pfad, sqlite3 *db)
    : Database(pfad)
    , m_db(db)
    , m_anweisungen(std::make_shared<SqlCipherAnweisungen>(db))
{ }

SqlCipherDatabase::~SqlCipherDatabase()
{
    m_anweisungen.reset();
    sqlite3_close_v2(m_db);
}

SqlCipherDatabase::Zeiger SqlCipherDatabase::oeffnen(const QString &pfad, const QString &passwort)
{
    Verbindung v;
    oeffnenUndPruefen(v, pfad, passwort);
    einstellen(v.db);
    return Zeiger(new SqlCipherDatabase(pfad, v.loslassen()));
}

SqlCipherDatabase::Zeiger SqlCipherDatabase::anlegen(const QString &pfad, const QString &passwort)
{
    if (QFileInfo::exists(pfad)) {
        throw RuntimeError(DatenbankExistiert,
                           QStringLiteral("Die Datenbank '%1' existiert bereits.").arg(pfad));
    }
    Verbindung v;
    const int rc = sqlite3_open_v2(QFile::encodeName(pfad).constData(), &v.db,
                                   SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE, nullptr);
    if (rc != SQLITE_OK)
        sqliteFehler(v.db, rc);
    sqlite3_extended_result_codes(v.db, 1);
    if (!passwort.isEmpty()) {
        direkt(v.db, schluesselPragma({}, passwort));
        direkt(v.db, "PRAGMA cipher_page_size = 4096");
    }
    einstellen(v.db);
    // Writes the first page, so the file exists with its key from now on.
    direkt(v.db, "PRAGMA user_version = 0");
    direkt(v.db, "CREATE TABLE zep_leer(x); DROP TABLE zep_leer");
    return Zeiger(new SqlCipherDatabase(pfad, v.loslassen()));
}

void SqlCipherDatabase::verschluesseln(const QString &pfad, const QString &passwort)
{
    const QString kopie = pfad + QStringLiteral(".verschluesseln");
    QFile::remove(kopie);
    {
        Verbindung v;
        // An encrypted file does not read without its key: 3031, nothing is touched.
        // ATTACH takes the open flags of the main file: CREATE lets it make the copy.
        oeffnenUndPruefen(v, pfad, {}, SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE);
        sqlite3_stmt *stmt = nullptr;
        pruefen(v.db,
                sqlite3_prepare_v2(v.db, "ATTACH DATABASE ? AS enc KEY ?", -1, &stmt, nullptr));
        const QByteArray ziel = QFile::encodeName(kopie);
        const QByteArray schluessel = passwort.toUtf8();
        bindeText(stmt, 1, ziel);
        bindeText(stmt, 2, schluessel);
        const int rc = sqlite3_step(stmt);
        sqlite3_finalize(stmt);
        try {
            if (rc != SQLITE_DONE)
                sqliteFehler(v.db, rc);
            if (!passwort.isEmpty())
                direkt(v.db, "PRAGMA enc.cipher_page_size = 4096");
            direkt(v.db, "SELECT sqlcipher_export('enc')");
            direkt(v.db, "DETACH DATABASE enc");
        } catch (...) {
            sqlite3_close_v2(v.loslassen());
            QFile::remove(kopie);
            throw;
        }
    }
    if (!fsyncPfad(kopie, false)
        || std::rename(QFile::encodeName(kopie).constData(), QFile::encodeName(pfad).constData())
            != 0) {
        QFile::remove(kopie);
        throw RuntimeError(fehlernummer::DateiNichtGefunden,
                           QStringLiteral("Die verschlüsselte Kopie von '%1' konnte nicht "
                                          "gespeichert werden.")
                               .arg(pfad));
    }
    fsyncPfad(QFileInfo(pfad).absolutePath(), true);
}

qint64 SqlCipherDatabase::execute(const QString &sql, const QVariantList &params)
{
    schemaAenderungBeachten(sql);
    // Several statements in one text (schema scripts) run in one go; they take no parameters.
    if (params.isEmpty() && sql.contains(QLatin1Char(';'))) {
        direkt(m_db, sql.toUtf8());
        return sqlite3_changes(m_db);
    }
    Anweisung a(m_anweisungen, m_db, sql, params);
    while (a.schritt()) { }
    return sqlite3_changes(m_db);
}

std::unique_ptr<Cursor> SqlCipherDatabase::query(const QString &sql, const QVariantList &params)
{
    return std::make_unique<SqlCipherCursor>(
        std::make_unique<Anweisung>(m_anweisungen, m_db, sql, params));
}

void SqlCipherDatabase::begin()
{
    direkt(m_db, "BEGIN");
}

void SqlCipherDatabase::commit()
{
    direkt(m_db, "COMMIT");
}

void SqlCipherDatabase::rollback()
{
    direkt(m_db, "ROLLBACK");
}

bool SqlCipherDatabase::inTransaction() const
{
    return sqlite3_get_autocommit(m_db) == 0;
}

QString SqlCipherDatabase::tabellenName(const QString &tabelle)
{
    return scalar(QStringLiteral("SELECT name FROM sqlite_master WHERE type IN ('table', 'view') "
                                 "AND lower(name) = lower(?)"),
                  {tabelle})
        .toString();
}

bool SqlCipherDatabase::hasTable(const QString &tabelle)
{
    return !tabellenName(tabelle).isEmpty();
}

QList<QPair<QString, int>> SqlCipherDatabase::tabellenInfo(const QString &tabelle)
{
    const QString name = tabellenName(tabelle);
    if (name.isEmpty())
        werfen(fehlernummer::TabelleNichtGefunden, tabelle);
    QList<QPair<QString, int>> info;
    auto c = query(QStringLiteral("PRAGMA table_info(%1)").arg(bezeichner(name)));
    while (c->next())
        info.append({c->wert(1).toString(), int(c->ganzzahl(5))});
    return info;
}

Tabellenbeschreibung SqlCipherDatabase::beschreiben(const QString &tabelle)
{
    auto info = tabellenInfo(tabelle);
    Tabellenbeschreibung b;
    for (const auto &[name, pk] : info)
        b.spalten.append(name);
    info.removeIf([](const auto &i) { return i.second == 0; });
    std::sort(info.begin(), info.end(),
              [](const auto &a, const auto &b) { return a.second < b.second; });
    for (const auto &[name, pk] : info)
        b.schluessel.append(name);
    return b;
}

} // namespace platform::storage
