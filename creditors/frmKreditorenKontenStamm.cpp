// The creditor account screen: loading, moving through the accounts, keys, the list and closing.
// Reading by number, the checks, opening and deletion live in KrLesen.cpp, KrPruefungen.cpp,
// KrNeueroeffnung.cpp and KrLoeschen.cpp.
#include "creditors/frmKreditorenKontenStamm.h"

#include "creditors/Kreditorenregeln.h"
#include "creditors/mdlKreditoren.h"
#include "frame/DatenSteuerungen.h"
#include "frame/Onlinehilfe.h"
#include "frame/mdlFehlerZL.h"
#include "frame/mdlKontenStamm.h"
#include "platform/core/CreateObject.h"
#include "platform/core/RuntimeError.h"
#include "platform/core/VbWerte.h"
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

const QString OrtKontoListe = QStringLiteral("dllKontenStamm, in cmdKontoListe_Click");

// The bundled selection lists and the two operations this screen needs of them: show the
// creditor list for the call information (database in slot 0, booking year in slot 10), then
// the chosen account number (0 or empty when none was chosen).
const QString ListenProgId = QStringLiteral("zelDiverseListen");
constexpr const char *ListeKreditoren = "KreditorenListe";
constexpr const char *ListeAuswahl = "AuswahlNr";

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
// Loading and the record shown

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

// ---------------------------------------------------------------------------------------------
// Keyboard, list, closing

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
