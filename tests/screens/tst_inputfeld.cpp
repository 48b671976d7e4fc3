// The entry field refuses while the user types what its format does not allow.
#include "platform/ui/MsgBox.h"
#include "screens/InputFeld.h"

#include <QTest>

class tst_InputFeld : public QObject
{
    Q_OBJECT

private slots:
    void tippen_data();
    void tippen();
    void eigeneFehlermeldung();
};

void tst_InputFeld::tippen_data()
{
    QTest::addColumn<int>("dezimalen");
    QTest::addColumn<bool>("keinMinus");
    QTest::addColumn<bool>("keinTausender");
    QTest::addColumn<int>("maxwert");
    QTest::addColumn<QString>("getippt");
    QTest::addColumn<QString>("ergebnis");
    QTest::newRow("Text nimmt alles") << -1 << false << false << 0 << "Kassa 1 - Bank"
                                      << "Kassa 1 - Bank";
    QTest::newRow("Kontonummer 6 Stellen") << 0 << true << true << 6 << "1234567"
                                           << "123456";
    QTest::newRow("Kontonummer ohne Buchstaben") << 0 << true << true << 6 << "12a3"
                                                 << "123";
    QTest::newRow("Kontonummer ohne Minus") << 0 << true << true << 6 << "-12"
                                            << "12";
    QTest::newRow("Kontonummer ohne Komma") << 0 << true << true << 6 << "12,5"
                                            << "125";
    QTest::newRow("Betrag mit zwei Dezimalen") << 2 << false << true << 0 << "-12,345"
                                               << "-12,34";
    QTest::newRow("Betrag mit Tausenderpunkt") << 2 << false << false << 0 << "1.000,5"
                                               << "1.000,5";
    QTest::newRow("Betrag ohne Tausenderpunkt") << 2 << false << true << 0 << "1.000,5"
                                                << "1000,5";
}

void tst_InputFeld::tippen()
{
    QFETCH(int, dezimalen);
    QFETCH(bool, keinMinus);
    QFETCH(bool, keinTausender);
    QFETCH(int, maxwert);
    QFETCH(QString, getippt);
    QFETCH(QString, ergebnis);
    screens::InputFeld f;
    f.setAnzdezimalen(dezimalen);
    f.setKeinminus(keinMinus);
    f.setKeintausendpkt(keinTausender);
    f.setMaxwert(maxwert);
    QTest::keyClicks(&f, getippt);
    QCOMPARE(f.text(), ergebnis);
}

void tst_InputFeld::eigeneFehlermeldung()
{
    platform::MsgBoxProtokoll boxen;
    boxen.setAntwortFunktion([](const platform::MsgBoxEintrag &) { return platform::vbOK; });
    screens::InputFeld f;
    f.setAnzdezimalen(0);
    f.setKeinminus(true);
    f.setMaxwert(6);
    QTest::keyClicks(&f, QStringLiteral("1x"));
    QCOMPARE(boxen.anzahl(), 0);
    f.setFehlermeldungen(true);
    QTest::keyClicks(&f, QStringLiteral("x"));
    QCOMPARE(boxen.anzahl(), 1);
    QCOMPARE(boxen.letzter().titel, QStringLiteral("Eingabefehler"));
    QVERIFY(boxen.letzter().text.contains(QStringLiteral("ohne Minuszeichen")));
    QCOMPARE(f.text(), QStringLiteral("1"));
}

QTEST_MAIN(tst_InputFeld)
#include "tst_inputfeld.moc"
