#include "frame/Skalierung.h"

#include <QtTest>

using namespace frame;

class tst_Skalierung : public QObject
{
    Q_OBJECT
private slots:
    void faktor_data();
    void faktor();
    void bildschirmaufloesung();
    void ausEinstellungsdatei_data();
    void ausEinstellungsdatei();
};

void tst_Skalierung::faktor_data()
{
    QTest::addColumn<int>("breite");
    QTest::addColumn<QString>("skalieren");
    QTest::addColumn<QString>("skFaktor");
    QTest::addColumn<float>("erwartet");
    // 800 pixels are never scaled.
    QTest::newRow("800, faktor 10") << 800 << "1"
                                    << "10" << 0.0f;
    QTest::newRow("800, faktor 3") << 800 << "1"
                                   << "3" << 0.0f;
    // Skalieren "0" or empty switches scaling off.
    QTest::newRow("skalieren 0") << 1024 << "0"
                                 << "10" << 0.0f;
    QTest::newRow("skalieren leer") << 1280 << ""
                                    << "5" << 0.0f;
    QTest::newRow("skalieren anderer text") << 1280 << "ja"
                                            << "1" << 1.2f;
    // "10" is 2.0 on any width but 800.
    QTest::newRow("1024, 10") << 1024 << "1"
                              << "10" << 2.0f;
    QTest::newRow("1600, 10") << 1600 << "1"
                              << "10" << 2.0f;
    QTest::newRow("640, 10") << 640 << "1"
                             << "10" << 2.0f;
    // 1024: ×10÷3.
    QTest::newRow("1024, 3 -> 10") << 1024 << "1"
                                   << "3" << 2.0f;
    QTest::newRow("1024, 6 -> 20") << 1024 << "1"
                                   << "6" << 1.2f;
    QTest::newRow("1024, 0,3 -> 1") << 1024 << "1"
                                    << "0,3" << 1.1f;
    QTest::newRow("1024, 2 -> 6,67") << 1024 << "1"
                                     << "2" << 0.0f;
    // 1280: ×10÷5.
    QTest::newRow("1280, 1 -> 2") << 1280 << "1"
                                  << "1" << 1.2f;
    QTest::newRow("1280, 2,5 -> 5") << 1280 << "1"
                                    << "2,5" << 1.5f;
    QTest::newRow("1280, 3 -> 6") << 1280 << "1"
                                  << "3" << 1.6f;
    QTest::newRow("1280, 5 -> 10") << 1280 << "1"
                                   << "5" << 2.0f;
    QTest::newRow("1280, 12,5 -> 25") << 1280 << "1"
                                      << "12,5" << 1.25f;
    QTest::newRow("1280, 0 -> 0") << 1280 << "1"
                                  << "0" << 1.0f;
    QTest::newRow("1280, 1,1 -> 2,2") << 1280 << "1"
                                      << "1,1" << 0.0f;
    QTest::newRow("1280, -5 -> -10") << 1280 << "1"
                                     << "-5" << 0.0f;
    // Wider: ×10÷8.
    QTest::newRow("1600, 8 -> 10") << 1600 << "1"
                                   << "8" << 2.0f;
    QTest::newRow("1600, 4 -> 5") << 1600 << "1"
                                  << "4" << 1.5f;
    QTest::newRow("1920, 2,4 -> 3") << 1920 << "1"
                                    << "2,4" << 1.3f;
    QTest::newRow("1600, 2 -> 2,5") << 1600 << "1"
                                    << "2" << 0.0f;
    // Other widths keep SkFaktor as read.
    QTest::newRow("1152, 3") << 1152 << "1"
                             << "3" << 1.3f;
    QTest::newRow("1152, 2,5") << 1152 << "1"
                               << "2,5" << 0.0f;
    // Unreadable SkFaktor: unscaled.
    QTest::newRow("skfaktor leer") << 1024 << "1"
                                   << "" << 0.0f;
    QTest::newRow("skfaktor text") << 1280 << "1"
                                   << "groß" << 0.0f;
    QTest::newRow("skfaktor zwei kommas") << 1280 << "1"
                                          << "1,2,3" << 0.0f;
    // A point is digit grouping in the Austrian number format, not a decimal point.
    QTest::newRow("punkt ist tausender") << 1280 << "1"
                                         << "2.5" << 1.5f;
    // Currency keeps four decimals: 0,30004 rounds to 0,3000.
    QTest::newRow("vier dezimalen") << 1024 << "1"
                                    << "0,30004" << 1.1f;
    QTest::newRow("blanks") << 1280 << "1"
                            << " 1 " << 1.2f;
}

void tst_Skalierung::faktor()
{
    QFETCH(int, breite);
    QFETCH(QString, skalieren);
    QFETCH(QString, skFaktor);
    QFETCH(float, erwartet);
    const float f = SkalierFaktorBerechnen({breite, skalieren, skFaktor});
    if (erwartet == 0.0f)
        QCOMPARE(f, 0.0f);
    else
        QCOMPARE(f, erwartet);
}

void tst_Skalierung::bildschirmaufloesung()
{
    QCOMPARE(Bildschirmaufloesung(1280, 1024), QStringLiteral("1280 X 1024"));
    QCOMPARE(Bildschirmaufloesung(800, 600), QStringLiteral("800 X 600"));
}

void tst_Skalierung::ausEinstellungsdatei_data()
{
    QTest::addColumn<QByteArray>("inhalt");
    QTest::addColumn<float>("erwartet");
    QTest::newRow("keine datei") << QByteArray() << 0.0f;
    QTest::newRow("skalieren fehlt") << QByteArray("[Section2]\nSkFaktor=10\n") << 0.0f;
    QTest::newRow("faktor 10") << QByteArray("[Section1]\nSkalieren=1\n[Section2]\nSkFaktor=10\n")
                               << 2.0f;
    QTest::newRow("dezimalkomma") << QByteArray(
        "[section1]\r\nskalieren = 1\r\n[SECTION2]\r\nskfaktor = \"2,5\"\r\n")
                                  << 1.5f;
    QTest::newRow("aus") << QByteArray("[Section1]\nSkalieren=0\n[Section2]\nSkFaktor=10\n")
                         << 0.0f;
}

void tst_Skalierung::ausEinstellungsdatei()
{
    QFETCH(QByteArray, inhalt);
    QFETCH(float, erwartet);
    QTemporaryDir dir;
    if (!inhalt.isNull()) {
        QFile f(dir.filePath(QStringLiteral("ZEL-Settings.ini")));
        QVERIFY(f.open(QIODevice::WriteOnly));
        f.write(inhalt);
    }
    const QByteArray alt = qgetenv("USERPROFILE");
    qputenv("USERPROFILE", dir.path().toLocal8Bit());
    const float f = SkalierFaktorErmitteln(1280);
    qputenv("USERPROFILE", alt);
    if (alt.isEmpty())
        qunsetenv("USERPROFILE");
    if (erwartet == 0.0f)
        QCOMPARE(f, 0.0f);
    else
        QCOMPARE(f, erwartet);
}

QTEST_GUILESS_MAIN(tst_Skalierung)
#include "tst_skalierung.moc"
