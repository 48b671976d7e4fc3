#include "common/Fehlernummer.h"
#include "common/Schreibfehler.h"
#include "common/TestDatenbank.h"
#include "platform/core/RuntimeError.h"
#include "platform/storage/Database.h"
#include "platform/storage/PostgresDatabase.h"
#include "platform/storage/Recordset.h"
#include "platform/storage/SqlCipherDatabase.h"

#include <QCoreApplication>
#include <QCryptographicHash>
#include <QDate>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QRandomGenerator>
#include <QRegularExpression>
#include <QScopeGuard>
#include <QTemporaryDir>
#include <QTest>
#include <optional>
#include <sqlite3.h>
#include <unistd.h>

using platform::RuntimeError;
using platform::storage::Cursor;
using platform::storage::Database;
using platform::storage::Engine;
using platform::storage::PostgresDatabase;
using platform::storage::Recordset;
using platform::storage::SqlCipherDatabase;
using platform::storage::Transaktion;
using platform::storage::Wertart;
namespace fehlernummer = platform::fehlernummer;
using testhilfe::fehlerVon;

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
    return QFileInfo::exists(pfad + "-wal") || QFileInfo::exists(pfad + "-shm")
        || QFileInfo::exists(pfad + "-journal");
}

qint64 anzahl(Database &db, const QString &tabelle)
{
    return db.scalar(QStringLiteral("SELECT count(*) FROM %1").arg(tabelle)).toLongLong();
}

// An SQLCipher file with one table and two rows, closed again.
QString dateiMitDaten(const QString &passwort = platform::storage::DBPasswort)
{
    const QString pfad = testhilfe::neueDatenbank(Engine::SqlCipher) + ".b";
    auto db = Database::create(pfad, passwort);
    db->execute("CREATE TABLE Salden (SaldoNr INTEGER PRIMARY KEY, Text TEXT)");
    db->execute("INSERT INTO Salden VALUES (1, 'Grünfläche'), (2, 'Öl')");
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
        QFile::copy(QStringLiteral(ZEP_ALTDATEI "-wal"), pfad + "-wal");
    return pfad;
}

// Rows per table of that file; the WAL renames one account, drops two rows of BilanzPosZL7 and
// adds one to KreditorenSalden.
QMap<QString, qint64> altformatZeilen(bool mitWal)
{
    return {{"ObjKanzleiKontenstamm", 24},
            {"ObjKanzleiSalden", 20},
            {"AllgSchluesselDaten", 8},
            {"BilanzPos", 20},
            {"BilanzPosZL7", mitWal ? 40 : 42},
            {"AbrPosBkAbr", 26},
            {"AbrPosBkBlöcke", 6},
            {"KreditorenKontenstamm", 21},
            {"KreditorenBuchungen", 25},
            {"KreditorenSalden", mitWal ? 13 : 12}};
}

QMap<QString, qint64> zeilenJeTabelle(Database &db)
{
    QMap<QString, qint64> z;
    auto c = db.query("SELECT name FROM sqlite_master WHERE type = 'table'");
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
    void init()
    {
        m_ort = testhilfe::neueDatenbank();
        m_db = Database::open(m_ort);
        m_db->execute(QStringLiteral("CREATE TABLE Konten (KontoNr VARCHAR(400) NOT NULL, "
                                     "KontoJJ INTEGER NOT NULL, KontoBezeichnung VARCHAR(400), "
                                     "KontoTypus SMALLINT, KontoBetrag DOUBLE PRECISION, "
                                     "KontoDatum DATE, PRIMARY KEY (KontoNr, KontoJJ))"));
        m_db->execute("CREATE TABLE x (y INTEGER)");
    }

    void cleanup() { m_db.reset(); }

    void wertRundreise_data()
    {
        QTest::addColumn<QString>("spalte");
        QTest::addColumn<QVariant>("eingabe");
        QTest::addColumn<QVariant>("erwartet");
        QTest::addColumn<int>("art");

        const auto g = int(Wertart::Ganzzahl);
        QTest::newRow("ganzzahl") << "KontoTypus" << QVariant(7) << QVariant(7LL) << g;
        QTest::newRow("negativ") << "KontoTypus" << QVariant(-32768) << QVariant(-32768LL) << g;
        // Around the small numbers a record set packs into one byte.
        QTest::newRow("klein unten") << "KontoTypus" << QVariant(-8) << QVariant(-8LL) << g;
        QTest::newRow("unter klein") << "KontoTypus" << QVariant(-9) << QVariant(-9LL) << g;
        QTest::newRow("klein oben") << "KontoTypus" << QVariant(111) << QVariant(111LL) << g;
        QTest::newRow("über klein") << "KontoTypus" << QVariant(112) << QVariant(112LL) << g;
        QTest::newRow("bool wahr") << "KontoTypus" << QVariant(true) << QVariant(-1LL) << g;
        QTest::newRow("bool falsch") << "KontoTypus" << QVariant(false) << QVariant(0LL) << g;
        QTest::newRow("null") << "KontoTypus" << QVariant() << QVariant() << int(Wertart::Null);
        QTest::newRow("kommazahl")
            << "KontoBetrag" << QVariant(1234.56) << QVariant(1234.56) << int(Wertart::Kommazahl);
        QTest::newRow("ganze kommazahl")
            << "KontoBetrag" << QVariant(3) << QVariant(3.0) << int(Wertart::Kommazahl);
        QTest::newRow("datum") << "KontoDatum" << QVariant(QDate(2003, 12, 31))
                               << QVariant(QDate(2003, 12, 31)) << int(Wertart::Datum);
        QTest::newRow("umlaute") << "KontoBezeichnung" << QVariant("Äußere Öl-ÜBß")
                                 << QVariant("Äußere Öl-ÜBß") << int(Wertart::Text);
        QTest::newRow("leer") << "KontoBezeichnung" << QVariant(QString(""))
                              << QVariant(QString("")) << int(Wertart::Text);
    }

    void wertRundreise()
    {
        QFETCH(QString, spalte);
        QFETCH(QVariant, eingabe);
        QFETCH(QVariant, erwartet);
        QFETCH(int, art);

        m_db->execute(QStringLiteral("INSERT INTO Konten (KontoNr, KontoJJ, %1) VALUES (?, ?, ?)")
                          .arg(spalte),
                      {"0001", 2003, eingabe});
        auto c = m_db->query(
            QStringLiteral("SELECT %1 FROM Konten WHERE KontoNr = ? AND KontoJJ = ?").arg(spalte),
            {"0001", 2003});
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
        c.reset();
        // The same value out of a record set's packed rows.
        Recordset rs(m_db,
                     QStringLiteral("SELECT %1 FROM Konten WHERE KontoNr = ? AND KontoJJ = ?")
                         .arg(spalte),
                     {QStringLiteral("0001"), 2003});
        QCOMPARE(rs.feld(0), erwartet);
    }

    void injektionBleibtText_data()
    {
        QTest::addColumn<QString>("text");
        QTest::newRow("oder wahr") << "0001' OR '1'='1";
        QTest::newRow("drop") << "';DROP TABLE x;--";
        QTest::newRow("drop doppelt") << "\");DROP TABLE x;--";
        QTest::newRow("300 zeichen") << QString(300, QLatin1Char('9'));
        QTest::newRow("umlaute") << "Müllgebühr Straße ÄÖÜ";
        QTest::newRow("nur blanks") << "    ";
        QTest::newRow("fragezeichen") << "? $1 '?'";
        QTest::newRow("backslash") << "a\\'b\\";
    }

    void injektionBleibtText()
    {
        QFETCH(QString, text);
        m_db->execute("INSERT INTO x (y) VALUES (1)");
        m_db->execute("INSERT INTO Konten (KontoNr, KontoJJ) VALUES ('0001', 2003)");
        m_db->execute(QStringLiteral("INSERT INTO Konten (KontoNr, KontoJJ, KontoBezeichnung) "
                                     "VALUES (?, ?, ?)"),
                      {text, 2003, text});

        QCOMPARE(m_db->scalar("SELECT count(*) FROM Konten WHERE KontoNr = ?", {text}).toLongLong(),
                 1);
        QCOMPARE(m_db->scalar(QStringLiteral("SELECT KontoBezeichnung FROM Konten "
                                             "WHERE KontoNr = ? AND KontoJJ = ?"),
                              {text, 2003})
                     .toString(),
                 text);
        QCOMPARE(m_db->execute("UPDATE Konten SET KontoTypus = 1 WHERE KontoNr=?", {text}), 1);
        QCOMPARE(anzahl(*m_db, "Konten"), 2);
        QVERIFY(m_db->hasTable("x"));
        QCOMPARE(anzahl(*m_db, "x"), 1);
    }

    void executeUndScalar()
    {
        const QString insert = "INSERT INTO Konten (KontoNr, KontoJJ, KontoTypus) VALUES (?, ?, ?)";
        const qint64 rundreisen = m_db->roundTrips();
        QCOMPARE(m_db->execute(insert, {"1000", 2003, 1}), 1);
        // Every statement is one round trip to the server, none to the file.
        QCOMPARE(m_db->roundTrips() - rundreisen,
                 testhilfe::aktuelleEngine() == Engine::PostgreSql ? 1 : 0);
        QCOMPARE(m_db->execute(insert, {"2000", 2003, 1}), 1);
        QCOMPARE(m_db->execute(insert, {"1000", 2004, 1}), 1);
        QCOMPARE(m_db->execute("UPDATE Konten SET KontoTypus = ? WHERE KontoJJ = ?", {2, 2003}), 2);
        QCOMPARE(m_db->execute("DELETE FROM Konten WHERE KontoJJ = ?", {1999}), 0);
        QCOMPARE(m_db->scalar("SELECT sum(KontoTypus) FROM Konten").toLongLong(), 5);
        const QString sql = "SELECT KontoNr FROM Konten WHERE KontoNr = ?";
        QVERIFY(m_db->scalar(sql, {"a"}).isNull());
        QVERIFY(fehlerVon([&] { m_db->query(sql, {1, 2}); }) != 0);
        QVERIFY(fehlerVon([&] { m_db->query(sql, {}); }) != 0);
    }

    void fehlerZuordnung_data()
    {
        QTest::addColumn<QString>("sql");
        QTest::addColumn<QVariantList>("params");
        QTest::addColumn<int>("nummer");

        QTest::newRow("tabelle fehlt select")
            << "SELECT * FROM Fehlt WHERE a = ?" << QVariantList {1}
            << fehlernummer::TabelleNichtGefunden;
        QTest::newRow("tabelle fehlt insert")
            << "INSERT INTO Fehlt (a) VALUES (?)" << QVariantList {1}
            << fehlernummer::TabelleNichtGefunden;
        QTest::newRow("tabelle fehlt ohne parameter")
            << "DELETE FROM Fehlt" << QVariantList {} << fehlernummer::TabelleNichtGefunden;
        QTest::newRow("spalte fehlt select")
            << "SELECT Fehlt FROM Konten" << QVariantList {} << fehlernummer::FeldNichtGefunden;
        QTest::newRow("spalte fehlt where") << "SELECT * FROM Konten WHERE Fehlt = ?"
                                            << QVariantList {1} << fehlernummer::FeldNichtGefunden;
        QTest::newRow("spalte fehlt insert")
            << "INSERT INTO Konten (KontoNr, KontoJJ, Fehlt) VALUES (?, ?, ?)"
            << QVariantList {"9", 1, 1} << fehlernummer::FeldNichtGefunden;
        QTest::newRow("doppelter schluessel")
            << "INSERT INTO Konten (KontoNr, KontoJJ) VALUES (?, ?)" << QVariantList {"0001", 2003}
            << fehlernummer::DoppelterSchluessel;
    }

    void fehlerZuordnung()
    {
        QFETCH(QString, sql);
        QFETCH(QVariantList, params);
        QFETCH(int, nummer);

        m_db->execute("INSERT INTO Konten (KontoNr, KontoJJ) VALUES (?, ?)", {"0001", 2003});
        QString text;
        QCOMPARE(fehlerVon([&] { m_db->execute(sql, params); }, &text), nummer);
        QVERIFY2(text.startsWith(RuntimeError::standardText(nummer)), qPrintable(text));
        // A cursor may report the error at its first row.
        QCOMPARE(fehlerVon([&] { m_db->query(sql, params)->next(); }), nummer);
        // Nothing half-written, and the connection goes on working.
        QCOMPARE(anzahl(*m_db, "Konten"), 1);
    }

    void andererFehlerBehaeltEngineText()
    {
        QString text;
        const int nummer = fehlerVon([&] { m_db->execute("SELEKT 1"); }, &text);
        QVERIFY(!text.isEmpty());
        if (testhilfe::aktuelleEngine() == Engine::SqlCipher) {
            QCOMPARE(nummer, 1); // SQLITE_ERROR
            QVERIFY2(text.contains("syntax error"), qPrintable(text));
        } else {
            QCOMPARE(nummer, 3146);
            QVERIFY2(text.startsWith("[42601] "), qPrintable(text));
        }
        QCOMPARE(anzahl(*m_db, "x"), 0);
    }

    void transaktionRolltZurueck()
    {
        const QString insert = "INSERT INTO x (y) VALUES (?)";
        QVERIFY(!m_db->inTransaction());
        {
            Transaktion t(*m_db);
            QVERIFY(m_db->inTransaction());
            m_db->execute(insert, {1});
            QCOMPARE(anzahl(*m_db, "x"), 1);
        }
        QVERIFY(!m_db->inTransaction());
        QCOMPARE(anzahl(*m_db, "x"), 0);
        {
            Transaktion t(*m_db);
            m_db->execute(insert, {2});
            t.commit();
        }
        QCOMPARE(anzahl(*m_db, "x"), 1);
        // A failed statement inside: the destructor still rolls back cleanly.
        try {
            Transaktion t(*m_db);
            m_db->execute(insert, {3});
            m_db->execute("INSERT INTO Fehlt (a) VALUES (?)", {1});
            t.commit();
            QFAIL("Fehler erwartet");
        } catch (const RuntimeError &e) {
            QCOMPARE(e.nummer(), fehlernummer::TabelleNichtGefunden);
        }
        QVERIFY(!m_db->inTransaction());
        QCOMPARE(m_db->scalar("SELECT max(y) FROM x").toLongLong(), 2);
    }

    void andererSchreibtWartetUndMeldet()
    {
        const QString aendern = "UPDATE Konten SET KontoBezeichnung = ? WHERE KontoNr = '0001'";
        m_db->execute("INSERT INTO Konten (KontoNr, KontoJJ) VALUES ('0001', 2003)");
        Database::setWartezeit(300);
        auto wartend = Database::openSeparate(m_ort);
        Database::setWartezeit(15000);
        auto halter = Database::openSeparate(m_ort);
        halter->begin();
        halter->execute(aendern, {"halter"});
        // Alone, in a transaction of its own: the wait runs out, and says so in German.
        QString text;
        QCOMPARE(fehlerVon([&] { wartend->execute(aendern, {"x"}); }, &text),
                 fehlernummer::AndererSchreibt);
        QVERIFY2(text.startsWith(RuntimeError::standardText(fehlernummer::AndererSchreibt)),
                 qPrintable(text));
        QVERIFY2(!text.contains("locked"), qPrintable(text));
        QCOMPARE(fehlerVon([&] {
                     Transaktion t(*wartend);
                     wartend->execute(aendern, {"x"});
                     t.commit();
                 }),
                 fehlernummer::AndererSchreibt);
        halter->commit();
        // Once the other is done, the same connection writes.
        wartend->execute(aendern, {"danach"});
        QCOMPARE(m_db->scalar("SELECT KontoBezeichnung FROM Konten").toString(), "danach");
    }

    void rechteDerRolle_data()
    {
        QTest::addColumn<QString>("recht"); // granted on Konten to a new role
        QTest::addColumn<bool>("lesen");
        QTest::addColumn<bool>("aendern");
        QTest::newRow("alles") << "SELECT, INSERT, UPDATE, DELETE" << true << true;
        QTest::newRow("nur lesen") << "SELECT" << true << false;
        QTest::newRow("keines") << "" << false << false;
    }

    void rechteDerRolle()
    {
        QFETCH(QString, recht);
        QFETCH(bool, lesen);
        QFETCH(bool, aendern);
        std::shared_ptr<Database> db = m_db;
        if (testhilfe::aktuelleEngine() == Engine::PostgreSql) {
            static int n = 0;
            const QString rolle
                = QStringLiteral("zt_rolle_%1_%2").arg(QCoreApplication::applicationPid()).arg(++n);
            m_db->execute(QStringLiteral("CREATE ROLE %1 LOGIN").arg(rolle));
            if (!recht.isEmpty())
                m_db->execute(QStringLiteral("GRANT %1 ON Konten TO %2").arg(recht, rolle));
            QString uri = m_ort;
            uri.replace(QRegularExpression("user=[^&]*"), QStringLiteral("user=") + rolle);
            db = Database::openSeparate(uri);
            QCOMPARE(db->benutzer(), rolle);
        } else if (!lesen) {
            QSKIP("a file has no rights per user");
        } else if (!aendern) {
            db = Database::openReadOnly(m_ort);
        }
        const auto r = db->rechte("konten");
        QVERIFY(r);
        QCOMPARE(r->lesen, lesen);
        QCOMPARE(r->aendern, aendern);
        QCOMPARE(r->einfuegen, aendern);
        QCOMPARE(r->loeschen, aendern);
        QVERIFY(!db->rechte("GibtEsNicht"));
        if (testhilfe::aktuelleEngine() == Engine::PostgreSql && !aendern) {
            // What the server refuses is said in German, naming the role.
            QString text;
            const auto versuch = [&] {
                if (lesen)
                    db->execute("DELETE FROM Konten");
                else
                    db->query("SELECT * FROM Konten")->next();
            };
            QCOMPARE(fehlerVon(versuch, &text), fehlernummer::KeineBerechtigung);
            QVERIFY2(text.contains(db->benutzer()), qPrintable(text));
        }
    }

    void datentraegerfehler_data()
    {
        QTest::addColumn<int>("fehler");
        QTest::addColumn<int>("nummer");
        QTest::addColumn<QString>("anfang");
        QTest::newRow("voll") << SQLITE_FULL << fehlernummer::DatentraegerVoll
                              << "Der Datenträger ist voll";
        QTest::newRow("Schreibfehler") << SQLITE_IOERR_WRITE << fehlernummer::DatentraegerFehler
                                       << "Datenträger- oder Netzwerkfehler";
    }

    void datentraegerfehler()
    {
        QFETCH(int, fehler);
        QFETCH(int, nummer);
        QFETCH(QString, anfang);
        if (testhilfe::aktuelleEngine() == Engine::PostgreSql)
            QSKIP("the server's disk is the server's");
        m_db->execute(QStringLiteral("INSERT INTO Konten (KontoNr, KontoJJ, KontoBezeichnung) "
                                     "VALUES ('0001', 2003, 'alt')"));
        testhilfe::Schreibfehler schicht;
        auto db = Database::openSeparate(m_ort);
        testhilfe::Schreibfehler::s_fehler = fehler;
        const QString neu = "UPDATE Konten SET KontoBezeichnung = 'neu'";
        const QString dazu = "INSERT INTO Konten (KontoNr, KontoJJ) VALUES ('0002', 1)";
        QString text;
        QCOMPARE(fehlerVon([&] { db->execute(neu); }, &text), nummer);
        QVERIFY2(text.startsWith(anfang), qPrintable(text));
        QCOMPARE(fehlerVon([&] {
                     Transaktion t(*db);
                     db->execute(dazu);
                     db->execute(neu);
                     t.commit();
                 }),
                 nummer);
        testhilfe::Schreibfehler::s_fehler = SQLITE_OK;
        // Nothing half-written, and once there is room again the same connection saves.
        QCOMPARE(m_db->scalar("SELECT KontoBezeichnung FROM Konten").toString(), "alt");
        QCOMPARE(anzahl(*m_db, "Konten"), 1);
        db->execute(neu);
        QCOMPARE(m_db->scalar("SELECT KontoBezeichnung FROM Konten").toString(), "neu");
    }

    void anmeldungUndTls_data()
    {
        // DIR and PORT: the cluster of "scripts/pg-test-cluster start-tls" (ZEP_TEST_PG_TLS).
        const QString tls = QStringLiteral("postgresql://zeppw@localhost:PORT/postgres?"
                                           "sslmode=verify-full&sslrootcert=DIR/ca.crt");
        QTest::addColumn<QString>("adresse");
        QTest::addColumn<QString>("kennwort"); // PGPASSWORD, "" none
        QTest::addColumn<int>("nummer"); // 0: connected
        QTest::addColumn<QString>("text");
        QTest::newRow("TLS, richtiges Kennwort") << tls << "zep-Kennwort" << 0 << "";
        QTest::newRow("falsches Kennwort")
            << tls << "falsch" << fehlernummer::AnmeldungAbgelehnt
            << "hat die Anmeldung des Benutzers \u201Ezeppw\u201C abgelehnt";
        QTest::newRow("kein Kennwort")
            << tls << "" << fehlernummer::AnmeldungAbgelehnt
            << "verlangt für den Benutzer \u201Ezeppw\u201C ein Kennwort";
        QTest::newRow("falsches Kennwort in der Adresse")
            << QString(tls).replace("zeppw@", "zeppw:Ge%25heim@") << ""
            << fehlernummer::AnmeldungAbgelehnt << "abgelehnt: Benutzername oder Kennwort";
        QTest::newRow("fremde Zertifizierungsstelle")
            << QString(tls).replace("ca.crt", "fremd-ca.crt") << "zep-Kennwort"
            << fehlernummer::ZertifikatAbgelehnt << "ist nicht vertrauenswürdig";
        QTest::newRow("anderer Servername") << QString(tls).replace("localhost", "127.0.0.1")
                                            << "zep-Kennwort" << fehlernummer::ZertifikatAbgelehnt
                                            << "gilt nicht für den Namen \u201E127.0.0.1\u201C";
        QTest::newRow("Stammzertifikat fehlt")
            << QString(tls).replace("ca.crt", "fehlt.crt") << "zep-Kennwort"
            << fehlernummer::ZertifikatAbgelehnt << "Die Datei mit dem Stammzertifikat";
    }

    void anmeldungUndTls()
    {
        QFETCH(QString, adresse);
        QFETCH(QString, kennwort);
        QFETCH(int, nummer);
        QFETCH(QString, text);
        const QString dir = qEnvironmentVariable("ZEP_TEST_PG_TLS");
        if (testhilfe::aktuelleEngine() != Engine::PostgreSql || dir.isEmpty())
            QSKIP("needs the TLS cluster of scripts/pg-test-cluster start-tls in ZEP_TEST_PG_TLS");
        QFile portDatei(dir + "/port");
        QVERIFY(portDatei.open(QIODevice::ReadOnly));
        adresse.replace("PORT", QString::fromLatin1(portDatei.readAll().trimmed()))
            .replace("DIR", dir);
        qputenv("PGPASSFILE", "/nonexistent");
        if (kennwort.isEmpty())
            qunsetenv("PGPASSWORD");
        else
            qputenv("PGPASSWORD", kennwort.toUtf8());
        const auto zurueck = qScopeGuard([] {
            qunsetenv("PGPASSWORD");
            qunsetenv("PGPASSFILE");
        });
        QString meldung;
        QCOMPARE(fehlerVon([&] { Database::openSeparate(adresse); }, &meldung), nummer);
        QVERIFY2(meldung.contains(text), qPrintable(meldung));
        QVERIFY2(!meldung.contains("heim"), qPrintable(meldung));
        // libpq tries a host twice (with and without TLS, IPv6 and IPv4): its reason is said once.
        QVERIFY2(meldung.count("failed") <= 1, qPrintable(meldung));
    }

    // The screen asks for a password no other way gave, and again after a wrong one.
    void kennwortWirdErfragt()
    {
        const QString dir = qEnvironmentVariable("ZEP_TEST_PG_TLS");
        if (testhilfe::aktuelleEngine() != Engine::PostgreSql || dir.isEmpty())
            QSKIP("needs the TLS cluster of scripts/pg-test-cluster start-tls in ZEP_TEST_PG_TLS");
        QFile portDatei(dir + "/port");
        QVERIFY(portDatei.open(QIODevice::ReadOnly));
        const QString adresse = QStringLiteral("postgresql://zeppw@localhost:%1/postgres?"
                                               "sslmode=verify-full&sslrootcert=%2/ca.crt&"
                                               "application_name=erfragt")
                                    .arg(QString::fromLatin1(portDatei.readAll().trimmed()), dir);
        qputenv("PGPASSFILE", "/nonexistent");
        qunsetenv("PGPASSWORD");
        QStringList fragen;
        PostgresDatabase::setKennwortAbfrage(
            [&](const QString &benutzer, const QString &server, const QString &grund) {
                fragen << benutzer + QLatin1Char('@') + server + QLatin1Char('|') + grund;
                return std::optional<QString>(fragen.size() == 1 ? "Xfalsch9" : "zep-Kennwort");
            });
        const auto zurueck = qScopeGuard([] {
            PostgresDatabase::setKennwortAbfrage({});
            qunsetenv("PGPASSFILE");
        });
        auto db = Database::openSeparate(adresse);
        QCOMPARE(db->benutzer(), "zeppw");
        QCOMPARE(fragen.size(), 2);
        QCOMPARE(fragen.at(0), "zeppw@localhost|");
        QVERIFY2(fragen.at(1).contains("abgelehnt"), qPrintable(fragen.at(1)));
        // Asked once per process: the next connection to the address uses what was typed.
        Database::openSeparate(adresse);
        QCOMPARE(fragen.size(), 2);
    }

    void schemaFragen()
    {
        QVERIFY(m_db->hasTable("Konten"));
        QVERIFY(m_db->hasTable("KONTEN"));
        QVERIFY(m_db->hasTable("konten"));
        QVERIFY(!m_db->hasTable("Fehlt"));
        QVERIFY(!m_db->hasTable("Konten' OR '1'='1"));

        QStringList spalten = m_db->columns("kOnTeN");
        for (QString &s : spalten)
            s = s.toLower();
        QCOMPARE(spalten,
                 QStringList({"kontonr", "kontojj", "kontobezeichnung", "kontotypus", "kontobetrag",
                              "kontodatum"}));
        QStringList schluessel = m_db->primaryKey("Konten");
        for (QString &s : schluessel)
            s = s.toLower();
        QCOMPARE(schluessel, QStringList({"kontonr", "kontojj"}));
        QVERIFY(m_db->primaryKey("x").isEmpty());

        QCOMPARE(fehlerVon([&] { m_db->columns("Fehlt"); }), fehlernummer::TabelleNichtGefunden);
        QCOMPARE(fehlerVon([&] { m_db->primaryKey("Fehlt"); }), fehlernummer::TabelleNichtGefunden);
    }

    void registryTeiltVerbindung()
    {
        const auto zweite = Database::open(m_ort);
        QCOMPARE(zweite.get(), m_db.get());
        QCOMPARE(zweite->ort(), m_ort);

        auto eigene = Database::openSeparate(m_ort);
        QVERIFY(eigene.get() != m_db.get());
        // A second user sees committed rows of the first.
        m_db->execute("INSERT INTO x (y) VALUES (?)", {42});
        QCOMPARE(eigene->scalar("SELECT y FROM x").toLongLong(), 42);

        if (testhilfe::aktuelleEngine() == Engine::SqlCipher) {
            // The same file under another spelling of its path is the same database.
            const QFileInfo info(m_ort);
            const QString umweg = info.absolutePath() + QStringLiteral("/./") + info.fileName();
            QCOMPARE(Database::open(umweg).get(), m_db.get());
            // A wrong password does not get the shared connection.
            QCOMPARE(fehlerVon([&] { Database::open(m_ort, "falsch"); }),
                     fehlernummer::UngueltigesKennwort);
        }
    }

    void gleicheAnweisungZweiCursor()
    {
        for (int i = 1; i <= 3; ++i)
            m_db->execute("INSERT INTO x (y) VALUES (?)", {i});
        const QString sql = "SELECT y FROM x WHERE y >= ? ORDER BY y";
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

    void cursorUeberlebtVerbindung()
    {
        m_db->execute("INSERT INTO x (y) VALUES (7), (8)");
        auto eigene = Database::openSeparate(m_ort);
        auto c = eigene->query("SELECT y FROM x WHERE y > ? ORDER BY y", {0});
        QVERIFY(c->next());
        eigene.reset();
        QCOMPARE(c->ganzzahl(0), 7);
        QVERIFY(c->next());
        QCOMPARE(c->ganzzahl(0), 8);
        if (testhilfe::aktuelleEngine() == Engine::SqlCipher) {
            g_bisZumEnde = Database::openSeparate(m_ort);
            g_cursorBisZumEnde = g_bisZumEnde->query("SELECT y FROM x");
            QVERIFY(g_cursorBisZumEnde->next());
        }
    }

    void strom_data()
    {
        QTest::addColumn<int>("fehlerBei"); // row whose value fails (0: none)
        QTest::addColumn<int>(
            "dazwischenNach"); // rows read before another statement runs (-1: none)
        QTest::addColumn<int>("aufgebenNach"); // rows read before the cursor is dropped (-1: none)
        QTest::addColumn<bool>("transaktion");

        QTest::newRow("bis zum Ende") << 0 << -1 << -1 << false;
        QTest::newRow("Fehler mitten im Strom") << 2500 << -1 << -1 << false;
        QTest::newRow("Fehler in Transaktion") << 2500 << -1 << -1 << true;
        QTest::newRow("andere Anweisung dazwischen") << 0 << 10 << -1 << false;
        QTest::newRow("andere Anweisung vor dem ersten") << 0 << 0 << -1 << false;
        QTest::newRow("andere Anweisung, dann Fehler") << 2500 << 10 << -1 << false;
        QTest::newRow("dazwischen in Transaktion") << 0 << 10 << -1 << true;
        QTest::newRow("früh aufgegeben") << 0 << -1 << 5 << false;
        QTest::newRow("in Transaktion aufgegeben") << 0 << -1 << 5 << true;
    }

    void strom()
    {
        QFETCH(int, fehlerBei);
        QFETCH(int, dazwischenNach);
        QFETCH(int, aufgebenNach);
        QFETCH(bool, transaktion);
        // More rows than any buffer of the engines holds at once.
        constexpr int Zeilen = 3000;
        m_db->execute(
            QStringLiteral("WITH RECURSIVE r(n) AS (SELECT 1 UNION ALL SELECT n + 1 FROM r "
                           "WHERE n < %1) INSERT INTO x (y) SELECT n FROM r")
                .arg(Zeilen));
        std::optional<Transaktion> t;
        if (transaktion)
            t.emplace(*m_db);
        // abs() of the smallest integer overflows on both engines: an error in the middle. No
        // ORDER BY, which would compute every row before the first: the rows come as inserted.
        const QString abfrage
            = QStringLiteral("SELECT y, CASE WHEN y = ? THEN "
                             "abs(y * 0 - 9223372036854775807 - 1) ELSE y END AS z "
                             "FROM x");
        const QString einfuegen = "INSERT INTO Konten (KontoNr, KontoJJ) VALUES (?, ?)";
        std::unique_ptr<Cursor> c;
        int gelesen = 0;
        int fehler = 0;
        try {
            c = m_db->query(abfrage, {fehlerBei});
            while (aufgebenNach < 0 || gelesen < aufgebenNach) {
                if (gelesen == dazwischenNach) {
                    m_db->execute(einfuegen, {"0001", 2003});
                    QCOMPARE(anzahl(*m_db, "Konten"), 1);
                    // Outside a transaction the row is committed at once.
                    QCOMPARE(anzahl(*Database::openSeparate(m_ort), "Konten"), transaktion ? 0 : 1);
                    // The row read before stays readable.
                    if (gelesen > 0)
                        QCOMPARE(c->ganzzahl(1), gelesen);
                }
                if (!c->next())
                    break;
                ++gelesen;
                QCOMPARE(c->ganzzahl(0), gelesen);
                QCOMPARE(c->ganzzahl(1), gelesen);
            }
        } catch (const RuntimeError &e) {
            fehler = e.nummer();
        }
        const int erwartet = aufgebenNach >= 0 ? aufgebenNach
            : fehlerBei > 0                    ? fehlerBei - 1
                                               : Zeilen;
        QCOMPARE(gelesen, erwartet);
        QCOMPARE(fehler != 0, fehlerBei > 0);
        if (fehlerBei == 0 && aufgebenNach < 0)
            QVERIFY(!c->next());
        c.reset();

        // The connection serves the next statement; the caller's transaction is the caller's.
        if (t && fehler == 0) {
            m_db->execute(einfuegen, {"0002", 2003});
            t->commit();
        }
        t.reset();
        QVERIFY(!m_db->inTransaction());
        QCOMPARE(anzahl(*m_db, "x"), Zeilen);
        const bool verworfen = transaktion && fehler;
        const qint64 konten = verworfen ? 0 : qint64(dazwischenNach >= 0) + qint64(transaktion);
        QCOMPARE(anzahl(*m_db, "Konten"), konten);
        QCOMPARE(anzahl(*Database::openSeparate(m_ort), "Konten"), konten);
    }

    void verbindungsabbruchUndWiederherstellung()
    {
        if (testhilfe::aktuelleEngine() != Engine::PostgreSql)
            QSKIP("Eine eingebettete Datei hat keine Serververbindung, die abbrechen könnte.");
        auto opfer = Database::openSeparate(m_ort);
        const qint64 pid = opfer->scalar("SELECT pg_backend_pid()").toLongLong();
        QVERIFY(m_db->scalar("SELECT pg_terminate_backend(?::int)", {pid}).toBool());

        QString text;
        QCOMPARE(fehlerVon([&] { opfer->scalar("SELECT 1"); }, &text),
                 fehlernummer::DatenbankNichtErreichbar);
        QVERIFY2(
            text.startsWith(RuntimeError::standardText(fehlernummer::DatenbankNichtErreichbar)),
            qPrintable(text));
        // The next call reconnects.
        QCOMPARE(opfer->scalar("SELECT count(*) FROM x").toLongLong(), 0);
        QVERIFY(opfer->scalar("SELECT pg_backend_pid()").toLongLong() != pid);

        // A server that cannot be reached at all is said so at start, with its socket.
        QCOMPARE(fehlerVon(
                     [&] {
                         Database::openSeparate(QStringLiteral(
                             "postgresql:///zt_gibtesnicht?host=/nonexistent&port=1"));
                     },
                     &text),
                 fehlernummer::ServerAntwortetNicht);
        QVERIFY2(text.startsWith(QLatin1String("Der Datenbankserver auf diesem Rechner antwortet "
                                               "nicht (Port 1)")),
                 qPrintable(text));
    }

    void falscherSchluesselLaesstDateiUnveraendert_data()
    {
        QTest::addColumn<QString>("datei");
        QTest::addColumn<QString>("passwort");
        QTest::addColumn<int>("fehler");
        QTest::addColumn<QString>("text"); // how the message starts; the number's text when empty
        const int kennwort = fehlernummer::UngueltigesKennwort;
        const QString dbpw = platform::storage::DBPasswort;
        QTest::newRow("falsch") << "neu"
                                << "falsch" << kennwort << QString();
        QTest::newRow("fehlt") << "neu" << QString() << kennwort << QString();
        QTest::newRow("mit blank") << "neu"
                                   << "kellerabteil4 " << kennwort << QString();
        QTest::newRow("grossbuchstaben") << "neu"
                                         << "KELLERABTEIL4" << kennwort << QString();
        QTest::newRow("mit hochkomma") << "neu"
                                       << "kellerabteil4'; --" << kennwort << QString();
        // A wrong key must not start the move of an old file.
        QTest::newRow("altes format, falsch") << "alt"
                                              << "falsch" << kennwort << QString();
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
        QTest::newRow("zufallsbytes")
            << "zufall" << dbpw << int(fehlernummer::KeineDatenbank) << QString();
        QTest::newRow("textdatei")
            << "text" << dbpw << int(fehlernummer::KeineDatenbank) << QString();
        QTest::newRow("leere datei") << "leer" << dbpw << int(fehlernummer::KeineDatenbank)
                                     << "Die Datei ist leer (0 Byte) und keine Datenbank.";
        // Whole pages of random bytes are what a file encrypted with another key is.
        QTest::newRow("zufallsbytes, ganze seiten")
            << "zufall seiten" << dbpw << kennwort << QString();
    }

    void falscherSchluesselLaesstDateiUnveraendert()
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
        QVERIFY2(!meldung.contains("Ungültiges Kennwort"), qPrintable(meldung));
        QCOMPARE(fehlerVon([&] { Database::openSeparate(pfad, passwort); }), fehler);

        QCOMPARE(dateiHash(pfad), vorher);
        QCOMPARE(QFileInfo(pfad).size(), groesse);
        QVERIFY(!nebendateienDa(pfad));
        QVERIFY(!QFileInfo::exists(pfad + ".umstellung"));
        if (datei == u"neu") // The right key still opens it.
            QCOMPARE(anzahl(*Database::openSeparate(pfad), "Salden"), 2);
    }

    void fehlenderOrtUndVorhandeneDatei()
    {
        const QString pfad = testhilfe::neueDatenbank(Engine::SqlCipher) + ".fehlt";
        QCOMPARE(fehlerVon([&] { Database::open(pfad); }), fehlernummer::DateiNichtGefunden);
        QCOMPARE(fehlerVon([&] { Database::openSeparate(pfad); }),
                 fehlernummer::DateiNichtGefunden);
        QVERIFY(!QFileInfo::exists(pfad));
        QCOMPARE(fehlerVon([&] { Database::open("/nonexistent/dir/x.zkdb"); }),
                 fehlernummer::DateiNichtGefunden);
        // Creating never overwrites a file that is there.
        const QString vorhanden = dateiMitDaten();
        const QByteArray vorher = dateiHash(vorhanden);
        QVERIFY(fehlerVon([&] { Database::create(vorhanden); }) != 0);
        QCOMPARE(dateiHash(vorhanden), vorher);
        QVERIFY(fehlerVon([&] { Database::create("/nonexistent/dir/x.zkdb"); }) != 0);

        if (testhilfe::aktuelleEngine() == Engine::PostgreSql) {
            QString uri = m_ort;
            uri.replace(QRegularExpression("/zt_[^?]*"), "/zt_gibtesnicht");
            QString text;
            QCOMPARE(fehlerVon([&] { Database::open(uri); }, &text),
                     fehlernummer::DatenbankNichtErreichbar);
            QVERIFY2(text.contains("zt_gibtesnicht"), qPrintable(text));
        }
    }

    void verschluesselnBehaeltZeilen()
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
        QVERIFY(!QFileInfo::exists(pfad + ".verschluesseln"));
        {
            auto db = Database::openSeparate(pfad);
            QCOMPARE(anzahl(*db, "Salden"), 2);
            QCOMPARE(db->scalar("SELECT Text FROM Salden WHERE SaldoNr=?", {1}).toString(),
                     "Grünfläche");
            QCOMPARE(db->primaryKey("salden"), QStringList {"SaldoNr"});
        }
        QCOMPARE(fehlerVon([&] { Database::openSeparate(pfad, QString()); }),
                 fehlernummer::UngueltigesKennwort);

        const QByteArray vorher = dateiHash(pfad);
        const int nummer = fehlerVon([&] { Database::verschluesseln(pfad); });
        QCOMPARE(nummer, fehlernummer::UngueltigesKennwort);
        QCOMPARE(dateiHash(pfad), vorher);
        QVERIFY(!nebendateienDa(pfad));
        QCOMPARE(fehlerVon([&] { Database::verschluesseln(pfad + "x"); }),
                 fehlernummer::DateiNichtGefunden);
    }

    void altesFormatWirdUmgestellt_data()
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
    void altesFormatWirdUmgestellt()
    {
        if (testhilfe::aktuelleEngine() != Engine::SqlCipher)
            QSKIP("Nur Dateien haben ein Verschlüsselungsformat.");
        QFETCH(bool, mitWal);
        QFETCH(QString, hindernis);
        QFETCH(bool, sofort);
        using Format = SqlCipherDatabase::Format;
        const QString pfad = altformatKopie(m_dir, mitWal);
        const QString kopie = pfad + ".umstellung";
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
            QCOMPARE(db->scalar("PRAGMA integrity_check").toString(), "ok");
            QCOMPARE(db->scalar(QStringLiteral("SELECT KontoBezeichnung FROM ObjKanzleiKontenstamm "
                                               "WHERE KontoNr = ? AND KontoJJ = ?"),
                                {"0010", 2026})
                         .toString(),
                     mitWal ? "EDV-Software, geändert vor dem Absturz"
                            : "EDV-Software und Lizenzen");
            db->execute("INSERT INTO KreditorenSalden (KsKontoNr, KsJJ) VALUES (?, ?)",
                        {88888, 2026});
            ++erwartet["KreditorenSalden"];
        }
        anderer.reset();
        QDir().rmdir(kopie);

        auto db = SqlCipherDatabase::oeffnen(pfad, platform::storage::DBPasswort);
        QCOMPARE(db->format(), Format::Aktuell);
        QCOMPARE(zeilenJeTabelle(*db), erwartet);
        QVERIFY(db->scalar("PRAGMA cipher_version").toString().startsWith("4."));
        QCOMPARE(db->scalar("PRAGMA cipher_kdf_algorithm").toString(), "PBKDF2_HMAC_SHA512");
        QCOMPARE(db->scalar("PRAGMA kdf_iter").toInt(), 256000);
        QVERIFY(!QFileInfo::exists(kopie));
        QVERIFY(!QFileInfo::exists(pfad + ".vor-umstellung"));
    }

    // Looking into a file of the old format leaves it as it is.
    void nurLesenStelltNichtUm()
    {
        if (testhilfe::aktuelleEngine() != Engine::SqlCipher)
            QSKIP("Nur Dateien haben ein Verschlüsselungsformat.");
        const QString pfad = altformatKopie(m_dir, false);
        const QByteArray vorher = dateiHash(pfad);
        {
            auto db = SqlCipherDatabase::oeffnenNurLesen(pfad, platform::storage::DBPasswort);
            QCOMPARE(db->format(), SqlCipherDatabase::Format::Alt);
            QCOMPARE(zeilenJeTabelle(*db), altformatZeilen(false));
            QVERIFY(fehlerVon([&] { db->execute("DELETE FROM BilanzPos"); }) != 0);
        }
        QCOMPARE(dateiHash(pfad), vorher);
        // SQLite may leave an empty WAL and its index beside a file it read in WAL mode.
        QCOMPARE(QFileInfo(pfad + "-wal").size(), 0);
    }

    // A file in a folder the user may not write (a CD, a share without write rights) opens for
    // viewing and leaves no -wal or -shm behind that would stop the next open.
    void schreibgeschuetzterOrdner()
    {
        if (testhilfe::aktuelleEngine() != Engine::SqlCipher)
            QSKIP("Nur Dateien");
        if (::geteuid() == 0)
            QSKIP("Für root gilt kein Schreibschutz.");
        const QString ordner = m_dir.filePath("nurlesen");
        QVERIFY(QDir().mkdir(ordner));
        const QString pfad = ordner + "/daten.zdb";
        QVERIFY(QFile::copy(dateiMitDaten(), pfad));
        const QByteArray vorher = dateiHash(pfad);
        const auto rechte = QFile::permissions(ordner);
        QVERIFY(QFile::setPermissions(ordner, QFile::ReadOwner | QFile::ExeOwner));
        for (int mal = 0; mal < 2; ++mal) {
            auto db = Database::open(pfad);
            QVERIFY(db->schreibgeschuetzt());
            QCOMPARE(anzahl(*db, "Salden"), 2);
            QVERIFY(fehlerVon([&] { db->execute("DELETE FROM Salden"); }) != 0);
        }
        QFile::setPermissions(ordner, rechte);
        QCOMPARE(dateiHash(pfad), vorher);
        QVERIFY(!nebendateienDa(pfad));
        QVERIFY(!Database::open(pfad)->schreibgeschuetzt());
    }

    void platzhalterUmsetzen_data()
    {
        QTest::addColumn<QString>("sql");
        QTest::addColumn<int>("anzahl");
        QTest::addColumn<QString>("erwartet");
        QTest::newRow("keine") << "SELECT 1" << 0 << "SELECT 1";
        QTest::newRow("zwei") << "a = ? AND b = ?" << 2 << "a = $1 AND b = $2";
        QTest::newRow("literal") << "a = '?' AND b = ?" << 1 << "a = '?' AND b = $1";
        QTest::newRow("doppeltes hochkomma")
            << "a = 'x''?' AND b = ?" << 1 << "a = 'x''?' AND b = $1";
        QTest::newRow("bezeichner") << "\"a?\" = ?" << 1 << "\"a?\" = $1";
        QTest::newRow("zeilenkommentar") << "? -- ?\n?" << 2 << "$1 -- ?\n$2";
        QTest::newRow("blockkommentar") << "? /* ? */ ?" << 2 << "$1 /* ? */ $2";
        QTest::newRow("dollar") << "$$?$$, $t$ ? $t$, ?" << 1 << "$$?$$, $t$ ? $t$, $1";
        QTest::newRow("escape string") << "E'\\'?', ?" << 1 << "E'\\'?', $1";
        QTest::newRow("offenes literal") << "? '?" << 1 << "$1 '?";
        QTest::newRow("umlaute") << "Bezeichnung = 'Ö?' OR x = ?" << 1
                                 << "Bezeichnung = 'Ö?' OR x = $1";
    }

    void platzhalterUmsetzen()
    {
        QFETCH(QString, sql);
        QFETCH(QString, erwartet);
        QFETCH(int, anzahl);
        const auto [text, n] = PostgresDatabase::platzhalterUmsetzen(sql);
        QCOMPARE(QString::fromUtf8(text), erwartet);
        QCOMPARE(n, anzahl);
    }

private:
    QString m_ort;
    std::shared_ptr<Database> m_db;
    QTemporaryDir m_dir;
};

ZEP_ENGINE_TEST_MAIN(tst_Database)

#include "tst_database.moc"
