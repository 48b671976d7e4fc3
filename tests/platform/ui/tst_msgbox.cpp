#include "platform/core/RuntimeError.h"
#include "platform/ui/MsgBox.h"

#include <QMessageBox>
#include <QPushButton>
#include <QtTest>

using namespace platform;

namespace {

// Runs `pruefen` on the next message box that opens; fails the test when none opens in time.
struct BoxBeantworter
{
    std::function<void(QMessageBox *)> pruefen;
    bool gesehen = false;
    QTimer timer;
    QElapsedTimer uhr;

    explicit BoxBeantworter(std::function<void(QMessageBox *)> f)
        : pruefen(std::move(f))
    {
        uhr.start();
        timer.setInterval(10);
        QObject::connect(&timer, &QTimer::timeout, [this] {
            if (auto *box = qobject_cast<QMessageBox *>(QApplication::activeModalWidget())) {
                timer.stop();
                gesehen = true;
                pruefen(box);
            } else if (uhr.elapsed() > 5000) {
                timer.stop();
                if (QWidget *w = QApplication::activeModalWidget())
                    w->close();
            }
        });
        timer.start();
    }
};

} // namespace

class tst_MsgBox : public QObject
{
    Q_OBJECT
private slots:
    // Answers come from the queue in order, then from the answer function; every box is
    // recorded with its defaults; an inner record takes the boxes while it lives.
    void protokoll()
    {
        MsgBoxProtokoll p;
        p.antworte({vbOK, vbYes, vbCancel});
        p.setAntwortFunktion(
            [](const MsgBoxEintrag &e) { return e.text.contains("löschen") ? vbNo : vbYes; });
        QCOMPARE(MsgBox("Hinweis"), vbOK);
        QCOMPARE(MsgBox("Konto löschen?\r\nWirklich", vbYesNo + vbQuestion, "Bitte bestätigen Sie"),
                 vbYes);
        QCOMPARE(MsgBox("3", vbYesNoCancel), vbCancel);
        QCOMPARE(p.offeneAntworten(), 0);
        QCOMPARE(MsgBox("Konto löschen?", vbYesNo), vbNo);
        {
            MsgBoxProtokoll innen;
            innen.antworte(vbNo);
            QCOMPARE(MsgBox("innen", vbYesNo), vbNo);
            QCOMPARE(innen.anzahl(), 1);
        }
        QCOMPARE(MsgBox("Konto anlegen?", vbYesNo), vbYes);
        QCOMPARE(p.anzahl(), 5);
        QCOMPARE(p.eintraege()[0].titel, "zepKontenStamm");
        QCOMPARE(p.eintraege()[0].buttons, vbOKOnly);
        QCOMPARE(p.eintraege()[1].text, "Konto löschen?\r\nWirklich");
        QCOMPARE(p.eintraege()[1].buttons, vbYesNo + vbQuestion);
        QCOMPARE(p.eintraege()[1].titel, "Bitte bestätigen Sie");
        QCOMPARE(p.eintraege()[1].antwort, vbYes);
        QCOMPARE(p.texte().at(2), "3");
        QVERIFY(p.warnungen().isEmpty());
    }

    void ohneAntwortWarnungUndStandard_data()
    {
        QTest::addColumn<int>("buttons");
        QTest::addColumn<int>("erwartet");
        QTest::newRow("ok") << int(vbOKOnly) << int(vbOK);
        QTest::newRow("ja/nein") << int(vbYesNo) << int(vbYes);
        QTest::newRow("ja/nein, zweiter") << vbYesNo + vbDefaultButton2 << int(vbNo);
        QTest::newRow("ja/nein/abbrechen, dritter")
            << vbYesNoCancel + vbDefaultButton3 << int(vbCancel);
        QTest::newRow("dritter fehlt") << vbOKCancel + vbDefaultButton3 << int(vbOK);
    }

    void ohneAntwortWarnungUndStandard()
    {
        QFETCH(int, buttons);
        QFETCH(int, erwartet);
        MsgBoxProtokoll p;
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression("Keine Antwort vorgesehen"));
        QCOMPARE(MsgBox("Frage", buttons), erwartet);
        QCOMPARE(p.warnungen().size(), 1);
        QVERIFY(p.warnungen().first().contains("Frage"));
    }

    void falscheAntwortWirdGemeldet()
    {
        MsgBoxProtokoll p;
        p.antworte(vbYes);
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression("passt zu keinem Knopf"));
        QCOMPARE(MsgBox("nur OK"), vbOK);
        QCOMPARE(p.warnungen().size(), 1);
    }

    void knopfgruppen_data()
    {
        QTest::addColumn<int>("buttons");
        QTest::addColumn<QList<int>>("antworten");
        QTest::newRow("ok") << 0 << QList<int> {vbOK};
        QTest::newRow("ok/abbrechen") << 1 << QList<int> {vbOK, vbCancel};
        QTest::newRow("abbruch/wiederholen/ignorieren")
            << 2 << QList<int> {vbAbort, vbRetry, vbIgnore};
        QTest::newRow("ja/nein/abbrechen") << 3 << QList<int> {vbYes, vbNo, vbCancel};
        QTest::newRow("ja/nein mit symbol")
            << vbYesNo + vbQuestion + vbDefaultButton2 << QList<int> {vbYes, vbNo};
        QTest::newRow("wiederholen/abbrechen") << 5 << QList<int> {vbRetry, vbCancel};
    }

    void knopfgruppen()
    {
        QFETCH(int, buttons);
        QFETCH(QList<int>, antworten);
        QCOMPARE(MsgBoxAntworten(buttons), antworten);
    }

    void stilAlsVariant_data()
    {
        QTest::addColumn<QVariant>("stil");
        QTest::addColumn<int>("fehler");
        QTest::addColumn<int>("buttons");
        QTest::newRow("text statt stil") << QVariant("Löschung nicht möglich") << 13 << 0;
        QTest::newRow("zahl") << QVariant(vbYesNo + vbQuestion) << 0 << vbYesNo + vbQuestion;
        QTest::newRow("zahl als text") << QVariant("4") << 0 << 4;
        QTest::newRow("leer") << QVariant() << 0 << 0;
        QTest::newRow("unbekannte Knopfgruppe") << QVariant(6) << 5 << 0;
    }

    void stilAlsVariant()
    {
        QFETCH(QVariant, stil);
        QFETCH(int, fehler);
        QFETCH(int, buttons);
        MsgBoxProtokoll p;
        p.setAntwortFunktion(
            [](const MsgBoxEintrag &e) { return MsgBoxAntworten(e.buttons).first(); });
        try {
            MsgBox("KreditorenKonto ... nicht löschbar", stil);
            QCOMPARE(fehler, 0);
            QCOMPARE(p.anzahl(), 1);
            QCOMPARE(p.letzter().buttons, buttons);
        } catch (const RuntimeError &e) {
            QCOMPARE(e.nummer(), fehler);
            if (fehler == 13)
                QCOMPARE(e.beschreibung(), "Typen unverträglich");
            QCOMPARE(p.anzahl(), 0); // no box before the error
        }
    }

    void echteBox_data()
    {
        QTest::addColumn<int>("buttons");
        QTest::addColumn<QString>("titel");
        QTest::addColumn<int>("icon");
        QTest::addColumn<int>("standardKnopf");
        QTest::addColumn<int>("klick");
        QTest::addColumn<int>("erwartet");
        // The buttons' German captions (Qt's own translations), sorted.
        QTest::addColumn<QStringList>("knopftexte");
        const QStringList jaNein {"Ja", "Nein"};
        QTest::newRow("ok") << int(vbOKOnly) << QString() << int(QMessageBox::NoIcon)
                            << int(QMessageBox::Ok) << int(QMessageBox::Ok) << int(vbOK)
                            << QStringList {"OK"};
        QTest::newRow("frage ja") << vbYesNo + vbQuestion << "Bitte bestätigen Sie"
                                  << int(QMessageBox::Question) << int(QMessageBox::Yes)
                                  << int(QMessageBox::Yes) << int(vbYes) << jaNein;
        QTest::newRow("frage nein, zweiter standard")
            << vbYesNo + vbQuestion + vbDefaultButton2 << "Bitte bestätigen Sie"
            << int(QMessageBox::Question) << int(QMessageBox::No) << int(QMessageBox::No)
            << int(vbNo) << jaNein;
        QTest::newRow("kritisch") << vbOKOnly + vbCritical << "x" << int(QMessageBox::Critical)
                                  << int(QMessageBox::Ok) << int(QMessageBox::Ok) << int(vbOK)
                                  << QStringList {"OK"};
        QTest::newRow("ausruf") << vbOKCancel + vbExclamation << "x" << int(QMessageBox::Warning)
                                << int(QMessageBox::Ok) << int(QMessageBox::Cancel) << int(vbCancel)
                                << QStringList {"Abbrechen", "OK"};
        QTest::newRow("information")
            << vbOKOnly + vbInformation << "x" << int(QMessageBox::Information)
            << int(QMessageBox::Ok) << int(QMessageBox::Ok) << int(vbOK) << QStringList {"OK"};
        QTest::newRow("ja/nein/abbrechen")
            << int(vbYesNoCancel) << "x" << int(QMessageBox::NoIcon) << int(QMessageBox::Yes)
            << int(QMessageBox::Cancel) << int(vbCancel) << QStringList {"Abbrechen", "Ja", "Nein"};
        QTest::newRow("wiederholen")
            << int(vbAbortRetryIgnore) << "x" << int(QMessageBox::NoIcon) << int(QMessageBox::Abort)
            << int(QMessageBox::Retry) << int(vbRetry)
            << QStringList {"Abbrechen", "Ignorieren", "Wiederholen"};
    }

    void echteBox()
    {
        QFETCH(int, buttons);
        QFETCH(QString, titel);
        QFETCH(int, icon);
        QFETCH(int, standardKnopf);
        QFETCH(int, klick);
        QFETCH(int, erwartet);
        QFETCH(QStringList, knopftexte);
        const QString text = "Konto <b>0001</b> existiert nicht\r\nNeu anlegen?";
        QStringList gesehenerKnopftexte;
        QString gesehenerText, gesehenerTitel;
        int gesehenesIcon = -1, gesehenerStandard = -1, textFormat = -1;
        BoxBeantworter b([&](QMessageBox *box) {
            gesehenerText = box->text();
            gesehenerTitel = box->windowTitle();
            gesehenesIcon = box->icon();
            textFormat = box->textFormat();
            gesehenerStandard = box->standardButton(box->defaultButton());
            for (QAbstractButton *k : box->buttons())
                gesehenerKnopftexte << k->text().remove(u'&');
            gesehenerKnopftexte.sort();
            box->button(QMessageBox::StandardButton(klick))->click();
        });
        const int antwort = MsgBox(text, buttons, titel);
        QVERIFY(b.gesehen);
        QCOMPARE(antwort, erwartet);
        QCOMPARE(gesehenerText, "Konto <b>0001</b> existiert nicht\nNeu anlegen?");
        QCOMPARE(textFormat, int(Qt::PlainText));
        QCOMPARE(gesehenerTitel, titel.isEmpty() ? "zepKontenStamm" : titel);
        QCOMPARE(gesehenesIcon, icon);
        QCOMPARE(gesehenerStandard, standardKnopf);
        QCOMPARE(gesehenerKnopftexte, knopftexte);
    }

    void escape_data()
    {
        QTest::addColumn<int>("buttons");
        QTest::addColumn<bool>("bleibtOffen");
        QTest::addColumn<int>("erwartet"); // after Escape, and Enter when the box stayed open
        QTest::newRow("ok") << int(vbOKOnly) << false << int(vbOK);
        QTest::newRow("ok/abbrechen") << int(vbOKCancel) << false << int(vbCancel);
        QTest::newRow("ja/nein/abbrechen") << int(vbYesNoCancel) << false << int(vbCancel);
        // Without Cancel, Escape is no answer: never "Nein" to "... nicht existent, neu anlegen?".
        QTest::newRow("ja/nein") << vbYesNo + vbQuestion << true << int(vbYes);
        QTest::newRow("ja/nein, zweiter standard")
            << vbYesNo + vbDefaultButton2 << true << int(vbNo);
        QTest::newRow("abbruch/wiederholen/ignorieren, zweiter standard")
            << vbAbortRetryIgnore + vbDefaultButton2 << true << int(vbRetry);
    }

    void escape()
    {
        QFETCH(int, buttons);
        QFETCH(bool, bleibtOffen);
        QFETCH(int, erwartet);
        bool offen = false;
        BoxBeantworter b([&](QMessageBox *box) {
            QTest::keyClick(box, Qt::Key_Escape);
            offen = box->isVisible();
            if (offen)
                QTest::keyClick(box, Qt::Key_Return);
        });
        QCOMPARE(MsgBox("Abbrechen?", buttons), erwartet);
        QVERIFY(b.gesehen);
        QCOMPARE(offen, bleibtOffen);
    }
};

QTEST_MAIN(tst_MsgBox)
#include "tst_msgbox.moc"
