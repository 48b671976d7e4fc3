// The host program's command line and the call information it builds.
#include "app/Befehlszeile.h"
#include "platform/core/Geheimnisse.h"

#include <QTest>

class TestBefehlszeile : public QObject
{
    Q_OBJECT

private slots:
    void fehler_data()
    {
        QTest::addColumn<QStringList>("argumente");
        QTest::addColumn<QString>("meldungEnthaelt");
        const auto zeile = [](const char *name, const QStringList &argumente, const char *meldung) {
            QTest::newRow(name) << argumente << QString::fromUtf8(meldung);
        };
        zeile("unknown", {"--foo"}, "Unbekannte Option");
        zeile("missing value", {"--datenbank"}, "braucht einen Wert");
        zeile("value is option", {"--jahr", "--nur-anzeige"}, "braucht einen Wert");
        zeile("year letters", {"--jahr", "zwei"}, "Ungültiges Jahr");
        zeile("year too small", {"--jahr", "99"}, "Ungültiges Jahr");
        zeile("year with sign", {"--jahr", "+2026"}, "Ungültiges Jahr");
        zeile("year five digits", {"--jahr", "02026"}, "Ungültiges Jahr");
        zeile("tool year with sign", {"pruefen", "+2026"}, "Ungültiges Buchungsjahr");
        zeile("processing year", {"--verarbeitungsjahr", "20x3"}, "Ungültiges Jahr");
        zeile("init without place", {"--init"}, "braucht einen Wert");
        zeile("tool without year", {"pruefen"}, "erwartet 1");
        zeile("year change one year", {"jahreswechsel", "2024"}, "erwartet 2");
        zeile("year change same year", {"jahreswechsel", "2024", "2024"}, "verschieden");
        zeile("export bad year", {"export", "24", "a.csv"}, "Ungültiges Buchungsjahr");
        zeile("import without file", {"import", "2024"}, "erwartet 2");
        zeile("preview on import", {"import", "2024", "a.csv", "--vorschau"},
              "gehört zu \"jahreswechsel\"");
        zeile("trial run on check", {"pruefen", "2024", "--probelauf"}, "gehört zu \"import\"");
        zeile("sql without place", {"sql"}, "erwartet den Ort der Datenbank");
        zeile("sql two statements", {"sql", "k.zdb", "SELECT 1", "SELECT 2"},
              "höchstens eine Anweisung");
        zeile("log without what", {"protokoll"}, "erwartet \"pruefen\"");
        zeile("log bad year", {"protokoll", "24"}, "Ungültiges Buchungsjahr");
        zeile("log option on another tool", {"pruefen", "2024", "--csv"},
              "gehört zu \"protokoll\"");
        zeile("log hash on the list", {"protokoll", "2024", "--bis", "ab"},
              "gehört zu \"protokoll pruefen\"");
        zeile("log filter on the check", {"protokoll", "pruefen", "--konto", "2000"},
              "gehören zu \"protokoll JAHR\"");
        zeile("log bad date", {"protokoll", "2024", "--seit", "31.02.2024"},
              "Ungültiges Datum bei --seit");
    }
    void fehler()
    {
        QFETCH(QStringList, argumente);
        QFETCH(QString, meldungEnthaelt);
        QString meldung;
        QVERIFY(!befehlszeileLesen(argumente, meldung));
        QVERIFY2(meldung.contains(meldungEnthaelt), qPrintable(meldung));
    }

    // What the process list shows afterwards: the password gone, the rest of the address kept.
    void kennwortAusArgumenten_data()
    {
        QTest::addColumn<QString>("argument");
        QTest::addColumn<QString>("danach");
        QTest::addColumn<QStringList>("kennwoerter");
        QTest::newRow("user part")
            << "postgresql://zep:Geheim99@db:5432/k"
            << "postgresql://zep:*****@db:5432/k" << QStringList {"Geheim99"};
        QTest::newRow("short password") << "postgres://zep:ab@db/k"
                                        << "postgres://zep:**@db/k" << QStringList {"ab"};
        QTest::newRow("parameter") << "postgresql://db/k?user=zep&password=Geheim99&sslmode=require"
                                   << "postgresql://db/k?user=zep&password=*****&sslmode=require"
                                   << QStringList {"Geheim99"};
        // A raw "@" or "%" in the password: libpq reads it otherwise, the user meant it whole.
        QTest::newRow("at sign in password")
            << "postgresql://zep:Ge@heim@db/k"
            << "postgresql://zep:*****@db/k" << QStringList {"Ge", "Ge@heim"};
        QTest::newRow("percent in password")
            << "postgresql://zep:Geheim%9@db/k"
            << "postgresql://zep:*****@db/k" << QStringList {"Geheim%9"};
        QTest::newRow("no password") << "postgresql://zep@db/k"
                                     << "postgresql://zep@db/k" << QStringList();
        QTest::newRow("file path") << "/daten/zep:x@y.zdb"
                                   << "/daten/zep:x@y.zdb" << QStringList();
    }
    void kennwortAusArgumenten()
    {
        QFETCH(QString, argument);
        QFETCH(QString, danach);
        QFETCH(QStringList, kennwoerter);
        QByteArray programm("kontenstamm"), arg = argument.toUtf8(), option("--datenbank");
        char *argv[] = {programm.data(), option.data(), arg.data(), nullptr};
        QCOMPARE(platform::kennwoerterInArgumentenLoeschen(3, argv), danach == argument ? 0 : 1);
        QCOMPARE(QString::fromUtf8(argv[2]), danach);
        QCOMPARE(QByteArray(argv[1]), option);
        QCOMPARE(platform::kennwoerterDerAdresse(argument), kennwoerter);
        // Remembered, the password is masked wherever it turns up, also percent-decoded.
        platform::adresseMerken(argument);
        for (const QString &k : kennwoerter) {
            const QString text = platform::geheimnisseMaskieren("Fehler bei \"" + k + "\": x");
            QVERIFY2(!text.contains(k), qPrintable(text));
        }
    }

    // libpq's messages, whatever address they repeat, never show the password.
    void kennwortInMeldungen_data()
    {
        QTest::addColumn<QString>("meldung");
        QTest::addColumn<QString>("maskiert");
        QTest::newRow("address") << "invalid URI: \"postgresql://zep:Xy7%qq@db/k\""
                                 << "invalid URI: \"postgresql://zep:*****@db/k\"";
        QTest::newRow("broken IPv6 host") << "bad host postgresql://zep:Xy7qq@[::1/k end"
                                          << "bad host postgresql://zep:*****@[::1/k end";
        QTest::newRow("keyword") << "invalid connection option: password=Xy7qq host=db"
                                 << "invalid connection option: password=***** host=db";
        QTest::newRow("quoted keyword") << "password = 'Xy 7qq' dbname=k"
                                        << "password = ***** dbname=k";
        QTest::newRow("nothing secret") << "could not translate host name \"db\""
                                        << "could not translate host name \"db\"";
    }
    void kennwortInMeldungen()
    {
        QFETCH(QString, meldung);
        QFETCH(QString, maskiert);
        QCOMPARE(platform::geheimnisseMaskieren(meldung), maskiert);
    }

    // Good command lines: what they ask for, and the call information the screen is given
    // (database, connect prefix, help file, call kind, booking and processing year).
    void gueltig_data()
    {
        QTest::addColumn<QStringList>("argumente");
        QTest::addColumn<QString>("aufruf");
        QTest::addColumn<QString>("info");
        QTest::newRow("Bildschirm")
            << QStringList {"--datenbank",   "/tmp/x.zdb",   "--jahr",     "2025",
                            "--nur-anzeige", "--hilfedatei", "/tmp/h.html"}
            << "0 /tmp/x.zdb 2025 - - - -"
            << "/tmp/x.zdb|Access 2000;|/tmp/h.html|20|2025|2025";
        QTest::newRow("Kreditoren nur Anzeige")
            << QStringList {"--kreditoren", "--nur-anzeige", "--verarbeitungsjahr", "2026"}
            << "1  - - - - -"
            << "|Access 2000;||200|2025|2026";
        QTest::newRow("Hilfe") << QStringList {"--jahr", "2025", "--help"} << "4  2025 - - - -"
                               << "";
        QTest::newRow("Jahreswechsel Vorschau")
            << QStringList {"--datenbank", "k.zdb", "jahreswechsel", "2024", "2025", "--vorschau"}
            << "5 k.zdb 2024 2025 - ohne -"
            << "";
        QTest::newRow("Import") << QStringList {"import", "2024", "konten.csv"}
                                << "8  2024 - konten.csv - -"
                                << "";
        QTest::newRow("sql") << QStringList {"sql", "k.zdb", "SELECT * FROM K WHERE Nr = '0001'"}
                             << "9 k.zdb - - - - SELECT * FROM K WHERE Nr = '0001'"
                             << "";
    }
    void gueltig()
    {
        QFETCH(QStringList, argumente);
        QFETCH(QString, aufruf);
        QFETCH(QString, info);
        QString meldung;
        const auto a = befehlszeileLesen(argumente, meldung);
        QVERIFY2(a, qPrintable(meldung));
        const auto zahl = [](std::optional<int> z) {
            return z ? QString::number(*z) : QStringLiteral("-");
        };
        const auto text = [](const QString &t) {
            return t.isEmpty() ? QStringLiteral("-") : t;
        };
        QCOMPARE(QStringList({QString::number(int(a->art)), a->datenbank, zahl(a->jahr),
                              zahl(a->nachJahr), text(a->datei),
                              a->ohneSchreiben ? QStringLiteral("ohne") : QStringLiteral("-"),
                              text(a->anweisung)})
                     .join(u' '),
                 aufruf);
        if (a->art == Aufruf::Art::Hilfe)
            QVERIFY(befehlszeilenHilfe().contains(QStringLiteral("--kreditoren")));
        if (a->art != Aufruf::Art::Kontenstamm && a->art != Aufruf::Art::Kreditoren)
            return;
        const QVariantList i = aufrufInfo(*a, a->jahr.value_or(2025));
        QCOMPARE(i.size(), 101);
        QCOMPARE(QStringList({i.at(0).toString(), i.at(4).toString(), i.at(7).toString(),
                              i.at(9).toString(), i.at(10).toString(), i.at(11).toString()})
                     .join(u'|'),
                 info);
    }
};

QTEST_GUILESS_MAIN(TestBefehlszeile)
#include "tst_befehlszeile.moc"
