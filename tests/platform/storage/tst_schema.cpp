// The schema catalogue on both engines: tables, columns, keys, defaults, sort order and the
// question which columns an older database lacks.
#include "common/Fehlernummer.h"
#include "common/TestDatenbank.h"
#include "platform/storage/Schema.h"

#include <QDate>
#include <QTest>

using namespace platform::storage;
using testhilfe::fehlerVon;
namespace fehlernummer = platform::fehlernummer;

class TestSchema : public QObject
{
    Q_OBJECT

    std::shared_ptr<Database> m_db;

private slots:
    void init() { m_db = Database::open(testhilfe::neueDatenbank()); }
    void cleanup() { m_db.reset(); }

    void schemaAnlegen_data()
    {
        QTest::addColumn<QString>("name");
        for (const Tabelle &t : schemaKatalog())
            QTest::newRow(qPrintable(t.name)) << t.name;
    }

    void schemaAnlegen()
    {
        QFETCH(QString, name);
        platform::storage::schemaAnlegen(*m_db);
        QVERIFY(!m_db->inTransaction());
        const Tabelle &t = *tabelle(name);
        const QStringList spalten = m_db->columns(name);
        QCOMPARE(spalten.size(), qsizetype(t.spalten.size()));
        for (const Spalte &s : t.spalten)
            QVERIFY2(spalten.contains(s.name, Qt::CaseInsensitive), qPrintable(s.name));
        QStringList schluessel = m_db->primaryKey(name);
        QCOMPARE(schluessel.size(), t.schluessel.size());
        for (const QString &k : t.schluessel)
            QVERIFY2(schluessel.contains(k, Qt::CaseInsensitive), qPrintable(k));
        QVERIFY(platform::storage::fehlendeSpalten(*m_db, name).isEmpty());
    }

    // What a new row holds without being told, read back with the engine's own types.
    void neueZeilen()
    {
        platform::storage::schemaAnlegen(*m_db);
        m_db->execute("INSERT INTO ObjKanzleiKontenstamm (KontoNr, KontoJJ) VALUES ('0001', 2025)");
        auto c = m_db->query("SELECT * FROM ObjKanzleiKontenstamm");
        QVERIFY(c->next());
        const Tabelle &t = *tabelle("ObjKanzleiKontenstamm");
        for (int i = 0; i < c->spaltenAnzahl(); ++i) {
            const Spalte *s = t.spalte(c->spaltenName(i));
            QVERIFY2(s, qPrintable(c->spaltenName(i)));
            if (!s->anfangswert.isValid())
                continue;
            if (s->typ == Spaltentyp::Text) {
                QCOMPARE(c->art(i), Wertart::Text);
                QCOMPARE(c->wert(i).toString(), QString());
            } else {
                QCOMPARE(c->art(i), Wertart::Ganzzahl);
                QCOMPARE(c->ganzzahl(i), s->anfangswert.toLongLong());
            }
        }
        QCOMPARE(m_db->scalar("SELECT KontoAbrUstProz FROM ObjKanzleiKontenstamm").toInt(), 100);
        QCOMPARE(m_db->scalar("SELECT KontoPVAZusatz FROM ObjKanzleiKontenstamm").toInt(), -1);
        // Ids are handed out by the engine; dates and amounts come back as written.
        for (int i = 0; i < 2; ++i) {
            m_db->execute("INSERT INTO ObjKanzleiSalden (SSObjNr, SSBuNr, SSJJ, SSKontoNr) "
                          "VALUES (0, 0, 2025, '2800')");
            m_db->execute("INSERT INTO KreditorenBuchungen (KbKontoNr, KbJJ) VALUES (1, 2025)");
        }
        QCOMPARE(m_db->scalar("SELECT COUNT(DISTINCT SSId) FROM ObjKanzleiSalden").toInt(), 2);
        QCOMPARE(m_db->scalar("SELECT COUNT(DISTINCT KbId) FROM KreditorenBuchungen").toInt(), 2);
        m_db->execute("INSERT INTO AllgSchluesselDaten (SchlNummer, SchlAbDatum, SchlBisDatum) "
                      "VALUES (0, ?, ?)",
                      {QDate(1900, 1, 1), QDate(2099, 12, 31)});
        m_db->execute("INSERT INTO KreditorenSalden (KsKontoNr, KsJJ, KsHabenSumme) "
                      "VALUES (1, 2025, ?)",
                      {1234.56});
        c = m_db->query("SELECT SchlAbDatum, SchlBisDatum, SchlLangBezeich FROM "
                        "AllgSchluesselDaten");
        QVERIFY(c->next());
        QCOMPARE(c->wert(0).toDate(), QDate(1900, 1, 1));
        QCOMPARE(c->wert(1).toDate(), QDate(2099, 12, 31));
        QCOMPARE(c->wert(2).toString(), QString());
        QCOMPARE(m_db->scalar("SELECT KsHabenSumme FROM KreditorenSalden").toDouble(), 1234.56);
    }

    void schluesselVerbietetDoppelte_data()
    {
        QTest::addColumn<QString>("sql");
        QTest::addColumn<QVariantList>("zeile");
        QTest::newRow("Konto")
            << "INSERT INTO ObjKanzleiKontenstamm (KontoNr, KontoJJ) VALUES (?, ?)"
            << QVariantList {"2800", 2025};
        QTest::newRow("Kreditor") << "INSERT INTO KreditorenKontenstamm (KrKontoNr) VALUES (?)"
                                  << QVariantList {33001};
        QTest::newRow("Bilanzposition")
            << "INSERT INTO BilanzPos (BilPosAktPass, BilPosABC, BilPosRöm, BilPosArab, "
               "BilPosABCklein) VALUES (?, ?, ?, ?, ?)"
            << QVariantList {1, "A", "II", "3", ""};
        QTest::newRow("Kreditorensaldo")
            << "INSERT INTO KreditorenSalden (KsKontoNr, KsJJ) VALUES (?, ?)"
            << QVariantList {33001, 2025};
    }

    void schluesselVerbietetDoppelte()
    {
        QFETCH(QString, sql);
        QFETCH(QVariantList, zeile);
        platform::storage::schemaAnlegen(*m_db);
        m_db->execute(sql, zeile);
        QCOMPARE(fehlerVon([&] { m_db->execute(sql, zeile); }), fehlernummer::DoppelterSchluessel);
    }

    // Account numbers sort by their bytes on both engines (PostgreSQL's collation would not).
    void kontoNrSortiertByteweise()
    {
        platform::storage::schemaAnlegen(*m_db);
        const QStringList nummern {"a100", "1000", "B100", "0001", "10 1", "999998", "10"};
        for (const QString &nr : nummern)
            m_db->execute("INSERT INTO ObjKanzleiKontenstamm (KontoNr, KontoJJ) VALUES (?, 2025)",
                          {nr});
        QStringList gelesen;
        auto c = m_db->query("SELECT KontoNr FROM ObjKanzleiKontenstamm ORDER BY KontoNr");
        while (c->next())
            gelesen << c->wert(0).toString();
        QStringList erwartet = nummern;
        std::sort(erwartet.begin(), erwartet.end(),
                  [](const QString &a, const QString &b) { return a.toUtf8() < b.toUtf8(); });
        QCOMPARE(gelesen, erwartet);
    }

    void schemaAnlegenIstAtomar()
    {
        // A table of the same name stops the creation half-way; nothing may remain.
        m_db->execute("CREATE TABLE BilanzPosZL7 (x integer)");
        QVERIFY(fehlerVon([&] { platform::storage::schemaAnlegen(*m_db); }) != 0);
        QVERIFY(!m_db->inTransaction());
        QVERIFY(!m_db->hasTable("ObjKanzleiKontenstamm"));
        QVERIFY(!m_db->hasTable("BilanzPos"));
        QVERIFY(m_db->hasTable("BilanzPosZL7"));
    }

    void fehlendeSpalten_data()
    {
        QTest::addColumn<QString>("tabellenName");
        QTest::addColumn<QString>("spalte"); // "" for the whole table
        QTest::newRow("Zusatzdaten") << "ObjKanzleiKontenstamm"
                                     << "KontoZusatzDatenJN";
        QTest::newRow("Umlaut") << "ObjKanzleiKontenstamm"
                                << "KontoÖNORMAbrBlockPos";
        QTest::newRow("letzte") << "ObjKanzleiKontenstamm"
                                << "KontoEstgPflichtig";
        QTest::newRow("Block") << "AbrPosBkBlöcke"
                               << "BkBlockSchlPos";
        QTest::newRow("Salden") << "ObjKanzleiSalden"
                                << "SSHabenSumme";
        QTest::newRow("Tabelle fehlt") << "BilanzPos"
                                       << "";
    }

    void fehlendeSpalten()
    {
        QFETCH(QString, tabellenName);
        QFETCH(QString, spalte);
        // The catalogue's table without the column: a database of an older release.
        Tabelle t = *tabelle(tabellenName);
        std::erase_if(t.spalten, [&](const Spalte &s) { return s.name == spalte; });
        if (!spalte.isEmpty())
            m_db->execute(ddl(t, m_db->engine()));
        const QStringList erwartet = spalte.isEmpty() ? t.spaltenNamen() : QStringList {spalte};
        QCOMPARE(platform::storage::fehlendeSpalten(*m_db, tabellenName), erwartet);
        // Any spelling of the table name.
        QCOMPARE(platform::storage::fehlendeSpalten(*m_db, tabellenName.toUpper()), erwartet);
        QCOMPARE(fehlerVon([&] { platform::storage::fehlendeSpalten(*m_db, "GibtEsNicht"); }),
                 fehlernummer::TabelleNichtGefunden);
    }
};

ZEP_ENGINE_TEST_MAIN(TestSchema)

#include "tst_schema.moc"
