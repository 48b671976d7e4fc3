#include "frame/Skalierung.h"

#include <QtTest>

using namespace frame;

class tst_Skalierung : public QObject
{
    Q_OBJECT
private slots:
    void faktor_data();
    void faktor();
    void ausEinstellungsdatei_data();
    void ausEinstellungsdatei();
};

void tst_Skalierung::faktor_data()
{
    QTest::addColumn<int>("breite");
    QTest::addColumn<QString>("skalieren");
    QTest::addColumn<QString>("skFaktor");
    QTest::addColumn<float>("erwartet");
    const auto zeile = [](const char *name, int breite, const char *skalieren,
                          const char *skFaktor, float erwartet) {
        QTest::newRow(name) << breite << QString::fromUtf8(skalieren)
                            << QString::fromUtf8(skFaktor) << erwartet;
    };
    // 800 pixels are never scaled; Skalieren "0" or empty switches scaling off.
    zeile("800, faktor 10", 800, "1", "10", 0.0f);
    zeile("skalieren 0", 1024, "0", "10", 0.0f);
    zeile("skalieren leer", 1280, "", "5", 0.0f);
    zeile("skalieren anderer text", 1280, "ja", "1", 1.2f);
    // "10" is 2.0 on any width but 800.
    zeile("1600, 10", 1600, "1", "10", 2.0f);
    zeile("640, 10", 640, "1", "10", 2.0f);
    // 1024: ×10÷3; 1280: ×10÷5; wider: ×10÷8; a result of N is 1,N, 10 is 2,0.
    zeile("1024, 3 -> 10", 1024, "1", "3", 2.0f);
    zeile("1024, 6 -> 20", 1024, "1", "6", 1.2f);
    zeile("1024, 0,3 -> 1", 1024, "1", "0,3", 1.1f);
    zeile("1024, 2 -> 6,67", 1024, "1", "2", 0.0f);
    zeile("1280, 1 -> 2", 1280, "1", "1", 1.2f);
    zeile("1280, 2,5 -> 5", 1280, "1", "2,5", 1.5f);
    zeile("1280, 12,5 -> 25", 1280, "1", "12,5", 1.25f);
    zeile("1280, 0 -> 0", 1280, "1", "0", 1.0f);
    zeile("1280, 1,1 -> 2,2", 1280, "1", "1,1", 0.0f);
    zeile("1280, -5 -> -10", 1280, "1", "-5", 0.0f);
    zeile("1600, 8 -> 10", 1600, "1", "8", 2.0f);
    zeile("1920, 2,4 -> 3", 1920, "1", "2,4", 1.3f);
    zeile("1600, 2 -> 2,5", 1600, "1", "2", 0.0f);
    // Other widths keep SkFaktor as read.
    zeile("1152, 3", 1152, "1", "3", 1.3f);
    zeile("1152, 2,5", 1152, "1", "2,5", 0.0f);
    // Unreadable SkFaktor: unscaled. A point is digit grouping in the Austrian number format;
    // currency keeps four decimals (0,30004 rounds to 0,3000).
    zeile("skfaktor leer", 1024, "1", "", 0.0f);
    zeile("skfaktor text", 1280, "1", "groß", 0.0f);
    zeile("skfaktor zwei kommas", 1280, "1", "1,2,3", 0.0f);
    zeile("punkt ist tausender", 1280, "1", "2.5", 1.5f);
    zeile("vier dezimalen", 1024, "1", "0,30004", 1.1f);
    zeile("blanks", 1280, "1", " 1 ", 1.2f);
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
