// placeholder until the message-box recorder exists
#include <QTest>
class TestZelKontenStamm : public QObject { Q_OBJECT };
QTEST_MAIN(TestZelKontenStamm)
#include "tst_zelkontenstamm.moc"
