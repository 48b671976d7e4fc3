#include "common/TestDatenbank.h"
#include "platform/core/RuntimeError.h"
#include "platform/storage/Database.h"
#include "platform/storage/PostgresDatabase.h"
#include "platform/storage/SqlCipherDatabase.h"

#include <QCryptographicHash>
#include <QDate>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QRandomGenerator>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTest>
#include <unistd.h>

using platform::RuntimeError;
using platform::storage::Cursor;
using platform::storage::Database;
using platform::storage::Engine;
using platform::storage::PostgresDatabase;
using platform::storage::SqlCipherDatabase;
using platform::storage::Transaktion;
using platform::storage::Wertart;
namespace fehlernummer = platform::fehlernummer;

namespace {

QByteArray dateiHash(const QString &pfad)
{
    QFile f(pfad);
    if (!f.open(QIODevice::ReadOnly))
        return {};
    return QCryptographicHash::hash(f.readAll(), QCryptographicHash::Sha256);
}

bool nebendateienDa(const QString &pfad)
{
    return QFileInfo::exists(pfad + QStringLiteral("-wal"))
        || QFileInfo::exists(pfad + QStringLiteral("-shm"))
        || QFileInfo::exists(pfad + QStringLiteral("-journal"));
}

// Runs `f` and returns the number of the RuntimeError it throws, or 0.
template<typename F> int fehlerVon(F &&f, QString *beschreibung = nullptr)
{
    try {
        f();
    } catch (const RuntimeError &e) {
        if (beschreibung)
            *beschreibung = e.beschreibung();
        return e.nummer();
    }
    return 0;
}

qint64 anzahl(Database &db, const QString &tabelle)
{
    return db.scalar(QStringLiteral("SELECT count(*) FROM %1").arg(tabelle)).toLongLong();
}

// An SQLCipher file with one table and two rows, closed again.
QString dateiMitDaten(const QString &passwort = platform::storage::DBPasswort)
{
    const QString pfad = testhilfe::neueDatenbank(Engine::SqlCipher) + QStringLiteral(".b");
    auto db = Database::create(pfad, passwort);
    db->execute(QStringLiteral("CREATE TABLE Salden (SaldoNr INTEGER PRIMARY KEY, Text TEXT)"));
    db->execute(QStringLiteral("INSERT INTO Salden VALUES (1, 'Grünfläche'), (2, 'Öl')"));
    return pfad;
}

// A copy of the file the product wrote before the engine change (tests/platform/storage/daten),
// with or without the WAL a killed writer left.
QString altformatKopie(const QTemporaryDir &dir, bool mitWal)
{
    static int n = 0;
    const QString pfad = dir.filePath(QStringLiteral("alt%1.zdb").arg(++n));
    QFile::copy(QStringLiteral(ZEP_ALTDATEI), pfad);
    if (mitWal)
        QFile::copy(QStringLiteral(ZEP_ALTDATEI "-wal"), pfad + QStringLiteral("-wal"));
    return pfad;
}

// Rows per table of that file; the WAL renames one account, drops two rows of BilanzPosZL7 and
// adds one to KreditorenSalden.
QMap<QString, qint64> altformatZeilen(bool mitWal)
{
    return {{QStringLiteral("ObjKanzleiKontenstamm"), 24},
            {QStringLiteral("ObjKanzleiSalden"), 20},
            {QStringLiteral("AllgSchluesselDaten"), 8},
            {QStringLiteral("BilanzPos"), 20},
            {QStringLiteral("BilanzPosZL7"), mitWal ? 40 : 42},
            {QStringLiteral("AbrPosBkAbr"), 26},
            {QStringLiteral("AbrPosBkBlöcke"), 6},
            {QStringLiteral("KreditorenKontenstamm"), 21},
            {QStringLiteral("KreditorenBuchungen"), 25},
            {QStringLiteral("KreditorenSalden"), mitWal ? 13 : 12}};
}

QMap<QString, qint64> zeilenJeTabelle(Database &db)
{
    QMap<QString, qint64> z;
    auto c = db.query(QStringLiteral("SELECT name FROM sqlite_master WHERE type = 'table'"));
    while (c->next())
        z.insert(c->wert(0).toString(), 0);
    for (auto it = z.begin(); it != z.end(); ++it)
        it.value() = anzahl(db, QLatin1Char('"') + it.key() + QLatin1Char('"'));
    return z;
}

// Kept until the program ends, as a host's static object might keep its connection; made before
// the engine starts, it is destroyed after the engine's own exit handler.
std::shared_ptr<Database> g_bisZumEnde;
std::unique_ptr<Cursor> g_cursorBisZumEnde;

} // namespace

class tst_Database : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void wertRundreise_data();
    void wertRundreise();
    void injektionBleibtText_data();
    void injektionBleibtText();
    void executeZaehltGeaenderteZeilen();
    void scalarOhneZeileIstNull();
    void fehlerZuordnung_data();
    void fehlerZuordnung();
    void andererFehlerBehaeltEngineText();
    void falscheParameterzahl();
    void transaktionRolltZurueck();
    void schemaFragen();
    void registryTeiltVerbindung();
    void gleicheAnweisungZweiCursor();
    void cursorUeberlebtVerbindung();
    void roundTripsZaehlen();
    void verbindungsabbruchUndWiederherstellung();

    void falscherSchluesselLaesstDateiUnveraendert_data();
    void falscherSchluesselLaesstDateiUnveraendert();
    void fehlenderOrt();
    void createAufVorhandeneDatei();
    void verschluesselnBehaeltZeilen();
    void altesFormatWirdUmgestellt_data();
    void altesFormatWirdUmgestellt();
    void nurLesenStelltNichtUm();
    void schreibgeschuetzterOrdner();
    void platzhalterUmsetzen_data();
    void platzhalterUmsetzen();

private:
    QString m_ort;
    std::shared_ptr<Database> m_db;
    QTemporaryDir m_dir;
};

void tst_Database::init()
{
    m_ort = testhilfe::neueDatenbank();
    m_db = Database::open(m_ort);
    m_db->execute(QStringLiteral("CREATE TABLE Konten (KontoNr VARCHAR(400) NOT NULL, "
                                 "KontoJJ INTEGER NOT NULL, KontoBezeichnung VARCHAR(400), "
                                 "KontoTypus SMALLINT, KontoBetrag DOUBLE PRECISION, "
                                 "KontoDatum DATE, PRIMARY KEY (KontoNr, KontoJJ))"));
    m_db->execute(QStringLiteral("CREATE TABLE x (y INTEGER)"));
}

void tst_Database::cleanup()
{
    m_db.reset();
}

void tst_Database::wertRundreise_data()
{
    QTest::addColumn<QString>("spalte");
    QTest::addColumn<QVariant>("eingabe");
    QTest::addColumn<QVariant>("erwartet");
    QTest::addColumn<int>("art");

    const auto g = int(Wertart::Ganzzahl);
    QTest::newRow("ganzzahl") << "KontoTypus" << QVariant(7) << QVariant(7LL) << g;
    QTest::newRow("negativ") << "KontoTypus" << QVariant(-32768) << QVariant(-32768LL) << g;
    QTest::newRow("bool wahr") << "KontoTypus" << QVariant(true) << QVariant(-1LL) << g;
    QTest::newRow("bool falsch") << "KontoTypus" << QVariant(false) << QVariant(0LL) << g;
    QTest::newRow("null") << "KontoTypus" << QVariant() << QVariant() << int(Wertart::Null);
    QTest::newRow("kommazahl") << "KontoBetrag" << QVariant(1234.56) << QVariant(1234.56)
                               << int(Wertart::Kommazahl);
    QTest::newRow("ganze kommazahl")
        << "KontoBetrag" << QVariant(3) << QVariant(3.0) << int(Wertart::Kommazahl);
    QTest::newRow("datum") << "KontoDatum" << QVariant(QDate(2003, 12, 31))
                           << QVariant(QDate(2003, 12, 31)) << int(Wertart::Datum);
    QTest::newRow("umlaute") << "KontoBezeichnung" << QVariant(QStringLiteral("Äußere Öl-ÜBß"))
                             << QVariant(QStringLiteral("Äußere Öl-ÜBß")) << int(Wertart::Text);
    QTest::newRow("leer") << "KontoBezeichnung" << QVariant(QString("")) << QVariant(QString(""))
                          << int(Wertart::Text);
}

void tst_Database::wertRundreise()
{
    QFETCH(QString, spalte);
    QFETCH(QVariant, eingabe);
    QFETCH(QVariant, erwartet);
    QFETCH(int, art);

    m_db->execute(
        QStringLiteral("INSERT INTO Konten (KontoNr, KontoJJ, %1) VALUES (?, ?, ?)").arg(spalte),
        {QStringLiteral("0001"), 2003, eingabe});
    auto c = m_db->query(
        QStringLiteral("SELECT %1 FROM Konten WHERE KontoNr = ? AND KontoJJ = ?").arg(spalte),
        {QStringLiteral("0001"), 2003});
    QVERIFY(c->next());
    QCOMPARE(c->spaltenName(0).toLower(), spalte.toLower());
    QCOMPARE(int(c->art(0)), art);
    QCOMPARE(c->wert(0), erwartet);
    if (art == int(Wertart::Ganzzahl))
        QCOMPARE(c->ganzzahl(0), erwartet.toLongLong());
    if (art == int(Wertart::Text))
        QCOMPARE(QString::fromUtf8(c->utf8(0)), erwartet.toString());
    QVERIFY(!c->next());
    QVERIFY(!c->next());
}

void tst_Database::injektionBleibtText_data()
{
    QTest::addColumn<QString>("text");
    QTest::newRow("oder wahr") << QStringLiteral("0001' OR '1'='1");
    QTest::newRow("drop") << QStringLiteral("';DROP TABLE x;--");
    QTest::newRow("drop doppelt") << QStringLiteral("\");DROP TABLE x;--");
    QTest::newRow("300 zeichen") << QString(300, QLatin1Char('9'));
    QTest::newRow("umlaute") << QStringLiteral("Müllgebühr Straße ÄÖÜ");
    QTest::newRow("nur blanks") << QStringLiteral("    ");
    QTest::newRow("fragezeichen") << QStringLiteral("? $1 '?'");
    QTest::newRow("backslash") << QStringLiteral("a\\'b\\");
}

void tst_Database::injektionBleibtText()
{
    QFETCH(QString, text);
    m_db->execute(QStringLiteral("INSERT INTO x (y) VALUES (1)"));
    m_db->execute(QStringLiteral("INSERT INTO Konten (KontoNr, KontoJJ) VALUES ('0001', 2003)"));
    m_db->execute(QStringLiteral("INSERT INTO Konten (KontoNr, KontoJJ, KontoBezeichnung) "
                                 "VALUES (?, ?, ?)"),
                  {text, 2003, text});

    QCOMPARE(m_db->scalar(QStringLiteral("SELECT count(*) FROM Konten WHERE KontoNr = ?"), {text})
                 .toLongLong(),
             1);
    QCOMPARE(m_db->scalar(QStringLiteral("SELECT KontoBezeichnung FROM Konten "
                                         "WHERE KontoNr = ? AND KontoJJ = ?"),
                          {text, 2003})
                 .toString(),
             text);
    QCOMPARE(
        m_db->execute(QStringLiteral("UPDATE Konten SET KontoTypus = 1 WHERE KontoNr=?"), {text}),
        1);
    QCOMPARE(anzahl(*m_db, QStringLiteral("Konten")), 2);
    QVERIFY(m_db->hasTable(QStringLiteral("x")));
    QCOMPARE(anzahl(*m_db, QStringLiteral("x")), 1);
}

void tst_Database::executeZaehltGeaenderteZeilen()
{
    const QString insert
        = QStringLiteral("INSERT INTO Konten (KontoNr, KontoJJ, KontoTypus) VALUES (?, ?, ?)");
    QCOMPARE(m_db->execute(insert, {QStringLiteral("1000"), 2003, 1}), 1);
    QCOMPARE(m_db->execute(insert, {QStringLiteral("2000"), 2003, 1}), 1);
    QCOMPARE(m_db->execute(insert, {QStringLiteral("1000"), 2004, 1}), 1);
    QCOMPARE(m_db->execute(QStringLiteral("UPDATE Konten SET KontoTypus = ? WHERE KontoJJ = ?"),
                           {2, 2003}),
             2);
    QCOMPARE(m_db->execute(QStringLiteral("DELETE FROM Konten WHERE KontoJJ = ?"), {1999}), 0);
    QCOMPARE(m_db->scalar(QStringLiteral("SELECT sum(KontoTypus) FROM Konten")).toLongLong(), 5);
}

void tst_Database::scalarOhneZeileIstNull()
{
    QVERIFY(
        m_db->scalar(QStringLiteral("SELECT KontoNr FROM Konten WHERE KontoJJ=?"), {1}).isNull());
    QCOMPARE(anzahl(*m_db, QStringLiteral("Konten")), 0);
}

void tst_Database::fehlerZuordnung_data()
{
    QTest::addColumn<QString>("sql");
    QTest::addColumn<QVariantList>("params");
    QTest::addColumn<int>("nummer");

    QTest::newRow("tabelle fehlt select") << "SELECT * FROM Fehlt WHERE a = ?" << QVariantList {1}
                                          << fehlernummer::TabelleNichtGefunden;
    QTest::newRow("tabelle fehlt insert") << "INSERT INTO Fehlt (a) VALUES (?)" << QVariantList {1}
                                          << fehlernummer::TabelleNichtGefunden;
    QTest::newRow("tabelle fehlt ohne parameter")
        << "DELETE FROM Fehlt" << QVariantList {} << fehlernummer::TabelleNichtGefunden;
    QTest::newRow("spalte fehlt select")
        << "SELECT Fehlt FROM Konten" << QVariantList {} << fehlernummer::FeldNichtGefunden;
    QTest::newRow("spalte fehlt where") << "SELECT * FROM Konten WHERE Fehlt = ?"
                                        << QVariantList {1} << fehlernummer::FeldNichtGefunden;
    QTest::newRow("spalte fehlt insert")
        << "INSERT INTO Konten (KontoNr, KontoJJ, Fehlt) VALUES (?, ?, ?)"
        << QVariantList {QStringLiteral("9"), 1, 1} << fehlernummer::FeldNichtGefunden;
    QTest::newRow("doppelter schluessel")
        << "INSERT INTO Konten (KontoNr, KontoJJ) VALUES (?, ?)"
        << QVariantList {QStringLiteral("0001"), 2003} << fehlernummer::DoppelterSchluessel;
}

void tst_Database::fehlerZuordnung()
{
    QFETCH(QString, sql);
    QFETCH(QVariantList, params);
    QFETCH(int, nummer);

    m_db->execute(QStringLiteral("INSERT INTO Konten (KontoNr, KontoJJ) VALUES (?, ?)"),
                  {QStringLiteral("0001"), 2003});
    QString text;
    QCOMPARE(fehlerVon([&] { m_db->execute(sql, params); }, &text), nummer);
    QVERIFY2(text.startsWith(RuntimeError::standardText(nummer)), qPrintable(text));
    // A cursor may report the error at its first row.
    QCOMPARE(fehlerVon([&] { m_db->query(sql, params)->next(); }), nummer);
    // Nothing half-written, and the connection goes on working.
    QCOMPARE(anzahl(*m_db, QStringLiteral("Konten")), 1);
}

void tst_Database::andererFehlerBehaeltEngineText()
{
    QString text;
    const int nummer = fehlerVon([&] { m_db->execute(QStringLiteral("SELEKT 1")); }, &text);
    QVERIFY(!text.isEmpty());
    if (testhilfe::aktuelleEngine() == Engine::SqlCipher) {
        QCOMPARE(nummer, 1); // SQLITE_ERROR
        QVERIFY2(text.contains(QLatin1String("syntax error")), qPrintable(text));
    } else {
        QCOMPARE(nummer, 3146);
        QVERIFY2(text.startsWith(QLatin1String("[42601] ")), qPrintable(text));
    }
    QCOMPARE(anzahl(*m_db, QStringLiteral("x")), 0);
}

void tst_Database::falscheParameterzahl()
{
    const QString sql = QStringLiteral("SELECT count(*) FROM Konten WHERE KontoNr = ?");
    QVERIFY(fehlerVon([&] { m_db->query(sql, {1, 2}); }) != 0);
    QVERIFY(fehlerVon([&] { m_db->query(sql, {}); }) != 0);
    QCOMPARE(m_db->scalar(sql, {QStringLiteral("a")}).toLongLong(), 0);
}

void tst_Database::transaktionRolltZurueck()
{
    const QString insert = QStringLiteral("INSERT INTO x (y) VALUES (?)");
    QVERIFY(!m_db->inTransaction());
    {
        Transaktion t(*m_db);
        QVERIFY(m_db->inTransaction());
        m_db->execute(insert, {1});
        QCOMPARE(anzahl(*m_db, QStringLiteral("x")), 1);
    }
    QVERIFY(!m_db->inTransaction());
    QCOMPARE(anzahl(*m_db, QStringLiteral("x")), 0);
    {
        Transaktion t(*m_db);
        m_db->execute(insert, {2});
        t.commit();
    }
    QCOMPARE(anzahl(*m_db, QStringLiteral("x")), 1);
    // A failed statement inside: the destructor still rolls back cleanly.
    try {
        Transaktion t(*m_db);
        m_db->execute(insert, {3});
        m_db->execute(QStringLiteral("INSERT INTO Fehlt (a) VALUES (?)"), {1});
        t.commit();
        QFAIL("Fehler erwartet");
    } catch (const RuntimeError &e) {
        QCOMPARE(e.nummer(), fehlernummer::TabelleNichtGefunden);
    }
    QVERIFY(!m_db->inTransaction());
    QCOMPARE(m_db->scalar(QStringLiteral("SELECT max(y) FROM x")).toLongLong(), 2);
}

void tst_Database::schemaFragen()
{
    QVERIFY(m_db->hasTable(QStringLiteral("Konten")));
    QVERIFY(m_db->hasTable(QStringLiteral("KONTEN")));
    QVERIFY(m_db->hasTable(QStringLiteral("konten")));
    QVERIFY(!m_db->hasTable(QStringLiteral("Fehlt")));
    QVERIFY(!m_db->hasTable(QStringLiteral("Konten' OR '1'='1")));

    QStringList spalten = m_db->columns(QStringLiteral("kOnTeN"));
    for (QString &s : spalten)
        s = s.toLower();
    QCOMPARE(spalten,
             QStringList({"kontonr", "kontojj", "kontobezeichnung", "kontotypus", "kontobetrag",
                          "kontodatum"}));
    QStringList schluessel = m_db->primaryKey(QStringLiteral("Konten"));
    for (QString &s : schluessel)
        s = s.toLower();
    QCOMPARE(schluessel, QStringList({"kontonr", "kontojj"}));
    QVERIFY(m_db->primaryKey(QStringLiteral("x")).isEmpty());

    QCOMPARE(fehlerVon([&] { m_db->columns(QStringLiteral("Fehlt")); }),
             fehlernummer::TabelleNichtGefunden);
    QCOMPARE(fehlerVon([&] { m_db->primaryKey(QStringLiteral("Fehlt")); }),
             fehlernummer::TabelleNichtGefunden);
}

void tst_Database::registryTeiltVerbindung()
{
    const auto zweite = Database::open(m_ort);
    QCOMPARE(zweite.get(), m_db.get());
    QCOMPARE(zweite->ort(), m_ort);

    auto eigene = Database::openSeparate(m_ort);
    QVERIFY(eigene.get() != m_db.get());
    // A second user sees committed rows of the first.
    m_db->execute(QStringLiteral("INSERT INTO x (y) VALUES (?)"), {42});
    QCOMPARE(eigene->scalar(QStringLiteral("SELECT y FROM x")).toLongLong(), 42);

    if (testhilfe::aktuelleEngine() == Engine::SqlCipher) {
        // The same file under another spelling of its path is the same database.
        const QFileInfo info(m_ort);
        const QString umweg = info.absolutePath() + QStringLiteral("/./") + info.fileName();
        QCOMPARE(Database::open(umweg).get(), m_db.get());
        // A wrong password does not get the shared connection.
        QCOMPARE(fehlerVon([&] { Database::open(m_ort, QStringLiteral("falsch")); }),
                 fehlernummer::UngueltigesKennwort);
    }
}

void tst_Database::gleicheAnweisungZweiCursor()
{
    for (int i = 1; i <= 3; ++i)
        m_db->execute(QStringLiteral("INSERT INTO x (y) VALUES (?)"), {i});
    const QString sql = QStringLiteral("SELECT y FROM x WHERE y >= ? ORDER BY y");
    auto a = m_db->query(sql, {1});
    QVERIFY(a->next());
    auto b = m_db->query(sql, {2});
    QVERIFY(b->next());
    QCOMPARE(a->ganzzahl(0), 1);
    QCOMPARE(b->ganzzahl(0), 2);
    QVERIFY(a->next());
    QCOMPARE(a->ganzzahl(0), 2);
    a.reset();
    b.reset();
    // The statement comes back from the cache with fresh bindings.
    auto c = m_db->query(sql, {3});
    QVERIFY(c->next());
    QCOMPARE(c->ganzzahl(0), 3);
    QVERIFY(!c->next());
}

void tst_Database::cursorUeberlebtVerbindung()
{
    m_db->execute(QStringLiteral("INSERT INTO x (y) VALUES (7), (8)"));
    auto eigene = Database::openSeparate(m_ort);
    auto c = eigene->query(QStringLiteral("SELECT y FROM x WHERE y > ? ORDER BY y"), {0});
    QVERIFY(c->next());
    eigene.reset();
    QCOMPARE(c->ganzzahl(0), 7);
    QVERIFY(c->next());
    QCOMPARE(c->ganzzahl(0), 8);
    if (testhilfe::aktuelleEngine() == Engine::SqlCipher) {
        g_bisZumEnde = Database::openSeparate(m_ort);
        g_cursorBisZumEnde = g_bisZumEnde->query(QStringLiteral("SELECT y FROM x"));
        QVERIFY(g_cursorBisZumEnde->next());
    }
}

void tst_Database::roundTripsZaehlen()
{
    const qint64 vorher = m_db->roundTrips();
    m_db->execute(QStringLiteral("INSERT INTO x (y) VALUES (?)"), {1});
    m_db->scalar(QStringLiteral("SELECT y FROM x"));
    const qint64 erwartet = testhilfe::aktuelleEngine() == Engine::PostgreSql ? 2 : 0;
    QCOMPARE(m_db->roundTrips() - vorher, erwartet);
}

void tst_Database::verbindungsabbruchUndWiederherstellung()
{
    if (testhilfe::aktuelleEngine() != Engine::PostgreSql)
        QSKIP("Eine eingebettete Datei hat keine Serververbindung, die abbrechen könnte.");
    auto opfer = Database::openSeparate(m_ort);
    const qint64 pid = opfer->scalar(QStringLiteral("SELECT pg_backend_pid()")).toLongLong();
    QVERIFY(m_db->scalar(QStringLiteral("SELECT pg_terminate_backend(?::int)"), {pid}).toBool());

    QString text;
    QCOMPARE(fehlerVon([&] { opfer->scalar(QStringLiteral("SELECT 1")); }, &text),
             fehlernummer::DatenbankNichtErreichbar);
    QVERIFY2(text.startsWith(RuntimeError::standardText(fehlernummer::DatenbankNichtErreichbar)),
             qPrintable(text));
    // The next call reconnects.
    QCOMPARE(opfer->scalar(QStringLiteral("SELECT count(*) FROM x")).toLongLong(), 0);
    QVERIFY(opfer->scalar(QStringLiteral("SELECT pg_backend_pid()")).toLongLong() != pid);

    // A server that cannot be reached at all.
    QCOMPARE(fehlerVon([&] {
                 Database::openSeparate(
                     QStringLiteral("postgresql:///zt_gibtesnicht?host=/nonexistent&port=1"));
             }),
             fehlernummer::DatenbankNichtErreichbar);
}

void tst_Database::falscherSchluesselLaesstDateiUnveraendert_data()
{
    QTest::addColumn<QString>("datei");
    QTest::addColumn<QString>("passwort");
    QTest::addColumn<int>("fehler");
    QTest::addColumn<QString>("text"); // how the message starts; the number's text when empty
    const int kennwort = fehlernummer::UngueltigesKennwort;
    const QString dbpw = platform::storage::DBPasswort;
    QTest::newRow("falsch") << "neu" << QStringLiteral("falsch") << kennwort << QString();
    QTest::newRow("fehlt") << "neu" << QString() << kennwort << QString();
    QTest::newRow("mit blank") << "neu" << QStringLiteral("kellerabteil4 ") << kennwort
                               << QString();
    QTest::newRow("grossbuchstaben")
        << "neu" << QStringLiteral("KELLERABTEIL4") << kennwort << QString();
    QTest::newRow("mit hochkomma")
        << "neu" << QStringLiteral("kellerabteil4'; --") << kennwort << QString();
    // A wrong key must not start the move of an old file.
    QTest::newRow("altes format, falsch")
        << "alt" << QStringLiteral("falsch") << kennwort << QString();
    QTest::newRow("altes format, fehlt") << "alt" << QString() << kennwort << QString();
    // Files that are not ours, or no longer whole, are named as such.
    QTest::newRow("unverschluesselt mit kennwort")
        << "offen" << dbpw << int(fehlernummer::NichtVerschluesselt) << QString();
    QTest::newRow("erste seite beschaedigt")
        << "beschaedigt" << dbpw << int(fehlernummer::DatenbankBeschaedigt) << QString();
    QTest::newRow("altes format, erste seite beschaedigt")
        << "alt beschaedigt" << dbpw << int(fehlernummer::DatenbankBeschaedigt) << QString();
    QTest::newRow("an einer seitengrenze abgeschnitten")
        << "abgeschnitten" << dbpw << int(fehlernummer::DatenbankBeschaedigt) << QString();
    QTest::newRow("mitten in einer seite abgeschnitten")
        << "angeschnitten" << dbpw << int(fehlernummer::DatenbankBeschaedigt) << QString();
    QTest::newRow("zufallsbytes") << "zufall" << dbpw << int(fehlernummer::KeineDatenbank)
                                  << QString();
    QTest::newRow("textdatei") << "text" << dbpw << int(fehlernummer::KeineDatenbank) << QString();
    QTest::newRow("leere datei") << "leer" << dbpw << int(fehlernummer::KeineDatenbank)
                                 << "Die Datei ist leer (0 Byte) und keine Datenbank.";
    // Whole pages of random bytes are what a file encrypted with another key is.
    QTest::newRow("zufallsbytes, ganze seiten") << "zufall seiten" << dbpw << kennwort << QString();
}

void tst_Database::falscherSchluesselLaesstDateiUnveraendert()
{
    QFETCH(QString, datei);
    QFETCH(QString, passwort);
    QFETCH(int, fehler);
    QFETCH(QString, text);
    if (testhilfe::aktuelleEngine() != Engine::SqlCipher)
        QSKIP("Nur Dateien");
    QString pfad;
    if (datei.startsWith(u"alt")) {
        pfad = altformatKopie(m_dir, false);
    } else if (datei == u"neu" || datei == u"offen" || datei == u"beschaedigt"
               || datei.endsWith(u"geschnitten")) {
        pfad = dateiMitDaten(datei == u"offen" ? QString() : platform::storage::DBPasswort);
    } else {
        pfad = m_dir.filePath(datei);
        QFile f(pfad);
        QVERIFY(f.open(QIODevice::WriteOnly));
        QByteArray inhalt;
        if (datei.startsWith(u"zufall")) {
            for (int i = 0; i < (datei == u"zufall" ? 10000 : 8192); ++i)
                inhalt += char(QRandomGenerator::global()->bounded(256));
        } else if (datei == u"text") {
            while (inhalt.size() < 8192)
                inhalt += "KontoNr;KontoBezeichnung\r\n0001;Kassa\r\n";
            inhalt.truncate(8192);
        }
        f.write(inhalt);
    }
    if (datei.endsWith(u"beschaedigt")) {
        QFile f(pfad);
        QVERIFY(f.open(QIODevice::ReadWrite));
        f.seek(100);
        f.write(QByteArray(64, '\x5a'));
    }
    if (datei.endsWith(u"geschnitten")) {
        QVERIFY(QFileInfo(pfad).size() >= 8192);
        QVERIFY(QFile::resize(pfad, datei == u"abgeschnitten" ? 4096 : 7192));
    }
    QVERIFY(!nebendateienDa(pfad));
    const QByteArray vorher = dateiHash(pfad);
    const qint64 groesse = QFileInfo(pfad).size();

    QString meldung;
    QCOMPARE(fehlerVon([&] { Database::open(pfad, passwort); }, &meldung), fehler);
    if (text.isEmpty())
        text = RuntimeError::standardText(fehler);
    QVERIFY2(meldung.startsWith(text), qPrintable(meldung));
    QVERIFY2(!meldung.contains(QLatin1String("Ungültiges Kennwort")), qPrintable(meldung));
    QCOMPARE(fehlerVon([&] { Database::openSeparate(pfad, passwort); }), fehler);

    QCOMPARE(dateiHash(pfad), vorher);
    QCOMPARE(QFileInfo(pfad).size(), groesse);
    QVERIFY(!nebendateienDa(pfad));
    QVERIFY(!QFileInfo::exists(pfad + QStringLiteral(".umstellung")));
    if (datei == u"neu") // The right key still opens it.
        QCOMPARE(anzahl(*Database::openSeparate(pfad), QStringLiteral("Salden")), 2);
}

void tst_Database::fehlenderOrt()
{
    const QString pfad = testhilfe::neueDatenbank(Engine::SqlCipher) + QStringLiteral(".fehlt");
    QCOMPARE(fehlerVon([&] { Database::open(pfad); }), fehlernummer::DateiNichtGefunden);
    QCOMPARE(fehlerVon([&] { Database::openSeparate(pfad); }), fehlernummer::DateiNichtGefunden);
    QVERIFY(!QFileInfo::exists(pfad));
    QCOMPARE(fehlerVon([&] { Database::open(QStringLiteral("/nonexistent/dir/x.zkdb")); }),
             fehlernummer::DateiNichtGefunden);

    if (testhilfe::aktuelleEngine() == Engine::PostgreSql) {
        QString uri = m_ort;
        uri.replace(QRegularExpression(QStringLiteral("/zt_[^?]*")),
                    QStringLiteral("/zt_gibtesnicht"));
        QString text;
        QCOMPARE(fehlerVon([&] { Database::open(uri); }, &text),
                 fehlernummer::DatenbankNichtErreichbar);
        QVERIFY2(text.contains(QLatin1String("zt_gibtesnicht")), qPrintable(text));
    }
}

void tst_Database::createAufVorhandeneDatei()
{
    const QString pfad = dateiMitDaten();
    const QByteArray vorher = dateiHash(pfad);
    QVERIFY(fehlerVon([&] { Database::create(pfad); }) != 0);
    QCOMPARE(dateiHash(pfad), vorher);
    QVERIFY(fehlerVon([&] { Database::create(QStringLiteral("/nonexistent/dir/x.zkdb")); }) != 0);
}

void tst_Database::verschluesselnBehaeltZeilen()
{
    const QString pfad = dateiMitDaten(QString());
    {
        QFile f(pfad);
        QVERIFY(f.open(QIODevice::ReadOnly));
        QVERIFY(f.read(15) == "SQLite format 3");
    }
    Database::verschluesseln(pfad);
    {
        QFile f(pfad);
        QVERIFY(f.open(QIODevice::ReadOnly));
        QVERIFY(f.read(15) != "SQLite format 3");
    }
    QVERIFY(!QFileInfo::exists(pfad + QStringLiteral(".verschluesseln")));
    {
        auto db = Database::openSeparate(pfad);
        QCOMPARE(anzahl(*db, QStringLiteral("Salden")), 2);
        QCOMPARE(
            db->scalar(QStringLiteral("SELECT Text FROM Salden WHERE SaldoNr=?"), {1}).toString(),
            QStringLiteral("Grünfläche"));
        QCOMPARE(db->primaryKey(QStringLiteral("salden")), QStringList {"SaldoNr"});
    }
    QCOMPARE(fehlerVon([&] { Database::openSeparate(pfad, QString()); }),
             fehlernummer::UngueltigesKennwort);

    const QByteArray vorher = dateiHash(pfad);
    const int nummer = fehlerVon([&] { Database::verschluesseln(pfad); });
    QCOMPARE(nummer, fehlernummer::UngueltigesKennwort);
    QCOMPARE(dateiHash(pfad), vorher);
    QVERIFY(!nebendateienDa(pfad));
    QCOMPARE(fehlerVon([&] { Database::verschluesseln(pfad + QStringLiteral("x")); }),
             fehlernummer::DateiNichtGefunden);
}

void tst_Database::altesFormatWirdUmgestellt_data()
{
    QTest::addColumn<bool>("mitWal");
    QTest::addColumn<QString>("hindernis");
    QTest::addColumn<bool>("sofort");
    QTest::newRow("sauber geschlossen") << false << QString() << true;
    QTest::newRow("wal eines abgebrochenen schreibers") << true << QString() << true;
    QTest::newRow("anderer hat die datei offen") << true << "gehalten" << false;
    QTest::newRow("kopie nicht anlegbar") << false << "kopie blockiert" << false;
}

// The first open moves a file of the old format to the current one and keeps every row; while
// that cannot be done, the file works as it is in compatibility mode and moves at a later open.
void tst_Database::altesFormatWirdUmgestellt()
{
    if (testhilfe::aktuelleEngine() != Engine::SqlCipher)
        QSKIP("Nur Dateien haben ein Verschlüsselungsformat.");
    QFETCH(bool, mitWal);
    QFETCH(QString, hindernis);
    QFETCH(bool, sofort);
    using Format = SqlCipherDatabase::Format;
    const QString pfad = altformatKopie(m_dir, mitWal);
    const QString kopie = pfad + QStringLiteral(".umstellung");
    SqlCipherDatabase::Zeiger anderer;
    if (hindernis == u"gehalten")
        anderer = SqlCipherDatabase::oeffnenNurLesen(pfad, platform::storage::DBPasswort);
    if (hindernis == u"kopie blockiert")
        QVERIFY(QDir().mkdir(kopie));

    QMap<QString, qint64> erwartet = altformatZeilen(mitWal);
    {
        auto db = SqlCipherDatabase::oeffnen(pfad, platform::storage::DBPasswort);
        QCOMPARE(db->format(), sofort ? Format::Aktuell : Format::Alt);
        QCOMPARE(zeilenJeTabelle(*db), erwartet);
        QCOMPARE(db->scalar(QStringLiteral("PRAGMA integrity_check")).toString(), "ok");
        QCOMPARE(db->scalar(QStringLiteral("SELECT KontoBezeichnung FROM ObjKanzleiKontenstamm "
                                           "WHERE KontoNr = ? AND KontoJJ = ?"),
                            {QStringLiteral("0010"), 2026})
                     .toString(),
                 mitWal ? QStringLiteral("EDV-Software, geändert vor dem Absturz")
                        : QStringLiteral("EDV-Software und Lizenzen"));
        db->execute(QStringLiteral("INSERT INTO KreditorenSalden (KsKontoNr, KsJJ) VALUES (?, ?)"),
                    {88888, 2026});
        ++erwartet[QStringLiteral("KreditorenSalden")];
    }
    anderer.reset();
    QDir().rmdir(kopie);

    auto db = SqlCipherDatabase::oeffnen(pfad, platform::storage::DBPasswort);
    QCOMPARE(db->format(), Format::Aktuell);
    QCOMPARE(zeilenJeTabelle(*db), erwartet);
    QVERIFY(db->scalar(QStringLiteral("PRAGMA cipher_version")).toString().startsWith("4."));
    QCOMPARE(db->scalar(QStringLiteral("PRAGMA cipher_kdf_algorithm")).toString(),
             "PBKDF2_HMAC_SHA512");
    QCOMPARE(db->scalar(QStringLiteral("PRAGMA kdf_iter")).toInt(), 256000);
    QVERIFY(!QFileInfo::exists(kopie));
    QVERIFY(!QFileInfo::exists(pfad + QStringLiteral(".vor-umstellung")));
}

// Looking into a file of the old format leaves it as it is.
void tst_Database::nurLesenStelltNichtUm()
{
    if (testhilfe::aktuelleEngine() != Engine::SqlCipher)
        QSKIP("Nur Dateien haben ein Verschlüsselungsformat.");
    const QString pfad = altformatKopie(m_dir, false);
    const QByteArray vorher = dateiHash(pfad);
    {
        auto db = SqlCipherDatabase::oeffnenNurLesen(pfad, platform::storage::DBPasswort);
        QCOMPARE(db->format(), SqlCipherDatabase::Format::Alt);
        QCOMPARE(zeilenJeTabelle(*db), altformatZeilen(false));
        QVERIFY(fehlerVon([&] { db->execute(QStringLiteral("DELETE FROM BilanzPos")); }) != 0);
    }
    QCOMPARE(dateiHash(pfad), vorher);
    // SQLite may leave an empty WAL and its index beside a file it read in WAL mode.
    QCOMPARE(QFileInfo(pfad + QStringLiteral("-wal")).size(), 0);
}

void tst_Database::platzhalterUmsetzen_data()
{
    QTest::addColumn<QString>("sql");
    QTest::addColumn<QString>("erwartet");
    QTest::addColumn<int>("anzahl");

    QTest::newRow("keine") << "SELECT 1"
                           << "SELECT 1" << 0;
    QTest::newRow("zwei") << "a = ? AND b = ?"
                          << "a = $1 AND b = $2" << 2;
    QTest::newRow("literal") << "a = '?' AND b = ?"
                             << "a = '?' AND b = $1" << 1;
    QTest::newRow("doppeltes hochkomma") << "a = 'x''?' AND b = ?"
                                         << "a = 'x''?' AND b = $1" << 1;
    QTest::newRow("bezeichner") << "\"a?\" = ?"
                                << "\"a?\" = $1" << 1;
    QTest::newRow("zeilenkommentar") << "? -- ?\n?"
                                     << "$1 -- ?\n$2" << 2;
    QTest::newRow("blockkommentar") << "? /* ? */ ?"
                                    << "$1 /* ? */ $2" << 2;
    QTest::newRow("dollar") << "$$?$$, $t$ ? $t$, ?"
                            << "$$?$$, $t$ ? $t$, $1" << 1;
    QTest::newRow("escape string") << "E'\\'?', ?"
                                   << "E'\\'?', $1" << 1;
    QTest::newRow("offenes literal") << "? '?"
                                     << "$1 '?" << 1;
    QTest::newRow("umlaute") << "Bezeichnung = 'Ö?' OR x = ?"
                             << "Bezeichnung = 'Ö?' OR x = $1" << 1;
}

void tst_Database::platzhalterUmsetzen()
{
    QFETCH(QString, sql);
    QFETCH(QString, erwartet);
    QFETCH(int, anzahl);
    const auto [text, n] = PostgresDatabase::platzhalterUmsetzen(sql);
    QCOMPARE(QString::fromUtf8(text), erwartet);
    QCOMPARE(n, anzahl);
}

// A file in a folder the user may not write (a CD, a share without write rights) opens for
// viewing and leaves no -wal or -shm behind that would stop the next open.
void tst_Database::schreibgeschuetzterOrdner()
{
    if (testhilfe::aktuelleEngine() != Engine::SqlCipher)
        QSKIP("Nur Dateien");
    if (::geteuid() == 0)
        QSKIP("Für root gilt kein Schreibschutz.");
    const QString ordner = m_dir.filePath(QStringLiteral("nurlesen"));
    QVERIFY(QDir().mkdir(ordner));
    const QString pfad = ordner + QStringLiteral("/daten.zdb");
    QVERIFY(QFile::copy(dateiMitDaten(), pfad));
    const QByteArray vorher = dateiHash(pfad);
    const auto rechte = QFile::permissions(ordner);
    QVERIFY(QFile::setPermissions(ordner, QFile::ReadOwner | QFile::ExeOwner));
    for (int mal = 0; mal < 2; ++mal) {
        auto db = Database::open(pfad);
        QVERIFY(db->schreibgeschuetzt());
        QCOMPARE(anzahl(*db, QStringLiteral("Salden")), 2);
        QVERIFY(fehlerVon([&] { db->execute(QStringLiteral("DELETE FROM Salden")); }) != 0);
    }
    QFile::setPermissions(ordner, rechte);
    QCOMPARE(dateiHash(pfad), vorher);
    QVERIFY(!nebendateienDa(pfad));
    QVERIFY(!Database::open(pfad)->schreibgeschuetzt());
}

ZEP_ENGINE_TEST_MAIN(tst_Database)

#include "tst_database.moc"
