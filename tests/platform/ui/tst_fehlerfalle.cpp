#include "platform/ui/Fehlerfalle.h"
#include "platform/ui/MsgBox.h"
#include "platform/ui/Sanduhr.h"

#include <QPushButton>
#include <QtTest>
#include <new>
#include <stdexcept>

using namespace platform;

namespace {

struct Meldung
{
    QString ort;
    int nummer;
    QString text;
};

// Collects the reports while it lives and restores the default reporter afterwards.
struct Melder
{
    QList<Meldung> meldungen;
    Melder()
    {
        setFehlerReporter([this](const QString &ort, const RuntimeError &e) {
            meldungen.append({ort, e.nummer(), e.beschreibung()});
        });
    }
    ~Melder() { setFehlerReporter({}); }
};

} // namespace

class tst_Fehlerfalle : public QObject
{
    Q_OBJECT
private slots:
    void falleMeldetUndKehrtZurueck_data()
    {
        QTest::addColumn<int>("art");
        QTest::addColumn<int>("nummer");
        QTest::addColumn<QString>("text");
        QTest::newRow("laufzeitfehler") << 0 << 3022 << "doppelt";
        QTest::newRow("standard-ausnahme") << 1 << 5 << "kaputt";
        QTest::newRow("speicher") << 2 << 7 << "Nicht genügend Speicher";
        QTest::newRow("kein fehler") << 3 << 0 << "";
    }

    void falleMeldetUndKehrtZurueck()
    {
        QFETCH(int, art);
        QFETCH(int, nummer);
        QFETCH(QString, text);
        Melder m;
        bool danach = false;
        const bool ok = Falle("zelKontenStamm, in cmdKontoLöschen_Click", [&] {
            if (art == 0)
                throw RuntimeError(3022, "doppelt");
            if (art == 1)
                throw std::runtime_error("kaputt");
            if (art == 2)
                throw std::bad_alloc();
            danach = true;
        });
        QCOMPARE(ok, nummer == 0);
        QCOMPARE(danach, nummer == 0);
        QCOMPARE(m.meldungen.size(), nummer == 0 ? 0 : 1);
        if (nummer == 0)
            return;
        QCOMPARE(m.meldungen[0].ort, "zelKontenStamm, in cmdKontoLöschen_Click");
        QCOMPARE(m.meldungen[0].nummer, nummer);
        QCOMPARE(m.meldungen[0].text, text);
    }

    void standardBerichtIstMeldung()
    {
        MsgBoxProtokoll p;
        p.antworte(vbOK);
        Falle("zelKontenStamm, in Form_Load",
              [] { RuntimeError::ausloesen(fehlernummer::Typenkonflikt); });
        QCOMPARE(p.anzahl(), 1);
        QCOMPARE(p.letzter().text,
                 QStringLiteral("Laufzeitfehler '13':\r\n\r\nTypen unverträglich"
                                "\r\n\r\nzelKontenStamm, in Form_Load"));
        QCOMPARE(p.letzter().titel, "zepKontenStamm");
        QVERIFY(p.warnungen().isEmpty());
    }

    void fehlerDesBerichtsBleibtInDerFalle()
    {
        setFehlerReporter([](const QString &, const RuntimeError &) {
            RuntimeError::ausloesen(fehlernummer::ObjektNichtErstellbar);
        });
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression("gescheitert"));
        bool zurueck = false;
        try {
            Falle("ort", [] { RuntimeError::ausloesen(3021); });
            zurueck = true;
        } catch (...) { }
        setFehlerReporter({});
        QVERIFY(zurueck);
    }

    void weiterBeiFehler()
    {
        Melder m;
        QStringList gelaufen;
        WeiterBeiFehler schritt("zelKontenStamm, in mdlInitKK, KKInit");
        schritt([&] { gelaufen << "1"; });
        schritt([&] {
            RuntimeError::ausloesen(fehlernummer::FeldNichtGefunden);
            gelaufen << "2";
        });
        schritt([&] { gelaufen << "3"; });
        schritt([&] { throw std::runtime_error("vier"); });
        QCOMPARE(gelaufen, QStringList({"1", "3"}));
        QCOMPARE(schritt.fehlerAnzahl(), 2);
        QCOMPARE(m.meldungen.size(), 2);
        QCOMPARE(m.meldungen[0].nummer, 3265);
        QCOMPARE(m.meldungen[0].ort, "zelKontenStamm, in mdlInitKK, KKInit");
        QCOMPARE(schritt.letzterFehler()->nummer(), 5);
    }

    void weiterBeiFehlerStill()
    {
        Melder m;
        MsgBoxProtokoll p;
        int breite = 0;
        WeiterBeiFehler still("FormSkalieren", WeiterBeiFehler::Art::Still);
        QVERIFY(!still([] { RuntimeError::ausloesen(438); }));
        QVERIFY(still([&] { breite = 120; }));
        QCOMPARE(breite, 120);
        QCOMPARE(still.fehlerAnzahl(), 1);
        QCOMPARE(still.letzterFehler()->nummer(), 438);
        QVERIFY(m.meldungen.isEmpty());
        QCOMPARE(p.anzahl(), 0);
    }

    void obersteEbeneZeigtLaufzeitfehler()
    {
        QVERIFY(qobject_cast<Anwendung *>(qApp));
        MsgBoxProtokoll p;
        p.antworte(vbOK);
        bool weiter = false;
        QTimer::singleShot(0, [] { RuntimeError::ausloesen(fehlernummer::Typenkonflikt); });
        QTimer::singleShot(20, [&] { weiter = true; });
        QTRY_VERIFY_WITH_TIMEOUT(weiter, 5000);
        QCOMPARE(p.anzahl(), 1);
        QCOMPARE(p.letzter().text, "Laufzeitfehler '13':\r\n\r\nTypen unverträglich");
        QCOMPARE(p.letzter().titel, "zepKontenStamm");
        QVERIFY(p.warnungen().isEmpty());
    }

    void obersteEbeneBeiKlick()
    {
        MsgBoxProtokoll p;
        p.antworte({vbOK, vbOK});
        QPushButton knopf("Löschen");
        int klicks = 0;
        QObject::connect(&knopf, &QPushButton::clicked, [&] {
            ++klicks;
            throw RuntimeError(3197, RuntimeError::standardText(3197));
        });
        knopf.show();
        QVERIFY(QTest::qWaitForWindowExposed(&knopf));
        QTest::mouseClick(&knopf, Qt::LeftButton);
        QTest::mouseClick(&knopf, Qt::LeftButton); // still usable after the first error
        QCOMPARE(klicks, 2);
        QCOMPARE(p.anzahl(), 2);
        QVERIFY(p.letzter().text.startsWith("Laufzeitfehler '3197':\r\n\r\n"));
    }

    void sanduhr()
    {
        QVERIFY(!QGuiApplication::overrideCursor());
        {
            Sanduhr s;
            QCOMPARE(QGuiApplication::overrideCursor()->shape(), Qt::WaitCursor);
            {
                Sanduhr innen;
            }
            QVERIFY(QGuiApplication::overrideCursor());
            s.beenden();
            QVERIFY(!QGuiApplication::overrideCursor());
        }
        QVERIFY(!QGuiApplication::overrideCursor());

        Melder m;
        Falle("ort", [] {
            Sanduhr s;
            RuntimeError::ausloesen(3021);
        });
        QVERIFY(!QGuiApplication::overrideCursor()); // restored while the error unwinds
        QCOMPARE(m.meldungen.size(), 1);
    }
};

int main(int argc, char **argv)
{
    Anwendung app(argc, argv);
    tst_Fehlerfalle t;
    QTEST_SET_MAIN_SOURCE_PATH
    return QTest::qExec(&t, argc, argv);
}

#include "tst_fehlerfalle.moc"
