// The account screen driven offscreen on both engines: loading a year (also an empty one),
// navigation and keys, reading by number, opening through frmNeu, allocation key 0 and the save
// gate of KKData.
#include "accounts/KontenstammTestBasis.h"
#include "accounts/frmKontenStamm.h"
#include "accounts/frmNeu.h"
#include "common/TestDatenbank.h"
#include "frame/Verlaufsfenster.h"
#include "frame/mdlFehlerZL.h"
#include "frame/mdlKontenStamm.h"
#include "platform/core/CreateObject.h"
#include "platform/storage/Database.h"
#include "platform/storage/Schema.h"
#include "platform/ui/DataControl.h"
#include "platform/ui/MsgBox.h"

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QDate>
#include <QFile>
#include <QFrame>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QScopeGuard>
#include <QSignalSpy>
#include <QTabBar>
#include <QTableWidget>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>

using namespace platform;
using platform::storage::Database;
namespace mks = mdlKontenStamm;

namespace {
const QString Jahr = QStringLiteral("2003");
const QString NichtExistentTitel = QStringLiteral("KontoStammsatz nicht existent");
const QString BezeichnungLeer = QStringLiteral("KontoBezeichnung darf nicht leer gelassen werden");
} // namespace

class TestKontenstammLebenszyklus : public KontenstammTestBasis
{
    Q_OBJECT

private:
    static QLineEdit *dialogFeld(frmNeu &d)
    {
        return d.findChild<QLineEdit *>(QStringLiteral("inpNeuEröffKontoNr"));
    }
    static void dialogKnopf(frmNeu &d, const char *name)
    {
        d.findChild<QPushButton *>(QString::fromUtf8(name))->click();
    }

private slots:
    void init() { basisInit(); }
    void cleanup() { basisCleanup(); }

    // --- loading ---

    void aeltereDatenbankBekommtDieZusatzdatenSpalte()
    {
        // An older table without KontoZusatzDatenJN, as databases before the column were made.
        const auto *katalog = storage::tabelle("ObjKanzleiKontenstamm");
        storage::Tabelle alt = *katalog;
        std::erase_if(alt.spalten, [](const storage::Spalte &sp) {
            return sp.name.compare("KontoZusatzDatenJN", Qt::CaseInsensitive) == 0;
        });
        m_db->execute("DROP TABLE ObjKanzleiKontenstamm");
        m_db->execute(storage::ddl(alt, m_db->engine()));
        standardKonten();
        QCOMPARE(storage::fehlendeSpalten(*m_db, "ObjKanzleiKontenstamm"),
                 QStringList {"KontoZusatzDatenJN"});
        oeffnen();
        QCOMPARE(m_boxen->anzahl(), 0);
        QVERIFY(storage::fehlendeSpalten(*m_db, "ObjKanzleiKontenstamm").isEmpty());
        // The column comes without a default: the accounts there keep no value, and an edit
        // of such an account is saved without inventing one.
        QCOMPARE(c<QLineEdit>("inpKontoZusatzDatenJN")->text(), "");
        QCOMPARE(aktuell(), "1000");
        fokusAuf(c("inpKontoBezeichnung"));
        c<QLineEdit>("inpKontoBezeichnung")->setText("Kassa neu");
        taste(Qt::Key_PageDown);
        QCOMPARE(aktuell(), "1200");
        QCOMPARE(gespeichert("1000", "KontoBezeichnung").toString(), "Kassa neu");
        QVERIFY(gespeichert("1000", "KontoZusatzDatenJN").isNull());
        QCOMPARE(m_boxen->anzahl(), 0);
    }

    void anzeigeFolgtDemSatz()
    {
        standardKonten();
        m_db->execute("UPDATE ObjKanzleiKontenstamm SET KontoTypus = 1, KontoPVAZusatz = -1 "
                      "WHERE KontoNr = '1200'");
        m_db->execute("UPDATE ObjKanzleiKontenstamm SET KontoTypus = 7, KontoPVAZusatz = 0 "
                      "WHERE KontoNr = '2000'");
        oeffnen();
        auto *typus = c<QComboBox>("cmbKontoTypus");
        auto *pva = c<QCheckBox>("chckPVAZusatz");
        fokusAuf(c("inpKontoAnmerkung1"));
        taste(Qt::Key_PageDown);
        QCOMPARE(typus->currentIndex(), 1);
        QVERIFY(pva->isChecked());
        QCOMPARE(c<QLabel>("lblKontoBezeichnung")->text(), "Bank");
        // A code beyond the list is reported; the combo keeps what it showed.
        taste(Qt::Key_PageDown);
        QCOMPARE(m_boxen->anzahl(), 1);
        QCOMPARE(m_boxen->letzter().text, "ungültiger Wert in cmbKontoTypus.text");
        QCOMPARE(typus->currentIndex(), 1);
        QVERIFY(!pva->isChecked());
        // Showing a record is no edit of the user: leaving it writes nothing and asks nothing.
        taste(Qt::Key_PageUp);
        QCOMPARE(m_boxen->anzahl(), 1);
        QCOMPARE(gespeichert("2000", "KontoTypus").toInt(), 7);
    }

    void leeresJahr_data()
    {
        // Whatever number the last number dialog left, an empty year gets 999998.
        QTest::addColumn<QString>("neueKontoNr");
        QTest::newRow("frisch geladen") << QString();
        QTest::newRow("letzte Eröffnung 999998") << "999998";
        QTest::newRow("letzte Eröffnung 0815") << "0815";
    }
    void leeresJahr()
    {
        QFETCH(QString, neueKontoNr);
        const QString gespeicherteNr = "999998";
        konto("5000", "Anderes Jahr", 2002);
        mks::NeueKontoNr = mks::festeLaenge6(neueKontoNr);
        oeffnen();

        // One box, no copy dialog, no hint after it.
        QCOMPARE(titel(), QStringList {"Hinweis auf leeren Datenbestand"});
        QCOMPARE(m_kopierDialoge, 0);
        QCOMPARE(m_boxen->eintraege().front().text,
                 "Die SachkontenDatei für Buchungsjahr: 2003 ist komplett leer.\r\n"
                 "Es wird anschließend automatisch ein \"internes Verrechnungskonto Nr: 999998\" "
                 "eröffnet.");
        QCOMPARE(m_boxen->eintraege().front().buttons, vbOKOnly);
        QCOMPARE(konten(), 1);
        QCOMPARE(konten(2002), 1);
        // The designation names the number as stored, right-trimmed.
        QCOMPARE(gespeichert(gespeicherteNr, "KontoBezeichnung").toString(),
                 "Sachkonto-Nr " + gespeicherteNr);
        QCOMPARE(gespeichert(gespeicherteNr, "KontoAbrUstProz").toInt(), 100);
        QCOMPARE(gespeichert(gespeicherteNr, "KontoPVAZusatz").toInt(), -1);
        QCOMPARE(gespeichert(gespeicherteNr, "KontoTypus").toInt(), 0);
        QCOMPARE(kk()->rs().RecordCount(), 1);
        QCOMPARE(aktuell(), gespeicherteNr);
        QVERIFY(!mks::VerrechnungskontoWirdEroeffnet);
        QVERIFY(!mks::NeueroeffnungLaeuft);
        QVERIFY(!mks::BezeichnungFokusAusstehend);
        QVERIFY(c<QPushButton>("cmdKontoNeueröff")->isEnabled());
        QCOMPARE(mks::NeueroeffnungsNr, mks::festeLaenge6({}));
        QVERIFY(m_form->focusWidget() != c("inpKontoBezeichnung"));
    }

    // --- navigation and keys ---

    void bildTastenLaufenBisZumEndeUndZurueck()
    {
        standardKonten();
        oeffnen();
        // The data controls use the session's database with the suite's password.
        QVERIFY(kk()->Connect().endsWith("pwd=kellerabteil4;"));
        QCOMPARE(c<QLabel>("lblBuchjahr")->text(), Jahr);
        QCOMPARE(aktuell(), "1000");
        fokusAuf(c("inpKontoBezeichnung"));
        taste(Qt::Key_PageDown);
        QCOMPARE(aktuell(), "1200");
        QCOMPARE(nrFeld()->text(), "1200");
        QCOMPARE(c<QLabel>("lblKontoBezeichnung")->text(), "Bank");
        taste(Qt::Key_PageDown);
        QCOMPARE(m_boxen->anzahl(), 0);
        taste(Qt::Key_PageDown);
        QCOMPARE(m_boxen->texte(), QStringList {"DateiEnde erreicht"});
        QCOMPARE(m_boxen->letzter().titel, anwendungsTitel());
        QCOMPARE(aktuell(), "2000");
        QCOMPARE(nrFeld()->text(), "2000");
        m_boxen->leeren();
        taste(Qt::Key_PageUp);
        taste(Qt::Key_PageUp);
        QCOMPARE(aktuell(), "1000");
        QCOMPARE(m_boxen->anzahl(), 0);
        taste(Qt::Key_PageUp);
        QCOMPARE(m_boxen->texte(), QStringList {"DateiAnfang erreicht"});
        QCOMPARE(aktuell(), "1000");
        QCOMPARE(nrFeld()->text(), "1000");
    }

    void f2NurImNummernfeld()
    {
        standardKonten();
        oeffnen();
        KomponentenRegistrierung attrappe(QStringLiteral("zelDiverseListen"),
                                          [] { return std::make_unique<ListeAttrappe>(); });
        ListeAttrappe::s_aufrufe = 0;
        ListeAttrappe::s_auswahl = QVariant();
        fokusAuf(c("inpKontoBezeichnung"));
        taste(Qt::Key_F2);
        QCOMPARE(ListeAttrappe::s_aufrufe, 0);
        fokusAuf(nrFeld());
        taste(Qt::Key_F2);
        QCOMPARE(ListeAttrappe::s_aufrufe, 1);
    }

    void leererDatensatzbestandNimmtNurEscape()
    {
        standardKonten();
        oeffnen();
        m_db->execute("DELETE FROM ObjKanzleiKontenstamm");
        QVERIFY(kk()->rs().Requery());
        QCOMPARE(kk()->rs().RecordCount(), 0);
        QSignalSpy liste(c<QPushButton>("cmdKontoListe"), &QPushButton::clicked);
        fokusAuf(nrFeld());
        for (Qt::Key k : {Qt::Key_PageDown, Qt::Key_PageUp, Qt::Key_F1, Qt::Key_F2})
            taste(k);
        QCOMPARE(m_boxen->anzahl(), 0);
        QCOMPARE(liste.count(), 0);
        QVERIFY(!frame::Hilfefenster::offenes());
        QVERIFY(m_form->isVisible());
        taste(Qt::Key_Escape);
        QVERIFY(!m_form->isVisible());
    }

    // F1 and "?" open the help window at the field the user is in; a click on "?" means the
    // field before the button. Anchors with umlauts are found.
    void f1OeffnetDieHilfeZumFokus()
    {
        standardKonten();
        oeffnen();
        fokusAuf(nrFeld());
        taste(Qt::Key_F1);
        QCOMPARE(hilfeAnker(), "inpKontoNr");
        hilfeSchliessen();
        fokusAuf(c("inpKontoBezeichnung"));
        QTest::mouseClick(c("cmdHilfe"), Qt::LeftButton);
        QCOMPARE(hilfeAnker(), "inpKontoBezeichnung");
        hilfeSchliessen();
        fokusAuf(c("cmbKontoUstProz"));
        taste(Qt::Key_F1);
        QCOMPARE(hilfeAnker(), "cmbKontoUstProz");
        hilfeSchliessen();
        fokusAuf(c("cmdKontoLöschen"));
        taste(Qt::Key_F1);
        QCOMPARE(hilfeAnker(), "cmdKontoLöschen");
        QCOMPARE(frame::Hilfefenster::offenes()->abschnitt(), "Kontenstammsatz löschen");
        QCOMPARE(m_boxen->anzahl(), 0);
    }

    // The help file of the call is checked when the screen loads; "?" is offered only with help.
    void hilfeBeimLaden_data()
    {
        QTest::addColumn<QString>("datei");
        QTest::addColumn<QStringList>("meldungen");
        QTest::newRow("no help file")
            << QString()
            << QStringList {"Die Definition für den App.Helpfile = leer\r\n"
                            "Es kann keine Onlinehilfe angezeigt werden !"};
        QTest::newRow("help file missing")
            << "/nicht/da/hilfe.html"
            << QStringList {"Die Hilfedatei (App.HelpFile) /nicht/da/hilfe.html ist nicht "
                            "auffindbar.\r\nEs kann keine Onlinehilfe angezeigt werden !"};
        QTest::newRow("help file there") << ZEP_HILFE_QUELLE << QStringList {};
    }
    void hilfeBeimLaden()
    {
        QFETCH(QString, datei);
        QFETCH(QStringList, meldungen);
        mks::AufrufInfo[mks::slot::Hilfedatei] = datei;
        standardKonten();
        oeffnen();
        QCOMPARE(m_boxen->texte(), meldungen);
        QCOMPARE(mks::HilfeVorhanden, meldungen.isEmpty());
        QCOMPARE(c("cmdHilfe")->isVisible(), meldungen.isEmpty());
        fokusAuf(nrFeld());
        taste(Qt::Key_F1);
        QCOMPARE(hilfeAnker(), meldungen.isEmpty() ? "inpKontoNr" : "");
    }

    // F1 in the number dialog opens the help there, usable while the dialog runs modally.
    void f1ImNummerndialog()
    {
        standardKonten();
        oeffnen();
        bool gesehen = false;
        QStringList anker;
        QWidget *besitzer = nullptr;
        imDialog<frmNeu>(gesehen, [&](frmNeu &d) {
            for (const char *name : {"inpNeuEröffKontoNr", "cmdOK"}) {
                auto *w = d.findChild<QWidget *>(QString::fromUtf8(name));
                w->setFocus();
                QTest::keyClick(w, Qt::Key_F1);
                anker << hilfeAnker();
            }
            besitzer = frame::Hilfefenster::offenes()->parentWidget();
            QCOMPARE(besitzer, &d);
            dialogKnopf(d, "cmdAbbrechen");
        });
        c<QPushButton>("cmdKontoNeueröff")->click();
        QVERIFY(gesehen);
        QCOMPARE(anker, (QStringList {"inpNeuEröffKontoNr", "frmNeu.cmdOK"}));
        // Back with the screen when the dialog has closed.
        QCOMPARE(frame::Hilfefenster::offenes()->parentWidget(), m_form.get());
    }

    void formpruefungVorDemLesen_data()
    {
        QTest::addColumn<bool>("leer"); // the year holds no account
        QTest::addColumn<QString>("weg"); // how the number field is left
        QTest::addColumn<QString>("eingabe");
        QTest::addColumn<QString>("meldung");
        const QString null = "Kontonummer 0 oder 00 oder 000 oder Leer ist ungültig";
        const QString kurz
            = "Sachkonten-Kontonummern müssen mindestens 4-stellig eingegeben werden.\r\n"
              "Z.B. muss die Kontonummer \"1\" als \"0001\" eingegeben werden.\r\n\r\n"
              "Grundsätzlich sind Sachkonten-Kontonummern 4-, 5- oder 6-stellig verwendbar.";
        QTest::newRow("leer Blanks") << true << "Tab"
                                     << "   " << null;
        QTest::newRow("leer 0") << true << "Tab"
                                << "0" << null;
        QTest::newRow("leer 00") << true << "Tab"
                                 << "00" << null;
        QTest::newRow("leer 000 mit Blank") << true << "Tab"
                                            << "000 " << null;
        QTest::newRow("leer 1") << true << "Tab"
                                << "1" << kurz;
        QTest::newRow("leer 01") << true << "Tab"
                                 << "01" << kurz;
        QTest::newRow("leer 001") << true << "Tab"
                                  << "001" << kurz;
        QTest::newRow("leer 0001 liest") << true << "Tab"
                                         << "0001" << NichtExistentTitel;
        // In a year with accounts the form is checked before the number is looked up.
        QTest::newRow("1 Enter") << false << "Enter"
                                 << "1" << kurz;
        QTest::newRow("01 Tab") << false << "Tab"
                                << "01" << kurz;
        QTest::newRow("001 Enter") << false << "Enter"
                                   << "001" << kurz;
        QTest::newRow("0 Enter") << false << "Enter"
                                 << "0" << null;
        QTest::newRow("00 Tab") << false << "Tab"
                                << "00" << null;
        QTest::newRow("000 Enter") << false << "Enter"
                                   << "000" << null;
    }
    void formpruefungVorDemLesen()
    {
        QFETCH(bool, leer);
        QFETCH(QString, weg);
        QFETCH(QString, eingabe);
        QFETCH(QString, meldung);
        standardKonten();
        oeffnen();
        if (leer) {
            m_db->execute("DELETE FROM ObjKanzleiKontenstamm");
            QVERIFY(kk()->rs().Requery());
            QCOMPARE(nrFeld()->text(), QString());
        }
        fremdeDialogeAbweisen();
        fokusAuf(nrFeld());
        nrFeld()->setText(eingabe);
        if (meldung == NichtExistentTitel)
            m_boxen->antworte(vbYes);
        if (weg == u"Enter")
            QTest::keyClick(nrFeld(), Qt::Key_Return);
        else
            c("inpKontoAnmerkung1")->setFocus(Qt::TabFocusReason);
        QTRY_COMPARE(QApplication::focusWidget(), nrFeld());
        QCOMPARE(m_fremdeDialoge, 0);
        if (!leer)
            QCOMPARE(aktuell(), "1000");
        QCOMPARE(m_boxen->anzahl(), 1);
        if (meldung == NichtExistentTitel) {
            // "Ja" in an empty year leaves the number field empty.
            QCOMPARE(m_boxen->letzter().titel, meldung);
            QCOMPARE(nrFeld()->text(), QString());
            QVERIFY(!mks::PruefungFehlgeschlagen);
        } else {
            QCOMPARE(m_boxen->letzter().text, meldung);
            QCOMPARE(nrFeld()->text(), eingabe);
            QVERIFY(mks::PruefungFehlgeschlagen);
        }
    }

    void neuKnopfImLeerenBestandSchlaegtDieNummerVor()
    {
        standardKonten();
        oeffnen();
        m_db->execute("DELETE FROM ObjKanzleiKontenstamm");
        QVERIFY(kk()->rs().Requery());
        fokusAuf(nrFeld());
        QTest::keyClicks(nrFeld(), "4711");
        bool gesehen = false;
        QString vorschlag;
        imDialog<frmNeu>(gesehen, [&vorschlag](frmNeu &d) {
            vorschlag = dialogFeld(d)->text();
            dialogKnopf(d, "cmdAbbrechen");
        });
        QTest::mouseClick(c("cmdKontoNeueröff"), Qt::LeftButton);
        QVERIFY(gesehen);
        QCOMPARE(vorschlag, "4711");
        QCOMPARE(m_boxen->anzahl(), 0);
        QCOMPARE(nrFeld()->text(), QString());
        QCOMPARE(m_form->focusWidget(), nrFeld());
        QVERIFY(mks::ImNummernfeldBleiben);
        QCOMPARE(konten(), 0);
    }

    void escapeSchliesstUndSpeichertDieEingabe()
    {
        standardKonten();
        oeffnen();
        auto *anmerkung = c<QLineEdit>("inpKontoAnmerkung1");
        fokusAuf(anmerkung);
        QTest::keyClicks(anmerkung, "getippt");
        taste(Qt::Key_Escape);
        QVERIFY(!m_form->isVisible());
        QCOMPARE(gespeichert("1000", "KontoAnmerkung1").toString(), "getippt");
        QCOMPARE(m_boxen->anzahl(), 0);
    }

    void datenfehlerWirdZweimalGemeldet()
    {
        standardKonten();
        oeffnen();
        nrFeld()->setText("9");
        kk()->fehlerAusloesen(3021, "Kein aktueller Datensatz.");
        // The component's box with the turned number, then the control's own message.
        QCOMPARE(m_boxen->anzahl(), 2);
        QVERIFY(m_boxen->eintraege().at(0).text.startsWith("3260 "));
        QCOMPARE(m_boxen->eintraege().at(1).text, "Kein aktueller Datensatz.");
        QCOMPARE(FehlerDialogAttrappe::s_berichte,
                 QStringList {"3260|zelKontenStamm, in KKData_Error"});
        FehlerDialogAttrappe::s_berichte.clear();
        QCOMPARE(nrFeld()->text(), "1000");
    }

    void nachschlagenOhneTabelle_data()
    {
        QTest::addColumn<QString>("tabelle"); // made unreadable
        QTest::addColumn<bool>("nachDemLaden");
        QTest::addColumn<QString>("aktion");
        QTest::addColumn<QString>("ort");
        QTest::addColumn<QString>("meldung"); // "": no box at all
        const QString zel = "zelKontenStamm, in ";
        QTest::newRow("Schlüssel") << "AllgSchluesselDaten" << false << "laden" << zel + "AslSelect"
                                   << "";
        QTest::newRow("BK-Blöcke")
            << "AbrPosBkBlöcke" << false << "laden" << zel + "BkBlockPosSelect"
            << "";
        QTest::newRow("Bilanzpositionen")
            << "BilanzPos" << false << "laden" << zel + "BilanzPosSelect"
            << "";
        QTest::newRow("ZL7-Positionen")
            << "BilanzPosZL7" << false << "laden" << zel + "Zl7BilanzPosSelect"
            << "";
        // Not knowing whether the account exists, nothing is read and no opening offered.
        QTest::newRow("Konto lesen")
            << "ObjKanzleiKontenstamm" << true << "lesen" << zel + "KKChkSelect"
            << "";
        QTest::newRow("Konto löschen")
            << "ObjKanzleiSalden" << true << "löschen" << zel + "SsCheckSelect"
            << "Kontenstammsatz mit der Konto-Nr: 1000 wurde nicht gelöscht, da die Saldensätze "
               "zu diesem Konto nicht gelesen werden konnten.";
        QTest::newRow("Typ ändern") << "ObjKanzleiSalden" << true << "typ" << zel + "SsCheckSelect"
                                    << "Die Buchungen zu diesem Konto konnten nicht gelesen "
                                       "werden.\r\nDer KontoTypus bleibt unverändert.";
    }
    void nachschlagenOhneTabelle()
    {
        QFETCH(QString, tabelle);
        QFETCH(bool, nachDemLaden);
        QFETCH(QString, aktion);
        QFETCH(QString, ort);
        QFETCH(QString, meldung);
        standardKonten();
        m_db->execute("UPDATE ObjKanzleiKontenstamm SET KontoBilPosAktPass = 1");
        if (!nachDemLaden)
            m_db->execute("DROP TABLE " + tabelle);
        oeffnen();
        if (nachDemLaden)
            m_db->execute("DROP TABLE " + tabelle);
        fremdeDialogeAbweisen();
        if (aktion == u"lesen") {
            nummerLesen("2000");
            QCOMPARE(nrFeld()->text(), "1000");
            QTRY_COMPARE(QApplication::focusWidget(), nrFeld());
        } else if (aktion == u"löschen") {
            m_boxen->antworte(vbYes);
            QTest::mouseClick(c("cmdKontoLöschen"), Qt::LeftButton);
            QCOMPARE(konten(), 3);
        } else if (aktion == u"typ") {
            auto *typ = c<QComboBox>("cmbKontoTypus");
            fokusAuf(typ);
            typ->setCurrentIndex(1);
            emit typ->activated(1);
            fokusAuf(c("inpKontoAnmerkung1"));
            QCOMPARE(typ->currentText(), "Kanzleikonto");
            taste(Qt::Key_PageDown);
            QCOMPARE(gespeichert("1000", "KontoTypus").toInt(), 0);
        }
        // Reported once, through the common report, with the place of the look-up.
        QCOMPARE(FehlerDialogAttrappe::s_berichte, QStringList {"3078|" + ort});
        FehlerDialogAttrappe::s_berichte.clear();
        QStringList boxen = meldung.isEmpty() ? QStringList() : QStringList {meldung};
        if (aktion == u"löschen")
            boxen.prepend("Kontenstammsatz löschen ?");
        QCOMPARE(m_boxen->texte(), boxen);
        QCOMPARE(m_fremdeDialoge, 0);
        if (aktion != u"typ")
            QCOMPARE(aktuell(), "1000");
    }

    // --- reading by number ---

    void lesenNachNummer_data()
    {
        QTest::addColumn<QString>("eingabe");
        QTest::addColumn<bool>("nurAnzeige");
        QTest::addColumn<int>("antwort"); // 0: no question expected
        QTest::addColumn<QString>("kontoDanach");
        QTest::addColumn<QString>("feldDanach");
        QTest::addColumn<QString>("meldung");
        QTest::addColumn<bool>("tab"); // the field is left with Tab instead of Enter
        const QString frage = "das SachKonto mit der Nummer: 4711   ist nicht existent\r\n\r\n"
                              "Klicken Sie \"JA\" oder Enter wenn Sie eine andere Auswahl treffen "
                              "möchten \r\noder \"Nein\" wenn Sie einen neuen KontenStammsatz "
                              "eröffnen wollen:";
        QTest::newRow("Tab") << "1200" << false << 0 << "1200"
                             << "1200" << QString() << true;
        QTest::newRow("Tab, fehlt, Ja") << "4711" << false << int(vbYes) << "1000"
                                        << "1000" << frage << true;
        QTest::newRow("vorhanden") << "2000" << false << 0 << "2000"
                                   << "2000" << QString() << false;
        QTest::newRow("vorhanden mit Blanks") << " 1200  " << false << 0 << "1200"
                                              << "1200" << QString() << false;
        QTest::newRow("angezeigtes Konto") << "1000" << false << 0 << "1000"
                                           << "1000" << QString() << false;
        QTest::newRow("nur Blanks") << "   " << false << 0 << "1000"
                                    << "   "
                                    << "Kontonummer LEER ist nicht zulässig" << false;
        QTest::newRow("anderes Jahr, Ja") << "5000" << false << int(vbYes) << "1000"
                                          << "1000" << QString(frage).replace("4711", "5000")
                                          << false;
        QTest::newRow("nur Anzeige")
            << "7777" << true << 0 << "1000"
            << "7777"
            << "Das SachKonto mit der Nummer: 7777   ist nicht existent\r\n\r\n"
               "Bitte treffen Sie eine andere Auswahl."
            << false;
    }
    void lesenNachNummer()
    {
        QFETCH(QString, eingabe);
        QFETCH(bool, nurAnzeige);
        QFETCH(int, antwort);
        QFETCH(QString, kontoDanach);
        QFETCH(QString, feldDanach);
        QFETCH(QString, meldung);
        QFETCH(bool, tab);
        standardKonten();
        mks::NurAnzeige = nurAnzeige;
        oeffnen();
        if (antwort)
            m_boxen->antworte(antwort);
        if (tab) {
            fokusAuf(nrFeld());
            nrFeld()->setText(eingabe);
            c("inpKontoBezeichnung")->setFocus(Qt::TabFocusReason);
            QTRY_COMPARE(QApplication::focusWidget(),
                         meldung.isEmpty() ? c("inpKontoBezeichnung") : nrFeld());
            QCOMPARE(mks::ImNummernfeldBleiben, !meldung.isEmpty());
        } else {
            nummerLesen(eingabe);
        }
        QCOMPARE(aktuell(), kontoDanach);
        QCOMPARE(nrFeld()->text(), feldDanach);
        QCOMPARE(m_boxen->texte(), meldung.isEmpty() ? QStringList() : QStringList {meldung});
        if (antwort) {
            QCOMPARE(m_boxen->letzter().titel, NichtExistentTitel);
            QCOMPARE(m_boxen->letzter().buttons, vbYesNo | vbQuestion);
        }
        if (!meldung.isEmpty())
            QCOMPARE(QApplication::focusWidget(), nrFeld());
        QCOMPARE(konten(), 3);
    }

    // The real question box: Escape is no "Nein" there, so it opens no account.
    void escapeBeiNichtExistentEroeffnetNichts()
    {
        standardKonten();
        oeffnen();
        m_boxen.reset();
        const auto protokollZurueck = qScopeGuard([this] {
            m_boxen = std::make_unique<platform::MsgBoxProtokoll>();
        });
        QString boxTitel;
        bool offenNachEscape = false;
        int andereDialoge = 0;
        QTimer wache;
        wache.setInterval(10);
        connect(&wache, &QTimer::timeout, [&] {
            auto *d = qobject_cast<QDialog *>(QApplication::activeModalWidget());
            if (auto *box = qobject_cast<QMessageBox *>(d); box && boxTitel.isEmpty()) {
                boxTitel = box->windowTitle();
                QTest::keyClick(box, Qt::Key_Escape);
                offenNachEscape = box->isVisible();
                if (offenNachEscape)
                    QTest::keyClick(box, Qt::Key_Return);
            } else if (d && d != m_form.get()) {
                ++andereDialoge;
                d->reject();
            }
        });
        wache.start();
        nummerLesen("4711");
        QCOMPARE(boxTitel, NichtExistentTitel);
        QVERIFY(offenNachEscape);
        QCOMPARE(andereDialoge, 0);
        QCOMPARE(konten(), 3);
        QCOMPARE(nrFeld()->text(), "1000");
        QCOMPARE(m_form->focusWidget(), nrFeld());
    }

    void neinEroeffnetDasGetippteKonto()
    {
        standardKonten();
        oeffnen();
        bool gesehen = false;
        QString vorschlag;
        imDialog<frmNeu>(gesehen, [&vorschlag](frmNeu &d) {
            vorschlag = dialogFeld(d)->text();
            dialogKnopf(d, "cmdOK");
        });
        m_boxen->antworte({vbNo, vbYes});
        nummerLesen("4711");
        QVERIFY(gesehen);
        QCOMPARE(vorschlag, "4711");
        QCOMPARE(titel(),
                 (QStringList {NichtExistentTitel, "Bitte bestätigen Sie",
                               "Kontrollieren und verändern Sie die provisorischen "
                               "Feldinhalte"}));
        QCOMPARE(m_boxen->eintraege().at(1).text, "Kontenstammsatz Konto 4711   neueröffnen ?");
        QCOMPARE(aktuell(), "4711");
        QCOMPARE(nrFeld()->text(), "4711");
        QCOMPARE(gespeichert("4711", "KontoBezeichnung").toString(), "Sachkonto-Nr 4711");
        QCOMPARE(konten(), 4);
        QTRY_COMPARE(m_form->focusWidget(), c("inpKontoBezeichnung"));
        QVERIFY(!mks::NeueroeffnungVomNummernfeld);
    }

    // --- opening through the button ---

    void nummerndialogWeistZurueck_data()
    {
        QTest::addColumn<QString>("eingabe");
        QTest::addColumn<QString>("titelErwartet");
        QTest::addColumn<QString>("text");
        QTest::newRow("leer") << ""
                              << "KontoNr leer ungültig"
                              << "Ungültige, leere Kontonummer wurde eingegeben";
        QTest::newRow("nur Blanks") << "   "
                                    << "KontoNr leer ungültig"
                                    << "Ungültige, leere Kontonummer wurde eingegeben";
        const QString kurz = "Kontonummer wurde zu kurz eingegeben.\r\n"
                             "Kontonummern müssen 4-, 5- oder 6-stellig eingegeben werden.\r\n\r\n"
                             "Z.B. Kontonummer 1 muss als 0001 eingegeben werden.";
        QTest::newRow("1") << "1"
                           << "Kontonummer hat falsche Anzahl Stellen" << kurz;
        QTest::newRow("001") << "001"
                             << "Kontonummer hat falsche Anzahl Stellen" << kurz;
        QTest::newRow("vorhanden") << "1200" << anwendungsTitel() << "Konto bereits existent";
    }
    void nummerndialogWeistZurueck()
    {
        QFETCH(QString, eingabe);
        QFETCH(QString, titelErwartet);
        QFETCH(QString, text);
        standardKonten();
        oeffnen();
        bool gesehen = false;
        bool offenNachOk = false;
        bool fokusImFeld = false;
        imDialog<frmNeu>(gesehen, [&](frmNeu &d) {
            dialogFeld(d)->setText(eingabe);
            dialogKnopf(d, "cmdOK");
            offenNachOk = d.isVisible();
            fokusImFeld = d.focusWidget() == dialogFeld(d);
            dialogKnopf(d, "cmdAbbrechen");
        });
        c<QPushButton>("cmdKontoNeueröff")->click();
        QVERIFY(gesehen);
        QVERIFY(offenNachOk);
        QVERIFY(fokusImFeld);
        QCOMPARE(m_boxen->texte(), QStringList {text});
        QCOMPARE(m_boxen->letzter().titel, titelErwartet);
        QVERIFY(mks::DialogAbgebrochen);
        QCOMPARE(nrFeld()->text(), "1000");
        QCOMPARE(aktuell(), "1000");
        QCOMPARE(konten(), 3);
    }

    void eroeffnungUeberDenKnopf_data()
    {
        QTest::addColumn<QString>("nummer");
        QTest::addColumn<int>("bestaetigung");
        QTest::addColumn<bool>("zuvor"); // another user opens the number just before the write
        QTest::newRow("0001 ja") << "0001" << int(vbYes) << false;
        QTest::newRow("anderes Jahr ja") << "5000" << int(vbYes) << false;
        QTest::newRow("sechsstellig ja") << "123456" << int(vbYes) << false;
        QTest::newRow("nein") << "0001" << int(vbNo) << false;
        QTest::newRow("ein anderer kam zuvor") << "0001" << int(vbYes) << true;
    }
    void eroeffnungUeberDenKnopf()
    {
        QFETCH(QString, nummer);
        QFETCH(int, bestaetigung);
        QFETCH(bool, zuvor);
        standardKonten();
        oeffnen();
        // An edit of the record shown is dropped by the opening, not written.
        auto *anmerkung = c<QLineEdit>("inpKontoAnmerkung1");
        fokusAuf(anmerkung);
        QTest::keyClicks(anmerkung, "verworfen");
        bool gesehen = false;
        QString vorschlag = "nicht gesetzt";
        imDialog<frmNeu>(gesehen, [&](frmNeu &d) {
            vorschlag = dialogFeld(d)->text();
            dialogFeld(d)->setText(nummer);
            dialogKnopf(d, "cmdOK");
        });
        m_boxen->setAntwortFunktion([&](const MsgBoxEintrag &e) {
            if (zuvor && e.text.startsWith("Kontenstammsatz Konto"))
                konto(nummer, "Fremd");
            return e.text.startsWith("Kontenstammsatz Konto") ? bestaetigung : int(vbOK);
        });
        QTest::mouseClick(c("cmdKontoNeueröff"), Qt::LeftButton);
        QVERIFY(gesehen);
        QCOMPARE(gespeichert("1000", "KontoAnmerkung1").toString(), QString());
        if (zuvor) {
            QCOMPARE(m_boxen->anzahl(), 2);
            QVERIFY2(
                m_boxen->letzter().text.startsWith(
                    "Das Konto " + nummer + " wurde soeben von einem anderen Benutzer eröffnet."),
                qPrintable(m_boxen->letzter().text));
            QCOMPARE(konten(), 4);
            QCOMPARE(aktuell(), nummer);
            QCOMPARE(c<QLineEdit>("inpKontoBezeichnung")->text(), "Fremd");
            return;
        }
        // The number shown is not proposed again.
        QCOMPARE(vorschlag, QString());
        QCOMPARE(mks::NeueKontoNr, mks::festeLaenge6(nummer));
        QCOMPARE(m_boxen->eintraege().at(0).text,
                 "Kontenstammsatz Konto " + mks::festeLaenge6(nummer) + " neueröffnen ?");
        if (bestaetigung == vbNo) {
            QCOMPARE(m_boxen->anzahl(), 1);
            QCOMPARE(konten(), 3);
            QCOMPARE(nrFeld()->text(), "1000");
            QCOMPARE(aktuell(), "1000");
            QCOMPARE(anmerkung->text(), QString());
            QVERIFY(kk()->rs().MoveNext());
            QCOMPARE(gespeichert("1000", "KontoAnmerkung1").toString(), QString());
            return;
        }
        QCOMPARE(m_boxen->anzahl(), 2);
        QCOMPARE(m_boxen->letzter().text,
                 "Kontrollieren, verändern oder ergänzen Sie anschließend die provisorischen "
                 "Objekt-Feldinhalte gemäß Ihren Erfordernissen !");
        QCOMPARE(konten(), 4);
        QCOMPARE(gespeichert(nummer, "KontoBezeichnung").toString(), "Sachkonto-Nr " + nummer);
        QCOMPARE(gespeichert(nummer, "KontoAbrUstProz").toInt(), 100);
        QCOMPARE(aktuell(), nummer);
        QCOMPARE(nrFeld()->text(), nummer);
        QCOMPARE(c<QLineEdit>("inpKontoBezeichnung")->text(), "Sachkonto-Nr " + nummer);
        QTRY_COMPARE(m_form->focusWidget(), c("inpKontoBezeichnung"));
        // The new account is an ordinary record: its checks run again and pass.
        m_form->Fehlerprüfungen_0();
        QVERIFY(!mks::PruefungFehlgeschlagen);
        QCOMPARE(m_boxen->anzahl(), 2);
    }

    void eroeffnungLaeuftOhnePruefung()
    {
        // The record shown fails the checks; the opening itself leaves it without a check, and
        // the first record of the year, passed on the way, says nothing of its own.
        konto("1000", "");
        konto("1200", "Bank");
        m_db->execute("UPDATE ObjKanzleiKontenstamm SET KontoUstKtoNr = '4711'");
        oeffnen();
        QCOMPARE(aktuell(), "1000");
        QCOMPARE(m_boxen->anzahl(), 1); // the wrong VAT account, said when shown
        m_boxen->leeren();
        mks::NeueKontoNr = mks::festeLaenge6("3000");
        m_form->Neueröffnung();
        QVERIFY(!m_boxen->texte().contains(BezeichnungLeer));
        QCOMPARE(aktuell(), "3000");
        QCOMPARE(konten(), 3);
        QCOMPARE(m_boxen->texte(),
                 QStringList {"Kontrollieren, verändern oder ergänzen Sie anschließend die "
                              "provisorischen Objekt-Feldinhalte gemäß Ihren Erfordernissen !"});
    }

    // --- the save gate ---

    // Ctrl+H shows the account's changes; an old value goes back as an edit that must pass
    // the checks before it is saved, and the save is logged again.
    void verlaufUebernimmtAltenWert_data()
    {
        QTest::addColumn<QString>("frueher");
        QTest::addColumn<QString>("bleibt");
        QTest::addColumn<QStringList>("meldungen");
        QTest::newRow("alter Text kommt zurück") << "Barkassa"
                                                 << "Barkassa" << QStringList {};
        QTest::newRow("leere Bezeichnung wird geprüft")
            << ""
            << "Handkassa" << QStringList {BezeichnungLeer};
    }

    void verlaufUebernimmtAltenWert()
    {
        QFETCH(QString, frueher);
        QFETCH(QString, bleibt);
        QFETCH(QStringList, meldungen);
        standardKonten();
        for (const QString &text : {frueher, QStringLiteral("Handkassa")})
            m_db->execute("UPDATE ObjKanzleiKontenstamm SET KontoBezeichnung = ? WHERE KontoNr = "
                          "'1000'",
                          {text});
        oeffnen();
        QStringList zeile;
        QTimer::singleShot(50, this, [&] {
            auto *f = qobject_cast<frame::Verlaufsfenster *>(QApplication::activeModalWidget());
            if (!f)
                return;
            for (int s = 2; s < 5; ++s)
                zeile << f->tabelle()->item(0, s)->text();
            f->uebernehmenKnopf()->click();
        });
        fokusAuf(nrFeld());
        QTest::keyClick(nrFeld(), Qt::Key_H, Qt::ControlModifier);
        QCOMPARE(zeile, (QStringList {"Konto-Bezeichnung", frueher, "Handkassa"}));
        QCOMPARE(c<QLineEdit>("inpKontoBezeichnung")->text(), frueher);
        QCOMPARE(kk()->UpdateRecord(), meldungen.isEmpty());
        QCOMPARE(gespeichert("1000", "KontoBezeichnung").toString(), bleibt);
        QCOMPARE(m_boxen->texte(), meldungen);
        const auto log = platform::storage::Aenderungsprotokoll::lesen(
            *m_db, "ObjKanzleiKontenstamm", 2003, "1000");
        QCOMPARE(log.front().neu.value_or("-"), bleibt);
        if (!meldungen.isEmpty())
            c<QLineEdit>("inpKontoBezeichnung")->setText(bleibt);
    }

    // Another user's save of the account shown appears in the window within two seconds;
    // without pending edits it can be loaded, with them the typed values stay.
    void fremdeAenderungErscheint_data()
    {
        QTest::addColumn<bool>("eingabe");
        QTest::newRow("ohne eigene Eingabe: neu laden") << false;
        QTest::newRow("mit eigener Eingabe") << true;
    }

    void fremdeAenderungErscheint()
    {
        QFETCH(bool, eingabe);
        standardKonten();
        oeffnen();
        QCOMPARE(aktuell(), QStringLiteral("1000"));
        auto *bezeichnung = c<QLineEdit>("inpKontoBezeichnung");
        if (eingabe)
            bezeichnung->setText("Meine Kassa");
        auto anderer = Database::openSeparate(m_ort);
        anderer->execute("UPDATE ObjKanzleiKontenstamm SET KontoBezeichnung = 'Fremd' "
                         "WHERE KontoNr = '1000'");
        QTRY_VERIFY_WITH_TIMEOUT(
            m_form->findChild<QFrame *>("fraFremdeAenderung")
                && m_form->findChild<QFrame *>("fraFremdeAenderung")->isVisible(),
            2000);
        QVERIFY2(c<QLabel>("lblFremdeAenderung")->text().contains("Konto-Bezeichnung"),
                 qPrintable(c<QLabel>("lblFremdeAenderung")->text()));
        // Below the screen's controls: the window grew for it.
        QVERIFY(c("fraFremdeAenderung")->geometry().top() >= c("cmdExit")->geometry().bottom());
        auto *laden = c<QPushButton>("cmdNeuLaden");
        QCOMPARE(laden->isVisible(), !eingabe);
        if (!eingabe)
            laden->click();
        QCOMPARE(bezeichnung->text(),
                 eingabe ? QStringLiteral("Meine Kassa") : QStringLiteral("Fremd"));
        QVERIFY(m_boxen->texte().isEmpty());
        if (eingabe)
            kk()->UpdateControls();
    }

    void korrigierterSatzWirdGeschrieben()
    {
        standardKonten();
        oeffnen();
        int action = vbDataActionMoveNext;
        bool save = false;
        m_form->setKorrigiert(true);
        m_form->KKData_Validate(action, save);
        QVERIFY(save);
        QCOMPARE(action, int(vbDataActionMoveNext));
        // Cleared by the gate: the next move asks for no save of its own.
        save = false;
        m_form->KKData_Validate(action, save);
        QVERIFY(!save);
        // A failing record is never saved, corrected or not.
        m_form->setKorrigiert(true);
        c<QLineEdit>("inpKontoBezeichnung")->clear();
        m_form->KKData_Validate(action, save);
        QCOMPARE(action, int(vbDataActionCancel));
        QVERIFY(!save);
        QCOMPARE(m_boxen->texte(), QStringList {BezeichnungLeer});
    }

    // --- allocation key 0 ---

    void schluesselNull_data()
    {
        QTest::addColumn<QList<int>>("vorher");
        QTest::addColumn<QList<int>>("nachher");
        QTest::newRow("leer") << QList<int> {} << QList<int> {0};
        QTest::newRow("niedrigster 1") << QList<int> {1, 2} << QList<int> {0, 1, 2};
        QTest::newRow("0 vorhanden") << QList<int> {0, 3} << QList<int> {0, 3};
        QTest::newRow("negativ") << QList<int> {-1, 2} << QList<int> {-1, 2};
    }
    void schluesselNull()
    {
        QFETCH(QList<int>, vorher);
        QFETCH(QList<int>, nachher);
        standardKonten();
        for (int n : vorher)
            m_db->execute("INSERT INTO AllgSchluesselDaten (SchlNummer, SchlLangBezeich, "
                          "SchlAbDatum, SchlBisDatum) VALUES (?, 'vorhanden', ?, ?)",
                          {n, QDate(2000, 1, 1), QDate(2010, 1, 1)});
        oeffnen();
        QList<int> nummern;
        auto cur = m_db->query("SELECT SchlNummer FROM AllgSchluesselDaten ORDER BY SchlNummer");
        while (cur->next())
            nummern << int(cur->ganzzahl(0));
        QCOMPARE(nummern, nachher);
        auto *asl = c<DataControl>("ASLData");
        QCOMPARE(asl->rs().RecordCount(), nachher.size());
        QCOMPARE(asl->rs().feld("SchlNummer").toInt(), nachher.front());
        if (!vorher.contains(0) && nachher.contains(0)) {
            QCOMPARE(asl->rs().feld("SchlLangBezeich").toString(), "keine Definition");
            QCOMPARE(asl->rs().feld("SchlKurzbezeich").toString(), QString());
            QCOMPARE(asl->rs().feld("SchlAbDatum").toDate(), QDate(1900, 1, 1));
            QCOMPARE(asl->rs().feld("SchlBisDatum").toDate(), QDate(2099, 12, 31));
        }
        QCOMPARE(m_boxen->anzahl(), 0);
    }
};

ZEP_ENGINE_TEST_MAIN(TestKontenstammLebenszyklus)
#include "tst_kontenstamm_lebenszyklus.moc"
