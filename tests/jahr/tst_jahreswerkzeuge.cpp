// The year tools on both engines: carrying accounts into the next year, the whole-year check,
// the CSV export and import with their refusals and the files Excel writes.
#include "accounts/regeln/Jahrespruefung.h"
#include "common/Schreibfehler.h"
#include "common/TestDatenbank.h"
#include "jahr/Jahreswechsel.h"
#include "jahr/KontenCsv.h"
#include "platform/core/RuntimeError.h"
#include "platform/storage/Schema.h"

#include <QBuffer>
#include <QFile>
#include <QTemporaryDir>

using platform::storage::Database;

class TestJahreswerkzeuge : public QObject
{
    Q_OBJECT

private:
    QString m_ort;
    std::shared_ptr<Database> m_db;
    QTemporaryDir m_dir;

    void konto(const QString &nr, const QString &name, int jahr = 2024, const QString &z = {})
    {
        testhilfe::konto(*m_db, nr, name, jahr, z);
    }
    qlonglong anzahl(int jahr)
    {
        return m_db->scalar("SELECT COUNT(*) FROM ObjKanzleiKontenstamm WHERE KontoJJ = ?", {jahr})
            .toLongLong();
    }
    QString datei(const QString &name, const QByteArray &inhalt)
    {
        return testhilfe::datei(m_dir.path(), name, inhalt);
    }
    // Every column of the year's accounts except the year, as text, in account order.
    QStringList inhalt(int jahr)
    {
        QStringList zeilen;
        for (const kontenregeln::Kontozeile &z : kontenregeln::kontenLaden(*m_db, jahr)) {
            QStringList werte;
            for (const QString &s : z.spalten->namen()) {
                if (s.compare("KontoJJ", Qt::CaseInsensitive) != 0)
                    werte << s.toLower() + '=' + z.text(s);
            }
            zeilen << werte.join('|');
        }
        return zeilen;
    }

private slots:
    void init()
    {
        m_ort = testhilfe::neueDatenbank();
        m_db = Database::open(m_ort);
        platform::storage::schemaAnlegen(*m_db);
        m_db->execute("INSERT INTO AllgSchluesselDaten (SchlNummer, SchlKurzbezeich) VALUES "
                      "(0, 'keine'), (4, 'Nutzfl')");
        m_db->execute("INSERT INTO BilanzPosZL7 (BilZl7Pos1, BilZl7Pos2, BilZl7Pos3, "
                      "BilZl7PosText) VALUES (1, 2, 3, 'Forderungen')");
        m_db->execute("INSERT INTO AbrPosBkAbr (AbrPosBkPos1, AbrPosBkPos2, AbrPosBkPosText) "
                      "VALUES (3, 0, 'Kopf'), (3, 12, 'Wasser')");
        m_db->execute("INSERT INTO AbrPosBkBlöcke (BkBlockPos, BkBlockText, BkBlockSchlPos) "
                      "VALUES (2, 'Heizung', 4)");
        m_db->execute("INSERT INTO BilanzPos (BilPosAktPass, BilPosABC, BilPosRöm, BilPosArab, "
                      "BilPosABCklein, BilPosText) VALUES (1, 'B', 'II', '1', 'a', 'Kassa')");
    }
    void cleanup() { m_db.reset(); }

    // --- year change ---

    void jahreswechsel()
    {
        konto("1000", "Kassa", 2024, "KontoBilPosAktPass = 1, KontoBilPosABC = 'B'");
        konto("1200", "Bank", 2024, "KontoUstKtoNr = '1000'");
        konto("2000", "Lieferanten", 2024);
        konto("1200", "Bank neu", 2025, "KontoUstKtoNr = '1000'");
        konto("2000", "Lieferanten", 2025);

        auto e = jahr::jahreswechsel(*m_db, 2024, 2025, true);
        QCOMPARE(e.neu, QStringList {"1000"});
        QCOMPARE(int(e.abweichend.size()), 1);
        QCOMPARE(e.abweichend[0].kontoNr, "1200");
        QCOMPARE(e.abweichend[0].felder.size(), 1);
        QCOMPARE(e.abweichend[0].felder[0].toLower(), "kontobezeichnung");
        QCOMPARE(e.gleich, 1);
        QVERIFY(!e.geschrieben);
        QCOMPARE(anzahl(2025), 2);

        e = jahr::jahreswechsel(*m_db, 2024, 2025, false);
        QVERIFY(e.geschrieben);
        QCOMPARE(anzahl(2025), 3);
        QCOMPARE(m_db->scalar("SELECT KontoBilPosABC FROM ObjKanzleiKontenstamm WHERE KontoNr = "
                              "'1000' AND KontoJJ = 2025")
                     .toString(),
                 "B");
        // The source year is untouched; a second run changes nothing.
        QCOMPARE(anzahl(2024), 3);
        const QStringList vorher = inhalt(2025);
        e = jahr::jahreswechsel(*m_db, 2024, 2025, false);
        QVERIFY(e.neu.isEmpty());
        QVERIFY(!e.geschrieben);
        QCOMPARE(inhalt(2025), vorher);
    }

    // --- whole-year check ---

    void pruefen_data()
    {
        QTest::addColumn<QString>("zuweisung");
        QTest::addColumn<QString>("meldungAnfang"); // "" = no finding
        QTest::addColumn<int>("seite");
        QTest::addColumn<QString>("feld");
        const auto zeile = [](const char *name, const char *zuweisung, const char *meldung,
                              int seite, const char *feld) {
            QTest::newRow(name) << QString::fromUtf8(zuweisung) << QString::fromUtf8(meldung)
                                << seite << QString::fromUtf8(feld);
        };
        zeile("gueltig", "KontoUstProz = 100", "", 0, "");
        zeile("ust ohne konto", "KontoUstProz = 10", "Da ein UstProzentsatz definiert wurde", 1,
              "inpKontoUstKtoNr");
        zeile("ust konto fehlt", "KontoUstKtoNr = '4711'",
              "UstKontoNummer ist nicht im Kontenstamm", 1, "inpKontoUstKtoNr");
        zeile("bk", "KontoBkENAbrDef = 1", "Wenn \"Bk-Mieter/Eigentümer-Abr:\" definiert ist", 2,
              "cmbBkENAbrDef");
        zeile("ebk", "KontoEbkKontoNr = '4711'", "KontoEbk-KontoNummer ist nicht im Kontenstamm", 7,
              "inpKontoEbkKontoNr");
        zeile("zl7", "KontoPos3 = 9", "ZL7-Bilanzposition ist nicht", 7, "inpBilZl7Pos1");
        zeile("zl7 vorhanden", "KontoPos1 = 1, KontoPos2 = 2, KontoPos3 = 3", "", 0, "");
        zeile("typ", "KontoTypus = 3", "ungültiger Wert in cmbKontoTypus.text", 1, "cmbKontoTypus");
        zeile("ust 15", "KontoUstProz = 15, KontoUstKtoNr = '1000'",
              "ungültiger Wert 15 in cmbKontoUstProz", 1, "cmbKontoUstProz");
        zeile("position fehlt",
              "KontoÖNORMAbrPos_I_II_III = 3, KontoÖNORMAbrPos_ABC = 13, KontoBkBlockPos = 2, "
              "KontoAbrUstProz = 20",
              "ÖNORM-I-II-III-Position: 3", 3, "cmbAbrPos2");
        zeile("block fehlt", "KontoBkBlockPos = 5", "in cmbBkBlockPos_Texteinsetzen", 2,
              "cmbBkBlockPos");
        zeile("bilanz fehlt", "KontoBilPosAktPass = 2",
              "Bilanzposition 2 ist nicht im Bilanzpositionsstamm", 7, "inpBilPosAktPass");
        zeile("bilanz vorhanden",
              "KontoBilPosAktPass = 1, KontoBilPosABC = 'B', KontoBilPosRöm = 'II', "
              "KontoBilPosArab = '1', KontoBilPosABCklein = 'a'",
              "", 0, "");
        zeile("schluessel fehlt", "KontoAbrSchlPos = 9", "Aufteilungsschlüssel 9 ist nicht", 2,
              "inpAbrSchlPos");
        zeile("schluessel vorhanden", "KontoAbrSchlPos = 4", "", 0, "");
        zeile("bezeichnung leer", "KontoBezeichnung = ''", "KontoBezeichnung darf nicht leer", 1,
              "inpKontoBezeichnung");
    }
    void pruefen()
    {
        QFETCH(QString, zuweisung);
        QFETCH(QString, meldungAnfang);
        QFETCH(int, seite);
        QFETCH(QString, feld);
        konto("1000", "Kassa");
        konto("1200", "Bank", 2024, zuweisung);
        // Accounts of another year are neither checked nor referenced.
        konto("4711", "Anderes Jahr", 2023, "KontoTypus = 9");
        qint64 gemeldet = 0;
        const auto befunde = kontenregeln::jahrPruefen(*m_db, 2024, [&](qint64 e, qint64 g) {
            QCOMPARE(g, 2);
            gemeldet = e;
        });
        QCOMPARE(gemeldet, 2);
        if (meldungAnfang.isEmpty()) {
            QVERIFY2(befunde.empty(), befunde.empty() ? "" : qPrintable(befunde[0].meldung));
            return;
        }
        QCOMPARE(int(befunde.size()), 1);
        QCOMPARE(befunde[0].kontoNr, "1200");
        QVERIFY2(befunde[0].meldung.startsWith(meldungAnfang), qPrintable(befunde[0].meldung));
        QCOMPARE(befunde[0].seite, seite);
        QCOMPARE(befunde[0].feld, feld);
    }

    // --- export and import ---

    void exportUndImportGebenGleicheSaetze()
    {
        konto("1000", "Kassa; \"Haupt\"kassa", 2024,
              "KontoAnmerkung1 = 'zwei\nZeilen', "
              "KontoUstProz = 100, KontoPVAZusatz = -1");
        konto("1200", "Bank Österreich", 2024,
              "KontoUstKtoNr = '1000', KontoPos1 = 1, KontoPos2 = 2, KontoPos3 = 3, "
              "KontoStornoDatum = 20240131");
        konto("3500", "Umsatzsteuer", 2024, "KontoSbkGuvKontoNr = '1200', KontoVoranmPos = 90");
        const QString csv = m_dir.filePath("2024.csv");
        const auto aus = jahr::exportieren(*m_db, 2024, csv);
        QVERIFY2(aus.fehler.isEmpty(), qPrintable(aus.fehler));
        QCOMPARE(aus.konten, 3);
        // The byte-order mark makes Excel read the file as UTF-8.
        QFile f(csv);
        QVERIFY(f.open(QIODevice::ReadOnly));
        QVERIFY(f.readAll().startsWith("\xEF\xBB\xBFKontoNr;"));

        auto ein = jahr::importieren(*m_db, 2030, csv, true);
        QVERIFY(ein.fehler.empty());
        QVERIFY(!ein.geschrieben);
        QCOMPARE(anzahl(2030), 0);
        ein = jahr::importieren(*m_db, 2030, csv, false);
        QVERIFY2(ein.fehler.empty(), ein.fehler.empty() ? "" : qPrintable(ein.fehler[0].meldung));
        QVERIFY(ein.geschrieben);
        QCOMPARE(inhalt(2030), inhalt(2024));
    }

    void importFehler_data()
    {
        QTest::addColumn<QByteArray>("inhalt");
        QTest::addColumn<int>("zeile");
        QTest::addColumn<QString>("feld");
        QTest::addColumn<QString>("meldungEnthaelt");
        const QByteArray kopf = "KontoNr;KontoBezeichnung;KontoTypus;KontoUstKtoNr\r\n";
        const QByteArray gut = "3000;Erlöse;0;\r\n";
        const auto zeile = [](const char *name, const QByteArray &inhalt, int zeile,
                              const char *feld, const char *meldung) {
            QTest::newRow(name) << inhalt << zeile << QString::fromUtf8(feld)
                                << QString::fromUtf8(meldung);
        };
        zeile("zu kurz", kopf + gut + "12;Kurz;0;\r\n", 3, "KontoNr", "mindestens 4-stellig");
        zeile("null", kopf + "000;Null;0;\r\n", 2, "KontoNr", "Kontonummer 0 oder 00 oder 000");
        zeile("buchstaben", kopf + "12AB;X;0;\r\n", 2, "KontoNr", "höchstens 6 Ziffern");
        zeile("doppelt", kopf + gut + gut, 3, "KontoNr", "steht schon in Zeile 2");
        zeile("vorhanden", kopf + "1000;Kassa;0;\r\n", 2, "KontoNr", "bereits vorhanden");
        zeile("typ", kopf + "3000;X;3;\r\n", 2, "KontoTypus",
              "ungültiger Wert in cmbKontoTypus.text");
        zeile("keine zahl", kopf + "3000;X;eins;\r\n", 2, "KontoTypus", "keine ganze Zahl");
        zeile("zu gross", kopf + "3000;X;70000;\r\n", 2, "KontoTypus",
              "außerhalb des zulässigen Bereichs");
        zeile("text zu lang", kopf + "3000;" + QByteArray(51, 'x') + ";0;\r\n", 2,
              "KontoBezeichnung", "länger als 50");
        zeile("referenz", kopf + "3000;X;0;4711\r\n", 2, "KontoUstKtoNr",
              "UstKontoNummer ist nicht im Kontenstamm");
        zeile("felder", kopf + "3000;X;0\r\n", 2, "", "3 Felder statt 4");
        zeile("unbekanntes feld", "KontoNr;Geheim\r\n3000;x\r\n", 1, "Geheim", "Unbekanntes Feld");
        zeile("ohne kontonr", "KontoBezeichnung\r\nX\r\n", 1, "KontoNr", "kein Feld KontoNr");
        zeile("leer", QByteArray(), 1, "", "Kopfzeile");
        zeile("anfuehrung", kopf + gut + "3000;\"offen;0;\r\n", 3, "",
              "Anführungszeichen wird nicht geschlossen");
        zeile("anfuehrung im kopf", "KontoNr;\"Kontobez\r\n3000;x\r\n", 1, "",
              "Anführungszeichen wird nicht geschlossen");
        zeile("einschleusung",
              kopf + "3000;\"x'); DROP TABLE ObjKanzleiKontenstamm; --\";0;\r\n5000;ok;9;\r\n", 3,
              "KontoTypus", "ungültiger Wert");
    }
    void importAufDefektemDatentraeger_data()
    {
        QTest::addColumn<int>("fehler");
        QTest::addColumn<int>("nummer");
        QTest::newRow("voll") << SQLITE_FULL << platform::fehlernummer::DatentraegerVoll;
        QTest::newRow("Schreibfehler")
            << SQLITE_IOERR_WRITE << platform::fehlernummer::DatentraegerFehler;
    }
    void importAufDefektemDatentraeger()
    {
        QFETCH(int, fehler);
        QFETCH(int, nummer);
        if (testhilfe::aktuelleEngine() == platform::storage::Engine::PostgreSql)
            QSKIP("the server's disk is the server's");
        konto("1000", "Kassa");
        const QString csv = m_dir.filePath("aus.csv");
        jahr::exportieren(*m_db, 2024, csv);
        testhilfe::Schreibfehler schicht;
        auto db = Database::openSeparate(m_ort);
        testhilfe::Schreibfehler::s_fehler = fehler;
        int gemeldet = 0;
        try {
            jahr::importieren(*db, 2025, csv, false);
        } catch (const platform::RuntimeError &e) {
            gemeldet = e.nummer();
        }
        QCOMPARE(gemeldet, nummer);
        testhilfe::Schreibfehler::s_fehler = SQLITE_OK;
        // Nothing of the file half-written; with room again the same connection imports.
        QCOMPARE(anzahl(2025), 0);
        QVERIFY(jahr::importieren(*db, 2025, csv, false).geschrieben);
        QCOMPARE(anzahl(2025), 1);
    }
    void importFehler()
    {
        QFETCH(QByteArray, inhalt);
        QFETCH(int, zeile);
        QFETCH(QString, feld);
        QFETCH(QString, meldungEnthaelt);
        konto("1000", "Kassa");
        const auto e = jahr::importieren(*m_db, 2024, datei("ein.csv", inhalt), false);
        QVERIFY(!e.geschrieben);
        QVERIFY(!e.fehler.empty());
        const auto &f = e.fehler.front();
        QCOMPARE(f.zeile, zeile);
        QCOMPARE(f.feld, feld);
        QVERIFY2(f.meldung.contains(meldungEnthaelt), qPrintable(f.meldung));
        // One faulty line: nothing of the file is written.
        QCOMPARE(anzahl(2024), 1);
    }

    void importVerweistAufKontenDerDatei()
    {
        const QByteArray text = "\xEF\xBB\xBFKontoNr;KontoBezeichnung;KontoUstKtoNr\r\n"
                                "4000;Erlöse;3500\r\n"
                                "\r\n"
                                "3500;\"Umsatzsteuer; 20%\";\r\n";
        const auto e = jahr::importieren(*m_db, 2024, datei("ref.csv", text), false);
        QVERIFY2(e.fehler.empty(), e.fehler.empty() ? "" : qPrintable(e.fehler[0].meldung));
        QCOMPARE(e.konten, 2);
        QCOMPARE(anzahl(2024), 2);
        QCOMPARE(m_db->scalar("SELECT KontoBezeichnung FROM ObjKanzleiKontenstamm WHERE KontoNr "
                              "= '3500'")
                     .toString(),
                 "Umsatzsteuer; 20%");
        // Columns the file leaves out get the initial values of a new account.
        QCOMPARE(m_db->scalar("SELECT KontoAbrUstProz FROM ObjKanzleiKontenstamm WHERE KontoNr "
                              "= '4000'")
                     .toInt(),
                 100);
    }

    // One stray quote neither hides the lines after it nor swallows them into one record.
    void importNenntJedeFehlerhafteZeile()
    {
        const QByteArray text = "KontoNr;KontoBezeichnung;KontoTypus\r\n"
                                "12;Kurz;0\r\n"
                                "4000;\"Erlöse offen;0\r\n"
                                "5000;Typ;3\r\n"
                                "6000;\"Text mit \"\"Zitat\"\"\";0\r\n"
                                "7000;\"Aufwand\" Rest;0\r\n";
        const auto e = jahr::importieren(*m_db, 2024, datei("zeilen.csv", text), false);
        QStringList gemeldet;
        for (const auto &f : e.fehler)
            gemeldet << QString::number(f.zeile) + ' ' + f.feld + ": "
                    + f.meldung.section(' ', 0, 2);
        QCOMPARE(gemeldet,
                 QStringList({"2 KontoNr: Sachkonten-Kontonummern müssen mindestens",
                              "3 : Anführungszeichen wird nicht",
                              "4 KontoTypus: ungültiger Wert in", "6 : Text nach dem"}));
        QCOMPARE(e.konten, 5);
        QCOMPARE(anzahl(2024), 0);
    }

    // The same account in every form a Windows office sends it.
    void importKodierungen_data()
    {
        QTest::addColumn<QByteArray>("inhalt");
        const QByteArray kopf = "KontoNr;KontoBezeichnung;KontoAnmerkung1\r\n";
        const QByteArray utf8 = "4000;Mieterl\xC3\xB6se \xE2\x82\xAC;\"a; \"\"b\"\"\nc\"\r\n";
        const QByteArray cp1252 = "4000;Mieterl\xF6se \x80;\"a; \"\"b\"\"\nc\"\r\n";
        const auto lf = [](QByteArray b) {
            return b.replace("\r\n", "\n");
        };
        QTest::newRow("utf-8 mit bom, crlf") << "\xEF\xBB\xBF" + kopf + utf8;
        QTest::newRow("utf-8 ohne bom, lf") << lf(kopf + utf8);
        QTest::newRow("windows-1252, crlf") << kopf + cp1252;
        QTest::newRow("windows-1252, lf") << lf(kopf + cp1252);
    }
    void importKodierungen()
    {
        QFETCH(QByteArray, inhalt);
        const auto e = jahr::importieren(*m_db, 2024, datei("kodierung.csv", inhalt), false);
        QVERIFY2(e.fehler.empty(), e.fehler.empty() ? "" : qPrintable(e.fehler[0].meldung));
        QCOMPARE(m_db->scalar("SELECT KontoBezeichnung FROM ObjKanzleiKontenstamm").toString(),
                 "Mieterlöse €");
        QCOMPARE(m_db->scalar("SELECT KontoAnmerkung1 FROM ObjKanzleiKontenstamm").toString(),
                 "a; \"b\"\nc");
    }

    // A list as Excel saves "CSV (Trennzeichen-getrennt)": Windows-1252, CRLF, quotes only where
    // a cell holds ';', a quote or a line break (which Excel writes as LF).
    void importExcelDatei()
    {
        const auto e = jahr::importieren(*m_db, 2024, QFINDTESTDATA("excel-konten.csv"), false);
        QVERIFY2(e.fehler.empty(), e.fehler.empty() ? "" : qPrintable(e.fehler[0].meldung));
        QCOMPARE(e.konten, 4);
        const auto text = [&](const char *spalte, const char *nr) {
            return m_db
                ->scalar(QStringLiteral("SELECT %1 FROM ObjKanzleiKontenstamm WHERE KontoNr = ?")
                             .arg(spalte),
                         {nr})
                .toString();
        };
        QCOMPARE(text("KontoBezeichnung", "4000"), "Mieterlöse Wohnungen");
        QCOMPARE(text("KontoAnmerkung1", "4000"), "Hauptmiete; Betriebskosten getrennt");
        QCOMPARE(text("KontoBezeichnung", "4010"), "Erlöse \"Geschäftslokal\" Straße");
        QCOMPARE(text("KontoAnmerkung1", "7200"), "Dach erneuert\nFassade – Angebot 12.500 €");
        QCOMPARE(text("KontoUstKtoNr", "4010"), "2500");
    }

    // Records as "line: field|field", a faulty record as "line: !".
    void csvFelder_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QStringList>("saetze");
        QTest::newRow("einfach") << "a;b\nc;d" << QStringList {"1: a|b", "2: c|d"};
        QTest::newRow("crlf und cr") << "a;b\r\nc\rd\r\n" << QStringList {"1: a|b", "2: c", "3: d"};
        QTest::newRow("leere felder") << ";;\r\n" << QStringList {"1: ||"};
        QTest::newRow("anfuehrung") << "\"a;b\";\"c\"\"d\"\n" << QStringList {"1: a;b|c\"d"};
        QTest::newRow("zeilenumbruch") << "\"a\r\nb\";c\r\nx\n"
                                       << QStringList {"1: a\r\nb|c", "3: x"};
        QTest::newRow("leere zeilen") << "\n\na\n\n" << QStringList {"3: a"};
        QTest::newRow("offen bis zum ende") << "a\n\"b;c\nd;e\n"
                                            << QStringList {"1: a", "2: !", "3: d|e"};
        QTest::newRow("offen bis zur naechsten anfuehrung")
            << "\"b;c\nd;\"e\"\nf\n"
            << QStringList {"1: !", "2: d|e", "3: f"};
        QTest::newRow("text nach anfuehrung") << "\"ab\"c;d\nx" << QStringList {"1: !", "2: x"};
        QTest::newRow("mehrbytige zeichen")
            << u"Ä;€\r\n\"ö\r\n\";𝄞\r\n"_qs << QStringList {u"1: Ä|€"_qs, u"2: ö\r\n|𝄞"_qs};
        QTest::newRow("anfuehrung am ende") << "a;\"b\"" << QStringList {"1: a|b"};
    }
    void csvFelder()
    {
        QFETCH(QString, text);
        QFETCH(QStringList, saetze);
        QStringList gelesen;
        for (const jahr::CsvSatz &s : jahr::csvLesen(text)) {
            gelesen << QString::number(s.zeile) + ": "
                    + (s.fehler.isEmpty() ? s.felder.join('|') : QStringLiteral("!"));
        }
        QCOMPARE(gelesen, saetze);
        // A file read in blocks of any size, cut inside a character, a CRLF or after a quote.
        for (const qint64 block : {1, 2, 3, 5, 1 << 20}) {
            QByteArray bytes = text.toUtf8();
            QBuffer puffer(&bytes);
            QVERIFY(puffer.open(QIODevice::ReadOnly));
            jahr::CsvDatei datei(puffer, block);
            QStringList stueckweise;
            jahr::CsvSatz s;
            while (datei.naechster(s)) {
                stueckweise << QString::number(s.zeile) + ": "
                        + (s.fehler.isEmpty() ? s.felder.join('|') : QStringLiteral("!"));
            }
            QCOMPARE(stueckweise, saetze);
        }
        // Written back field by field, every good record reads the same again.
        for (const jahr::CsvSatz &s : jahr::csvLesen(text)) {
            QStringList felder;
            for (const QString &f : s.felder)
                felder << jahr::csvFeld(f);
            if (s.fehler.isEmpty() && !felder.join(';').isEmpty())
                QCOMPARE(jahr::csvLesen(felder.join(';')).front().felder, s.felder);
        }
    }
};

ZEP_ENGINE_TEST_MAIN(TestJahreswerkzeuge)
#include "tst_jahreswerkzeuge.moc"
