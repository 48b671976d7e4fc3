// F1 opens the session's help in the help window at the context of the focused control; the
// shipped help has a section for every control of every screen and the texts of every code.
#include "accounts/regeln/Codelisten.h"
#include "frame/Hilfedokument.h"
#include "frame/Hilfefenster.h"
#include "frame/Onlinehilfe.h"
#include "frame/mdlFehlerZL.h"
#include "frame/mdlKontenStamm.h"
#include "platform/ui/MsgBox.h"
#include "ui_frmKoBeginn.h"
#include "ui_frmKontenStamm.h"
#include "ui_frmKrNeu.h"
#include "ui_frmKreditorenKontenStamm.h"
#include "ui_frmNeu.h"

#include <QDialog>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTest>
#include <QTextBlock>
#include <QTimer>
#include <QTreeWidget>
#include <QTreeWidgetItemIterator>

namespace mks = mdlKontenStamm;
using frame::Hilfefenster;

namespace {

const char *const TestHilfe = R"(<html><head><title>Testhilfe</title></head><body>
<h1 id="frmTest">Maske</h1><p>Erste Seite.</p>
<h2 id="inpKontoNr">Kontonummer</h2><p>Nummer des Kontos.</p>
<h2 id="cmdKontoLöschen">Löschen</h2><p>Löscht das Konto.</p>
<h2 id="cmdOK">OK anderswo</h2><p>Gehört zu einer anderen Maske.</p>
<h2 id="frmTest.cmdOK">OK hier</h2><p>Das OK dieser Maske.</p>
<h1 id="seiten">Seiten</h1>
<h2 id="seite2">Zweite Seite</h2><p>Kontonummer kommt hier auch vor.</p>
<h3><a name="seite7"></a>Siebente Seite</h3><p>Ende.</p>
</body></html>)";

QString schreiben(const QTemporaryDir &dir, const QString &name, const QByteArray &inhalt)
{
    const QString pfad = dir.filePath(name);
    QFile f(pfad);
    if (!f.open(QIODevice::WriteOnly))
        return {};
    f.write(inhalt);
    return pfad;
}

// The session's help file as a screen's load takes it.
void hilfeSetzen(const QString &datei)
{
    mks::AufrufInfo = QVariantList(mks::AufrufInfoGroesse);
    mks::AufrufInfo[mks::slot::Hilfedatei] = datei;
    mdlFehlerZL::HilfeAufrufChk();
}

// The chapter (first-level heading) that holds `position`.
QString kapitel(const frame::Hilfedokument &d, int position)
{
    QString anker;
    for (const auto &a : d.inhalt()) {
        if (a.position > position)
            break;
        if (a.ebene == 1)
            anker = a.anker;
    }
    return anker;
}

} // namespace

class tst_Onlinehilfe : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void kontextDesFokus_data();
    void kontextDesFokus();
    void ohneHilfeWirdNichtsGeoeffnet();
    void hilfefenster();
    void bleibtBeiModalemDialogBedienbar();
    void dateiformateDesHosts_data();
    void dateiformateDesHosts();
    void mitgelieferteHilfeKenntJedesFeld_data();
    void mitgelieferteHilfeKenntJedesFeld();
    void mitgelieferteHilfeNenntJedenCode_data();
    void mitgelieferteHilfeNenntJedenCode();

private:
    QTemporaryDir m_dir;
    std::unique_ptr<platform::MsgBoxProtokoll> m_boxen;
};

void tst_Onlinehilfe::init()
{
    mks::zuruecksetzen();
    m_boxen = std::make_unique<platform::MsgBoxProtokoll>();
    m_boxen->setAntwortFunktion([](const platform::MsgBoxEintrag &) { return platform::vbOK; });
}

void tst_Onlinehilfe::cleanup()
{
    delete Hilfefenster::offenes();
    m_boxen.reset();
}

void tst_Onlinehilfe::kontextDesFokus_data()
{
    QTest::addColumn<QString>("fokus");
    QTest::addColumn<QString>("anker");
    QTest::addColumn<QString>("abschnitt");
    QTest::newRow("own context") << "inpMitKontext"
                                 << "seite7"
                                 << "Siebente Seite";
    QTest::newRow("context of the frame") << "inpImRahmen"
                                          << "seite2"
                                          << "Zweite Seite";
    QTest::newRow("context without anchor, frame's") << "inpFalscherKontext"
                                                     << "seite2"
                                                     << "Zweite Seite";
    QTest::newRow("anchor named like the field") << "inpKontoNr"
                                                 << "inpKontoNr"
                                                 << "Kontonummer";
    QTest::newRow("umlaut in the name") << "cmdKontoLöschen"
                                        << "cmdKontoLöschen"
                                        << "Löschen";
    QTest::newRow("name qualified by the screen first") << "cmdOK"
                                                        << "frmTest.cmdOK"
                                                        << "OK hier";
    QTest::newRow("else the screen") << "cmdOhne"
                                     << "frmTest"
                                     << "Maske";
}

void tst_Onlinehilfe::kontextDesFokus()
{
    QFETCH(QString, fokus);
    QFETCH(QString, anker);
    QFETCH(QString, abschnitt);
    hilfeSetzen(schreiben(m_dir, QStringLiteral("hilfe.html"), TestHilfe));
    QVERIFY(mks::HilfeVorhanden);

    QWidget form;
    form.setObjectName(QStringLiteral("frmTest"));
    const auto feld = [](QWidget *eltern, const QString &name) {
        auto *w = new QLineEdit(eltern);
        w->setObjectName(name);
        return w;
    };
    feld(&form, QStringLiteral("inpMitKontext"))->setProperty("HelpContextID", "seite7");
    auto *rahmen = new QGroupBox(&form);
    rahmen->setProperty("HelpContextID", QStringLiteral("seite2"));
    feld(rahmen, QStringLiteral("inpImRahmen"));
    feld(rahmen, QStringLiteral("inpFalscherKontext"))->setProperty("HelpContextID", "gibtsnicht");
    feld(&form, QStringLiteral("inpKontoNr"));
    for (const char *name : {"cmdKontoLöschen", "cmdOK", "cmdOhne"})
        (new QPushButton(&form))->setObjectName(QString::fromUtf8(name));
    new frame::F1Hilfe(&form);
    form.show();
    QApplication::setActiveWindow(&form);
    QVERIFY(QTest::qWaitForWindowActive(&form));

    auto *ziel = form.findChild<QWidget *>(fokus);
    QVERIFY(ziel);
    ziel->setFocus();
    QTest::keyClick(ziel, Qt::Key_F1);
    Hilfefenster *h = Hilfefenster::offenes();
    QVERIFY(h && h->isVisible());
    QCOMPARE(h->anker(), anker);
    QCOMPARE(h->abschnitt(), abschnitt);
    QCOMPARE(h->windowTitle(), QStringLiteral("Hilfe – Testhilfe"));
    QCOMPARE(m_boxen->anzahl(), 0);
}

void tst_Onlinehilfe::ohneHilfeWirdNichtsGeoeffnet()
{
    for (const QString &datei : {QString(), m_dir.filePath(QStringLiteral("fehlt.html"))}) {
        hilfeSetzen(datei);
        QVERIFY(!mks::HilfeVorhanden);
        QWidget form;
        QVERIFY(!frame::hilfeZeigen(&form));
        QVERIFY(!Hilfefenster::offenes());
    }
    QCOMPARE(m_boxen->anzahl(), 2);
}

void tst_Onlinehilfe::hilfefenster()
{
    hilfeSetzen(schreiben(m_dir, QStringLiteral("hilfe.html"), TestHilfe));
    QWidget form;
    form.setObjectName(QStringLiteral("frmTest"));
    auto *nr = new QLineEdit(&form);
    nr->setObjectName(QStringLiteral("inpKontoNr"));
    QVERIFY(frame::hilfeZeigen(&form));
    QVERIFY(frame::hilfeZeigen(nr));
    Hilfefenster *h = Hilfefenster::offenes();
    QVERIFY(h);

    // The table of contents: the chapters with their sections below them.
    QStringList inhalt;
    for (QTreeWidgetItemIterator it(h->inhalt()); *it; ++it)
        inhalt << QString((*it)->parent() ? "  " : "") + (*it)->text(0);
    QCOMPARE(inhalt,
             (QStringList {"Maske", "  Kontonummer", "  Löschen", "  OK anderswo", "  OK hier",
                           "Seiten", "  Zweite Seite", "  Siebente Seite"}));

    // Back and forward through the places shown; a click in the contents is one more place.
    QApplication::setActiveWindow(h);
    QVERIFY(QTest::qWaitForWindowActive(h));
    QCOMPARE(h->anker(), QStringLiteral("inpKontoNr"));
    QTest::keyClick(h, Qt::Key_Left, Qt::AltModifier);
    QCOMPARE(h->anker(), QStringLiteral("frmTest"));
    QTest::keyClick(h, Qt::Key_Right, Qt::AltModifier);
    QCOMPARE(h->anker(), QStringLiteral("inpKontoNr"));
    const auto eintraege = h->inhalt()->findItems(QStringLiteral("Zweite Seite"),
                                                  Qt::MatchExactly | Qt::MatchRecursive);
    QCOMPARE(eintraege.size(), 1);
    emit h->inhalt()->itemActivated(eintraege.first(), 0);
    QCOMPARE(h->anker(), QStringLiteral("seite2"));
    QCOMPARE(h->abschnitt(), QStringLiteral("Zweite Seite"));
    QVERIFY(h->findChild<QWidget *>(QStringLiteral("cmdZurueck"))->isEnabled());
    QVERIFY(!h->findChild<QWidget *>(QStringLiteral("cmdVor"))->isEnabled());

    // The search marks every match, goes round at the end, and the contents follow.
    h->suchfeld()->setText(QStringLiteral("kontonummer"));
    QCOMPARE(h->treffer(), 2);
    QCOMPARE(h->findChild<QLabel *>(QStringLiteral("lblTreffer"))->text(),
             QStringLiteral("2 Treffer"));
    QStringList abschnitte {h->abschnitt()};
    for (int i = 0; i < 2; ++i) {
        QTest::keyClick(h->suchfeld(), Qt::Key_Return);
        abschnitte << h->abschnitt();
    }
    QCOMPARE(abschnitte, (QStringList {"Kontonummer", "Zweite Seite", "Kontonummer"}));
    QTest::keyClick(h->suchfeld(), Qt::Key_F3, Qt::ShiftModifier);
    QCOMPARE(h->abschnitt(), QStringLiteral("Zweite Seite"));
    h->suchfeld()->setText(QStringLiteral("gibt es nicht"));
    QCOMPARE(h->treffer(), 0);
    QCOMPARE(h->findChild<QLabel *>(QStringLiteral("lblTreffer"))->text(),
             QStringLiteral("Kein Treffer"));
    QVERIFY(!h->weiterSuchen());

    // Escape empties the search first, then closes the window.
    h->suchfeld()->setFocus();
    QTest::keyClick(h->suchfeld(), Qt::Key_Escape);
    QVERIFY(h->suchfeld()->text().isEmpty());
    QVERIFY(h->isVisible());
    QTest::keyClick(h->suchfeld(), Qt::Key_Escape);
    QVERIFY(!h->isVisible());
}

// A modal screen blocks every other window; the help belongs to it and can be typed in. It moves
// back to the screen below when the dialog closes, and closes with the last screen.
void tst_Onlinehilfe::bleibtBeiModalemDialogBedienbar()
{
    hilfeSetzen(schreiben(m_dir, QStringLiteral("hilfe.html"), TestHilfe));
    QDialog bildschirm;
    bildschirm.setObjectName(QStringLiteral("frmTest"));
    bool getippt = false;
    QWidget *eltern = nullptr;
    bool sichtbar = false;
    QTimer::singleShot(0, [&] {
        QDialog dialog(&bildschirm);
        dialog.setObjectName(QStringLiteral("frmTest"));
        QTimer::singleShot(0, [&] {
            QVERIFY(frame::hilfeZeigen(&dialog));
            Hilfefenster *h = Hilfefenster::offenes();
            QVERIFY(QTest::qWaitForWindowExposed(h));
            h->activateWindow();
            h->suchfeld()->setFocus();
            QTest::keyClick(h->windowHandle(), Qt::Key_M);
            getippt = h->suchfeld()->text() == QLatin1String("m");
            dialog.accept();
        });
        dialog.exec();
        eltern = Hilfefenster::offenes()->parentWidget();
        sichtbar = Hilfefenster::offenes()->isVisible();
        bildschirm.reject();
    });
    bildschirm.exec();
    QVERIFY(getippt);
    QCOMPARE(eltern, &bildschirm);
    QVERIFY(sichtbar);
    QTRY_VERIFY(!Hilfefenster::offenes());
}

// A help file of the host is shown the same way, whatever its format.
void tst_Onlinehilfe::dateiformateDesHosts_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QByteArray>("inhalt");
    QTest::addColumn<QString>("titel");
    QTest::addColumn<QStringList>("inhaltsverzeichnis");
    QTest::addColumn<QString>("text");
    QTest::newRow("HTML, Latin-1 declared")
        << "hilfe.htm"
        << QByteArray("<html><head><meta charset=\"iso-8859-1\"><title>Gr\xfc\xdf"
                      "e</title></head><body><h1 id=\"inpK\xf6rper\">K\xf6rper</h1></body></html>")
        << "Grüße" << QStringList {"Körper"} << "Körper";
    QTest::newRow("Markdown") << "hilfe.md"
                              << QByteArray("# Kapitel\n\nText mit **Ä**.\n\n## Teil\n")
                              << "Kapitel" << QStringList {"Kapitel", "Teil"} << "Text mit Ä.";
    QTest::newRow("plain text, UTF-8") << "hilfe.txt"
                                       << QByteArray("Zeile eins\n\nGr\xc3\xbc\xc3\x9f"
                                                     "e")
                                       << "hilfe.txt" << QStringList {} << "Grüße";
    QTest::newRow("compiled help of another system")
        << "hilfe.chm" << QByteArray("ITSF\0\0\0\x03", 8) << QString() << QStringList {}
        << QString();
}

void tst_Onlinehilfe::dateiformateDesHosts()
{
    QFETCH(QString, name);
    QFETCH(QByteArray, inhalt);
    QFETCH(QString, titel);
    QFETCH(QStringList, inhaltsverzeichnis);
    QFETCH(QString, text);
    hilfeSetzen(schreiben(m_dir, name, inhalt));
    QWidget form;
    const bool gezeigt = frame::hilfeZeigen(&form);
    QCOMPARE(gezeigt, !titel.isEmpty());
    if (!gezeigt) {
        QVERIFY(!Hilfefenster::offenes());
        QVERIFY(m_boxen->letzter().text.contains(QStringLiteral("keine HTML- oder Textdatei")));
        return;
    }
    Hilfefenster *h = Hilfefenster::offenes();
    QCOMPARE(h->windowTitle(), QStringLiteral("Hilfe – ") + titel);
    QStringList verzeichnis;
    for (QTreeWidgetItemIterator it(h->inhalt()); *it; ++it)
        verzeichnis << (*it)->text(0);
    QCOMPARE(verzeichnis, inhaltsverzeichnis);
    QVERIFY2(h->anzeige()->toPlainText().contains(text), qPrintable(h->anzeige()->toPlainText()));
}

// Every control that can take the focus, on every screen and dialog, opens the chapter of its
// own screen at a section of its own (not the top of the chapter).
void tst_Onlinehilfe::mitgelieferteHilfeKenntJedesFeld_data()
{
    QTest::addColumn<std::shared_ptr<QDialog>>("bildschirm");
    const auto mit = [](auto ui) {
        auto d = std::make_shared<QDialog>();
        ui.setupUi(d.get());
        return d;
    };
    QTest::newRow("frmKontenStamm") << mit(Ui::frmKontenStamm());
    QTest::newRow("frmNeu") << mit(Ui::frmNeu());
    QTest::newRow("frmKoBeginn") << mit(Ui::frmKoBeginn());
    QTest::newRow("frmKreditorenKontenStamm") << mit(Ui::frmKreditorenKontenStamm());
    QTest::newRow("frmKrNeu") << mit(Ui::frmKrNeu());
    auto liste = std::make_shared<QDialog>();
    liste->setObjectName(QStringLiteral("frmPruefliste"));
    (new QTreeWidget(liste.get()))->setObjectName(QStringLiteral("lstBefunde"));
    QTest::newRow("frmPruefliste") << liste;
}

void tst_Onlinehilfe::mitgelieferteHilfeKenntJedesFeld()
{
    QFETCH(std::shared_ptr<QDialog>, bildschirm);
    hilfeSetzen(QStringLiteral(ZEP_HILFE_QUELLE));
    QVERIFY(mks::HilfeVorhanden);
    const auto dokument = frame::Hilfedokument::laden(mdlFehlerZL::hilfedatei());
    QVERIFY(dokument);
    const QString seite = bildschirm->objectName();
    QVERIFY(dokument->hatAnker(seite));
    QStringList falsch;
    int felder = 0;
    for (QWidget *w : bildschirm->findChildren<QWidget *>()) {
        if (w->focusPolicy() == Qt::NoFocus || w->objectName().isEmpty()
            || w->objectName().startsWith(QLatin1String("qt_")))
            continue;
        ++felder;
        const QString kontext = frame::hilfekontext(w);
        const int position = dokument->ankerPosition(kontext);
        if (position < 0 || kapitel(*dokument, position) != seite || kontext == seite)
            falsch << w->objectName() + QStringLiteral(" -> ") + kontext;
    }
    QVERIFY(felder > 0);
    QVERIFY2(falsch.isEmpty(), qPrintable(falsch.join(u'\n')));
}

// The section of each definition list names the text of every one of its codes.
void tst_Onlinehilfe::mitgelieferteHilfeNenntJedenCode_data()
{
    QTest::addColumn<QString>("feld");
    QTest::addColumn<QStringList>("texte");
    for (const kontenregeln::Codeliste &l : kontenregeln::codelisten()) {
        QStringList texte;
        for (const auto &e : l.eintraege)
            texte << e.text;
        QTest::newRow(qPrintable(l.kombi)) << l.feld << texte;
    }
}

void tst_Onlinehilfe::mitgelieferteHilfeNenntJedenCode()
{
    QFETCH(QString, feld);
    QFETCH(QStringList, texte);
    const auto dokument = frame::Hilfedokument::laden(QStringLiteral(ZEP_HILFE_QUELLE));
    QVERIFY(dokument);
    const int anfang = dokument->ankerPosition(feld);
    QVERIFY2(anfang >= 0, qPrintable(feld));
    int ende = std::numeric_limits<int>::max();
    for (const auto &a : dokument->inhalt()) {
        if (a.position > anfang) {
            ende = a.position;
            break;
        }
    }
    QTextDocument text;
    text.setHtml(dokument->text());
    QString abschnitt;
    for (QTextBlock b = text.findBlock(anfang); b.isValid() && b.position() < ende; b = b.next())
        abschnitt += b.text() + u'\n';
    for (const QString &t : texte)
        QVERIFY2(abschnitt.contains(t), qPrintable(feld + QStringLiteral(": ") + t));
}

QTEST_MAIN(tst_Onlinehilfe)
#include "tst_onlinehilfe.moc"
