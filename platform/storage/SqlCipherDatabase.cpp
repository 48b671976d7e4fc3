#include "SqlCipherDatabase.h"

#include "platform/core/RuntimeError.h"

#include <QDate>
#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>
#include <QUrl>
#include <algorithm>
#include <array>
#include <cstdio>
#include <fcntl.h>
#include <set>
#include <sqlite3.h>
#include <unistd.h>

namespace platform::storage {

namespace {

constexpr int DatenbankExistiert = 3204;
constexpr qsizetype CacheGroesse = 64;

// SQLCipher frees its global state in an exit handler that it registers when the library is
// first initialised; a connection closed after that crashes. Our own handler, registered just
// after SQLCipher's and so run just before it, closes the connections that static objects still
// hold; their destructors then leave SQLite alone.
bool g_beendet = false;

std::set<sqlite3 *> &offeneVerbindungen()
{
    static auto *v = new std::set<sqlite3 *>; // outlives every static object
    return *v;
}

void engineBereit()
{
    static const bool bereit = [] {
        sqlite3_initialize();
        std::atexit([] {
            for (sqlite3 *db : offeneVerbindungen()) {
                while (sqlite3_stmt *s = sqlite3_next_stmt(db, nullptr))
                    sqlite3_finalize(s);
                sqlite3_close(db);
            }
            g_beendet = true;
        });
        return true;
    }();
    (void)bereit;
}

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
    // The key was proved when the file was opened: a page that does not decrypt, or does not
    // fit the others, is damage.
    switch (erweitert & 0xff) {
    case SQLITE_NOTADB:
    case SQLITE_CORRUPT:
        werfen(fehlernummer::DatenbankBeschaedigt);
    case SQLITE_CANTOPEN:
        werfen(fehlernummer::KeinZugriff, meldung);
    case SQLITE_READONLY:
        werfen(fehlernummer::NichtAktualisierbar, QStringLiteral("schreibgeschützt"));
    case SQLITE_BUSY:
    case SQLITE_LOCKED:
        // The busy wait ran out: another workstation keeps writing. SQLite's "database is
        // locked" would tell the user nothing more.
        werfen(fehlernummer::AndererSchreibt);
    case SQLITE_FULL:
        werfen(fehlernummer::DatentraegerVoll, meldung);
    case SQLITE_IOERR:
        if (erweitert != SQLITE_IOERR_NOMEM)
            werfen(fehlernummer::DatentraegerFehler, meldung);
        break;
    default:
        break;
    }
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

// The cipher settings of each encrypted format; nothing else sets them. The current format is
// SQLCipher 4's defaults, written out so that a library with other defaults still reads it.
QList<QByteArray> chiffrierung(SqlCipherDatabase::Format format)
{
    switch (format) {
    case SqlCipherDatabase::Format::Aktuell:
        return {"cipher_page_size = 4096", "kdf_iter = 256000",
                "cipher_hmac_algorithm = HMAC_SHA512", "cipher_kdf_algorithm = PBKDF2_HMAC_SHA512"};
    case SqlCipherDatabase::Format::Alt:
        return {"cipher_compatibility = 3", "cipher_page_size = 4096"};
    case SqlCipherDatabase::Format::Unverschluesselt:
        break;
    }
    return {};
}

void direkt(sqlite3 *db, const char *sql)
{
    pruefen(db, sqlite3_exec(db, sql, nullptr, nullptr, nullptr));
}

void direkt(sqlite3 *db, const QByteArray &sql)
{
    direkt(db, sql.constData());
}

// The cipher settings for `schema` ("main" or an attached one), after its key and before its
// first read.
void chiffrierungSetzen(sqlite3 *db, const char *schema, SqlCipherDatabase::Format format)
{
    for (const QByteArray &einstellung : chiffrierung(format))
        direkt(db, "PRAGMA " + QByteArray(schema) + '.' + einstellung);
}

void schluesselSetzen(sqlite3 *db, const QString &passwort, SqlCipherDatabase::Format format)
{
    QString p = passwort;
    p.replace(QLatin1Char('\''), QLatin1String("''"));
    direkt(db, "PRAGMA key = '" + p.toUtf8() + '\'');
    chiffrierungSetzen(db, "main", format);
}

// Attaches `pfad` as `schema`, encrypted in the current format unless the password is empty.
// ATTACH makes a missing file only when the main file was opened with SQLITE_OPEN_CREATE.
void anhaengen(sqlite3 *db, const QString &pfad, const char *schema, const QString &passwort)
{
    sqlite3_stmt *stmt = nullptr;
    const QByteArray sql = "ATTACH DATABASE ? AS " + QByteArray(schema) + " KEY ?";
    pruefen(db, sqlite3_prepare_v2(db, sql.constData(), -1, &stmt, nullptr));
    const QByteArray ziel = QFile::encodeName(pfad);
    const QByteArray schluessel = passwort.toUtf8();
    bindeText(stmt, 1, ziel);
    bindeText(stmt, 2, schluessel);
    const int rc = sqlite3_step(stmt);
    sqlite3_finalize(stmt);
    if (rc != SQLITE_DONE)
        sqliteFehler(db, rc);
    if (!passwort.isEmpty())
        chiffrierungSetzen(db, schema, SqlCipherDatabase::Format::Aktuell);
}

// The first column of every row of `sql`, as text.
QStringList spalte(sqlite3 *db, const QByteArray &sql)
{
    sqlite3_stmt *stmt = nullptr;
    pruefen(db, sqlite3_prepare_v2(db, sql.constData(), -1, &stmt, nullptr));
    QStringList werte;
    int rc;
    while ((rc = sqlite3_step(stmt)) == SQLITE_ROW)
        werte.append(
            QString::fromUtf8(reinterpret_cast<const char *>(sqlite3_column_text(stmt, 0))));
    sqlite3_finalize(stmt);
    pruefen(db, rc);
    return werte;
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

bool umbenennen(const QString &von, const QString &nach)
{
    return fsyncPfad(von, false)
        && std::rename(QFile::encodeName(von).constData(), QFile::encodeName(nach).constData()) == 0
        && fsyncPfad(QFileInfo(nach).absolutePath(), true);
}

// `laenge` bytes of the file from `ab` (fewer at its end; empty when it does not read). Read
// through SQLite's file layer, never through a descriptor of our own: closing that would drop the
// locks this process's connections hold on the file.
QByteArray dateiLesen(const QString &pfad, qint64 ab, int laenge)
{
    engineBereit();
    sqlite3_vfs *vfs = sqlite3_vfs_find(nullptr);
    const QByteArray absolut = QFile::encodeName(QFileInfo(pfad).absoluteFilePath());
    sqlite3_filename name = sqlite3_create_filename(absolut.constData(), "", "", 0, nullptr);
    std::vector<char> platz(size_t(vfs->szOsFile));
    auto *datei = reinterpret_cast<sqlite3_file *>(platz.data());
    int art = 0;
    QByteArray daten;
    if (vfs->xOpen(vfs, name, datei, SQLITE_OPEN_READONLY | SQLITE_OPEN_MAIN_DB, &art)
        == SQLITE_OK) {
        sqlite3_int64 groesse = 0;
        if (datei->pMethods->xFileSize(datei, &groesse) == SQLITE_OK && groesse > ab) {
            daten.resize(int(std::min<sqlite3_int64>(laenge, groesse - ab)));
            if (datei->pMethods->xRead(datei, daten.data(), int(daten.size()), ab) != SQLITE_OK)
                daten.clear();
        }
        datei->pMethods->xClose(datei);
    }
    sqlite3_free_filename(name);
    return daten;
}

// The salt that starts an encrypted file, as hex: it tells whether the file a connection holds
// is still the one the path names.
QString kopfSalz(const QString &pfad)
{
    const QByteArray salz = dateiLesen(pfad, 0, 16);
    return salz.size() == 16 ? QString::fromLatin1(salz.toHex()) : QString();
}

// A copy of the main file of `db`, read through the connection's own file.
bool kopieren(sqlite3 *db, const QString &ziel)
{
    sqlite3_file *datei = nullptr;
    sqlite3_int64 groesse = 0;
    if (sqlite3_file_control(db, "main", SQLITE_FCNTL_FILE_POINTER, &datei) != SQLITE_OK || !datei
        || datei->pMethods->xFileSize(datei, &groesse) != SQLITE_OK)
        return false;
    QFile aus(ziel);
    if (!aus.open(QIODevice::WriteOnly | QIODevice::Truncate))
        return false;
    QByteArray block(1 << 16, '\0');
    for (sqlite3_int64 pos = 0; pos < groesse; pos += block.size()) {
        const int n = int(std::min<sqlite3_int64>(block.size(), groesse - pos));
        if (datei->pMethods->xRead(datei, block.data(), n, pos) != SQLITE_OK
            || aus.write(block.constData(), n) != n)
            return false;
    }
    return aus.flush() && ::fsync(aus.handle()) == 0;
}

QString salzVon(sqlite3 *db)
{
    const QStringList s = spalte(db, "PRAGMA cipher_salt");
    return s.isEmpty() ? QString() : s.front().toLower();
}

struct Verbindung
{
    sqlite3 *db = nullptr;
    Verbindung() = default;
    Verbindung(const Verbindung &) = delete;
    Verbindung &operator=(const Verbindung &) = delete;
    ~Verbindung() { schliessen(); }
    void schliessen()
    {
        if (db)
            sqlite3_close_v2(std::exchange(db, nullptr));
    }
    sqlite3 *loslassen() { return std::exchange(db, nullptr); }
};

enum class Versuch { Gut, FalscherSchluessel, Belegt };

constexpr qint64 Seitengroesse = 4096;

bool hatWal(const QString &pfad)
{
    return QFileInfo(pfad + QStringLiteral("-wal")).size() > 0;
}

// Opens without creating, sets key and cipher settings of `format` and proves the key by
// reading the schema. Nothing is written before the proof, so a wrong key leaves the file as it
// was. `exklusiv` takes the file for this connection alone (an exclusive lock, kept until the
// connection closes) and gives up after 0.4 s when another connection has it open (Belegt): a
// starting program holds it only while it tries its key, an open one holds it for good.
// `unveraenderlich` reads a file that nobody writes meanwhile without locks and without the
// -wal and -shm files beside it.
Versuch versuchen(Verbindung &v, const QString &pfad, const QString &passwort,
                  SqlCipherDatabase::Format format, int flags, bool exklusiv = false,
                  bool unveraenderlich = false)
{
    v.schliessen();
    engineBereit();
    const QFileInfo info(pfad);
    if (!info.isFile())
        werfen(fehlernummer::DateiNichtGefunden, pfad);
    // An empty file would become a new database with the first write: only --init and --demo
    // make databases.
    if (info.size() == 0 && !hatWal(pfad)) {
        throw RuntimeError(
            fehlernummer::KeineDatenbank,
            QStringLiteral("Die Datei ist leer (0 Byte) und keine Datenbank. (%1)").arg(pfad));
    }
    if (!info.isReadable())
        werfen(fehlernummer::KeinZugriff, pfad);
    QByteArray name = QFile::encodeName(pfad);
    if (unveraenderlich) {
        name = QUrl::fromLocalFile(info.absoluteFilePath()).toEncoded() + "?immutable=1";
        flags |= SQLITE_OPEN_URI;
    }
    const int rc = sqlite3_open_v2(name.constData(), &v.db, flags, nullptr);
    if (rc != SQLITE_OK) {
        if (rc == SQLITE_CANTOPEN)
            werfen(fehlernummer::KeinZugriff, pfad);
        sqliteFehler(v.db, rc);
    }
    sqlite3_extended_result_codes(v.db, 1);
    // A file from a shared drive may be crafted: no writing to the schema by SQL.
    sqlite3_db_config(v.db, SQLITE_DBCONFIG_DEFENSIVE, 1, nullptr);
    // Several users on one file: a connection waits for another one's short transaction
    // instead of failing with "database is locked".
    sqlite3_busy_timeout(v.db, exklusiv ? 400 : Database::wartezeit());
    if (format != SqlCipherDatabase::Format::Unverschluesselt)
        schluesselSetzen(v.db, passwort, format);
    if (exklusiv)
        direkt(v.db, "PRAGMA locking_mode = EXCLUSIVE");
    // In WAL mode the exclusive locking mode takes the lock with the first read; a file in
    // rollback mode needs a write transaction for it.
    const char *beweis = exklusiv ? "SELECT count(*) FROM sqlite_master; BEGIN EXCLUSIVE; COMMIT"
                                  : "SELECT count(*) FROM sqlite_master";
    if (sqlite3_exec(v.db, beweis, nullptr, nullptr, nullptr) == SQLITE_OK)
        return Versuch::Gut;
    const int fehler = sqlite3_extended_errcode(v.db) & 0xff;
    if (fehler == SQLITE_NOTADB || fehler == SQLITE_CORRUPT) {
        v.schliessen();
        return Versuch::FalscherSchluessel;
    }
    if (exklusiv && (fehler == SQLITE_BUSY || fehler == SQLITE_LOCKED)) {
        v.schliessen();
        return Versuch::Belegt;
    }
    if (fehler == SQLITE_CANTOPEN) {
        // The WAL beside the file could not be opened or made.
        v.schliessen();
        throw RuntimeError(fehlernummer::KeinZugriff,
                           QStringLiteral("Die Datenbank %1 lässt sich nicht öffnen: ihr Ordner "
                                          "oder die Dateien %1-wal und %1-shm sind "
                                          "schreibgeschützt.")
                               .arg(pfad));
    }
    sqliteFehler(v.db, fehler);
}

// Does any of the first pages of the file verify with `passwort` in one of the formats? Then the
// file is one of ours and damaged. Checked on a copy of those pages, so that a big file is not
// read through and the file itself is not touched.
bool seitenMitSchluessel(const QString &pfad, const QString &passwort)
{
    const QByteArray anfang = dateiLesen(pfad, 0, int(16 * Seitengroesse));
    const qint64 seiten = anfang.size() / Seitengroesse;
    if (seiten == 0)
        return false;
    QTemporaryDir ordner;
    const QString kopie = ordner.filePath(QStringLiteral("anfang"));
    {
        QFile f(kopie);
        if (!f.open(QIODevice::WriteOnly)
            || f.write(anfang.left(seiten * Seitengroesse)) != seiten * Seitengroesse)
            return false;
    }
    for (const auto format : {SqlCipherDatabase::Format::Aktuell, SqlCipherDatabase::Format::Alt}) {
        Verbindung v;
        if (sqlite3_open_v2(QFile::encodeName(kopie).constData(), &v.db, SQLITE_OPEN_READONLY,
                            nullptr)
            != SQLITE_OK)
            return false;
        try {
            schluesselSetzen(v.db, passwort, format);
            const QStringList befund = spalte(v.db, "PRAGMA cipher_integrity_check");
            const auto falsch = std::count_if(befund.begin(), befund.end(), [](const QString &z) {
                return z.startsWith(QLatin1String("HMAC verification failed"));
            });
            if (falsch < seiten)
                return true;
        } catch (const RuntimeError &) {
            // a format the library cannot set up: the other one still tells
        }
    }
    return false;
}

// Bytes as an encrypted page looks: every value about equally often (a chi-square test; text,
// office documents and pictures lie far above the bound, random data at about 255).
bool wieVerschluesselt(const QByteArray &daten)
{
    if (daten.size() < 512)
        return false;
    std::array<qint64, 256> anzahl {};
    for (const char c : daten)
        ++anzahl[uchar(c)];
    const double erwartet = double(daten.size()) / 256;
    double chi = 0;
    for (const qint64 n : anzahl)
        chi += (n - erwartet) * (n - erwartet) / erwartet;
    return chi < 400;
}

// Why a file does not open with the key: a plain SQLite file, one of ours but damaged, none of
// ours, or (what whole pages of random-looking bytes are) one encrypted with another key.
[[noreturn]] void nichtLesbar(const QString &pfad, const QString &passwort)
{
    const bool sqliteKopf = dateiLesen(pfad, 0, 16) == QByteArray("SQLite format 3\0", 16);
    if (passwort.isEmpty()) {
        werfen(sqliteKopf ? fehlernummer::DatenbankBeschaedigt : fehlernummer::UngueltigesKennwort,
               pfad);
    }
    if (sqliteKopf)
        werfen(fehlernummer::NichtVerschluesselt, pfad);
    if (seitenMitSchluessel(pfad, passwort))
        werfen(fehlernummer::DatenbankBeschaedigt, pfad);
    if (QFileInfo(pfad).size() % 512 != 0
        || !wieVerschluesselt(dateiLesen(pfad, 0, int(Seitengroesse))))
        werfen(fehlernummer::KeineDatenbank, pfad);
    werfen(fehlernummer::UngueltigesKennwort, pfad);
}

void einstellen(sqlite3 *db, bool nurLesen)
{
    if (nurLesen) {
        direkt(db, "PRAGMA query_only = 1");
        return;
    }
    direkt(db, "PRAGMA journal_mode = WAL");
    direkt(db, "PRAGMA cache_size = -32768");
}

// What a copy must keep of a file: its schema, every table's row count and its user_version;
// empty when the file fails its integrity check.
QStringList bestand(sqlite3 *db, const char *schema)
{
    const QByteArray s(schema);
    if (spalte(db, "PRAGMA " + s + ".integrity_check") != QStringList {QStringLiteral("ok")})
        return {};
    QStringList b
        = spalte(db, "SELECT type || ' ' || name FROM " + s + ".sqlite_master ORDER BY type, name");
    for (const QString &t : spalte(
             db, "SELECT name FROM " + s + ".sqlite_master WHERE type = 'table' ORDER BY name")) {
        b += t + QLatin1Char(' ')
            + spalte(db, "SELECT count(*) FROM " + s + '.' + bezeichner(t).toUtf8()).value(0);
    }
    b += QStringLiteral("user_version ") + spalte(db, "PRAGMA " + s + ".user_version").value(0);
    return b;
}

bool syncDatei(sqlite3 *db)
{
    sqlite3_file *datei = nullptr;
    return sqlite3_file_control(db, "main", SQLITE_FCNTL_FILE_POINTER, &datei) == SQLITE_OK && datei
        && datei->pMethods->xSync(datei, SQLITE_SYNC_FULL) == SQLITE_OK;
}

// Moves a file of the old format, opened by `alt` for this connection alone, to the current
// format: sqlcipher_export into a copy beside it, the copy's schema, row counts and integrity
// compared while the copy, too, is held alone; the old file linked aside as a backup; the copy
// renamed over it, still held, so that what others open is what was compared; then the backup
// removed. Any failure leaves the old file in place (the reason goes to the log). `alt` is
// closed in every case.
bool umstellen(Verbindung &alt, const QString &pfad, const QString &passwort)
{
    const QString kopie = pfad + QStringLiteral(".umstellung");
    const QString sicherung = pfad + QStringLiteral(".vor-umstellung");
    Verbindung neu;
    const auto abbrechen = [&](const QString &grund) {
        neu.schliessen();
        alt.schliessen();
        QFile::remove(kopie);
        qWarning("%s bleibt im alten Format: %s", qPrintable(pfad), qPrintable(grund));
        return false;
    };
    try {
        const QStringList vorher = bestand(alt.db, "main");
        if (vorher.isEmpty())
            return abbrechen(QStringLiteral("die Datei besteht ihre Integritätsprüfung nicht"));
        // Leftovers of a move that was cut short; this connection has the file alone. The copy
        // starts as an empty file: ATTACH may not create one, as the old file was opened
        // without CREATE.
        QFile::remove(kopie);
        QFile::remove(sicherung);
        if (QFile leer(kopie); !leer.open(QIODevice::WriteOnly | QIODevice::NewOnly))
            return abbrechen(QStringLiteral("%1 lässt sich nicht anlegen").arg(kopie));
        anhaengen(alt.db, kopie, "neu", passwort);
        direkt(alt.db, "SELECT sqlcipher_export('neu')");
        direkt(alt.db, "PRAGMA neu.user_version = " + vorher.last().section(u' ', 1).toUtf8());
        direkt(alt.db, "DETACH DATABASE neu");
        QFile::setPermissions(kopie, QFile::permissions(pfad));

        if (versuchen(neu, kopie, passwort, SqlCipherDatabase::Format::Aktuell,
                      SQLITE_OPEN_READWRITE, true)
                != Versuch::Gut
            || bestand(neu.db, "main") != vorher || !syncDatei(neu.db))
            return abbrechen(QStringLiteral("die Kopie weicht ab"));
        const QString neuesSalz = salzVon(neu.db);

        // Out of WAL mode while the file is still held: its WAL must be gone before another
        // file takes the name.
        if (spalte(alt.db, "PRAGMA journal_mode = DELETE")
            != QStringList {QStringLiteral("delete")})
            return abbrechen(QStringLiteral("das WAL der alten Datei bleibt"));
        const QByteArray p = QFile::encodeName(pfad), k = QFile::encodeName(kopie),
                         s = QFile::encodeName(sicherung);
        if (::link(p.constData(), s.constData()) != 0 && !kopieren(alt.db, sicherung))
            return abbrechen(QStringLiteral("keine Sicherung möglich"));
        if (std::rename(k.constData(), p.constData()) != 0) {
            QFile::remove(sicherung);
            return abbrechen(QStringLiteral("die Kopie ließ sich nicht umbenennen"));
        }
        fsyncPfad(QFileInfo(pfad).absolutePath(), true);
        alt.schliessen();
        const bool angekommen = kopfSalz(pfad) == neuesSalz;
        neu.schliessen();
        if (!angekommen) {
            qWarning("%s: die umgestellte Datei ist nicht an ihrem Platz; die alte liegt in %s",
                     qPrintable(pfad), qPrintable(sicherung));
            return false;
        }
        QFile::remove(sicherung);
        return true;
    } catch (const RuntimeError &e) {
        return abbrechen(e.beschreibung());
    }
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
    ~SqlCipherAnweisungen()
    {
        if (!g_beendet)
            leeren();
    }

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
        if (!m_stmt || g_beendet)
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

SqlCipherDatabase::SqlCipherDatabase(const QString &pfad, sqlite3 *db, Format format)
    : Database(pfad)
    , m_db(db)
    , m_format(format)
    , m_anweisungen(std::make_shared<SqlCipherAnweisungen>(db))
{
    offeneVerbindungen().insert(db);
}

SqlCipherDatabase::~SqlCipherDatabase()
{
    m_anweisungen.reset();
    if (g_beendet)
        return;
    offeneVerbindungen().erase(m_db);
    sqlite3_close_v2(m_db);
}

SqlCipherDatabase::Zeiger SqlCipherDatabase::oeffnen(const QString &pfad, const QString &passwort)
{
    return oeffnenMit(pfad, passwort, false);
}

SqlCipherDatabase::Zeiger SqlCipherDatabase::oeffnenNurLesen(const QString &pfad,
                                                             const QString &passwort)
{
    return oeffnenMit(pfad, passwort, true);
}

namespace {

// The rights this process acts with (a read-only medium says so too).
bool schreibbar(const QString &pfad)
{
    return ::faccessat(AT_FDCWD, QFile::encodeName(pfad).constData(), W_OK, AT_EACCESS) == 0;
}

} // namespace

SqlCipherDatabase::Zeiger SqlCipherDatabase::oeffnenMit(const QString &pfad,
                                                        const QString &passwort, bool nurLesen)
{
    // A file this user may not change, or in a folder where the WAL cannot lie beside it, is
    // read only. Without a WAL (nobody has it open) it is read as it is, without the -wal and
    // -shm files a reader would leave behind, owned by this user, in the way of the next one
    // who may write.
    const bool darfSchreiben = schreibbar(pfad) && schreibbar(QFileInfo(pfad).absolutePath());
    const bool schreiben = !nurLesen && darfSchreiben;
    const bool unveraenderlich = !darfSchreiben && !hatWal(pfad);
    const int flags = schreiben ? SQLITE_OPEN_READWRITE : SQLITE_OPEN_READONLY;
    const auto fertig = [&](Verbindung &v, Format format) {
        // SQLite writes whole pages: a file that ends inside one was cut off.
        if (format != Format::Unverschluesselt && QFileInfo(pfad).size() % Seitengroesse != 0) {
            v.schliessen();
            werfen(fehlernummer::DatenbankBeschaedigt, pfad);
        }
        einstellen(v.db, !schreiben);
        auto db = Zeiger(new SqlCipherDatabase(pfad, v.loslassen(), format));
        db->m_schreibgeschuetzt = !schreiben;
        return db;
    };
    Verbindung v;
    if (passwort.isEmpty()) {
        if (versuchen(v, pfad, {}, Format::Unverschluesselt, flags, false, unveraenderlich)
            != Versuch::Gut)
            nichtLesbar(pfad, passwort);
        return fertig(v, Format::Unverschluesselt);
    }
    // The current format first: a file in the old one costs one more key derivation, once.
    // Another process may move the file while this one tries; the salt at the start of the file
    // shows that the path still names the file a connection holds.
    for (int runde = 0; runde < 3; ++runde) {
        const QString salz = kopfSalz(pfad);
        if (versuchen(v, pfad, passwort, Format::Aktuell, flags, false, unveraenderlich)
            == Versuch::Gut)
            return fertig(v, Format::Aktuell);
        if (schreiben) {
            const Versuch alleine = versuchen(v, pfad, passwort, Format::Alt, flags, true);
            // Held alone, the file cannot be moved by another process any more; but one may
            // have moved it before, so the path has to name it still.
            if (alleine == Versuch::Gut && salzVon(v.db) != kopfSalz(pfad))
                continue;
            if (alleine == Versuch::Gut && umstellen(v, pfad, passwort))
                continue;
            if (alleine == Versuch::FalscherSchluessel) {
                if (kopfSalz(pfad) == salz)
                    nichtLesbar(pfad, passwort);
                continue;
            }
        }
        // Held by another connection (or the move failed): compatibility mode.
        const Versuch r = versuchen(v, pfad, passwort, Format::Alt, flags, false, unveraenderlich);
        if (r == Versuch::Gut && salzVon(v.db) == salz) {
            // In WAL mode this connection keeps the file from being moved from now on.
            auto db = fertig(v, Format::Alt);
            if (kopfSalz(pfad) == salz)
                return db;
            continue;
        }
        if (r != Versuch::Gut && kopfSalz(pfad) == salz)
            nichtLesbar(pfad, passwort);
    }
    werfen(fehlernummer::UngueltigesKennwort,
           QStringLiteral("%1 wurde beim Öffnen mehrmals ersetzt").arg(pfad));
}

SqlCipherDatabase::Zeiger SqlCipherDatabase::anlegen(const QString &pfad, const QString &passwort,
                                                     Format format)
{
    if (QFileInfo::exists(pfad)) {
        throw RuntimeError(DatenbankExistiert,
                           QStringLiteral("Die Datenbank '%1' existiert bereits.").arg(pfad));
    }
    if (passwort.isEmpty())
        format = Format::Unverschluesselt;
    engineBereit();
    Verbindung v;
    const int rc = sqlite3_open_v2(QFile::encodeName(pfad).constData(), &v.db,
                                   SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE, nullptr);
    if (rc != SQLITE_OK)
        sqliteFehler(v.db, rc);
    sqlite3_extended_result_codes(v.db, 1);
    sqlite3_db_config(v.db, SQLITE_DBCONFIG_DEFENSIVE, 1, nullptr);
    sqlite3_busy_timeout(v.db, Database::wartezeit());
    if (format != Format::Unverschluesselt)
        schluesselSetzen(v.db, passwort, format);
    einstellen(v.db, false);
    // Writes the first page, so the file exists with its key from now on.
    direkt(v.db, "PRAGMA user_version = 0");
    direkt(v.db, "CREATE TABLE zep_leer(x); DROP TABLE zep_leer");
    return Zeiger(new SqlCipherDatabase(pfad, v.loslassen(), format));
}

void SqlCipherDatabase::verschluesseln(const QString &pfad, const QString &passwort)
{
    const QString kopie = pfad + QStringLiteral(".verschluesseln");
    QFile::remove(kopie);
    {
        Verbindung v;
        // An encrypted file does not read without its key: 3031, nothing is touched.
        // ATTACH takes the open flags of the main file: CREATE lets it make the copy.
        if (versuchen(v, pfad, {}, Format::Unverschluesselt,
                      SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE)
            != Versuch::Gut)
            nichtLesbar(pfad, {});
        try {
            anhaengen(v.db, kopie, "enc", passwort);
            direkt(v.db, "SELECT sqlcipher_export('enc')");
            direkt(v.db, "DETACH DATABASE enc");
        } catch (...) {
            v.schliessen();
            QFile::remove(kopie);
            throw;
        }
    }
    if (!umbenennen(kopie, pfad)) {
        QFile::remove(kopie);
        throw RuntimeError(fehlernummer::DateiNichtGefunden,
                           QStringLiteral("Die verschlüsselte Kopie von '%1' konnte nicht "
                                          "gespeichert werden.")
                               .arg(pfad));
    }
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
    // Every transaction here writes: taking the write lock at once makes it wait its busy time
    // for another writer, where a deferred one would fail at its first write without waiting.
    direkt(m_db, "BEGIN IMMEDIATE");
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

std::optional<Tabellenrechte> SqlCipherDatabase::rechte(const QString &tabelle)
{
    if (!hasTable(tabelle))
        return std::nullopt;
    const bool schreiben = sqlite3_db_readonly(m_db, "main") == 0
        && scalar(QStringLiteral("PRAGMA query_only")).toInt() == 0;
    return Tabellenrechte {true, schreiben, schreiben, schreiben};
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
