// The layouts as the user meets them: what is bound to which column, the pages, tab order, tool
// tips, and a tidy look (no overlaps, no clipped captions) of the account screen and the number
// and copy dialogs.
#include "platform/storage/Schema.h"
#include "platform/ui/DataControl.h"
#include "screens/Bildschirmstil.h"
#include "screens/Bindungen.h"
#include "screens/InputFeld.h"
#include "ui_frmKoBeginn.h"
#include "ui_frmKontenStamm.h"
#include "ui_frmKrNeu.h"
#include "ui_frmNeu.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDialog>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSet>
#include <QTabBar>
#include <QTest>
#include <memory>

namespace {

// The form as the screens set it up.
std::unique_ptr<QDialog> form(const QString &name)
{
    auto d = std::make_unique<QDialog>();
    if (name == QLatin1String("frmNeu"))
        Ui::frmNeu().setupUi(d.get());
    else if (name == QLatin1String("frmKrNeu"))
        Ui::frmKrNeu().setupUi(d.get());
    else if (name == QLatin1String("frmKoBeginn"))
        Ui::frmKoBeginn().setupUi(d.get());
    else
        Ui::frmKontenStamm().setupUi(d.get());
    screens::bildschirmEinrichten(d.get());
    return d;
}

const char *const formen[] = {"frmKontenStamm", "frmNeu", "frmKrNeu", "frmKoBeginn"};

} // namespace

class tst_Layout : public QObject
{
    Q_OBJECT

private slots:
    // Every column of the account record the screen shows is bound once, to KKData, and nothing
    // is bound to a column the table lacks.
    void bindungen()
    {
        const auto f = form(QStringLiteral("frmKontenStamm"));
        const int gebunden = screens::bindungenHerstellen(f.get());
        QSet<QString> felder;
        for (QWidget *w : f->findChildren<QWidget *>()) {
            const QString feld = w->property("DataField").toString().toLower();
            if (feld.isEmpty())
                continue;
            QCOMPARE(w->property("DataSource").toString().toLower(), QStringLiteral("kkdata"));
            QVERIFY2(!felder.contains(feld), qPrintable(feld));
            felder.insert(feld);
        }
        QCOMPARE(gebunden, felder.size());
        // Kept by the screen's code or by other programs, never shown in a bound field.
        QSet<QString> soll;
        for (const QString &s :
             platform::storage::tabelle(QStringLiteral("ObjKanzleiKontenstamm"))->spaltenNamen())
            soll.insert(s.toLower());
        for (const char *s : {"KontoNr", "KontoJJ", "KontoBkEinnUstProz", "KontoÖNORMAbrBlockPos",
                              "KontoErhbeitrPos", "KontoErhbeitrVerdichtKz", "KontoStornoDatum",
                              "KontoPVAZusatz", "KontoRechtsbereich"})
            soll.remove(QString::fromUtf8(s).toLower());
        QCOMPARE(felder, soll);
    }

    // Seven pages share one place below the tab strip; the screen opens on the first, the
    // shared frame and the helper data controls unseen.
    void seiten()
    {
        const auto f = form(QStringLiteral("frmKontenStamm"));
        auto *reiter = f->findChild<QTabBar *>(QStringLiteral("TabStrip1"));
        QVERIFY(reiter);
        QCOMPARE(reiter->count(), 7);
        const QRect flaeche = f->findChild<QWidget *>(QStringLiteral("frame1_0"))->geometry();
        QVERIFY(flaeche.top() >= reiter->geometry().bottom());
        for (int i = 0; i < 7; ++i) {
            auto *seite = f->findChild<QGroupBox *>(QStringLiteral("frame1_%1").arg(i));
            QVERIFY(seite);
            QCOMPARE(seite->geometry(), flaeche);
            QCOMPARE(seite->isVisibleTo(f.get()), i == 0);
        }
        auto *bk = f->findChild<QWidget *>(QStringLiteral("fraBkUstSchl"));
        QVERIFY(flaeche.contains(bk->geometry()));
        QVERIFY(!bk->isVisibleTo(f.get()));
        const auto daten = f->findChildren<platform::DataControl *>();
        QCOMPARE(daten.size(), 9);
        for (const platform::DataControl *d : daten)
            QCOMPARE(d->isVisibleTo(f.get()), d->objectName() == QLatin1String("KKData"));
    }

    // Every button and every entry field or combo has a tip; the main buttons name their keys.
    void tooltips_data()
    {
        QTest::addColumn<QString>("form");
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("enthaelt");
        QTest::newRow("Neu") << "frmKontenStamm" << "cmdKontoNeueröff" << "(Strg+N)";
        QTest::newRow("Beenden") << "frmKontenStamm" << "cmdExit" << "(Strg+Q, Esc)";
        QTest::newRow("Verlauf") << "frmKontenStamm" << "cmdVerlauf" << "(Strg+H)";
        for (const char *name : formen) {
            const auto f = form(QString::fromLatin1(name));
            for (QWidget *w : f->findChildren<QWidget *>()) {
                const bool knopf = qobject_cast<QPushButton *>(w)
                    && !qobject_cast<platform::DataControl *>(w->parentWidget());
                if (knopf || qobject_cast<screens::InputFeld *>(w) || qobject_cast<QComboBox *>(w))
                    QTest::addRow("%s.%s", name, qPrintable(w->objectName()))
                        << name << w->objectName() << QString();
            }
        }
    }

    void tooltips()
    {
        QFETCH(QString, form);
        QFETCH(QString, name);
        QFETCH(QString, enthaelt);
        const auto f = ::form(form);
        QWidget *w = f->findChild<QWidget *>(name);
        QVERIFY(w);
        QVERIFY2(w->toolTip().size() > 10, qPrintable(w->toolTip()));
        QVERIFY2(w->toolTip().contains(enthaelt), qPrintable(w->toolTip()));
    }

    // Tab order: the named controls in this order among the focusable ones; in the account
    // screen every field of every page before the first button.
    void tabfolge_data()
    {
        QTest::addColumn<QString>("form");
        QTest::addColumn<QStringList>("folge");
        QTest::newRow("frmKontenStamm")
            << "frmKontenStamm"
            << QStringList {"inpKontoNr",         "inpKontoBezeichnung", "inpKontoTypus",
                            "cmbKontoTypus",      "inpKontoUstProz",     "inpKontoAnmerkung2",
                            "inpKtonummer",       "inpBkAbrVerdichtKz",  "inpBkBlockPos",
                            "cmdKontoEinlesen"};
        QTest::newRow("frmNeu") << "frmNeu"
                                << QStringList {"inpNeuEröffKontoNr", "cmdAbbrechen", "cmdOK"};
        QTest::newRow("frmKrNeu") << "frmKrNeu"
                                  << QStringList {"inpNeuEröffKontoNr", "cmdAbbrechen", "cmdOK"};
        QTest::newRow("frmKoBeginn")
            << "frmKoBeginn"
            << QStringList {"inpÜbKontoNr", "cmdKontoListe", "cmdAuswÜbernehmen", "cmdAbbrechen"};
    }

    void tabfolge()
    {
        QFETCH(QString, form);
        QFETCH(QStringList, folge);
        const auto f = ::form(form);
        QList<QWidget *> kette;
        QWidget *start = f->findChild<QWidget *>(folge.first());
        QVERIFY(start);
        for (QWidget *w = start; kette.size() < 300; w = w->nextInFocusChain()) {
            if (w == start && !kette.isEmpty())
                break;
            if ((w->focusPolicy() & Qt::TabFocus) && !w->objectName().isEmpty())
                kette.append(w);
        }
        int vorher = -1;
        for (const QString &name : folge) {
            const int platz = kette.indexOf(f->findChild<QWidget *>(name));
            QVERIFY2(platz > vorher, qPrintable(name));
            vorher = platz;
        }
        if (form != QLatin1String("frmKontenStamm"))
            return;
        // Directly from the number to the name, and no field after the buttons.
        QCOMPARE(kette.at(1)->objectName(), folge.at(1));
        for (QWidget *w : kette) {
            if (qobject_cast<QLineEdit *>(w) || qobject_cast<QComboBox *>(w)
                || qobject_cast<QCheckBox *>(w))
                QVERIFY2(kette.indexOf(w) < vorher, qPrintable(w->objectName()));
        }
    }

    void aufgeraeumt_data()
    {
        QTest::addColumn<QString>("form");
        QTest::addColumn<QString>("gruppe");
        for (const char *g :
             {"frmKontenStamm", "frame1_0", "frame1_1", "frame1_2", "frame1_3", "frame1_4",
              "frame1_5", "frame1_6", "frm_pva", "fraBkUstSchl", "fraData"})
            QTest::newRow(g) << "frmKontenStamm" << QString::fromLatin1(g);
        for (const char *f : {"frmNeu", "frmKrNeu", "frmKoBeginn"})
            QTest::newRow(f) << QString::fromLatin1(f) << QString::fromLatin1(f);
    }

    // No control leaves its group or (on the account screen) overlaps another, no caption is cut
    // off, and the title fits beside the window's buttons.
    void aufgeraeumt()
    {
        QFETCH(QString, form);
        QFETCH(QString, gruppe);
        const auto f = ::form(form);
        QWidget *g = gruppe == form ? f.get() : f->findChild<QWidget *>(gruppe);
        QVERIFY(g);
        QFont fett = f->font();
        fett.setBold(true);
        QVERIFY(QFontMetrics(fett).horizontalAdvance(f->windowTitle()) + 100 <= f->width());
        QList<QWidget *> kinder;
        for (QWidget *w : g->findChildren<QWidget *>(Qt::FindDirectChildrenOnly)) {
            // The page frames and the shared frame are stacked by design; one shows at a time.
            if (w->objectName().startsWith(QLatin1String("frame1_"))
                || w->objectName() == QLatin1String("fraBkUstSchl")
                || w->objectName() == QLatin1String("fraData") || w->objectName().isEmpty()
                || (!w->isVisibleTo(f.get()) && qobject_cast<platform::DataControl *>(w)))
                continue;
            kinder.append(w);
        }
        for (int i = 0; i < kinder.size(); ++i) {
            QVERIFY2(g->rect().contains(kinder[i]->geometry()),
                     qPrintable(kinder[i]->objectName()));
            // The dialogs keep their original positions, where a label may touch its field.
            for (int j = i + 1; form == QLatin1String("frmKontenStamm") && j < kinder.size(); ++j) {
                QVERIFY2(!kinder[i]->geometry().intersects(kinder[j]->geometry()),
                         qPrintable(kinder[i]->objectName() + QLatin1String(" / ")
                                    + kinder[j]->objectName()));
            }
            auto *l = qobject_cast<QLabel *>(kinder[i]);
            // A one-pixel label is the designed separator line.
            if (l && !l->wordWrap() && l->height() > 1) {
                QVERIFY2(l->fontMetrics().horizontalAdvance(l->text()) <= l->width(),
                         qPrintable(l->objectName()));
            }
            auto *k = qobject_cast<QPushButton *>(kinder[i]);
            if (k && form == QLatin1String("frmKontenStamm")) {
                // Buttons wrap onto two lines where they are high enough for them.
                const int zeilen = k->height() >= 2 * k->fontMetrics().height() + 6 ? 2 : 1;
                int laengstes = 0;
                for (const QString &w : k->text().simplified().split(QLatin1Char(' ')))
                    laengstes = qMax(laengstes, k->fontMetrics().horizontalAdvance(w));
                QVERIFY2(laengstes <= k->width() - 8, qPrintable(k->objectName()));
                QVERIFY2(k->fontMetrics().horizontalAdvance(k->text().simplified())
                             <= zeilen * (k->width() - 8),
                         qPrintable(k->objectName()));
            }
        }
    }

    // The number fields of the dialogs for new accounts take up to six digits and nothing else.
    void nummernfelder_data()
    {
        QTest::addColumn<QString>("form");
        QTest::addColumn<QString>("eingabe");
        QTest::addColumn<bool>("zulaessig");
        for (const char *f : {"frmNeu", "frmKrNeu"}) {
            QTest::addRow("%s 6 Stellen", f) << f << "123456" << true;
            QTest::addRow("%s 7 Stellen", f) << f << "1234567" << false;
            QTest::addRow("%s Minus", f) << f << "-12" << false;
            QTest::addRow("%s Komma", f) << f << "12,5" << false;
            QTest::addRow("%s Tausenderpunkt", f) << f << "1.000" << false;
            QTest::addRow("%s Buchstabe", f) << f << "12a" << false;
        }
    }

    void nummernfelder()
    {
        QFETCH(QString, form);
        QFETCH(QString, eingabe);
        QFETCH(bool, zulaessig);
        const auto f = ::form(form);
        auto *feld = f->findChild<screens::InputFeld *>(QStringLiteral("inpNeuEröffKontoNr"));
        QVERIFY(feld);
        QCOMPARE(feld->zulaessig(eingabe), zulaessig);
    }
};

QTEST_MAIN(tst_Layout)
#include "tst_layout.moc"
