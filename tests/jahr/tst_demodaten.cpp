// The demo database and the year generator: their contents, and that every reference points to
// an existing row, on both engines.
#include "accounts/regeln/Jahrespruefung.h"
#include "common/TestDatenbank.h"
#include "jahr/Demodaten.h"
#include "platform/core/RuntimeError.h"
#include "platform/storage/Schema.h"

#include <QTest>

using namespace platform::storage;

namespace {

// The rows beside the accounts point to existing rows (each query counts the offending ones).
const char *const verweise[] = {
    "SELECT COUNT(*) FROM ObjKanzleiSalden s WHERE NOT EXISTS (SELECT 1 FROM "
    "ObjKanzleiKontenstamm k WHERE k.KontoNr = s.SSKontoNr AND k.KontoJJ = s.SSJJ)",
    "SELECT COUNT(*) FROM KreditorenBuchungen b WHERE NOT EXISTS (SELECT 1 FROM "
    "KreditorenKontenstamm k WHERE k.KrKontoNr = b.KbKontoNr)",
    "SELECT COUNT(*) FROM KreditorenBuchungen b WHERE NOT EXISTS (SELECT 1 "
    "FROM ObjKanzleiKontenstamm k WHERE k.KontoNr = b.KbSachKontoNr AND k.KontoJJ = b.KbJJ)",
    "SELECT COUNT(*) FROM KreditorenBuchungen b JOIN KreditorenKontenstamm k "
    "ON k.KrKontoNr = b.KbKontoNr WHERE (k.KrKontoTypus = '0') <> (b.KbObjNr = 0)",
    "SELECT COUNT(*) FROM KreditorenSalden s WHERE NOT EXISTS (SELECT 1 FROM "
    "KreditorenKontenstamm k WHERE k.KrKontoNr = s.KsKontoNr)",
    "SELECT COUNT(*) FROM AbrPosBkBlöcke b WHERE NOT EXISTS (SELECT 1 "
    "FROM AllgSchluesselDaten s WHERE s.SchlNummer = b.BkBlockSchlPos)",
    "SELECT COUNT(*) FROM AbrPosBkAbr a WHERE NOT EXISTS (SELECT 1 FROM "
    "AbrPosBkAbr h WHERE h.AbrPosBkPos2 = 0 AND h.AbrPosBkPos1 = a.AbrPosBkPos1)",
};

// Every account of `jahr` passes the screen's checks (the whole-year check of "pruefen").
QStringList befunde(Database &db, int jahr)
{
    QStringList fehler;
    for (const kontenregeln::Kontobefund &b : kontenregeln::jahrPruefen(db, jahr))
        fehler << b.kontoNr + QStringLiteral(": ") + b.meldung;
    return fehler;
}

qint64 anzahl(Database &db, const QString &sql, const QVariantList &params = {})
{
    return db.scalar(sql, params).toLongLong();
}

std::shared_ptr<Database> demo()
{
    auto db = Database::open(testhilfe::neueDatenbank());
    jahr::demoDatenbankAnlegen(*db);
    return db;
}

} // namespace

class TestDemodaten : public QObject
{
    Q_OBJECT

private slots:
    void demoIstStimmig()
    {
        auto db = demo();
        QStringList fehler
            = befunde(*db, jahr::demoErstesJahr) + befunde(*db, jahr::demoLetztesJahr);
        for (const char *sql : verweise) {
            if (anzahl(*db, QString::fromUtf8(sql)) != 0)
                fehler << QString::fromUtf8(sql);
        }
        // Texts fit their columns (PostgreSQL refuses longer ones, the embedded engine not).
        for (const Tabelle &t : schemaKatalog()) {
            for (const Spalte &s : t.spalten) {
                if (s.typ != Spaltentyp::Text)
                    continue;
                const QString sql = QStringLiteral("SELECT COUNT(*) FROM %1 WHERE length(%2) > %3")
                                        .arg(t.name, s.name)
                                        .arg(s.laenge);
                if (anzahl(*db, sql) != 0)
                    fehler << s.name;
            }
        }
        QVERIFY2(fehler.isEmpty(), qPrintable(fehler.join(QStringLiteral("; "))));
    }

    // The demo as the C++ generator of earlier versions wrote it, row for row (compared once,
    // value and storage type of every column): counts, sums over the definitions and amounts,
    // and what users meet first.
    void demoInhalt_data()
    {
        QTest::addColumn<QString>("sql");
        QTest::addColumn<QString>("erwartet");
        const auto zeile = [](const char *name, const char *sql, const char *erwartet) {
            QTest::newRow(name) << QString::fromUtf8(sql) << QString::fromUtf8(erwartet);
        };
        zeile("Konten 2025", "SELECT COUNT(*) FROM ObjKanzleiKontenstamm WHERE KontoJJ = 2025",
              "314");
        zeile("Konten 2026", "SELECT COUNT(*) FROM ObjKanzleiKontenstamm WHERE KontoJJ = 2026",
              "314");
        zeile("Salden", "SELECT COUNT(*) FROM ObjKanzleiSalden", "530");
        zeile("Schlüssel", "SELECT COUNT(*) FROM AllgSchluesselDaten", "8");
        zeile("Bilanzpositionen", "SELECT COUNT(*) FROM BilanzPos", "64");
        zeile("ZL7", "SELECT COUNT(*) FROM BilanzPosZL7", "42");
        zeile("ÖNORM", "SELECT COUNT(*) FROM AbrPosBkAbr", "26");
        zeile("Blöcke", "SELECT COUNT(*) FROM AbrPosBkBlöcke", "6");
        zeile("Kreditoren", "SELECT COUNT(*) FROM KreditorenKontenstamm", "21");
        zeile("Kreditorenbuchungen", "SELECT COUNT(*) FROM KreditorenBuchungen", "610");
        zeile("Kreditorensalden", "SELECT COUNT(*) FROM KreditorenSalden", "38");
        zeile("Typen", "SELECT SUM(KontoTypus) FROM ObjKanzleiKontenstamm", "516");
        zeile("USt", "SELECT SUM(KontoUstProz) + SUM(KontoAbrUstProz) FROM ObjKanzleiKontenstamm",
              "126412");
        zeile("BK-Abrechnung",
              "SELECT SUM(KontoBkENAbrDef + KontoBkBlockPos + KontoBkEinnAusgPos + "
              "KontoBkAbrVerdichtKz + KontoAbrSchlPos + KontoBkEinnUstProz) "
              "FROM ObjKanzleiKontenstamm",
              "2616");
        zeile("ÖNORM-Abrechnung",
              "SELECT SUM(KontoÖNORMAbrPos_I_II_III + KontoÖNORMAbrPos_ABC + "
              "KontoÖNORMAbrBlockPos + KontoÖNORMAbrKontenArt) FROM ObjKanzleiKontenstamm",
              "1256");
        zeile("Heizung, Beiblatt, HMZ-Reserve",
              "SELECT SUM(KontoHeEinnAusgPos + KontoHeAbrVerdichtKz + KontoBeiblPos + "
              "KontoBeiblVerdichtKz + KontoHmzresPos + KontoHmzresVerdichtKz + KontoErhbeitrPos) "
              "FROM ObjKanzleiKontenstamm",
              "408");
        zeile("Voranmeldung, Abschluss, Bilanz",
              "SELECT SUM(KontoVoranmPos + KontoAbschlArt + KontoPVAKz + KontoPos1 + KontoPos2 + "
              "KontoPos3 + KontoBilPosAktPass) FROM ObjKanzleiKontenstamm",
              "10008");
        zeile("Konten mit Verweisen",
              "SELECT COUNT(*) FROM ObjKanzleiKontenstamm WHERE KontoUstKtoNr <> '' "
              "OR KontoSbkGuvKontoNr <> '' OR KontoEbkKontoNr <> ''",
              "572");
        zeile("Saldensummen",
              "SELECT SUM(SSSaldoVortrag) + SUM(SSSollSumme) + SUM(SSHabenSumme) "
              "FROM ObjKanzleiSalden",
              "42500418.93");
        zeile("Buchungsnummern", "SELECT SUM(SSBuNr) FROM ObjKanzleiSalden", "109031");
        zeile("Rechnungsbeträge", "SELECT SUM(KbBetrag) FROM KreditorenBuchungen", "1762785.42");
        zeile("Objekte der Rechnungen", "SELECT SUM(KbObjNr) FROM KreditorenBuchungen", "2403");
        zeile("Kreditorensalden-Summen",
              "SELECT SUM(KsSaldoVortrag) + SUM(KsSollSumme) FROM KreditorenSalden", "1544365.86");
        // Deletable accounts and creditors (nothing booked) exist beside booked ones.
        zeile("Konten ohne Salden",
              "SELECT COUNT(*) FROM ObjKanzleiKontenstamm k WHERE NOT EXISTS (SELECT 1 FROM "
              "ObjKanzleiSalden s WHERE s.SSJJ = k.KontoJJ AND s.SSKontoNr = k.KontoNr)",
              "119");
        zeile("Kreditoren ohne Buchungen",
              "SELECT COUNT(*) FROM KreditorenKontenstamm k WHERE NOT EXISTS (SELECT 1 FROM "
              "KreditorenBuchungen b WHERE b.KbKontoNr = k.KrKontoNr)",
              "2");
        zeile("999998",
              "SELECT KontoBezeichnung FROM ObjKanzleiKontenstamm WHERE KontoNr = "
              "'999998' AND KontoJJ = 2026",
              "Internes Verrechnungskonto");
        zeile("Vornullen", "SELECT COUNT(*) FROM ObjKanzleiKontenstamm WHERE KontoNr = '0010'",
              "2");
        zeile("Schlüssel 0", "SELECT SchlLangBezeich FROM AllgSchluesselDaten WHERE SchlNummer = 0",
              "keine Definition");
        zeile("Umlaute",
              "SELECT KontoAnmerkung1 FROM ObjKanzleiKontenstamm WHERE KontoNr = '69800' "
              "AND KontoJJ = 2025",
              "Mödling, Enzersdorfer Straße 9");
        // The accounts came in through the import, each one logged as such.
        zeile("über den Import",
              "SELECT COUNT(*) FROM (SELECT DISTINCT Jahr, Konto FROM Aenderungsprotokoll "
              "WHERE Quelle = 'Import' AND Tabelle = 'ObjKanzleiKontenstamm') x",
              "628");
    }

    void demoInhalt()
    {
        QFETCH(QString, sql);
        QFETCH(QString, erwartet);
        if (!m_demo)
            m_demo = demo();
        const QVariant wert = m_demo->scalar(sql);
        bool zahl = false;
        const double soll = erwartet.toDouble(&zahl);
        if (zahl)
            QVERIFY2(qAbs(wert.toDouble() - soll) < 0.005, qPrintable(wert.toString()));
        else
            QCOMPARE(wert.toString(), erwartet);
    }

    void demoIstAtomar()
    {
        // A table that is in the way makes the generator fail; nothing else may remain.
        auto db = Database::open(testhilfe::neueDatenbank());
        db->execute(QStringLiteral("CREATE TABLE KreditorenSalden (x integer)"));
        QVERIFY_THROWS_EXCEPTION(platform::RuntimeError, jahr::demoDatenbankAnlegen(*db));
        QVERIFY(!db->inTransaction());
        QVERIFY(!db->hasTable(QStringLiteral("ObjKanzleiKontenstamm")));
    }

    void zusammenfassung()
    {
        if (!m_demo)
            m_demo = demo();
        const QString text = jahr::zusammenfassung(*m_demo);
        QVERIFY2(text.contains(QStringLiteral("Konten je Buchungsjahr: 2025: 314, 2026: 314")),
                 qPrintable(text));
        QVERIFY(text.contains(QStringLiteral("AllgSchluesselDaten: 8 Zeilen")));
        for (const Tabelle &t : schemaKatalog())
            QVERIFY2(text.contains(t.name + QStringLiteral(": ")), qPrintable(t.name));
    }

    void jahrErzeugen_data()
    {
        QTest::addColumn<int>("anzahl");
        QTest::newRow("keins") << 0;
        QTest::newRow("nur 999998") << 1;
        QTest::newRow("mitten in der Kanzlei") << 7;
        QTest::newRow("mitten in einem Objekt") << 100;
        QTest::newRow("viele Objekte, sechsstellig") << 1500;
    }

    void jahrErzeugen()
    {
        QFETCH(int, anzahl);
        auto db = Database::open(testhilfe::neueDatenbank());
        jahr::jahrErzeugen(*db, 2030, anzahl);
        QCOMPARE(::anzahl(*db,
                          QStringLiteral("SELECT COUNT(*) FROM ObjKanzleiKontenstamm "
                                         "WHERE KontoJJ = 2030")),
                 qint64(anzahl));
        QCOMPARE(::anzahl(*db,
                          QStringLiteral("SELECT COUNT(*) FROM ObjKanzleiKontenstamm "
                                         "WHERE KontoNr = '999998'")),
                 qint64(anzahl > 0 ? 1 : 0));
        // References stay inside their property (the properties' names differ).
        QCOMPARE(::anzahl(*db,
                          QStringLiteral(
                              "SELECT COUNT(*) FROM ObjKanzleiKontenstamm k JOIN "
                              "ObjKanzleiKontenstamm u ON u.KontoJJ = k.KontoJJ AND "
                              "u.KontoNr IN (k.KontoUstKtoNr, k.KontoSbkGuvKontoNr, "
                              "k.KontoEbkKontoNr) WHERE u.KontoAnmerkung1 <> k.KontoAnmerkung1")),
                 qint64(0));
        const QStringList fehler = befunde(*db, 2030);
        QVERIFY2(fehler.isEmpty(), qPrintable(fehler.join(QStringLiteral("; "))));
        // A second year beside it reuses the masters; the same year again is refused whole.
        jahr::jahrErzeugen(*db, 2031, 50);
        QCOMPARE(::anzahl(*db,
                          QStringLiteral("SELECT COUNT(*) FROM ObjKanzleiKontenstamm "
                                         "WHERE KontoJJ = 2031")),
                 qint64(50));
        QVERIFY(befunde(*db, 2031).isEmpty());
        try {
            jahr::jahrErzeugen(*db, 2031, 60);
            QFAIL("doppeltes Jahr angenommen");
        } catch (const platform::RuntimeError &e) {
            QCOMPARE(e.nummer(), platform::fehlernummer::DoppelterSchluessel);
        }
        QCOMPARE(::anzahl(*db,
                          QStringLiteral("SELECT COUNT(*) FROM ObjKanzleiKontenstamm "
                                         "WHERE KontoJJ = 2031")),
                 qint64(50));
    }

private:
    std::shared_ptr<Database> m_demo;
};

ZEP_ENGINE_TEST_MAIN(TestDemodaten)

#include "tst_demodaten.moc"
