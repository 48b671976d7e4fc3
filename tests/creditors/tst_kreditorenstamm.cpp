// The creditor screen driven offscreen on both engines: loading, navigation, reading by number,
// opening, the field checks, deletion and the list button.
#include "common/Einschleusung.h"
#include "common/TestDatenbank.h"
#include "creditors/frmKrNeu.h"
#include "creditors/frmKreditorenKontenStamm.h"
#include "creditors/mdlKreditoren.h"
#include "frame/Hilfefenster.h"
#include "frame/Verlaufsfenster.h"
#include "frame/mdlFehlerZL.h"
#include "frame/mdlKontenStamm.h"
#include "platform/core/CreateObject.h"
#include "platform/storage/Aenderungsprotokoll.h"
#include "platform/storage/Database.h"
#include "platform/storage/Schema.h"
#include "platform/ui/DataControl.h"
#include "platform/ui/Fehlerfalle.h"
#include "platform/ui/MsgBox.h"
#include "ui_frmKrNeu.h"
#include "ui_frmKreditorenKontenStamm.h"

#include <QAbstractItemView>
#include <QApplication>
#include <QComboBox>
#include <QLabel>
#include <QPushButton>
#include <QTableWidget>
#include <QTest>
#include <QTimer>

using namespace platform;
using creditors::frmKreditorenKontenStamm;
using creditors::frmKrNeu;
using platform::storage::Database;
namespace kr = creditors::mdlKreditoren;
namespace mks = mdlKontenStamm;

// Stands in for the suite's error dialog: remembers number and place of every report.
class FehlerDialogAttrappe : public QObject
{
    Q_OBJECT
public:
    static inline QStringList s_berichte; // "number|place"
    Q_INVOKABLE void Uebergeben(int nr, const QString &, const QString &, const QString &,
                                const QString &, const QString &ort, const QString &,
                                const QString &, bool)
    {
        s_berichte.append(QString::number(nr) + u'|' + ort);
    }
    Q_INVOKABLE void Anzeigen() { }
    Q_INVOKABLE qint16 Ergebnis() const { return 1; }
};

// Stands in for the selection lists: hands back s_nr and remembers the call information.
class ListenAttrappe : public QObject
{
    Q_OBJECT
public:
    static inline QVariantList s_info;
    static inline QVariant s_nr;
    static inline int s_aufrufe = 0;
    Q_INVOKABLE void KreditorenListe(const QVariant &info)
    {
        s_info = info.toList();
        ++s_aufrufe;
    }
    Q_INVOKABLE QVariant AuswahlNr() const { return s_nr; }
};

class TestKreditorenstamm : public QObject
{
    Q_OBJECT

private:
    QString m_ort;
    std::shared_ptr<Database> m_db;
    std::unique_ptr<MsgBoxProtokoll> m_boxen;
    std::unique_ptr<frmKreditorenKontenStamm> m_form;
    std::unique_ptr<KomponentenRegistrierung> m_fehlerDialog;

    Ui::frmKreditorenKontenStamm &ui() { return m_form->ui(); }

    void konto(qint32 nr, const QString &name, const QString &typus)
    {
        m_db->execute("INSERT INTO KreditorenKontenstamm (KrKontoNr, KrKontoBezeichnung, "
                      "KrKontoTypus, KrStornoDatum) VALUES (?, ?, ?, 0)",
                      {nr, name, typus});
    }
    void buchung(qint32 nr, const QVariant &objNr)
    {
        m_db->execute("INSERT INTO KreditorenBuchungen (KbKontoNr, KbObjNr, KbJJ, KbBetrag) "
                      "VALUES (?, ?, 2003, 10.5)",
                      {nr, objNr});
    }
    QVariant gespeichert(qint32 nr, const QString &feld)
    {
        return m_db->scalar("SELECT " + feld + " FROM KreditorenKontenstamm WHERE KrKontoNr = ?",
                            {nr});
    }
    qlonglong anzahl(const QString &tabelle)
    {
        return m_db->scalar("SELECT COUNT(*) FROM " + tabelle).toLongLong();
    }

    // Three accounts: 100 office, 200 and 300 property accounts.
    void standardKonten()
    {
        konto(100, "Alpha", "0");
        konto(200, "Beta", "1");
        konto(300, "Gamma", "1");
    }

    void oeffnen()
    {
        m_form = std::make_unique<frmKreditorenKontenStamm>();
        m_form->show();
        QApplication::setActiveWindow(m_form.get());
        QVERIFY(QTest::qWaitForWindowActive(m_form.get()));
    }

    void fokusAuf(QWidget *w)
    {
        w->setFocus(Qt::OtherFocusReason);
        QTRY_COMPARE(QApplication::focusWidget(), w);
    }

    // Moves the focus as the user would; a check may put it back elsewhere.
    void fokusVersuch(QWidget *w)
    {
        w->setFocus(Qt::OtherFocusReason);
        QCoreApplication::processEvents();
    }

    void taste(int key)
    {
        QWidget *f = QApplication::focusWidget();
        QVERIFY(f);
        QTest::keyClick(f, Qt::Key(key));
    }

    int nr() { return ui().KRData->rs().feld("KrKontoNr").toInt(); }

    // Runs `schritt` on the number dialog once it is shown modally; fails the test if it never
    // appears (the flag stays false).
    void imDialog(bool &gesehen, std::function<void(frmKrNeu &)> schritt)
    {
        gesehen = false;
        auto versuch = std::make_shared<std::function<void(int)>>();
        *versuch = [&gesehen, schritt, versuch](int rest) {
            auto *d = qobject_cast<frmKrNeu *>(QApplication::activeModalWidget());
            if (d) {
                gesehen = true;
                schritt(*d);
                return;
            }
            if (rest > 0)
                QTimer::singleShot(10, [versuch, rest] { (*versuch)(rest - 1); });
        };
        QTimer::singleShot(0, [versuch] { (*versuch)(300); });
    }

    QStringList texte() { return m_boxen->texte(); }

private slots:
    void init()
    {
        mks::zuruecksetzen();
        kr::zuruecksetzen();
        mks::AufrufInfo[mks::slot::Hilfedatei] = QStringLiteral(ZEP_HILFE_QUELLE);
        FehlerDialogAttrappe::s_berichte.clear();
        ListenAttrappe::s_info.clear();
        ListenAttrappe::s_nr = QVariant();
        ListenAttrappe::s_aufrufe = 0;
        m_fehlerDialog = std::make_unique<KomponentenRegistrierung>(
            "zelAllgError", [] { return std::make_unique<FehlerDialogAttrappe>(); });
        mdlFehlerZL::alsFehlerberichtEinrichten();
        m_ort = testhilfe::neueDatenbank();
        m_db = Database::open(m_ort);
        storage::schemaAnlegen(*m_db);
        mks::DatenbankPfad = m_ort;
        mks::Buchungsjahr = 2003;
        mks::VerarbeitungsBuchungsjahr = 2003;
        mks::AktuellesProgramm = "frmKreditorenKontenStamm";
        m_boxen = std::make_unique<MsgBoxProtokoll>();
        // OK boxes need no script; every question must be answered by the test.
        m_boxen->setAntwortFunktion(
            [](const MsgBoxEintrag &e) { return (e.buttons & 7) == vbOKOnly ? vbOK : 0; });
    }

    void cleanup()
    {
        delete frame::Hilfefenster::offenes();
        m_form.reset();
        m_db.reset();
        const QStringList warnungen = m_boxen->warnungen();
        const qsizetype offen = m_boxen->offeneAntworten();
        m_boxen.reset();
        m_fehlerDialog.reset();
        QVERIFY2(warnungen.isEmpty(), qPrintable(warnungen.join('\n')));
        QCOMPARE(offen, 0);
    }

    // --- typed SQL ---

    void eingetippteSqlBleibtText()
    {
        standardKonten();
        oeffnen();
        auto *feld = ui().inpKrKontoBezeichnung;
        for (const QString &p : testhilfe::einschleusungen()) {
            fokusAuf(feld);
            feld->clear();
            QTest::keyClicks(feld, p);
            QVERIFY(ui().KRData->UpdateRecord());
            QCOMPARE(gespeichert(100, "KrKontoBezeichnung").toString(), feld->text());
        }
        QCOMPARE(anzahl("KreditorenKontenstamm"), 3);
        QVERIFY(m_db->hasTable("ObjKanzleiKontenstamm"));
        QVERIFY(m_db->hasTable("BilanzPos"));
        QVERIFY(texte().isEmpty());
    }

    // --- help ---

    // F1 opens the help at the creditor screen's own sections, also in the number dialog; a
    // missing help file is said once at load.
    void f1ZeigtDieHilfeDesFeldes()
    {
        standardKonten();
        oeffnen();
        QStringList anker;
        const auto f1 = [&anker](QWidget *w) {
            w->setFocus();
            QTest::keyClick(w, Qt::Key_F1);
            auto *h = frame::Hilfefenster::offenes();
            anker << (h && h->isVisible() ? h->anker() : QString());
        };
        f1(ui().cmbKontoTypus);
        f1(ui().cmdKontoLöschen);
        bool gesehen = false;
        imDialog(gesehen, [&](frmKrNeu &d) {
            f1(d.findChild<QWidget *>(QStringLiteral("inpNeuEröffKontoNr")));
            d.findChild<QPushButton *>(QStringLiteral("cmdAbbrechen"))->click();
        });
        ui().cmdKontoNeueröff->click();
        QVERIFY(gesehen);
        QCOMPARE(anker,
                 (QStringList {"frmKreditorenKontenStamm.cmbKontoTypus",
                               "frmKreditorenKontenStamm.cmdKontoLöschen",
                               "frmKrNeu.inpNeuEröffKontoNr"}));
        QVERIFY(texte().isEmpty());

        m_form.reset();
        mks::AufrufInfo[mks::slot::Hilfedatei] = QString();
        oeffnen();
        QCOMPARE(texte(),
                 QStringList {"Die Definition für den App.Helpfile = leer\r\n"
                              "Es kann keine Onlinehilfe angezeigt werden !"});
    }

    // --- loading and navigation ---

    void ladenZeigtDasErsteKonto()
    {
        standardKonten();
        oeffnen();
        QCOMPARE(m_boxen->anzahl(), 0);
        QCOMPARE(m_form->windowTitle(), "Kreditoren-KontenStamm – Konto 1 von 3");
        QCOMPARE(ui().lblBuchjahr->text(), "2003");
        QCOMPARE(ui().cmbKontoTypus->count(), 2);
        QCOMPARE(ui().cmbKontoTypus->itemText(0), "Kanzleikonto");
        QCOMPARE(ui().cmbKontoTypus->itemData(0).toInt(), 0);
        QCOMPARE(ui().cmbKontoTypus->itemText(1), "Objektkonto");
        QCOMPARE(ui().cmbKontoTypus->itemData(1).toInt(), 1);
        QCOMPARE(ui().inpKrKontoNr->text(), "100");
        QCOMPARE(ui().inpKrKontoBezeichnung->text(), "Alpha");
        QCOMPARE(ui().Label1->text(), "Alpha");
        QCOMPARE(ui().cmbKontoTypus->currentText(), "Kanzleikonto");
        QVERIFY(ui().KRData->Connect().endsWith("pwd=kellerabteil4;"));
        QCOMPARE(ui().KbData->DatabaseName(), m_ort);
        QVERIFY(ui().cmdKontoLöschen->isEnabled());
        // The title marks an edit until it is saved by moving on.
        fokusAuf(ui().inpKrKontoBezeichnung);
        QTest::keyClicks(ui().inpKrKontoBezeichnung, "x");
        QCOMPARE(m_form->windowTitle(), "Kreditoren-KontenStamm – Konto 1 von 3 *");
        taste(Qt::Key_PageDown);
        QCOMPARE(m_form->windowTitle(), "Kreditoren-KontenStamm – Konto 2 von 3");
    }

    void leererBestandMeldetEinmalUndTastenTunNichts()
    {
        oeffnen();
        QCOMPARE(texte(), QStringList {"Der KreditorenKontenstamm ist komplett leer"});
        QCOMPARE(m_boxen->letzter().titel, "Hinweis auf leeren Datenbestand");
        fokusAuf(ui().inpKrKontoNr);
        taste(Qt::Key_PageDown);
        taste(Qt::Key_PageUp);
        QCOMPARE(m_boxen->anzahl(), 1);
        QVERIFY(m_form->isVisible());
    }

    void blaetternBisZuDenEnden()
    {
        standardKonten();
        oeffnen();
        fokusAuf(ui().inpKrKontoNr);
        taste(Qt::Key_PageUp);
        QCOMPARE(texte(), QStringList {"DateiAnfang erreicht"});
        QCOMPARE(m_boxen->letzter().titel, anwendungsTitel());
        QCOMPARE(nr(), 100);
        QCOMPARE(ui().inpKrKontoNr->text(), "100");
        taste(Qt::Key_PageDown);
        taste(Qt::Key_PageDown);
        QCOMPARE(ui().inpKrKontoNr->text(), "300");
        QCOMPARE(ui().cmbKontoTypus->currentText(), "Objektkonto");
        taste(Qt::Key_PageDown);
        QCOMPARE(texte().last(), "DateiEnde erreicht");
        QCOMPARE(nr(), 300);
        QCOMPARE(ui().inpKrKontoBezeichnung->text(), "Gamma");
    }

    void blaetternImTypusFeldBewegtDenDatensatz()
    {
        standardKonten();
        oeffnen();
        fokusAuf(ui().cmbKontoTypus);
        QCOMPARE(ui().cmbKontoTypus->currentIndex(), 0);
        taste(Qt::Key_PageDown);
        QCOMPARE(nr(), 200);
        QCOMPARE(ui().cmbKontoTypus->currentIndex(), 1);
        taste(Qt::Key_PageUp);
        QCOMPARE(nr(), 100);
        QCOMPARE(ui().cmbKontoTypus->currentIndex(), 0);
        // The combo never changed the type itself: nothing was written.
        QCOMPARE(gespeichert(100, "KrKontoTypus").toString(), "0");
        QCOMPARE(gespeichert(200, "KrKontoTypus").toString(), "1");
        // With the list open the keys pick no other type either.
        auto *kombi = ui().cmbKontoTypus;
        kombi->showPopup();
        QTRY_VERIFY(kombi->view()->isVisible());
        QTest::keyClick(kombi->view(), Qt::Key_PageDown);
        QTest::keyClick(kombi->view(), Qt::Key_Return);
        QTRY_VERIFY(!kombi->view()->isVisible());
        QCOMPARE(kombi->currentIndex(), 0);
        QCOMPARE(ui().inpKrKontoTypus->text(), "0");
        QCOMPARE(nr(), 100);
    }

    void gespeicherterTypZweiIstUngueltig()
    {
        konto(100, "Alpha", "2");
        oeffnen();
        QCOMPARE(ui().cmbKontoTypus->currentText(), "ungültiger Wert");
        QCOMPARE(ui().cmbKontoTypus->currentIndex(), -1);
    }

    void kombiSchreibtDenTypCode()
    {
        standardKonten();
        oeffnen();
        ui().cmbKontoTypus->setCurrentIndex(1);
        QCOMPARE(ui().inpKrKontoTypus->text(), "1");
        fokusAuf(ui().inpKrKontoNr);
        taste(Qt::Key_PageDown);
        QCOMPARE(gespeichert(100, "KrKontoTypus").toString(), "1");
    }

    // --- reading by number ---

    void lesenPerEnter()
    {
        standardKonten();
        oeffnen();
        fokusAuf(ui().inpKrKontoNr);
        QVERIFY(ui().cmdKontoEinlesen->isDefault());
        ui().inpKrKontoNr->setText("300");
        taste(Qt::Key_Return);
        QCOMPARE(nr(), 300);
        QCOMPARE(ui().Label1->text(), "Gamma");
        QCOMPARE(kr::KrNeuNr, 300);
        QCOMPARE(m_boxen->anzahl(), 0);
    }

    void fehlendeNummerJaBleibtAmAltenKonto()
    {
        standardKonten();
        oeffnen();
        fokusAuf(ui().inpKrKontoNr);
        taste(Qt::Key_PageDown);
        ui().inpKrKontoNr->setText("0777");
        m_boxen->antworte(vbYes);
        taste(Qt::Key_Return);
        QCOMPARE(m_boxen->anzahl(), 1);
        const MsgBoxEintrag &frage = m_boxen->letzter();
        QCOMPARE(frage.titel, "KreditorenKontoStammsatz nicht existent");
        QVERIFY(
            frage.text.startsWith("das KreditorenKonto mit der Nummer: 777 ist nicht existent"));
        QCOMPARE(frage.buttons & 7, int(vbYesNo));
        QCOMPARE(nr(), 200);
        QCOMPARE(ui().inpKrKontoNr->text(), "200");
        QCOMPARE(kr::KrFehlerFeld, "nicht prüfen");
        QCOMPARE(QApplication::focusWidget(), ui().inpKrKontoNr);
    }

    void fehlendeNummerNeinOeffnetDenDialogMitDerNummer()
    {
        standardKonten();
        oeffnen();
        fokusAuf(ui().inpKrKontoNr);
        ui().inpKrKontoNr->setText("555");
        m_boxen->antworte(vbNo);
        bool gesehen = false;
        QString imFeld;
        imDialog(gesehen, [&](frmKrNeu &d) {
            imFeld = d.ui().inpNeuEröffKontoNr->text();
            QTest::mouseClick(d.ui().cmdAbbrechen, Qt::LeftButton);
        });
        taste(Qt::Key_Return);
        QVERIFY(gesehen);
        QCOMPARE(imFeld, "555");
        QVERIFY(mks::NeueroeffnungVomNummernfeld);
        QVERIFY(kr::KrNeuAbbruch);
        QCOMPARE(ui().inpKrKontoNr->text(), "100");
        QCOMPARE(anzahl("KreditorenKontenstamm"), 3);
    }

    void nurAnzeige()
    {
        standardKonten();
        mks::AufrufInfo[mks::slot::Aufrufart] = 200;
        oeffnen();
        QVERIFY(mks::NurAnzeige);
        QVERIFY(!ui().inpKrKontoBezeichnung->isEnabled());
        QVERIFY(!ui().inpKrKontoTypus->isEnabled());
        QVERIFY(!ui().cmbKontoTypus->isEnabled());
        QVERIFY(!ui().cmdKontoLöschen->isEnabled());
        QVERIFY(ui().cmdKontoNeueröff->isEnabled());
        QVERIFY(ui().cmdKontoListe->isEnabled());
        fokusAuf(ui().inpKrKontoNr);
        ui().inpKrKontoNr->setText("999");
        taste(Qt::Key_Return);
        QCOMPARE(texte(),
                 QStringList {"Das KreditorenKonto mit der Nummer: 999 ist nicht "
                              "existent.\r\n\r\nBitte treffen Sie eine andere Auswahl."});
        QCOMPARE(m_boxen->letzter().buttons, int(vbOKOnly));
        QCOMPARE(ui().inpKrKontoNr->text(), "100");
    }

    void andererAufrufIstKeineNurAnzeige()
    {
        standardKonten();
        mks::AufrufInfo[mks::slot::Aufrufart] = 20;
        oeffnen();
        QVERIFY(!mks::NurAnzeige);
        QVERIFY(ui().inpKrKontoBezeichnung->isEnabled());
    }

    // --- opening ---

    void eroeffnenMitNullBestandUndNeuerNummer()
    {
        standardKonten();
        oeffnen();
        bool gesehen = false;
        QStringList ablauf;
        imDialog(gesehen, [&](frmKrNeu &d) {
            auto *feld = d.ui().inpNeuEröffKontoNr;
            ablauf << feld->text();
            QTest::mouseClick(d.ui().cmdOK, Qt::LeftButton); // 0
            ablauf << QString::number(d.isVisible());
            feld->clear();
            QTest::mouseClick(d.ui().cmdOK, Qt::LeftButton); // empty counts as 0
            feld->setText("200");
            QTest::mouseClick(d.ui().cmdOK, Qt::LeftButton);
            ablauf << QString::number(d.isVisible());
            feld->setText("123");
            QTest::mouseClick(d.ui().cmdOK, Qt::LeftButton);
        });
        m_boxen->antworte({vbOK, vbOK, vbOK, vbYes});
        // Pressed without leaving the number field, which would propose the number read.
        ui().cmdKontoNeueröff->click();
        QVERIFY(gesehen);
        QCOMPARE(ablauf, (QStringList {"0", "1", "1"}));
        const auto &e = m_boxen->eintraege();
        QCOMPARE(e.size(), 5);
        QCOMPARE(e[0].text, "Kontonummer Null ist ungültig");
        QCOMPARE(e[0].titel, "KontoNr Null ungültig");
        QCOMPARE(e[1].text, "Kontonummer Null ist ungültig");
        QCOMPARE(e[2].text, "Konto bereits existent");
        QCOMPARE(e[2].titel, anwendungsTitel());
        QCOMPARE(e[3].text, "Kontenstammsatz Konto 123    neueröffnen ?");
        QCOMPARE(e[3].titel, "Bitte bestätigen Sie");
        QVERIFY(e[4].text.startsWith("Sie haben Soeben einen neuen KreditorenKontenStammsatz"));

        QCOMPARE(anzahl("KreditorenKontenstamm"), 4);
        QCOMPARE(gespeichert(123, "KrKontoTypus").toString(), "1");
        QCOMPARE(gespeichert(123, "KrKontoBezeichnung").toString(), "");
        QCOMPARE(gespeichert(123, "KrStornoDatum").toLongLong(), 0);
        QCOMPARE(nr(), 123);
        QCOMPARE(ui().inpKrKontoNr->text(), "123");
        QCOMPARE(ui().inpKrKontoTypus->text(), "1");
        QCOMPARE(ui().cmbKontoTypus->currentText(), "Objektkonto");
        QCOMPARE(m_form->focusWidget(), ui().inpKrKontoBezeichnung);
        QVERIFY(!kr::KrAnlageLäuft);
        QCOMPARE(kr::KrNeuNr, 0);

        // The empty name is reported when the user leaves the field.
        QApplication::setActiveWindow(m_form.get());
        QVERIFY(QTest::qWaitForWindowActive(m_form.get()));
        QTRY_COMPARE(QApplication::focusWidget(), ui().inpKrKontoBezeichnung);
        fokusVersuch(ui().cmdExit);
        QCOMPARE(texte().last(), "KontoBezeichnung darf nicht leer gelassen werden");
        QCOMPARE(QApplication::focusWidget(), ui().inpKrKontoBezeichnung);
        QVERIFY(mks::PruefungFehlgeschlagen);
    }

    // Another user opens the same number between the check and the write: his account is shown.
    void eroeffnenKamEinAndererZuvor()
    {
        standardKonten();
        oeffnen();
        auto andere = Database::openSeparate(m_ort);
        bool gesehen = false;
        imDialog(gesehen, [&](frmKrNeu &d) {
            d.ui().inpNeuEröffKontoNr->setText("123");
            QTest::mouseClick(d.ui().cmdOK, Qt::LeftButton);
        });
        m_boxen->setAntwortFunktion([&](const MsgBoxEintrag &e) {
            if (!e.text.startsWith("Kontenstammsatz Konto 123"))
                return (e.buttons & 7) == vbOKOnly ? vbOK : 0;
            andere->execute("INSERT INTO KreditorenKontenstamm (KrKontoNr, KrKontoBezeichnung, "
                            "KrKontoTypus, KrStornoDatum) VALUES (123, 'Fremd', '0', 0)");
            return int(vbYes);
        });
        ui().cmdKontoNeueröff->click();
        QVERIFY(gesehen);
        QVERIFY2(texte().last().startsWith("Das KreditorenKonto 123 wurde soeben von einem anderen "
                                           "Benutzer eröffnet."),
                 qPrintable(texte().join('|')));
        QCOMPARE(nr(), 123);
        QCOMPARE(ui().inpKrKontoBezeichnung->text(), "Fremd");
        QCOMPARE(anzahl("KreditorenKontenstamm"), 4);
        QVERIFY(!kr::KrAnlageLäuft);
    }

    void eroeffnenNichtBestaetigt()
    {
        standardKonten();
        oeffnen();
        bool gesehen = false;
        imDialog(gesehen, [&](frmKrNeu &d) {
            d.ui().inpNeuEröffKontoNr->setText("4711");
            QTest::mouseClick(d.ui().cmdOK, Qt::LeftButton);
        });
        m_boxen->antworte(vbNo);
        ui().inpKrKontoNr->setText("9");
        ui().cmdKontoNeueröff->click();
        QVERIFY(gesehen);
        QCOMPARE(texte(), QStringList {"Kontenstammsatz Konto 4711   neueröffnen ?"});
        QCOMPARE(anzahl("KreditorenKontenstamm"), 3);
        QCOMPARE(ui().inpKrKontoNr->text(), "100");
        QCOMPARE(kr::KrNeuNr, 0);
    }

    void eroeffnenInLeeremBestand()
    {
        oeffnen();
        bool gesehen = false;
        imDialog(gesehen, [&](frmKrNeu &d) {
            d.ui().inpNeuEröffKontoNr->setText("1");
            QTest::mouseClick(d.ui().cmdOK, Qt::LeftButton);
        });
        m_boxen->antworte(vbYes);
        ui().cmdKontoNeueröff->click();
        QVERIFY(gesehen);
        QCOMPARE(anzahl("KreditorenKontenstamm"), 1);
        QCOMPARE(nr(), 1);
        QCOMPARE(ui().inpKrKontoNr->text(), "1");
    }

    void eroeffnenVerlangtZuerstEinenGueltigenDatensatz()
    {
        standardKonten();
        oeffnen();
        ui().inpKrKontoBezeichnung->clear();
        ui().cmdKontoNeueröff->click(); // no dialog: the check refuses first
        QCOMPARE(texte(), QStringList {"KontoBezeichnung darf nicht leer gelassen werden"});
        QCOMPARE(gespeichert(100, "KrKontoBezeichnung").toString(), "Alpha");
    }

    // --- checks ---

    void leereBezeichnungHaeltDieBewegungAuf()
    {
        standardKonten();
        oeffnen();
        fokusAuf(ui().inpKrKontoBezeichnung);
        ui().inpKrKontoBezeichnung->clear();
        fokusVersuch(ui().inpKrKontoNr); // leaving the field checks it
        QCOMPARE(texte(), QStringList {"KontoBezeichnung darf nicht leer gelassen werden"});
        QTRY_COMPARE(QApplication::focusWidget(), ui().inpKrKontoBezeichnung);
        QCOMPARE(kr::KrFehlerFeld, "inpKrKontoBezeichnung");
        taste(Qt::Key_PageDown);
        QCOMPARE(nr(), 100);
        QCOMPARE(m_boxen->anzahl(), 2);
        // Closing is refused as well.
        QVERIFY(!m_form->close());
        QVERIFY(m_form->isVisible());
        QCOMPARE(m_boxen->anzahl(), 3);

        QTest::keyClicks(ui().inpKrKontoBezeichnung, "Neu");
        taste(Qt::Key_PageDown);
        QCOMPARE(nr(), 200);
        QCOMPARE(gespeichert(100, "KrKontoBezeichnung").toString(), "Neu");
    }

    void falscherTypMarkiertNurUndBlockiertNicht()
    {
        standardKonten();
        oeffnen();
        fokusAuf(ui().inpKrKontoTypus);
        ui().inpKrKontoTypus->setText("5");
        fokusVersuch(ui().inpKrKontoBezeichnung);
        QCOMPARE(texte(), QStringList {"KontoTypus falsch - bitte berichtigen"});
        QCOMPARE(ui().cmbKontoTypus->currentText(), "Klicken Sie");
        QCOMPARE(kr::KrFehlerFeld, "inpKrKontoTypus");
        QVERIFY(!mks::PruefungFehlgeschlagen);
        QTRY_VERIFY(ui().cmbKontoTypus->hasFocus());
        // The move is not blocked; the faulty code is saved.
        m_boxen->leeren();
        ui().KRData->rs().MoveNext();
        QCOMPARE(nr(), 200);
        QCOMPARE(gespeichert(100, "KrKontoTypus").toString(), "5");
    }

    void typGegenDieBuchungen_data()
    {
        QTest::addColumn<QString>("typus");
        QTest::addColumn<QVariantList>("objekte"); // object numbers in the order stored
        QTest::addColumn<QString>("danach");
        QTest::addColumn<int>("meldungen");
        const QVariant null(QMetaType::fromType<qlonglong>());
        QTest::newRow("Objekt, erste ohne Objekt") << "1" << QVariantList {0, 7} << "0" << 1;
        QTest::newRow("Kanzlei, erste mit Objekt") << "0" << QVariantList {7, 0} << "1" << 1;
        QTest::newRow("Kanzlei, erste ohne Objekt") << "0" << QVariantList {0, 7} << "0" << 0;
        QTest::newRow("Objekt, erste mit Objekt") << "1" << QVariantList {7, 0} << "1" << 0;
        QTest::newRow("Kanzlei, Objekt leer") << "0" << QVariantList {null} << "1" << 1;
        QTest::newRow("ohne Buchungen Kanzlei") << "0" << QVariantList {} << "0" << 0;
        QTest::newRow("ohne Buchungen Objekt") << "1" << QVariantList {} << "1" << 0;
    }

    void typGegenDieBuchungen()
    {
        QFETCH(QString, typus);
        QFETCH(QVariantList, objekte);
        QFETCH(QString, danach);
        QFETCH(int, meldungen);
        // Stored right; the user types the code under test and leaves the field.
        konto(100, "Alpha", danach);
        konto(200, "Beta", "1");
        for (const QVariant &o : objekte)
            buchung(100, o);
        oeffnen();
        fokusAuf(ui().inpKrKontoTypus);
        ui().inpKrKontoTypus->setText(typus);
        fokusAuf(ui().inpKrKontoBezeichnung);
        QCOMPARE(m_boxen->anzahl(), meldungen);
        if (meldungen) {
            QVERIFY2(texte().first().startsWith(danach == "0" ? "Der KontoTypus \"Objektkonto\""
                                                              : "Der KontoTypus \"Kanzleikonto\""),
                     qPrintable(texte().join('|')));
        }
        QCOMPARE(ui().inpKrKontoTypus->text(), danach);
        if (meldungen)
            QCOMPARE(ui().cmbKontoTypus->currentIndex(), danach.toInt());
        QVERIFY(!mks::PruefungFehlgeschlagen);
        ui().KRData->rs().MoveNext();
        QCOMPARE(gespeichert(100, "KrKontoTypus").toString(), danach);
    }

    // Another user changed the account meanwhile: his fields are named as the screen names them.
    void andererBenutzerAenderte_data()
    {
        QTest::addColumn<bool>("auchName"); // the other changed the name too, as this user did
        QTest::newRow("gleiches Feld") << true;
        QTest::newRow("anderes Feld") << false;
    }
    void andererBenutzerAenderte()
    {
        QFETCH(bool, auchName);
        standardKonten();
        oeffnen();
        auto andere = Database::openSeparate(m_ort);
        andere->execute("UPDATE KreditorenKontenstamm SET KrKontoTypus = '1'"
                        + QString(auchName ? ", KrKontoBezeichnung = 'Alpha GmbH'" : "")
                        + " WHERE KrKontoNr = 100");
        ui().inpKrKontoBezeichnung->setText("Alpha KG");
        if (auchName)
            m_boxen->antworte(vbNo);
        fokusAuf(ui().inpKrKontoNr);
        taste(Qt::Key_PageDown);
        QCOMPARE(m_boxen->anzahl(), 1);
        const QString text = m_boxen->letzter().text;
        QCOMPARE(m_boxen->letzter().nichtModal, !auchName);
        if (!auchName) {
            QVERIFY2(text.contains("Konto-Typus: \u201EObjektkonto\u201C"), qPrintable(text));
            QCOMPARE(nr(), 200);
        } else {
            QVERIFY2(text.contains("Konto-Bezeichnung: gespeichert \u201EAlpha GmbH\u201C, bei "
                                   "Ihnen \u201EAlpha KG\u201C\r\n  Konto-Typus: gespeichert "
                                   "\u201EObjektkonto\u201C, bei Ihnen \u201EKanzleikonto\u201C"),
                     qPrintable(text));
            // Kept: shown on the stored account, and the next save goes through.
            QCOMPARE(nr(), 100);
            QCOMPARE(ui().inpKrKontoBezeichnung->text(), "Alpha KG");
            QCOMPARE(ui().inpKrKontoTypus->text(), "1");
            fokusAuf(ui().inpKrKontoNr);
            taste(Qt::Key_PageDown);
            QCOMPARE(nr(), 200);
            QCOMPARE(m_boxen->anzahl(), 1);
        }
        QCOMPARE(gespeichert(100, "KrKontoBezeichnung").toString(), "Alpha KG");
        QCOMPARE(gespeichert(100, "KrKontoTypus").toString(), "1");
    }

    void kombiValidierungPrueftDenTyp()
    {
        konto(100, "Alpha", "0");
        buchung(100, 0);
        oeffnen();
        fokusAuf(ui().cmbKontoTypus);
        QCOMPARE(m_boxen->anzahl(), 0);
        ui().inpKrKontoTypus->setText("1");
        fokusAuf(ui().cmdExit);
        QCOMPARE(m_boxen->anzahl(), 1);
        QCOMPARE(ui().inpKrKontoTypus->text(), "0");
        // Towards the delete button nothing is checked.
        ui().inpKrKontoTypus->setText("1");
        fokusAuf(ui().cmbKontoTypus);
        fokusAuf(ui().cmdKontoLöschen);
        QCOMPARE(m_boxen->anzahl(), 1);
    }

    void kontoNrPruefenOhneAufrufer_data()
    {
        QTest::addColumn<QString>("nr");
        QTest::addColumn<bool>("fehler");
        QTest::newRow("0") << "0" << true;
        QTest::newRow("00") << "00" << true;
        QTest::newRow("5") << "5" << false;
    }

    void kontoNrPruefenOhneAufrufer()
    {
        QFETCH(QString, nr);
        QFETCH(bool, fehler);
        standardKonten();
        oeffnen();
        ui().inpKrKontoNr->setText(nr);
        mks::PruefungFehlgeschlagen = !fehler;
        m_form->KrKontoNrPrüfen();
        QCOMPARE(mks::PruefungFehlgeschlagen, fehler);
        QCOMPARE(m_boxen->anzahl(), fehler ? 1 : 0);
        if (fehler) {
            QCOMPARE(texte().first(), "KreditorenKontonummer Null ist ungültig");
            QCOMPARE(kr::KrFehlerFeld, "inpKrKontoNr");
        }
    }

    // --- deletion ---

    void loeschenOhneBuchungen_data()
    {
        QTest::addColumn<int>("position");
        QTest::addColumn<int>("danach");
        QTest::addColumn<bool>("taste");
        QTest::newRow("mittleres") << 1 << 300 << false;
        QTest::newRow("letztes") << 2 << 200 << false;
        QTest::newRow("erstes") << 0 << 200 << false;
        QTest::newRow("mit Strg+L") << 1 << 300 << true;
    }

    void loeschenOhneBuchungen()
    {
        QFETCH(int, position);
        QFETCH(int, danach);
        QFETCH(bool, taste);
        standardKonten();
        m_db->execute("INSERT INTO KreditorenSalden (KsKontoNr, KsJJ) VALUES (200, 2003)");
        oeffnen();
        for (int i = 0; i < position; ++i)
            ui().KRData->rs().MoveNext();
        const int weg = nr();
        // An empty name does not stop the deletion when leaving towards the button.
        fokusAuf(ui().inpKrKontoBezeichnung);
        ui().inpKrKontoBezeichnung->clear();
        m_boxen->antworte(vbYes);
        if (taste)
            QTest::keyClick(QApplication::focusWidget(), Qt::Key_L, Qt::ControlModifier);
        else
            QTest::mouseClick(ui().cmdKontoLöschen, Qt::LeftButton);
        QCOMPARE(texte(), QStringList {"KreditorenKontenstammsatz löschen ?"});
        QCOMPARE(m_boxen->letzter().titel, "Bitte bestätigen Sie");
        QVERIFY(gespeichert(weg, "KrKontoNr").isNull());
        QCOMPARE(anzahl("KreditorenKontenstamm"), 2);
        QCOMPARE(anzahl("KreditorenSalden"), 1); // balances are not touched
        QCOMPARE(nr(), danach);
        QCOMPARE(ui().inpKrKontoNr->text(), QString::number(danach));
        QCOMPARE(QApplication::focusWidget(), ui().inpKrKontoBezeichnung);
        QVERIFY(!kr::KrLöschungLäuft);
    }

    void nachDemLetztenKontoSchliessbar()
    {
        konto(100, "Alpha", "0");
        oeffnen();
        fokusAuf(ui().inpKrKontoBezeichnung);
        ui().inpKrKontoBezeichnung->clear();
        fokusVersuch(ui().inpKrKontoNr);
        QVERIFY(mks::PruefungFehlgeschlagen);
        // The faulty row goes; the check that failed on it must not keep the screen open.
        m_boxen->antworte(vbYes);
        QTest::mouseClick(ui().cmdKontoLöschen, Qt::LeftButton);
        QCOMPARE(anzahl("KreditorenKontenstamm"), 0);
        QVERIFY(m_form->close());
        QCOMPARE(texte(),
                 (QStringList {"KontoBezeichnung darf nicht leer gelassen werden",
                               "KreditorenKontenstammsatz löschen ?"}));
    }

    void nachschlagenOhneTabelle_data()
    {
        QTest::addColumn<QString>("tabelle"); // made unreadable after loading
        QTest::addColumn<QString>("aktion");
        QTest::addColumn<QString>("ort");
        QTest::addColumn<QStringList>("meldungen");
        QTest::newRow("lesen") << "KreditorenKontenstamm"
                               << "lesen"
                               << "dllKontenStamm, in KrChkSelect" << QStringList();
        QTest::newRow("neu") << "KreditorenKontenstamm"
                             << "neu"
                             << "dllKontenStamm, in KrChkSelect" << QStringList();
        QTest::newRow("löschen")
            << "KreditorenBuchungen"
            << "löschen"
            << "dllKontenStamm, in KrBuchungenSelect"
            << QStringList {"KreditorenKontenstammsatz löschen ?",
                            "KreditorenKonto mit der Konto-Nr: 100 wurde nicht gelöscht, da die "
                            "Buchungen zu diesem Konto nicht gelesen werden konnten."};
        QTest::newRow("typ") << "KreditorenBuchungen"
                             << "typ"
                             << "dllKontenStamm, in KrBuchungenSelect" << QStringList();
    }

    void nachschlagenOhneTabelle()
    {
        QFETCH(QString, tabelle);
        QFETCH(QString, aktion);
        QFETCH(QString, ort);
        QFETCH(QStringList, meldungen);
        standardKonten();
        oeffnen();
        // Leaving the number field reads it again, and with it the postings: not here.
        fokusAuf(aktion == u"typ" ? ui().inpKrKontoTypus : ui().inpKrKontoBezeichnung);
        m_db->execute("DROP TABLE " + tabelle);
        if (aktion == u"lesen") {
            // Not knowing whether 555 exists, nothing is read and no opening offered.
            fokusAuf(ui().inpKrKontoNr);
            ui().inpKrKontoNr->setText("555");
            taste(Qt::Key_Return);
            QCOMPARE(ui().inpKrKontoNr->text(), "100");
        } else if (aktion == u"neu") {
            bool gesehen = false;
            bool offen = false;
            imDialog(gesehen, [&](frmKrNeu &d) {
                d.ui().inpNeuEröffKontoNr->setText("555");
                QTest::mouseClick(d.ui().cmdOK, Qt::LeftButton);
                offen = d.isVisible();
                QTest::mouseClick(d.ui().cmdAbbrechen, Qt::LeftButton);
            });
            ui().cmdKontoNeueröff->click();
            QVERIFY(gesehen);
            QVERIFY(offen);
        } else if (aktion == u"löschen") {
            m_boxen->antworte(vbYes);
            QTest::mouseClick(ui().cmdKontoLöschen, Qt::LeftButton);
            QCOMPARE(anzahl("KreditorenKontenstamm"), 3);
        } else {
            // Without the postings no correction is made against them.
            ui().inpKrKontoTypus->setText("1");
            fokusAuf(ui().inpKrKontoBezeichnung);
            QCOMPARE(ui().inpKrKontoTypus->text(), "1");
        }
        QCOMPARE(FehlerDialogAttrappe::s_berichte, QStringList {"3078|" + ort});
        QCOMPARE(texte(), meldungen);
        QCOMPARE(nr(), 100);
    }

    void loeschenNichtBestaetigt()
    {
        standardKonten();
        oeffnen();
        m_boxen->antworte(vbNo);
        ui().cmdKontoLöschen->click();
        QCOMPARE(anzahl("KreditorenKontenstamm"), 3);
    }

    void loeschenMitBuchungEndetInLaufzeitfehler13()
    {
        QVERIFY(qobject_cast<Anwendung *>(qApp));
        standardKonten();
        buchung(200, 5);
        oeffnen();
        ui().KRData->rs().MoveNext();
        m_boxen->antworte({vbYes, vbOK});
        QTest::mouseClick(ui().cmdKontoLöschen, Qt::LeftButton);
        QCOMPARE(m_boxen->anzahl(), 2);
        QCOMPARE(m_boxen->letzter().text, "Laufzeitfehler '13':\r\n\r\nTypen unverträglich");
        QCOMPARE(anzahl("KreditorenKontenstamm"), 3);
        QCOMPARE(anzahl("KreditorenBuchungen"), 1);
        QCOMPARE(nr(), 200);
        QVERIFY(!kr::KrLöschungLäuft);
        // The program goes on.
        ui().KRData->rs().MoveNext();
        QCOMPARE(nr(), 300);
    }

    void buchungenLoeschenOhneAufrufer()
    {
        standardKonten();
        buchung(200, 0);
        buchung(200, 4);
        buchung(300, 4);
        m_db->execute("INSERT INTO KreditorenSalden (KsKontoNr, KsJJ) VALUES (200, 2003)");
        m_db->execute("INSERT INTO KreditorenSalden (KsKontoNr, KsJJ) VALUES (300, 2003)");
        oeffnen();
        ui().KRData->rs().MoveNext();
        m_form->KrBuchungenSelect();
        QVERIFY(kr::KrBuchungenVorhanden);
        m_form->KrBuchungenLöschen();
        QCOMPARE(texte(), QStringList {"Löschung beendet.\r\nEs wurden 2 Buchungssätze gelöscht."});
        QCOMPARE(anzahl("KreditorenBuchungen"), 1);
        QCOMPARE(anzahl("KreditorenSalden"), 1);
        QCOMPARE(anzahl("KreditorenKontenstamm"), 3);
        // No postings now: the count of the earlier run is shown again.
        m_form->KrBuchungenSelect();
        QVERIFY(!kr::KrBuchungenVorhanden);
        m_form->KrBuchungenLöschen();
        QCOMPARE(m_boxen->anzahl(), 2);
        QCOMPARE(texte().last(), texte().first());
        QCOMPARE(anzahl("KreditorenBuchungen"), 1);
    }

    // --- list component ---

    void listeLiefertNummer()
    {
        standardKonten();
        KomponentenRegistrierung liste("zelDiverseListen",
                                       [] { return std::make_unique<ListenAttrappe>(); });
        ListenAttrappe::s_nr = 300;
        oeffnen();
        fokusAuf(ui().inpKrKontoNr);
        QTest::mouseClick(ui().cmdKontoListe, Qt::LeftButton);
        QCOMPARE(ListenAttrappe::s_aufrufe, 1);
        QCOMPARE(ListenAttrappe::s_info.value(0).toString(), m_ort);
        QCOMPARE(ListenAttrappe::s_info.value(10).toInt(), 2003);
        QCOMPARE(nr(), 300);
        QCOMPARE(ui().inpKrKontoNr->text(), "300");
        QCOMPARE(QApplication::focusWidget(), ui().inpKrKontoNr);
        QVERIFY(kr::KrRückgabeFeld.isEmpty());
        QCOMPARE(mks::AktuellesProgramm, "frmKreditorenKontenStamm");
        QVERIFY(!QGuiApplication::overrideCursor());
    }

    void listeOhneWahlOderNichtVomNummernfeld()
    {
        standardKonten();
        KomponentenRegistrierung liste("zelDiverseListen",
                                       [] { return std::make_unique<ListenAttrappe>(); });
        oeffnen();
        fokusAuf(ui().inpKrKontoNr);
        QTest::mouseClick(ui().cmdKontoListe, Qt::LeftButton); // nothing chosen
        QCOMPARE(nr(), 100);
        ListenAttrappe::s_nr = 300;
        fokusAuf(ui().inpKrKontoBezeichnung);
        QTest::mouseClick(ui().cmdKontoListe, Qt::LeftButton); // not asked by the number field
        QCOMPARE(ListenAttrappe::s_aufrufe, 2);
        QCOMPARE(nr(), 100);
        QCOMPARE(m_boxen->anzahl(), 0);
    }

    void listeFehltMeldet429()
    {
        standardKonten();
        oeffnen();
        fokusAuf(ui().inpKrKontoNr);
        QTest::mouseClick(ui().cmdKontoListe, Qt::LeftButton);
        QCOMPARE(FehlerDialogAttrappe::s_berichte,
                 QStringList {"429|dllKontenStamm, in cmdKontoListe_Click"});
        QVERIFY(!QGuiApplication::overrideCursor());
        QVERIFY(kr::KrRückgabeFeld.isEmpty());
        QVERIFY(m_form->isVisible());
    }

    // --- leaving ---

    void escapeUndBeendenSchliessen()
    {
        standardKonten();
        oeffnen();
        fokusAuf(ui().inpKrKontoNr);
        taste(Qt::Key_Escape);
        QVERIFY(!m_form->isVisible());
        oeffnen();
        QTest::mouseClick(ui().cmdExit, Qt::LeftButton);
        QVERIFY(!m_form->isVisible());
    }

    // Every way out of a field whose check fails is stopped before its action: no move, no
    // closing, no dialog, no list.
    void verlassenIstGeprueft_data()
    {
        QTest::addColumn<QString>("weg");
        for (const char *w :
             {"cmdExit", "cmdKontoEinlesen", "cmdKontoNeueröff", "cmdKontoListe", "cmdVerlauf",
              "Strg+H", "Strg+N", "Strg+Q", "Strg+F", "Bild ab", "Escape", "Schließen"})
            QTest::newRow(w) << QString::fromUtf8(w);
    }
    void verlassenIstGeprueft()
    {
        QFETCH(QString, weg);
        standardKonten();
        oeffnen();
        fokusAuf(ui().inpKrKontoBezeichnung);
        ui().inpKrKontoBezeichnung->clear();
        int dialoge = 0;
        QTimer wache;
        connect(&wache, &QTimer::timeout, [&dialoge] {
            if (auto *d = qobject_cast<QDialog *>(QApplication::activeModalWidget())) {
                ++dialoge;
                d->reject();
            }
        });
        wache.start(10);
        if (weg == u"Bild ab")
            taste(Qt::Key_PageDown);
        else if (weg == u"Escape")
            taste(Qt::Key_Escape);
        else if (weg == u"Schließen")
            m_form->close();
        else if (weg.startsWith(u"Strg+"))
            QTest::keySequence(
                QApplication::focusWidget(),
                QKeySequence(QString(weg).replace(QStringLiteral("Strg"), QStringLiteral("Ctrl"))));
        else
            QTest::mouseClick(m_form->findChild<QPushButton *>(weg), Qt::LeftButton);
        QTest::qWait(50);
        QVERIFY(!texte().isEmpty());
        QCOMPARE(texte().first(), "KontoBezeichnung darf nicht leer gelassen werden");
        QCOMPARE(dialoge, 0);
        QVERIFY(FehlerDialogAttrappe::s_berichte.isEmpty()); // the list would report 429
        QVERIFY(m_form->isVisible());
        QCOMPARE(nr(), 100);
        QCOMPARE(gespeichert(100, "KrKontoBezeichnung").toString(), "Alpha");
        QTRY_COMPARE(QApplication::focusWidget(), ui().inpKrKontoBezeichnung);
        ui().inpKrKontoBezeichnung->setText("Alpha");
    }

    // --- change log ---

    // The history shows the account's changes, newest first; an old value goes back as an edit
    // that must pass the checks before it is saved, and the save is logged again.
    void verlaufUebernimmtAltenWert_data()
    {
        QTest::addColumn<QString>("weg");
        QTest::addColumn<QString>("frueher");
        QTest::addColumn<QString>("bleibt");
        QTest::newRow("Knopf, alter Name") << "cmdVerlauf"
                                           << "Alpha"
                                           << "Alpha";
        QTest::newRow("Strg+H, leerer Name wird geprüft") << "Strg+H"
                                                          << ""
                                                          << "Alpha KG";
    }
    void verlaufUebernimmtAltenWert()
    {
        QFETCH(QString, weg);
        QFETCH(QString, frueher);
        QFETCH(QString, bleibt);
        konto(100, "Beta", "0");
        for (const QString &text : {frueher, QStringLiteral("Alpha KG")})
            m_db->execute("UPDATE KreditorenKontenstamm SET KrKontoBezeichnung = ?", {text});
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
        fokusAuf(ui().inpKrKontoNr);
        if (weg == u"Strg+H")
            QTest::keyClick(ui().inpKrKontoNr, Qt::Key_H, Qt::ControlModifier);
        else
            QTest::mouseClick(ui().cmdVerlauf, Qt::LeftButton);
        QCOMPARE(zeile, (QStringList {"Konto-Bezeichnung", frueher, "Alpha KG"}));
        QCOMPARE(ui().inpKrKontoBezeichnung->text(), frueher);
        QCOMPARE(m_form->focusWidget(), ui().inpKrKontoBezeichnung);
        QCOMPARE(ui().KRData->UpdateRecord(), frueher == bleibt);
        QCOMPARE(gespeichert(100, "KrKontoBezeichnung").toString(), bleibt);
        QCOMPARE(texte(),
                 frueher == bleibt ? QStringList {}
                                   : QStringList {"KontoBezeichnung darf nicht leer "
                                                  "gelassen werden"});
        const auto log = platform::storage::Aenderungsprotokoll::lesen(
            *m_db, "KreditorenKontenstamm", std::nullopt, "100");
        QCOMPARE(log.front().alt.value_or("-"), frueher == bleibt ? "Alpha KG" : frueher);
        QCOMPARE(log.front().neu.value_or("-"), bleibt);
        ui().inpKrKontoBezeichnung->setText(bleibt);
    }

    // Another user's save of the account shown appears in the window within two seconds, below
    // its controls; without pending edits it can be loaded, with them the typed values stay.
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
        if (eingabe)
            ui().inpKrKontoBezeichnung->setText("Alpha KG");
        Database::openSeparate(m_ort)->execute(
            "UPDATE KreditorenKontenstamm SET KrKontoBezeichnung = 'Fremd', KrKontoTypus = '1' "
            "WHERE KrKontoNr = 100");
        auto *leiste = m_form->findChild<QFrame *>("fraFremdeAenderung");
        QVERIFY(leiste);
        QTRY_VERIFY_WITH_TIMEOUT(leiste->isVisible(), 2000);
        const QString text = m_form->findChild<QLabel *>("lblFremdeAenderung")->text();
        QVERIFY2(text.contains("Konto-Bezeichnung") && text.contains("Konto-Typus"),
                 qPrintable(text));
        QVERIFY(leiste->geometry().top() >= ui().cmdExit->geometry().bottom());
        auto *laden = m_form->findChild<QPushButton *>("cmdNeuLaden");
        QCOMPARE(laden->isVisible(), !eingabe);
        if (!eingabe)
            laden->click();
        QCOMPARE(ui().inpKrKontoBezeichnung->text(), eingabe ? "Alpha KG" : "Fremd");
        QCOMPARE(ui().cmbKontoTypus->currentText(), eingabe ? "Kanzleikonto" : "Objektkonto");
        QVERIFY(texte().isEmpty());
        if (eingabe)
            ui().KRData->UpdateControls();
    }

    void einstiegLaeuftModal()
    {
        standardKonten();
        mks::AktuellesProgramm.clear();
        bool gesehen = false;
        QTimer::singleShot(0, [&] {
            auto *f = qobject_cast<frmKreditorenKontenStamm *>(QApplication::activeModalWidget());
            if (!f)
                return;
            gesehen = f->isModal();
            f->ui().cmdExit->click();
        });
        creditors::kreditorenKontenstammZeigen();
        QVERIFY(gesehen);
        QCOMPARE(mks::AktuellesProgramm, "frmKreditorenKontenStamm");
    }
};

int main(int argc, char **argv)
{
    Anwendung app(argc, argv);
    return testhilfe::fuerAlleEngines(argc, argv,
                                      [] { return std::make_unique<TestKreditorenstamm>(); });
}

#include "tst_kreditorenstamm.moc"
