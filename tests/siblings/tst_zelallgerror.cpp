#include "platform/core/CreateObject.h"
#include "platform/core/RuntimeError.h"
#include "platform/ui/Hilfeaufruf.h"
#include "siblings/zelAllgError.h"

#include <QLabel>
#include <QPushButton>
#include <QtTest>

using namespace platform;

namespace {

// Runs `pruefen` on the error dialog once it is open; closes any dialog after 5 s so that a
// missing or wrong dialog fails instead of hanging.
struct DialogPruefer
{
    std::function<void(siblings::AllgErrorDialog *)> pruefen;
    bool gesehen = false;
    QTimer timer;
    QElapsedTimer uhr;

    explicit DialogPruefer(std::function<void(siblings::AllgErrorDialog *)> f)
        : pruefen(std::move(f))
    {
        uhr.start();
        timer.setInterval(10);
        QObject::connect(&timer, &QTimer::timeout, [this] {
            QWidget *w = QApplication::activeModalWidget();
            if (auto *d = qobject_cast<siblings::AllgErrorDialog *>(w)) {
                timer.stop();
                gesehen = true;
                pruefen(d);
            } else if (uhr.elapsed() > 5000) {
                timer.stop();
                if (w)
                    w->close();
            }
        });
        timer.start();
    }
};

QString label(QWidget *d, const char *name)
{
    auto *l = d->findChild<QLabel *>(QLatin1String(name));
    return l ? l->text() : QStringLiteral("<fehlt>");
}

QVariantList neunWerte(const QString &hilfedatei)
{
    return {3022,
            QStringLiteral("Die Änderungen wurden nicht durchgeführt"),
            hilfedatei,
            QStringLiteral("4711"),
            QStringLiteral("frmKontenStamm"),
            QStringLiteral("zelKontenStamm, in KKData_Validate"),
            QStringLiteral("Zusatz eins"),
            QString(),
            false};
}

} // namespace

class tst_zelAllgError : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase() { siblingsRegistrieren(); }
    void meldenZeigtAlleWerte();
    void protokollInSchritten();
    void hilfeNurMitHilfedatei_data();
    void hilfeNurMitHilfedatei();
    void falscheArgumente();
};

void tst_zelAllgError::meldenZeigtAlleWerte()
{
    auto o = CreateObject(QStringLiteral("zelAllgError"));
    QStringList gesehen;
    bool waehlbar = false;
    DialogPruefer p([&](siblings::AllgErrorDialog *d) {
        gesehen << label(d, "lblFehlerNr") << label(d, "lblBeschreibung") << label(d, "lblProgramm")
                << label(d, "lblFehlerOrt") << label(d, "lblZusatz1")
                << label(d, "lblHilfekontext");
        waehlbar = d->findChild<QLabel *>(QStringLiteral("lblBeschreibung"))
                       ->textInteractionFlags()
                       .testFlag(Qt::TextSelectableByMouse);
        QVERIFY(!d->findChild<QLabel *>(QStringLiteral("lblZusatz2"))); // empty: not shown
        QVERIFY(d->berichtText().contains(QStringLiteral("KKData_Validate")));
        d->findChild<QPushButton *>(QStringLiteral("cmdOK"))->click();
    });
    const QVariant antwort
        = aufrufen(o.get(), "Melden", neunWerte(QStringLiteral("/hilfe/konten.html")));
    QVERIFY(p.gesehen);
    QCOMPARE(antwort, QVariant::fromValue(qint16(1)));
    QCOMPARE(gesehen,
             QStringList({"3022", "Die Änderungen wurden nicht durchgeführt", "frmKontenStamm",
                          "zelKontenStamm, in KKData_Validate", "Zusatz eins", "4711"}));
    QVERIFY(waehlbar);
}

void tst_zelAllgError::protokollInSchritten()
{
    auto o = CreateObject(QStringLiteral("ZELALLGERROR"));
    aufrufen(o.get(), "Uebergeben", neunWerte(QString()));
    auto *f = qobject_cast<siblings::zelAllgError *>(o.get());
    QVERIFY(f);
    QCOMPARE(f->fehler().nummer, 3022);
    QCOMPARE(f->fehler().fehlerOrt, QStringLiteral("zelKontenStamm, in KKData_Validate"));
    QCOMPARE(aufrufen(o.get(), "Ergebnis"), QVariant::fromValue(qint16(0)));
    DialogPruefer p([](siblings::AllgErrorDialog *d) { d->reject(); }); // closed with Escape
    aufrufen(o.get(), "Anzeigen");
    QVERIFY(p.gesehen);
    QCOMPARE(aufrufen(o.get(), "Ergebnis"), QVariant::fromValue(qint16(1)));
}

void tst_zelAllgError::hilfeNurMitHilfedatei_data()
{
    QTest::addColumn<QString>("hilfedatei");
    QTest::addColumn<bool>("hilfeknopf");
    QTest::newRow("mit") << "/hilfe/konten.html" << true;
    QTest::newRow("ohne") << "" << false;
}

void tst_zelAllgError::hilfeNurMitHilfedatei()
{
    QFETCH(QString, hilfedatei);
    QFETCH(bool, hilfeknopf);
    siblings::zelAllgError e;
    // The help button hands file and context to the help the component was given.
    QStringList geoeffnet;
    platform::setHilfeOeffner([&geoeffnet](const QString &datei, const QString &kontext) {
        geoeffnet << datei + u'#' + kontext;
        return true;
    });
    bool knopf = !hilfeknopf;
    DialogPruefer p([&](siblings::AllgErrorDialog *d) {
        auto *h = d->findChild<QPushButton *>(QStringLiteral("cmdHilfe"));
        knopf = h && h->text() == QStringLiteral("Hilfe");
        if (h)
            h->click();
        d->accept();
    });
    const auto w = neunWerte(hilfedatei);
    e.Melden(w[0].toInt(), w[1].toString(), w[2].toString(), w[3].toString(), w[4].toString(),
             w[5].toString(), w[6].toString(), w[7].toString(), false);
    platform::setHilfeOeffner({});
    QVERIFY(p.gesehen);
    QCOMPARE(knopf, hilfeknopf);
    QCOMPARE(geoeffnet, hilfeknopf ? QStringList {hilfedatei + "#4711"} : QStringList {});
}

void tst_zelAllgError::falscheArgumente()
{
    auto o = CreateObject(QStringLiteral("zelAllgError"));
    QVariantList acht = neunWerte(QString());
    acht.removeLast();
    try {
        aufrufen(o.get(), "Melden", acht);
        QFAIL("kein Fehler");
    } catch (const RuntimeError &e) {
        QCOMPARE(e.nummer(), 450);
    }
    QVariantList textStattNummer = neunWerte(QString());
    textStattNummer[0] = QStringLiteral("keine Zahl");
    try {
        aufrufen(o.get(), "Melden", textStattNummer);
        QFAIL("kein Fehler");
    } catch (const RuntimeError &e) {
        QCOMPARE(e.nummer(), 13);
    }
}

QTEST_MAIN(tst_zelAllgError)
#include "tst_zelallgerror.moc"
