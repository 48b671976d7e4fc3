#include "platform/core/IniLesen.h"

#include <QtTest>

using platform::IniLesen;

class tst_IniLesen : public QObject
{
    Q_OBJECT
private slots:
    void lesen_data();
    void lesen();
    void fehlendeDatei();
    void latin1Datei();
    void einstellungsDatei();
};

static const char *const Inhalt = "; Einstellungen\r\n"
                                  "[Section1]\r\n"
                                  "Skalieren=1\r\n"
                                  "Lang=0123456789012345678901234567890123456789\r\n"
                                  "Genau31=0123456789012345678901234567890\r\n"
                                  "  Blanks   =   mit Blanks   \r\n"
                                  "Leer=\r\n"
                                  "OhneGleich\r\n"
                                  "Doppelt=erster\r\n"
                                  "Doppelt=zweiter\r\n"
                                  "Zitat=\"in Anführungszeichen\"\r\n"
                                  "Einfach='einfach'\r\n"
                                  "Halb=\"nur vorne\r\n"
                                  "Innen=a \"b\" c\r\n"
                                  "Kommentar=wert ; bleibt\r\n"
                                  "Gleich=a=b\r\n"
                                  "[ section2 ]\n"
                                  "SkFaktor=2,5\n"
                                  "Liste=1,2,3\n"
                                  "[Section3]\n"
                                  "; Skalieren=kommentiert\n"
                                  "[Section1]\n"
                                  "Zweite=nur in der zweiten Sektion\n";

void tst_IniLesen::lesen_data()
{
    QTest::addColumn<QString>("sektion");
    QTest::addColumn<QString>("schluessel");
    QTest::addColumn<QString>("erwartet");
    QTest::newRow("einfach") << "Section1"
                             << "Skalieren"
                             << "1";
    QTest::newRow("sektion ohne gross/klein") << "SECTION1"
                                              << "skalieren"
                                              << "1";
    QTest::newRow("blanks in der sektion") << "Section2"
                                           << "SKFAKTOR"
                                           << "2,5";
    QTest::newRow("dezimalkomma bleibt text") << "Section2"
                                              << "SkFaktor"
                                              << "2,5";
    QTest::newRow("keine liste") << "Section2"
                                 << "Liste"
                                 << "1,2,3";
    QTest::newRow("bei 31 abgeschnitten") << "Section1"
                                          << "Lang"
                                          << "0123456789012345678901234567890";
    QTest::newRow("genau 31") << "Section1"
                              << "Genau31"
                              << "0123456789012345678901234567890";
    QTest::newRow("blanks getrimmt") << "Section1"
                                     << "Blanks"
                                     << "mit Blanks";
    QTest::newRow("argumente getrimmt") << " Section1 "
                                        << " Blanks "
                                        << "mit Blanks";
    QTest::newRow("leerer wert") << "Section1"
                                 << "Leer"
                                 << "";
    QTest::newRow("ohne gleichheitszeichen") << "Section1"
                                             << "OhneGleich"
                                             << "";
    QTest::newRow("erster schlüssel zählt") << "Section1"
                                            << "Doppelt"
                                            << "erster";
    QTest::newRow("anführungszeichen") << "Section1"
                                       << "Zitat"
                                       << "in Anführungszeichen";
    QTest::newRow("einfache anführungszeichen") << "Section1"
                                                << "Einfach"
                                                << "einfach";
    QTest::newRow("halbes zitat bleibt") << "Section1"
                                         << "Halb"
                                         << "\"nur vorne";
    QTest::newRow("zitat innen bleibt") << "Section1"
                                        << "Innen"
                                        << "a \"b\" c";
    QTest::newRow("semikolon im wert") << "Section1"
                                       << "Kommentar"
                                       << "wert ; bleibt";
    QTest::newRow("gleichheitszeichen im wert") << "Section1"
                                                << "Gleich"
                                                << "a=b";
    QTest::newRow("fehlender schlüssel") << "Section1"
                                         << "Fehlt"
                                         << "";
    QTest::newRow("schlüssel anderer sektion") << "Section2"
                                               << "Skalieren"
                                               << "";
    QTest::newRow("auskommentiert") << "Section3"
                                    << "Skalieren"
                                    << "";
    QTest::newRow("fehlende sektion") << "Section9"
                                      << "Skalieren"
                                      << "";
    QTest::newRow("nur erste sektion gleichen namens") << "Section1"
                                                       << "Zweite"
                                                       << "";
    QTest::newRow("leerer schlüssel") << "Section1"
                                      << ""
                                      << "";
    QTest::newRow("leere sektion") << ""
                                   << "Skalieren"
                                   << "";
}

void tst_IniLesen::lesen()
{
    QFETCH(QString, sektion);
    QFETCH(QString, schluessel);
    QFETCH(QString, erwartet);
    QTemporaryDir dir;
    const QString datei = dir.filePath(QStringLiteral("ZEL-Settings.ini"));
    QFile f(datei);
    QVERIFY(f.open(QIODevice::WriteOnly));
    f.write(Inhalt);
    f.close();
    const QString wert = IniLesen(datei, sektion, schluessel);
    QCOMPARE(wert, erwartet);
    QVERIFY(wert.size() <= 31);
}

void tst_IniLesen::fehlendeDatei()
{
    QTemporaryDir dir;
    QCOMPARE(IniLesen(dir.filePath(QStringLiteral("gibtsnicht.ini")), "Section1", "Skalieren"),
             QString());
    QCOMPARE(IniLesen(dir.path(), "Section1", "Skalieren"), QString()); // a directory
}

void tst_IniLesen::latin1Datei()
{
    QTemporaryDir dir;
    const QString datei = dir.filePath(QStringLiteral("alt.ini"));
    QFile f(datei);
    QVERIFY(f.open(QIODevice::WriteOnly));
    f.write(QByteArray("[Section1]\r\nName=Gr\xf6\xdf" "e\r\n"));
    f.close();
    QCOMPARE(IniLesen(datei, "section1", "name"), QStringLiteral("Größe"));
}

void tst_IniLesen::einstellungsDatei()
{
    const QByteArray altProfil = qgetenv("USERPROFILE");
    const bool hatteProfil = qEnvironmentVariableIsSet("USERPROFILE");
    qputenv("USERPROFILE", "/profil/benutzer");
    QCOMPARE(platform::EinstellungsDatei(), QStringLiteral("/profil/benutzer/ZEL-Settings.ini"));
    qunsetenv("USERPROFILE");
    QCOMPARE(platform::EinstellungsDatei(), QDir::homePath() + "/ZEL-Settings.ini");
    if (hatteProfil)
        qputenv("USERPROFILE", altProfil);
}

QTEST_GUILESS_MAIN(tst_IniLesen)
#include "tst_inilesen.moc"
