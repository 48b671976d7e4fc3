#include "platform/core/IniLesen.h"

#include <QtTest>

using platform::IniLesen;

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

class tst_IniLesen : public QObject
{
    Q_OBJECT
private slots:
    void lesen_data()
    {
        QTest::addColumn<QString>("sektion");
        QTest::addColumn<QString>("schluessel");
        QTest::addColumn<QString>("erwartet");
        const struct
        {
            const char *name, *sektion, *schluessel, *erwartet;
        } faelle[] = {
            {"einfach", "Section1", "Skalieren", "1"},
            {"sektion ohne gross/klein", "SECTION1", "skalieren", "1"},
            {"blanks in der sektion", "Section2", "SKFAKTOR", "2,5"},
            {"keine liste", "Section2", "Liste", "1,2,3"},
            {"bei 31 abgeschnitten", "Section1", "Lang", "0123456789012345678901234567890"},
            {"genau 31", "Section1", "Genau31", "0123456789012345678901234567890"},
            {"blanks getrimmt", "Section1", "Blanks", "mit Blanks"},
            {"argumente getrimmt", " Section1 ", " Blanks ", "mit Blanks"},
            {"leerer wert", "Section1", "Leer", ""},
            {"ohne gleichheitszeichen", "Section1", "OhneGleich", ""},
            {"erster schlüssel zählt", "Section1", "Doppelt", "erster"},
            {"anführungszeichen", "Section1", "Zitat", "in Anführungszeichen"},
            {"einfache anführungszeichen", "Section1", "Einfach", "einfach"},
            {"halbes zitat bleibt", "Section1", "Halb", "\"nur vorne"},
            {"zitat innen bleibt", "Section1", "Innen", "a \"b\" c"},
            {"semikolon im wert", "Section1", "Kommentar", "wert ; bleibt"},
            {"gleichheitszeichen im wert", "Section1", "Gleich", "a=b"},
            {"fehlender schlüssel", "Section1", "Fehlt", ""},
            {"schlüssel anderer sektion", "Section2", "Skalieren", ""},
            {"auskommentiert", "Section3", "Skalieren", ""},
            {"fehlende sektion", "Section9", "Skalieren", ""},
            {"nur erste sektion gleichen namens", "Section1", "Zweite", ""},
            {"leerer schlüssel", "Section1", "", ""},
            {"leere sektion", "", "Skalieren", ""},
        };
        for (const auto &f : faelle)
            QTest::newRow(f.name) << QString::fromUtf8(f.sektion) << QString::fromUtf8(f.schluessel)
                                  << QString::fromUtf8(f.erwartet);
    }

    void lesen()
    {
        QFETCH(QString, sektion);
        QFETCH(QString, schluessel);
        QFETCH(QString, erwartet);
        QTemporaryDir dir;
        const QString datei = dir.filePath("ZEL-Settings.ini");
        QFile f(datei);
        QVERIFY(f.open(QIODevice::WriteOnly));
        f.write(Inhalt);
        f.close();
        const QString wert = IniLesen(datei, sektion, schluessel);
        QCOMPARE(wert, erwartet);
        QVERIFY(wert.size() <= 31);
    }

    // No file, a directory, and a file of the old 8-bit code page.
    void dateien()
    {
        QTemporaryDir dir;
        QCOMPARE(IniLesen(dir.filePath("gibtsnicht.ini"), "Section1", "Skalieren"), QString());
        QCOMPARE(IniLesen(dir.path(), "Section1", "Skalieren"), QString());
        QFile f(dir.filePath("alt.ini"));
        QVERIFY(f.open(QIODevice::WriteOnly));
        f.write("[Section1]\r\nName=Gr\xf6\xdf"
                "e\r\n");
        f.close();
        QCOMPARE(IniLesen(f.fileName(), "section1", "name"), "Größe");
    }

    void einstellungsDatei()
    {
        const QByteArray altProfil = qgetenv("USERPROFILE");
        const bool hatteProfil = qEnvironmentVariableIsSet("USERPROFILE");
        qputenv("USERPROFILE", "/profil/benutzer");
        QCOMPARE(platform::EinstellungsDatei(), "/profil/benutzer/ZEL-Settings.ini");
        qunsetenv("USERPROFILE");
        QCOMPARE(platform::EinstellungsDatei(), QDir::homePath() + "/ZEL-Settings.ini");
        if (hatteProfil)
            qputenv("USERPROFILE", altProfil);
    }
};

QTEST_GUILESS_MAIN(tst_IniLesen)
#include "tst_inilesen.moc"
