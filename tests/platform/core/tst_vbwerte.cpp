// The runtime's variant conversions that the call information goes through.
#include "platform/core/RuntimeError.h"
#include "platform/core/VbWerte.h"

#include <QTest>

using platform::RuntimeError;
namespace vb = platform::vb;

class TestVbWerte : public QObject
{
    Q_OBJECT

private slots:
    void cint_data()
    {
        QTest::addColumn<QVariant>("wert");
        QTest::addColumn<int>("erwartet"); // below -1: the error number, negated
        QTest::newRow("empty") << QVariant() << 0;
        QTest::newRow("int") << QVariant(2003) << 2003;
        QTest::newRow("text") << QVariant("2003") << 2003;
        QTest::newRow("text blanks") << QVariant(" 98 ") << 98;
        QTest::newRow("half to even down") << QVariant(2.5) << 2;
        QTest::newRow("half to even up") << QVariant(3.5) << 4;
        QTest::newRow("decimal comma") << QVariant("7,6") << 8;
        QTest::newRow("true") << QVariant(true) << -1;
        QTest::newRow("max") << QVariant(32767) << 32767;
        QTest::newRow("overflow") << QVariant(32768) << -6;
        QTest::newRow("overflow negative") << QVariant(-32769) << -6;
        QTest::newRow("letters") << QVariant("abc") << -13;
        QTest::newRow("blank text") << QVariant("  ") << -13;
        QTest::newRow("null") << QVariant::fromValue(nullptr) << -94;
        QTest::newRow("list") << QVariant(QVariantList {1}) << -13;
    }
    void cint()
    {
        QFETCH(QVariant, wert);
        QFETCH(int, erwartet);
        if (erwartet < -1) {
            try {
                vb::CInt(wert);
                QFAIL("no error raised");
            } catch (const RuntimeError &e) {
                QCOMPARE(e.nummer(), -erwartet);
                QVERIFY(!e.beschreibung().isEmpty());
            }
        } else {
            QCOMPARE(int(vb::CInt(wert)), erwartet);
        }
    }

    void cstr_data()
    {
        QTest::addColumn<QVariant>("wert");
        QTest::addColumn<QString>("erwartet");
        QTest::newRow("empty") << QVariant() << QString();
        QTest::newRow("text") << QVariant("C:\\daten\\zel.mdb") << "C:\\daten\\zel.mdb";
        QTest::newRow("int") << QVariant(42) << "42";
        QTest::newRow("double") << QVariant(1.5) << "1,5";
        QTest::newRow("date") << QVariant(QDate(2003, 1, 31)) << "31.01.2003";
        QTest::newRow("null raises") << QVariant::fromValue(nullptr) << "Fehler";
    }
    void cstr()
    {
        QFETCH(QVariant, wert);
        QFETCH(QString, erwartet);
        if (erwartet == u"Fehler")
            QVERIFY_THROWS_EXCEPTION(RuntimeError, vb::CStr(wert));
        else
            QCOMPARE(vb::CStr(wert), erwartet);
    }

    void gleich_data()
    {
        QTest::addColumn<QVariant>("wert");
        QTest::addColumn<double>("zahl");
        QTest::addColumn<int>("erwartet"); // 1 true, 0 false, 13 error 13
        QTest::newRow("int equal") << QVariant(98) << 98.0 << 1;
        QTest::newRow("text equal") << QVariant("20") << 20.0 << 1;
        QTest::newRow("empty is zero") << QVariant() << 0.0 << 1;
        QTest::newRow("empty not 2") << QVariant() << 2.0 << 0;
        QTest::newRow("null never") << QVariant::fromValue(nullptr) << 0.0 << 0;
        QTest::newRow("other") << QVariant(21) << 20.0 << 0;
        QTest::newRow("letters raise 13") << QVariant("zwei") << 2.0 << 13;
    }
    void gleich()
    {
        QFETCH(QVariant, wert);
        QFETCH(double, zahl);
        QFETCH(int, erwartet);
        try {
            QCOMPARE(int(vb::gleich(wert, zahl)), erwartet);
        } catch (const RuntimeError &e) {
            QCOMPARE(e.nummer(), erwartet);
        }
    }
};

QTEST_GUILESS_MAIN(TestVbWerte)
#include "tst_vbwerte.moc"
