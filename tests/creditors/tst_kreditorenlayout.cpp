// The creditor screen's layout against its control table: kind, caption, place at 15 twips per
// pixel, parent frame, binding and tab order.
#include "platform/ui/DataControl.h"
#include "screens/InputFeld.h"
#include "ui_frmKreditorenKontenStamm.h"

#include <QApplication>
#include <QComboBox>
#include <QDialog>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>

struct Steuerelement
{
    const char *name;
    const char *art;
    QString text;
    int l, t, w, h; // twips
    const char *eltern = "frmKreditorenKontenStamm";
    QString quelle = {};
    QString feld = {};
};

Q_DECLARE_METATYPE(Steuerelement)

class TestKreditorenlayout : public QObject
{
    Q_OBJECT

private:
    QDialog m_form;
    Ui::frmKreditorenKontenStamm m_ui;

    static QString text(QWidget *w)
    {
        if (auto *b = qobject_cast<QPushButton *>(w))
            return b->text();
        if (auto *l = qobject_cast<QLabel *>(w))
            return l->text();
        if (auto *d = qobject_cast<platform::DataControl *>(w))
            return d->Caption();
        if (auto *g = qobject_cast<QGroupBox *>(w))
            return g->title();
        return {};
    }

private slots:
    void initTestCase() { m_ui.setupUi(&m_form); }

    void formular()
    {
        QCOMPARE(m_form.windowTitle(), "Kreditoren-KontenStamm ");
        QCOMPARE(m_form.size(), QSize(7410 / 15, 4980 / 15));
    }

    void steuerelemente_data()
    {
        QTest::addColumn<Steuerelement>("s");
        const char *f = "Frame1";
        const Steuerelement tabelle[] = {
            {"inpKrKontoNr", "screens::InputFeld", {}, 120, 360, 975, 375},
            {"inpKrKontoBezeichnung",
             "screens::InputFeld",
             {},
             2760,
             360,
             3015,
             255,
             f,
             "KRData",
             "krkontobezeichnung"},
            {"inpKrKontoTypus",
             "screens::InputFeld",
             {},
             4920,
             720,
             375,
             315,
             f,
             "KRData",
             "KrKontoTypus"},
            {"cmbKontoTypus", "QComboBox", {}, 2760, 720, 1815, 315, f},
            {"cmdKontoEinlesen", "QPushButton", " Kontenstammsatz          einlesen", 120, 3480,
             1455, 495},
            {"cmdKontoLöschen", "QPushButton", " Kontenstammsatz    löschen    ", 1680, 3480, 1455,
             495},
            {"cmdKontoListe", "QPushButton", "   Kontenstamm                Liste", 120, 4200, 1455,
             495},
            {"cmdKontoNeueröff", "QPushButton", "Kontenstammsatz neu", 1680, 4200, 1455, 495},
            {"cmdVerlauf", "QPushButton", "Verlauf", 3600, 4200, 1455, 495},
            {"cmdExit", "QPushButton", "Beenden", 5880, 4200, 1455, 495},
            {"Frame1", "QGroupBox", "", 120, 960, 7215, 1935},
            {"lblKtobez", "QLabel", "Konto-Bezeichnung:", 240, 360, 2175, 255, f},
            {"Label2", "QLabel", "Konto-Typus:", 240, 720, 2535, 255, f},
            {"lblBankltz", "QLabel", "KontoNummer", 120, 120, 1095, 255},
            {"lblBuchjahr", "QLabel", "#", 6960, 240, 400, 255},
            {"lblBuchjahrText", "QLabel", "Buchungsjahr:", 5880, 240, 1095, 255},
            {"Label1", "QLabel", "#", 1440, 480, 3015, 255, "frmKreditorenKontenStamm", "KRData",
             "KrKontoBezeichnung"},
            {"KRData", "platform::DataControl", "Kontenstamm vorwärts/rückwärts", 3600, 3480, 3735,
             495},
            {"KRCHKData", "platform::DataControl", "KRCHKDATA", 3840, 4440, 2175, 375},
            {"KbData", "platform::DataControl", "KbData", 3840, 4080, 2175, 375},
        };
        for (const Steuerelement &s : tabelle)
            QTest::newRow(s.name) << s;
    }

    void steuerelemente()
    {
        QFETCH(Steuerelement, s);
        auto *w = m_form.findChild<QWidget *>(QString::fromUtf8(s.name));
        QVERIFY(w);
        QCOMPARE(w->metaObject()->className(), s.art);
        QCOMPARE(text(w), s.text);
        const auto px = [](int twips) {
            return qRound(twips / 15.0);
        };
        QCOMPARE(w->geometry(), QRect(px(s.l), px(s.t), px(s.w), px(s.h)));
        QCOMPARE(w->parentWidget()->objectName(), QString::fromUtf8(s.eltern));
        QCOMPARE(w->property("DataSource").toString(), s.quelle);
        QCOMPARE(w->property("DataField").toString(), s.feld);
        // Every button and every field the user types into says in German what it does.
        if (qobject_cast<QPushButton *>(w) || qobject_cast<QLineEdit *>(w)
            || qobject_cast<QComboBox *>(w))
            QVERIFY2(w->toolTip().size() > 10, s.name);
    }

    void datensteuerungen()
    {
        for (auto *d : {m_ui.KRData, m_ui.KRCHKData, m_ui.KbData}) {
            QCOMPARE(d->Connect(), "Access");
            QVERIFY(d->DatabaseName().isEmpty());
        }
        QCOMPARE(m_ui.KRData->RecordSource(), "KreditorenKontenstamm");
        QCOMPARE(m_ui.KRCHKData->RecordSource(), "KreditorenKontenstamm");
        QVERIFY(m_ui.KbData->RecordSource().isEmpty());
        QVERIFY(!m_ui.KRData->isHidden());
        QVERIFY(m_ui.KRCHKData->isHidden());
        QVERIFY(m_ui.KbData->isHidden());
    }

    void tabReihenfolge()
    {
        const QList<QWidget *> erwartet {
            m_ui.inpKrKontoNr,  m_ui.inpKrKontoBezeichnung, m_ui.inpKrKontoTypus,
            m_ui.cmbKontoTypus, m_ui.cmdKontoEinlesen,      m_ui.cmdKontoLöschen,
            m_ui.cmdKontoListe, m_ui.cmdKontoNeueröff,      m_ui.cmdVerlauf,
            m_ui.cmdExit};
        // The next control Tab reaches: the focus chain without frames, labels and bars.
        const auto naechster = [](QWidget *w) {
            do
                w = w->nextInFocusChain();
            while (!(w->focusPolicy() & Qt::TabFocus));
            return w;
        };
        for (qsizetype i = 0; i + 1 < erwartet.size(); ++i)
            QCOMPARE(naechster(erwartet[i]), erwartet[i + 1]);
    }
};

QTEST_MAIN(TestKreditorenlayout)
#include "tst_kreditorenlayout.moc"
