#include "creditors/frmKreditorenKontenStamm.h"

#include "creditors/Kreditorenregeln.h"
#include "creditors/frmKrNeu.h"
#include "creditors/mdlKreditoren.h"
#include "frame/DatenSteuerungen.h"
#include "frame/Onlinehilfe.h"
#include "frame/mdlFehlerZL.h"
#include "frame/mdlKontenStamm.h"
#include "platform/core/CreateObject.h"
#include "platform/core/RuntimeError.h"
#include "platform/core/VbWerte.h"
#include "platform/storage/Database.h"
#include "platform/ui/DataControl.h"
#include "platform/ui/Fehlerfalle.h"
#include "platform/ui/Fokus.h"
#include "platform/ui/MsgBox.h"
#include "platform/ui/Sanduhr.h"
#include "screens/Bildschirmstil.h"
#include "screens/Bindungen.h"
#include "ui_frmKreditorenKontenStamm.h"

#include <QAbstractItemView>
#include <QApplication>
#include <QCloseEvent>
#include <QKeyEvent>
#include <QLineEdit>
#include <QScopeGuard>

using namespace creditors::mdlKreditoren;
using platform::MsgBox;
using platform::RuntimeError;
namespace regeln = creditors::regeln;
namespace mks = mdlKontenStamm;

namespace creditors {

namespace {

constexpr int TasteBildAuf = 33;
constexpr int TasteBildAb = 34;
constexpr int TasteEscape = 27;

const QString OrtChkSelect = QStringLiteral("dllKontenStamm, in KrChkSelect");
const QString OrtDirektlesen = QStringLiteral("dllKontenStamm, in KrDirektlesen");
const QString OrtKontoListe = QStringLiteral("dllKontenStamm, in cmdKontoListe_Click");
const QString OrtBuchungenSelect = QStringLiteral("dllKontenStamm, in KrBuchungenSelect");

// The bundled selection lists and the two operations this screen needs of them: show the
// creditor list for the call information (database in slot 0, booking year in slot 10), then
// the chosen account number (0 or empty when none was chosen).
const QString ListenProgId = QStringLiteral("zelDiverseListen");
constexpr const char *ListeKreditoren = "KreditorenListe";
constexpr const char *ListeAuswahl = "AuswahlNr";

const QString SqlKreditoren
    = QStringLiteral("SELECT * ") + QStringLiteral("from KreditorenKontenstamm ");

int tastenCode(int qtTaste)
{
    switch (qtTaste) {
    case Qt::Key_PageUp:
        return TasteBildAuf;
    case Qt::Key_PageDown:
        return TasteBildAb;
    case Qt::Key_Escape:
        return TasteEscape;
    default:
        return 0;
    }
}

} // namespace

frmKreditorenKontenStamm::frmKreditorenKontenStamm(QWidget *parent)
    : QDialog(parent)
    , m_ui(std::make_unique<Ui::frmKreditorenKontenStamm>())
{
    m_ui->setupUi(this);
    m_titel = windowTitle();
    screens::bildschirmEinrichten(this);
    screens::bindungenHerstellen(this);
    m_fokus = new platform::Fokus(this);
    // An editable combo can show a text of its own ("ungültiger Wert"); the user still only
    // picks entries.
    m_ui->cmbKontoTypus->setEditable(true);
    m_ui->cmbKontoTypus->lineEdit()->setReadOnly(true);
    verbinden();
    qApp->installEventFilter(this);
    new frame::F1Hilfe(this);
    Form_Load();
}

frmKreditorenKontenStamm::~frmKreditorenKontenStamm()
{
    if (qApp)
        qApp->removeEventFilter(this);
}

void frmKreditorenKontenStamm::verbinden()
{
    auto &u = *m_ui;
    using F = frmKreditorenKontenStamm;
    connect(u.cmdKontoEinlesen, &QPushButton::clicked, this, &F::cmdKontoEinlesen_Click);
    connect(u.cmdKontoLöschen, &QPushButton::clicked, this, &F::cmdKontoLöschen_Click);
    connect(u.cmdKontoListe, &QPushButton::clicked, this, &F::cmdKontoListe_Click);
    connect(u.cmdKontoNeueröff, &QPushButton::clicked, this, &F::cmdKontoNeueröff_Click);
    connect(u.cmdExit, &QPushButton::clicked, this, &F::cmdExit_Click);
    connect(u.cmdVerlauf, &QPushButton::clicked, this, &F::kontoVerlaufZeigen);
    // The original's Click also fires when code sets the list index; KrPositionieren guards it.
    connect(u.cmbKontoTypus, &QComboBox::currentIndexChanged, this, &F::cmbKontoTypus_Click);
    connect(u.KRData, &platform::DataControl::Reposition, this, &F::KRData_Reposition);
    connect(u.KRData, &platform::DataControl::Validate, this, &F::KRData_Validate);

    m_fokus->setGotFocus(u.inpKrKontoNr, [this] { inpKrKontoNr_GotFocus(); });
    m_fokus->setLostFocus(u.inpKrKontoNr, [this] { inpKrKontoNr_LostFocus(); });
    m_fokus->setLostFocus(u.inpKrKontoBezeichnung, [this] { inpKrKontoBezeichnung_LostFocus(); });
    m_fokus->setLostFocus(u.inpKrKontoTypus, [this] { inpKrKontoTypus_LostFocus(); });
    m_fokus->setValidate(u.cmbKontoTypus, [this](bool &cancel) { cmbKontoTypus_Validate(cancel); });
    u.KRData->setFeldanzeige(
        [](const QString &feld, const QString &) { return regeln::feldBeschriftung(feld); },
        regeln::feldwertText);
    // The "*" in the title follows the user's edits.
    for (QLineEdit *feld : findChildren<QLineEdit *>())
        connect(feld, &QLineEdit::textEdited, this, &F::titelZeigen);
    connect(u.cmbKontoTypus, &QComboBox::activated, this, &F::titelZeigen);
    // The same keys as on the account screen, named in the buttons' tool tips.
    screens::knopfTasten(this, {
                                   {QKeySequence(Qt::CTRL | Qt::Key_S), u.cmdKontoEinlesen},
                                   {QKeySequence(Qt::CTRL | Qt::Key_N), u.cmdKontoNeueröff},
                                   {QKeySequence(Qt::CTRL | Qt::Key_L), u.cmdKontoLöschen},
                                   {QKeySequence(Qt::CTRL | Qt::Key_F), u.cmdKontoListe},
                                   {QKeySequence(Qt::CTRL | Qt::Key_H), u.cmdVerlauf},
                                   {QKeySequence(Qt::CTRL | Qt::Key_Q), u.cmdExit},
                               });
}

// ---------------------------------------------------------------------------------------------
// Loading and the record set

void frmKreditorenKontenStamm::Form_Load()
{
    auto &u = *m_ui;
    // The help file of the call, with its notice when it is missing.
    mdlFehlerZL::HilfeAufrufChk();
    const QColor hintergrund = palette().color(QPalette::Window);
    for (QWidget *l :
         {static_cast<QWidget *>(u.lblBankltz), static_cast<QWidget *>(u.lblBuchjahrText),
          static_cast<QWidget *>(u.lblBuchjahr)}) {
        QPalette p = l->palette();
        p.setColor(QPalette::Window, hintergrund);
        l->setPalette(p);
        l->setAutoFillBackground(true);
    }

    for (platform::DataControl *d : {u.KRData, u.KRCHKData, u.KbData})
        d->setDatabaseName(mks::DatenbankPfad);
    frame::DatenSteuerungenVerbinden(this, false);

    u.lblBuchjahr->setText(QString::number(mks::Buchungsjahr));
    KrNeuNr = 0;

    u.cmbKontoTypus->addItem(QStringLiteral("Kanzleikonto"), 0);
    u.cmbKontoTypus->addItem(QStringLiteral("Objektkonto"), 1);
    u.cmbKontoTypus->setCurrentIndex(-1);

    try {
        if (platform::vb::gleich(mks::AufrufInfo.value(mks::slot::Aufrufart),
                                 mks::AufrufartKreditorenNurAnzeige)) {
            mks::NurAnzeige = true;
        }
    } catch (const RuntimeError &) {
        // a call kind that is no number is not the view-only call
    }

    KrKontenSelect();

    if (mks::NurAnzeige) {
        u.cmbKontoTypus->setEnabled(false);
        u.inpKrKontoBezeichnung->setEnabled(false);
        u.inpKrKontoTypus->setEnabled(false);
        u.cmdKontoLöschen->setEnabled(false);
    }
    // The view-only call may still open accounts; a user the database lets only read cannot.
    if (mks::SchreibrechtFehlt)
        u.cmdKontoNeueröff->setEnabled(false);
    titelZeigen();
    formMerken();
    fremdeAenderungBeobachten();
}

void frmKreditorenKontenStamm::titelZeigen()
{
    setWindowTitle(frame::titelMitStand(m_titel, m_ui->KRData, aktuelleZeile()));
}

void frmKreditorenKontenStamm::formMerken()
{
    const QRect r = frameGeometry();
    KrFormLeft = r.left();
    KrFormTop = r.top();
    KrFormWidth = r.width();
    KrFormHeight = r.height();
}

void frmKreditorenKontenStamm::showEvent(QShowEvent *ev)
{
    QDialog::showEvent(ev);
    // A Qt window gets its place on the screen only when shown; remember that place instead of
    // the one it had while loading, so frmKrNeu centres over the screen the user sees.
    if (!m_formGemerkt) {
        m_formGemerkt = true;
        formMerken();
    }
}

bool frmKreditorenKontenStamm::hatZeilen() const
{
    const auto *rs = m_ui->KRData->recordsetDirekt();
    return rs && rs->RecordCount() > 0;
}

bool frmKreditorenKontenStamm::aktuelleZeile() const
{
    const auto *rs = m_ui->KRData->recordsetDirekt();
    if (!rs || rs->eof() || rs->bof())
        return false;
    try {
        (void)rs->bookmark(); // fails right after a Delete
        return true;
    } catch (const RuntimeError &) {
        return false;
    }
}

void frmKreditorenKontenStamm::aktuelleNrZurueck()
{
    if (aktuelleZeile())
        m_ui->inpKrKontoNr->setText(
            m_ui->KRData->rs().feld(QStringLiteral("KrKontoNr")).toString());
}

void frmKreditorenKontenStamm::KrKontenSelect()
{
    m_ui->KRData->setRecordSource(SqlKreditoren);
    // A failed refresh has told the user through the data control's own message.
    if (!m_ui->KRData->Refresh())
        return;
    if (m_ui->KRData->rs().RecordCount() == 0)
        MsgBox(regeln::TextLeer, platform::vbOKOnly, regeln::TitelLeer);
}

bool frmKreditorenKontenStamm::KRChkSelect()
{
    bool gelesen = false;
    platform::Falle(OrtChkSelect, [&] {
        KrGefunden = false;
        m_ui->KRCHKData->setRecordSource(
            QStringLiteral("SELECT * from KreditorenKontenstamm WHERE KrKontoNr = ?"), {KrSuchNr});
        if (!m_ui->KRCHKData->RefreshOderFehler())
            return;
        gelesen = true;
        if (m_ui->KRCHKData->rs().RecordCount() > 0)
            KrGefunden = true;
    });
    return gelesen;
}

void frmKreditorenKontenStamm::KrDirektlesen()
{
    platform::Falle(OrtDirektlesen, [this] {
        auto &u = *m_ui;
        KrSuchNr = regeln::kontoNr(u.inpKrKontoNr->text());
        if (!KRChkSelect()) {
            // Not knowing whether the account exists, nothing is read and nothing offered.
            aktuelleNrZurueck();
            u.inpKrKontoNr->setFocus();
            return;
        }
        if (KrGefunden) {
            KrNeuNr = KrSuchNr;
            u.KRData->rs().FindFirst({{QStringLiteral("KrKontoNr"), KrSuchNr}});
            return;
        }
        const qint32 nr = KrSuchNr;
        aktuelleNrZurueck();
        if (mks::NurAnzeige) {
            MsgBox(regeln::nichtExistentNurAnzeige(nr));
            u.inpKrKontoNr->setFocus();
            return;
        }
        const int antwort
            = MsgBox(regeln::nichtExistentFrage(nr), platform::vbYesNo | platform::vbQuestion,
                     regeln::TitelNichtExistent);
        if (antwort == platform::vbYes) {
            u.inpKrKontoNr->setFocus();
            KrFehlerFeld = KrNichtPrüfen;
        } else {
            mks::NeueroeffnungVomNummernfeld = true;
            KrNeuNr = nr;
            cmdKontoNeueröff_Click();
        }
    });
}

void frmKreditorenKontenStamm::KRData_Reposition()
{
    KrPositionieren = true;
    const auto ende = qScopeGuard([] { KrPositionieren = false; });
    const auto *rs = m_ui->KRData->recordsetDirekt();
    if (rs && !rs->eof() && !rs->bof() && !KrAnlageLäuft && aktuelleZeile()) {
        KrFehlerFeld.clear();
        aktuelleNrZurueck();
        KontoTypusAnzeigen();
    }
    titelZeigen();
}

void frmKreditorenKontenStamm::KontoTypusAnzeigen()
{
    const auto code = regeln::typusCode(m_ui->inpKrKontoTypus->text());
    if (!regeln::typusGueltig(code, m_ui->cmbKontoTypus->count()))
        kombiText(regeln::TextUngueltigerWert);
    else
        m_ui->cmbKontoTypus->setCurrentIndex(int(*code));
}

void frmKreditorenKontenStamm::kombiText(const QString &text)
{
    m_ui->cmbKontoTypus->setCurrentIndex(-1);
    m_ui->cmbKontoTypus->setEditText(text);
}

void frmKreditorenKontenStamm::cmbKontoTypus_Click()
{
    const int i = m_ui->cmbKontoTypus->currentIndex();
    if (KrPositionieren || i < 0)
        return;
    m_ui->inpKrKontoTypus->setText(m_ui->cmbKontoTypus->itemData(i).toString());
}

void frmKreditorenKontenStamm::cmbKontoTypus_KeyDown(int &keyCode)
{
    if (keyCode == TasteBildAuf || keyCode == TasteBildAb)
        keyCode = 0;
}

void frmKreditorenKontenStamm::KRData_Validate(int &action, bool &save)
{
    const auto *rs = m_ui->KRData->recordsetDirekt();
    if (!rs || rs->eof() || rs->bof() || KrAnlageLäuft)
        return;
    KrFehlerFeld.clear();
    Fehlerprüfungen();
    if (mks::PruefungFehlgeschlagen) {
        action = platform::vbDataActionCancel;
        return;
    }
    if (save && aktuelleZeile()) {
        const QString nr = m_ui->KRData->rs().feld(QStringLiteral("KrKontoNr")).toString();
        if (SpeichernPrüfen(*m_ui->KRData, QStringLiteral("KreditorenKontenstamm"), nr) != 0)
            action = platform::vbDataActionCancel;
    }
}

int frmKreditorenKontenStamm::SpeichernPrüfen(platform::DataControl &, const QString &,
                                              const QString &)
{
    return 0;
}

// ---------------------------------------------------------------------------------------------
// Keyboard, number field and buttons

bool frmKreditorenKontenStamm::eventFilter(QObject *obj, QEvent *ev)
{
    // A save on leaving a field, or a reload, clears the "*".
    if (ev->type() == QEvent::FocusIn && obj->isWidgetType()
        && static_cast<QWidget *>(obj)->window() == this)
        titelZeigen();
    if (ev->type() != QEvent::KeyPress && ev->type() != QEvent::ShortcutOverride)
        return QDialog::eventFilter(obj, ev);
    auto *w = qobject_cast<QWidget *>(obj);
    // With the type list open, Page Up and Page Down do nothing: they would pick another type.
    QWidget *liste = m_ui->cmbKontoTypus->view();
    if (w && (w == liste || liste->isAncestorOf(w))) {
        const int taste = static_cast<QKeyEvent *>(ev)->key();
        if (taste == Qt::Key_PageUp || taste == Qt::Key_PageDown)
            return true;
    }
    if (ev->type() != QEvent::KeyPress)
        return QDialog::eventFilter(obj, ev);
    // Key preview: the form sees each key once, when it reaches the control with the focus.
    QWidget *ziel = focusWidget() ? focusWidget() : this;
    if (!w || w != ziel || w->window() != this || !isVisible())
        return QDialog::eventFilter(obj, ev);

    int code = tastenCode(static_cast<QKeyEvent *>(ev)->key());
    if (code == 0)
        return QDialog::eventFilter(obj, ev);
    if (code == TasteEscape) {
        Form_KeyPress(code);
        return true;
    }
    Form_KeyDown(code);
    QComboBox *kombi = m_ui->cmbKontoTypus;
    if (code != 0 && (w == kombi || kombi->isAncestorOf(w))) {
        cmbKontoTypus_KeyDown(code);
        if (code == 0)
            return true;
    }
    return QDialog::eventFilter(obj, ev);
}

void frmKreditorenKontenStamm::Form_KeyDown(int &keyCode)
{
    // The trap shows nothing of its own: a move refused by the checks has said why already.
    try {
        if (!hatZeilen())
            return;
        auto &rs = m_ui->KRData->rs();
        if (keyCode == TasteBildAuf) {
            rs.MovePrevious();
            if (rs.bof()) {
                MsgBox(regeln::TextDateiAnfang);
                rs.MoveFirst();
            }
        } else if (keyCode == TasteBildAb) {
            rs.MoveNext();
            if (rs.eof()) {
                MsgBox(regeln::TextDateiEnde);
                rs.MoveLast();
            }
        }
    } catch (const RuntimeError &) { }
}

void frmKreditorenKontenStamm::Form_KeyPress(int &keyAscii)
{
    if (keyAscii == TasteEscape)
        close();
}

void frmKreditorenKontenStamm::inpKrKontoNr_GotFocus()
{
    // Enter in the number field reads the account.
    m_ui->cmdKontoEinlesen->setDefault(true);
}

void frmKreditorenKontenStamm::inpKrKontoNr_LostFocus()
{
    KrKontoNrVerlassen();
}

void frmKreditorenKontenStamm::KrKontoNrVerlassen()
{
    const QString feld = m_ui->inpKrKontoNr->objectName();
    if (KrFehlerFeld.isEmpty() || KrFehlerFeld == feld) {
        const QString empfaenger = m_fokus->empfaengerName();
        if (empfaenger == m_ui->cmdKontoListe->objectName())
            KrRückgabeFeld = feld;
        if (empfaenger == m_ui->cmdKontoNeueröff->objectName())
            KrNeuNr = regeln::kontoNr(m_ui->inpKrKontoNr->text());
    }
    if (!mks::PruefungFehlgeschlagen)
        KrDirektlesen();
}

void frmKreditorenKontenStamm::cmdKontoEinlesen_Click()
{
    if (m_fokus->empfaengerName() == m_ui->inpKrKontoNr->objectName())
        KrKontoNrVerlassen();
    else
        KrDirektlesen();
}

void frmKreditorenKontenStamm::cmdKontoListe_Click()
{
    platform::Sanduhr sanduhr;
    platform::Falle(OrtKontoListe, [this] {
        auto &info = mks::AufrufInfo;
        if (info.size() < mks::AufrufInfoGroesse)
            info.resize(mks::AufrufInfoGroesse);
        info[mks::slot::Datenbank] = mks::DatenbankPfad;
        info[mks::slot::Buchungsjahr] = mks::Buchungsjahr;
        const QString vorher = mks::AktuellesProgramm;
        mks::AktuellesProgramm = ListenProgId;
        const auto zurueck = qScopeGuard([vorher] { mks::AktuellesProgramm = vorher; });

        auto liste = platform::CreateObject(ListenProgId);
        platform::aufrufen(liste.get(), ListeKreditoren, {QVariant(info)});
        if (KrRückgabeFeld == m_ui->inpKrKontoNr->objectName()) {
            const QVariant gewaehlt = platform::aufrufen(liste.get(), ListeAuswahl);
            const qint32 nr = gewaehlt.isNull() ? 0 : platform::vb::CLng(gewaehlt);
            if (nr > 0) {
                m_ui->inpKrKontoNr->setText(QString::number(nr));
                KrDirektlesen();
                m_ui->inpKrKontoNr->setFocus();
            }
        }
    });
    KrRückgabeFeld.clear();
}

void frmKreditorenKontenStamm::cmdExit_Click()
{
    close();
}

void frmKreditorenKontenStamm::reject()
{
    close();
}

void frmKreditorenKontenStamm::Form_QueryUnload(bool &cancel)
{
    Fehlerprüfungen();
    if (mks::PruefungFehlgeschlagen)
        cancel = true;
}

void frmKreditorenKontenStamm::closeEvent(QCloseEvent *ev)
{
    bool cancel = false;
    Form_QueryUnload(cancel);
    // Closing saves the edits of the row shown, through the data control's Validate.
    if (!cancel && !m_ui->KRData->schliessen())
        cancel = true;
    if (cancel) {
        ev->ignore();
        return;
    }
    ev->accept();
    QDialog::done(QDialog::Rejected);
}

// ---------------------------------------------------------------------------------------------
// Field checks

void frmKreditorenKontenStamm::inpKrKontoBezeichnung_LostFocus()
{
    const QString feld = m_ui->inpKrKontoBezeichnung->objectName();
    if ((KrFehlerFeld.isEmpty() || KrFehlerFeld == feld)
        && m_fokus->empfaengerName() != m_ui->cmdKontoLöschen->objectName()) {
        KontoBezeichnungPrüfen();
    }
}

void frmKreditorenKontenStamm::inpKrKontoTypus_LostFocus()
{
    const QString feld = m_ui->inpKrKontoTypus->objectName();
    const QString empfaenger = m_fokus->empfaengerName();
    if ((KrFehlerFeld.isEmpty() || KrFehlerFeld == feld)
        && empfaenger != m_ui->cmdKontoLöschen->objectName()
        && empfaenger != m_ui->cmbKontoTypus->objectName()) {
        KontoTypusPrüfen();
    }
}

void frmKreditorenKontenStamm::cmbKontoTypus_Validate(bool &)
{
    const QString empfaenger = m_fokus->empfaengerName();
    if (empfaenger != m_ui->cmdKontoLöschen->objectName()
        && empfaenger != m_ui->inpKrKontoTypus->objectName()) {
        KontoTypusPrüfen();
    }
}

void frmKreditorenKontenStamm::Fehlerprüfungen()
{
    if (KrLöschungLäuft || KrAnlageLäuft)
        return;
    // Nothing to check passes: a check that failed on a row deleted since must not keep the
    // screen from closing.
    mks::PruefungFehlgeschlagen = false;
    if (!hatZeilen())
        return;
    KontoBezeichnungPrüfen();
    if (!mks::PruefungFehlgeschlagen)
        KontoTypusPrüfen();
}

void frmKreditorenKontenStamm::KontoBezeichnungPrüfen()
{
    mks::PruefungFehlgeschlagen = false;
    KrFehlerFeld.clear();
    const QString bezeichnung = m_ui->inpKrKontoBezeichnung->text();
    if (bezeichnung.isEmpty()) {
        MsgBox(regeln::TextBezeichnungLeer);
        KrFehlerFeld = m_ui->inpKrKontoBezeichnung->objectName();
        mks::PruefungFehlgeschlagen = true;
        m_ui->inpKrKontoBezeichnung->setFocus();
    }
}

void frmKreditorenKontenStamm::KontoTypusPrüfen()
{
    mks::PruefungFehlgeschlagen = false;
    KrFehlerFeld.clear();
    const auto code = regeln::typusCode(m_ui->inpKrKontoTypus->text());
    if (!regeln::typusGueltig(code, m_ui->cmbKontoTypus->count())) {
        // Marks the field only: a wrong code does not block saving or moving.
        MsgBox(regeln::TextTypusFalsch);
        kombiText(regeln::TextKlickenSie);
        KrFehlerFeld = m_ui->inpKrKontoTypus->objectName();
        m_ui->cmbKontoTypus->setFocus();
        return;
    }
    // Without the postings read there is nothing to correct against.
    if (!KrBuchungenSelect())
        return;
    const auto korrektur = regeln::typusKorrektur(*code, KrBuchungenVorhanden, KrBuchungMitObjekt);
    if (!korrektur)
        return;
    MsgBox(regeln::typusKorrigiert(*korrektur));
    m_ui->inpKrKontoTypus->setText(QString::number(*korrektur));
    KontoTypusAnzeigen();
}

bool frmKreditorenKontenStamm::KrBuchungenSelect()
{
    KrBuchungenVorhanden = false;
    bool gelesen = false;
    platform::Falle(OrtBuchungenSelect, [&] {
        platform::DataControl &kb = *m_ui->KbData;
        kb.setRecordSource(QStringLiteral("SELECT * FROM KreditorenBuchungen WHERE KbKontoNr = ?"),
                           {regeln::kontoNr(m_ui->inpKrKontoNr->text())});
        if (!kb.RefreshOderFehler())
            return;
        gelesen = true;
        if (kb.rs().RecordCount() > 0) {
            KrBuchungenVorhanden = true;
            // Only the first posting decides.
            KrBuchungMitObjekt = regeln::buchungMitObjekt(kb.rs().feld(QStringLiteral("KbObjNr")));
        }
    });
    return gelesen;
}

void frmKreditorenKontenStamm::KrKontoNrPrüfen()
{
    mks::PruefungFehlgeschlagen = false;
    KrFehlerFeld.clear();
    bool null = false;
    try {
        null = platform::vb::gleich(m_ui->inpKrKontoNr->text(), 0);
    } catch (const RuntimeError &) {
        null = false;
    }
    if (null) {
        MsgBox(regeln::TextKrNrNull);
        mks::PruefungFehlgeschlagen = true;
        KrFehlerFeld = m_ui->inpKrKontoNr->objectName();
        m_ui->inpKrKontoNr->setFocus();
    }
}

// ---------------------------------------------------------------------------------------------
// Opening

void frmKreditorenKontenStamm::cmdKontoNeueröff_Click()
{
    auto &u = *m_ui;
    // Setting the bookmark to itself makes the data control validate and save the row shown.
    if (hatZeilen() && aktuelleZeile())
        u.KRData->rs().setBookmark(u.KRData->rs().bookmark());
    if (mks::PruefungFehlgeschlagen)
        return;

    KrNeuAbbruch = false;
    {
        frmKrNeu dialog(this);
        if (dialog.exec() != QDialog::Accepted)
            KrNeuAbbruch = true;
    }
    if (KrNeuAbbruch) {
        if (hatZeilen()) {
            aktuelleNrZurueck();
            u.inpKrKontoNr->setFocus();
        }
        return;
    }

    const int antwort = MsgBox(regeln::neueroeffnenFrage(KrNeuNrText),
                               platform::vbYesNo | platform::vbQuestion, regeln::TitelBestaetigen);
    if (antwort == platform::vbYes) {
        KrNeuNr = regeln::kontoNr(KrNeuNrText);
        KrKontoAnlegen();
    } else {
        aktuelleNrZurueck();
        u.inpKrKontoNr->setFocus();
    }
    KrNeuNr = 0;
}

void frmKreditorenKontenStamm::KrKontoAnlegen()
{
    auto &u = *m_ui;
    KrAnlageLäuft = true;
    const auto ende = qScopeGuard([] {
        KrAnlageLäuft = false;
        KrNeuNr = 0;
    });
    // The trap shows no message of its own; a row that could not be written is dropped.
    try {
        auto &rs = u.KRData->rs();
        try {
            rs.AddNew();
            rs.setFeld(QStringLiteral("KrKontoNr"), KrNeuNr);
            rs.setFeld(QStringLiteral("KrKontoBezeichnung"), QString());
            rs.setFeld(QStringLiteral("KrKontoTypus"), QStringLiteral("1"));
            rs.setFeld(QStringLiteral("KrStornoDatum"), 0);
            rs.Update();
        } catch (const RuntimeError &e) {
            if (rs.editMode() != platform::storage::EditMode::Keiner)
                rs.CancelUpdate();
            if (e.nummer() != platform::fehlernummer::DoppelterSchluessel)
                throw;
            // Another user opened the number just before: his account is shown.
            const qint32 nr = KrNeuNr;
            KrAnlageLäuft = false;
            rs.Requery();
            u.inpKrKontoNr->setText(QString::number(nr));
            KrDirektlesen();
            MsgBox(regeln::vonAnderemEroeffnet(nr), platform::vbOKOnly | platform::vbInformation,
                   regeln::TextBereitsExistent);
            return;
        }
        rs.Requery();
        u.inpKrKontoNr->setText(QString::number(KrNeuNr));
        KrDirektlesen();
        MsgBox(regeln::neuAngelegt());
        u.inpKrKontoTypus->setText(QStringLiteral("1"));
        // The move above did not show the type (the opening was running); show it now.
        KontoTypusAnzeigen();
        u.inpKrKontoBezeichnung->setFocus();
    } catch (const RuntimeError &) { }
}

// ---------------------------------------------------------------------------------------------
// Deletion

void frmKreditorenKontenStamm::cmdKontoLöschen_Click()
{
    // No trap of its own: an error here reaches the top-level runtime error box.
    auto &u = *m_ui;
    if (MsgBox(regeln::TextLoeschenFrage, platform::vbYesNo | platform::vbQuestion,
               regeln::TitelBestaetigen)
        == platform::vbNo) {
        KrLöschungLäuft = false;
        return;
    }
    if (!hatZeilen())
        return;
    // An account whose postings cannot be read is never deleted.
    if (!KrBuchungenSelect()) {
        MsgBox(regeln::nichtGeloeschtOhneBuchungen(u.inpKrKontoNr->text()));
        u.inpKrKontoNr->setFocus();
        return;
    }
    if (KrBuchungenVorhanden) {
        // The refusal hands its title where the button style belongs; converting it fails with
        // runtime error 13 before any box appears, and nothing is deleted.
        MsgBox(regeln::nichtLoeschbar(u.inpKrKontoNr->text()),
               QVariant(regeln::TextLoeschungNichtMoeglich));
        KrLöschungLäuft = false;
        u.inpKrKontoNr->setFocus();
        return;
    }

    KrLöschungLäuft = true;
    const auto ende = qScopeGuard([] { KrLöschungLäuft = false; });
    auto &rs = u.KRData->rs();
    // Changed by another user meanwhile: asked again; kept, it is shown as stored.
    if (!rs.Delete()) {
        u.inpKrKontoBezeichnung->setFocus();
        return;
    }
    if (rs.RecordCount() > 0) {
        rs.MoveNext();
        if (rs.eof())
            rs.MoveLast();
    } else {
        // The last account went: nothing left to move to, the fields show nothing.
        u.KRData->UpdateControls();
        u.inpKrKontoNr->clear();
        kombiText(QString());
    }
    u.inpKrKontoBezeichnung->setFocus();
}

void frmKreditorenKontenStamm::KrBuchungenLöschen()
{
    auto &u = *m_ui;
    const auto *kb = u.KbData->recordsetDirekt();
    if (kb && kb->RecordCount() > 0) {
        u.KbData->rs().MoveLast();
        KrGelöschteBuchungen = u.KbData->rs().RecordCount();
        const qint32 nr = regeln::kontoNr(u.inpKrKontoNr->text());
        auto db = platform::storage::Database::open(mks::DatenbankPfad);
        // Balances and postings go together or not at all.
        platform::storage::Transaktion t(*db);
        db->execute(QStringLiteral("DELETE FROM KreditorenSalden WHERE KsKontoNr = ?"), {nr});
        db->execute(QStringLiteral("DELETE FROM KreditorenBuchungen WHERE KbKontoNr = ?"), {nr});
        t.commit();
    }
    if (KrGelöschteBuchungen > 0)
        MsgBox(regeln::buchungenGeloescht(KrGelöschteBuchungen));
}

// ---------------------------------------------------------------------------------------------

int kreditorenKontenstammZeigen(QWidget *parent)
{
    mks::AktuellesProgramm = QStringLiteral("frmKreditorenKontenStamm");
    int ergebnis = QDialog::Rejected;
    platform::Falle(QStringLiteral("zelKontenStamm, in KreditorenKontenstamm_Aufruf"), [&] {
        frmKreditorenKontenStamm screen(parent);
        ergebnis = screen.exec();
    });
    return ergebnis;
}

} // namespace creditors
