#include "common/Fehlernummer.h"
#include "platform/core/CreateObject.h"
#include "platform/core/RuntimeError.h"

#include <QtTest>

using namespace platform;
using testhilfe::fehlerVon;

class Fake : public QObject
{
    Q_OBJECT
    Q_PROPERTY(int zahl MEMBER m_zahl)
public:
    Q_INVOKABLE int addieren(int a, int b) { return a + b; }
    Q_INVOKABLE QVariant echo(const QVariant &v) { return v; }
    Q_INVOKABLE QString verbinden(const QString &a, int n) { return a.repeated(n); }
    Q_INVOKABLE void merken(const QString &s) { m_gemerkt = s; }
    Q_INVOKABLE qint16 kurz() { return -1; }
    Q_INVOKABLE void werfen() { throw RuntimeError(3021, "kein Satz"); }
    QString m_gemerkt;
    int m_zahl = 0;
};

class tst_CreateObject : public QObject
{
    Q_OBJECT
private slots:
    void kennungen()
    {
        QString text;
        QCOMPARE(fehlerVon([] { CreateObject("gibtEsNicht.Klasse"); }, &text), 429);
        QCOMPARE(text, "Objekterstellung durch ActiveX-Komponente nicht möglich");
        // Names are compared without regard to case.
        registriereKomponente("zelTest", [] { return std::make_unique<Fake>(); });
        QVERIFY(qobject_cast<Fake *>(CreateObject("ZELTEST").get()));
        QVERIFY(komponenteRegistriert("zeltest"));
        entferneKomponente("ZelTest");
        QCOMPARE(fehlerVon([] { CreateObject("zelTest"); }), 429);
        // A factory that makes nothing, or none at all.
        KomponentenRegistrierung r("leer", [] { return std::unique_ptr<QObject>(); });
        QCOMPARE(fehlerVon([] { CreateObject("leer"); }), 429);
        KomponentenRegistrierung r2("nichts", Komponentenfabrik());
        QCOMPARE(fehlerVon([] { CreateObject("nichts"); }), 429);
    }

    void registrierungAufZeitStelltWiederHer()
    {
        registriereKomponente("zelAbrPosStamm", [] {
            auto o = std::make_unique<QObject>();
            o->setObjectName("echt");
            return o;
        });
        {
            KomponentenRegistrierung fake("zelAbrPosStamm", [] {
                auto o = std::make_unique<QObject>();
                o->setObjectName("fake");
                return o;
            });
            QCOMPARE(CreateObject("zelAbrPosStamm")->objectName(), "fake");
            KomponentenRegistrierung neu("zelNeu", [] { return std::make_unique<QObject>(); });
            QVERIFY(komponenteRegistriert("zelNeu"));
        }
        QCOMPARE(CreateObject("zelAbrPosStamm")->objectName(), "echt");
        QVERIFY(!komponenteRegistriert("zelNeu"));
        entferneKomponente("zelAbrPosStamm");
    }

    void aufrufen_data()
    {
        QTest::addColumn<QByteArray>("methode");
        QTest::addColumn<QVariantList>("argumente");
        QTest::addColumn<QVariant>("erwartet");
        QTest::newRow("int") << QByteArray("addieren") << QVariantList {2, 3} << QVariant(5);
        QTest::newRow("text wird zur zahl")
            << QByteArray("addieren") << QVariantList {"12", 1} << QVariant(13);
        QTest::newRow("name ohne schreibweise")
            << QByteArray("ADDIEREN") << QVariantList {1, 1} << QVariant(2);
        QTest::newRow("variant unverändert")
            << QByteArray("echo") << QVariantList {QDate(2003, 1, 2)}
            << QVariant(QDate(2003, 1, 2));
        QTest::newRow("text") << QByteArray("verbinden") << QVariantList {"ab", 3}
                              << QVariant("ababab");
        QTest::newRow("leeres argument")
            << QByteArray("verbinden") << QVariantList {QVariant(), 2} << QVariant(QString());
        QTest::newRow("16 bit") << QByteArray("kurz") << QVariantList {}
                                << QVariant::fromValue(qint16(-1));
        QTest::newRow("void") << QByteArray("merken") << QVariantList {"x"} << QVariant();
    }

    void aufrufen()
    {
        QFETCH(QByteArray, methode);
        QFETCH(QVariantList, argumente);
        QFETCH(QVariant, erwartet);
        Fake f;
        const QVariant ergebnis = platform::aufrufen(&f, methode.constData(), argumente);
        QCOMPARE(ergebnis, erwartet);
        QCOMPARE(ergebnis.metaType().name(), erwartet.metaType().name());
        if (methode == "merken")
            QCOMPARE(f.m_gemerkt, argumente.value(0).toString());
    }

    void aufrufFehler_data()
    {
        QTest::addColumn<QByteArray>("methode");
        QTest::addColumn<QVariantList>("argumente");
        QTest::addColumn<bool>("nullObjekt");
        QTest::addColumn<int>("nummer");
        QTest::newRow("fehlt") << QByteArray("gibtsNicht") << QVariantList {} << false << 438;
        QTest::newRow("signal zählt nicht")
            << QByteArray("destroyed") << QVariantList {} << false << 438;
        QTest::newRow("zu viele argumente")
            << QByteArray("addieren") << QVariantList {1, 2, 3} << false << 450;
        QTest::newRow("text statt zahl")
            << QByteArray("addieren") << QVariantList {"abc", 1} << false << 13;
        QTest::newRow("kein objekt") << QByteArray("addieren") << QVariantList {1, 2} << true << 91;
        QTest::newRow("fehler der methode")
            << QByteArray("werfen") << QVariantList {} << false << 3021;
    }

    void aufrufFehler()
    {
        QFETCH(QByteArray, methode);
        QFETCH(QVariantList, argumente);
        QFETCH(bool, nullObjekt);
        QFETCH(int, nummer);
        Fake f;
        try {
            platform::aufrufen(nullObjekt ? nullptr : &f, methode.constData(), argumente);
            QFAIL("kein Fehler");
        } catch (const RuntimeError &e) {
            QCOMPARE(e.nummer(), nummer);
            if (nummer == 438)
                QCOMPARE(e.beschreibung(),
                         "Objekt unterstützt diese Eigenschaft oder Methode nicht");
            QVERIFY(!e.beschreibung().isEmpty());
        }
    }

    void eigenschaften()
    {
        Fake f;
        eigenschaftSetzen(&f, "zahl", "42");
        QCOMPARE(eigenschaft(&f, "zahl"), QVariant(42));
        QCOMPARE(fehlerVon([&] { eigenschaft(&f, "fehlt"); }), 438);
        QCOMPARE(fehlerVon([&] { eigenschaftSetzen(&f, "zahl", "x"); }), 13);
        QCOMPARE(f.m_zahl, 42);
    }
};

QTEST_GUILESS_MAIN(tst_CreateObject)
#include "tst_createobject.moc"
