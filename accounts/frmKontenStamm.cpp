#include "accounts/frmKontenStamm.h"

#include "accounts/Kontentexte.h"
#include "accounts/regeln/Codelisten.h"
#include "accounts/regeln/Feldbeschriftungen.h"
#include "frame/DatenSteuerungen.h"
#include "frame/FormSkalieren.h"
#include "frame/Onlinehilfe.h"
#include "frame/mdlFehlerZL.h"
#include "frame/mdlInitKK.h"
#include "frame/mdlKontenStamm.h"
#include "platform/core/RuntimeError.h"
#include "platform/storage/Database.h"
#include "platform/ui/DataControl.h"
#include "platform/ui/Fehlerfalle.h"
#include "platform/ui/Fokus.h"
#include "platform/ui/MsgBox.h"
#include "screens/Bildschirmstil.h"
#include "screens/Bindungen.h"
#include "ui_frmKontenStamm.h"

#include <QApplication>
#include <QCheckBox>
#include <QCloseEvent>
#include <QComboBox>
#include <QGroupBox>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QScopeGuard>
#include <QSignalBlocker>
#include <QTabBar>

using platform::MsgBox;
using platform::RuntimeError;
namespace mks = mdlKontenStamm;
namespace texte = kontentexte;

namespace {

constexpr int TasteBildAuf = 33;
constexpr int TasteBildAb = 34;
constexpr int TasteF1 = 112;
constexpr int TasteF2 = 113;
constexpr int TasteEscape = 27;

int tastenCode(int qtTaste)
{
    switch (qtTaste) {
    case Qt::Key_PageUp:
        return TasteBildAuf;
    case Qt::Key_PageDown:
        return TasteBildAb;
    case Qt::Key_F1:
        return TasteF1;
    case Qt::Key_F2:
        return TasteF2;
    case Qt::Key_Escape:
        return TasteEscape;
    default:
        return 0;
    }
}

} // namespace

frmKontenStamm::frmKontenStamm(QWidget *parent)
    : QDialog(parent)
    , m_ui(std::make_unique<Ui::frmKontenStamm>())
{
    m_ui->setupUi(this);
    m_titel = windowTitle();
    screens::bildschirmEinrichten(this);
    screens::bindungenHerstellen(this);
    m_fokus = new platform::Fokus(this);
    verbinden();
    definitionenVerbinden();
    qApp->installEventFilter(this);
    Form_Load();
}

frmKontenStamm::~frmKontenStamm()
{
    if (qApp)
        qApp->removeEventFilter(this);
}

void frmKontenStamm::verbinden()
{
    auto &u = *m_ui;
    using F = frmKontenStamm;
    connect(u.cmdKontoEinlesen, &QPushButton::clicked, this, &F::cmdKontoEinlesen_Click);
    connect(u.cmdKontoNeueröff, &QPushButton::clicked, this, &F::cmdKontoNeueröff_Click);
    connect(u.cmdExit, &QPushButton::clicked, this, &F::cmdExit_Click);
    connect(u.cmdHilfe, &QPushButton::clicked, this, &F::cmdHilfe_Click);
    connect(u.cmdVerlauf, &QPushButton::clicked, this, &F::kontoVerlaufZeigen);
    connect(u.KKData, &platform::DataControl::Reposition, this, &F::KKData_Reposition);
    connect(u.KKData, &platform::DataControl::Validate, this, &F::KKData_Validate);
    connect(u.KKData, &platform::DataControl::Error, this, &F::KKData_Error);
    connect(u.TabStrip1, &QTabBar::currentChanged, this, &F::TabStrip1_Click);
    connect(u.BkPosChkData, &platform::DataControl::Error, this, &F::positionsFehler);
    connect(u.BkPosData, &platform::DataControl::Error, this, &F::positionsFehler);
    // A sibling call gives the focus back to the combo the user was in.
    connect(qApp, &QApplication::focusChanged, this, [this](QWidget *, QWidget *jetzt) {
        if (!jetzt || jetzt->window() != this)
            return;
        if (auto *kombi = qobject_cast<QComboBox *>(jetzt))
            m_letzteKombi = kombi;
        else if (!qobject_cast<QPushButton *>(jetzt)
                 && !qobject_cast<QComboBox *>(jetzt->parentWidget()))
            m_letzteKombi = nullptr;
    });

    m_fokus->setGotFocus(u.inpKontoNr, [this] { inpKontoNr_GotFocus(); });
    m_fokus->setValidate(u.inpKontoNr, [this](bool &cancel) { inpKontoNr_Validate(cancel); });
    m_fokus->setLostFocus(u.inpKontoNr, [this] { inpKontoNr_LostFocus(); });
    m_fokus->setGotFocus(u.inpKontoBezeichnung, [this] { inpKontoBezeichnung_GotFocus(); });
    m_fokus->setLostFocus(u.inpKontoBezeichnung, [this] { inpKontoBezeichnung_LostFocus(); });
    // Leaving a field towards the account list checks nothing: the user is about to choose
    // the number from it. Every other control checks the field being left.
    m_fokus->setCausesValidation(u.cmdKontoListe, false);

    // Other users' changes are named as the screen names the fields, codes by their texts.
    u.KKData->setFeldanzeige(
        [](const QString &, const QString &steuerelement) {
            const QString text = kontenregeln::feldBeschriftung(steuerelement);
            return text == steuerelement ? QString() : text;
        },
        [](const QString &feld, const QVariant &wert) {
            return kontenregeln::codeText(feld, wert, mks::Buchungsjahr);
        });
    // The "*" in the title follows the user's edits.
    for (QLineEdit *feld : findChildren<QLineEdit *>())
        connect(feld, &QLineEdit::textEdited, this, &F::titelZeigen);
    for (QComboBox *kombi : findChildren<QComboBox *>())
        connect(kombi, &QComboBox::activated, this, &F::titelZeigen);
    for (QCheckBox *kasten : findChildren<QCheckBox *>())
        connect(kasten, &QCheckBox::clicked, this, &F::titelZeigen);
    tastenkuerzelEinrichten();
}

void frmKontenStamm::tastenkuerzelEinrichten()
{
    auto &u = *m_ui;
    // Listed in the buttons' tool tips and in the help's chapter on the keyboard.
    screens::knopfTasten(this, {
                                   {QKeySequence(Qt::CTRL | Qt::Key_S), u.cmdKontoEinlesen},
                                   {QKeySequence(Qt::CTRL | Qt::Key_N), u.cmdKontoNeueröff},
                                   {QKeySequence(Qt::CTRL | Qt::Key_L), u.cmdKontoLöschen},
                                   {QKeySequence(Qt::CTRL | Qt::Key_F), u.cmdKontoListe},
                                   {QKeySequence(Qt::CTRL | Qt::Key_P), u.cmdPruefliste},
                                   {QKeySequence(Qt::CTRL | Qt::Key_H), u.cmdVerlauf},
                                   {QKeySequence(Qt::CTRL | Qt::Key_Q), u.cmdExit},
                               });
}

void frmKontenStamm::titelZeigen()
{
    setWindowTitle(frame::titelMitStand(m_titel, m_ui->KKData, aktuelleZeile()));
}

// ---------------------------------------------------------------------------------------------
// Loading

void frmKontenStamm::Form_Load()
{
    auto &u = *m_ui;
    hilfeEinrichten();

    for (platform::DataControl *d : findChildren<platform::DataControl *>())
        d->setDatabaseName(mks::DatenbankPfad);
    frame::DatenSteuerungenVerbinden(this, false);
    u.lblBuchjahr->setText(QString::number(mks::Buchungsjahr));
    frame::schreibrechtImTitel(this);

    kombisFuellen();
    BkPOS2DataSelect();
    BkBlockPosSelect();

    if (u.TabStrip1->count() == 0) {
        const QSignalBlocker still(u.TabStrip1);
        for (const QString &text : texte::Registerseiten)
            u.TabStrip1->addTab(text);
    }
    seiteZeigen(1);

    // Older databases lack KontoZusatzDatenJN, which the record display reads.
    platform::Falle(QStringLiteral("zelKontenStamm: in KKFeldKontrolle"), [] {
        if (mks::SchreibrechtFehlt)
            return;
        auto db = platform::storage::Database::open(mks::DatenbankPfad);
        mdlInitKK::KKFeldKontrolleStill(*db);
    });

    KontenSelect();
    AslSelect();
    seiteZeigen(seite());
    titelZeigen();
    screens::listenBreiteAnpassen(this);
    fremdeAenderungBeobachten();

    // Wider displays: the screen enlarges itself by the user's factor.
    bool positionen = true;
    bool schriften = true;
    double faktor = 0;
    frame::FormSkalieren(this, positionen, schriften, faktor);
}

void frmKontenStamm::KontenSelect()
{
    platform::Falle(texte::OrtKontenSelect, [this] {
        auto &kk = *m_ui->KKData;
        kk.setRecordSource(texte::SqlKontenDesJahres, {mks::Buchungsjahr});
        // A failed refresh has told the user through KKData_Error and the control's message.
        if (!kk.Refresh())
            return;
        if (kk.rs().RecordCount() == 0) {
            MsgBox(texte::leererDatenbestand(mks::Buchungsjahr), platform::vbOKOnly,
                   texte::TitelLeererDatenbestand);
            // A user who may only read cannot have the clearing account opened for him.
            if (mks::SchreibrechtFehlt)
                return;
            mks::NeueroeffnungsNr = mks::festeLaenge6(texte::Verrechnungskonto);
            mks::VerrechnungskontoWirdEroeffnet = true;
            const auto ende = qScopeGuard([] { mks::VerrechnungskontoWirdEroeffnet = false; });
            Neueröffnung();
        }
        // The original read KontoÖNORMAbrKontenArt here and kept nothing of it.
    });
}

bool frmKontenStamm::hatZeilen() const
{
    const auto *rs = m_ui->KKData->recordsetDirekt();
    return rs && rs->RecordCount() > 0;
}

bool frmKontenStamm::aktuelleZeile() const
{
    const auto *rs = m_ui->KKData->recordsetDirekt();
    if (!rs || rs->eof() || rs->bof())
        return false;
    try {
        (void)rs->bookmark(); // fails right after a Delete
        return true;
    } catch (const RuntimeError &) {
        return false;
    }
}

QString frmKontenStamm::aktuelleNr() const
{
    if (!aktuelleZeile())
        return {};
    return texte::rtrim(
        m_ui->KKData->recordsetDirekt()->feld(QStringLiteral("KontoNr")).toString());
}

void frmKontenStamm::aktuelleNrZurueck()
{
    if (hatZeilen())
        m_ui->inpKontoNr->setText(aktuelleNr());
    else
        m_ui->inpKontoNr->clear();
}

// ---------------------------------------------------------------------------------------------
// Showing a record

void frmKontenStamm::KKData_Reposition()
{
    // While an account is being opened the screen stays quiet: the rows passed on the way to
    // the new account are not shown (nor checked, nor corrected).
    if (m_unterdrueckung2)
        return;
    platform::Falle(texte::OrtReposition, [this] { anzeigen(); });
    titelZeigen();
}

void frmKontenStamm::anzeigen()
{
    auto &u = *m_ui;
    if (!hatZeilen()) {
        u.inpKontoNr->clear();
        u.lblKontoBezeichnung->clear();
        return;
    }
    if (!aktuelleZeile())
        return;
    m_fuellt = true;
    const auto ende = qScopeGuard([this] { m_fuellt = false; });
    const auto &rs = *u.KKData->recordsetDirekt();
    u.lblKontoBezeichnung->setText(rs.feld(QStringLiteral("KontoBezeichnung")).toString());
    u.inpKontoNr->setText(texte::rtrim(rs.feld(QStringLiteral("KontoNr")).toString()));

    m_typAngenommen = u.inpKontoTypus->text().trimmed();
    Texteinsetzen(u.cmbKontoTypus);
    Texteinsetzen(u.cmbKontoZusatzdatenJN);
    referenzNamenZeigen();
    Texteinsetzen(u.cmbKontoUstProz);
    Texteinsetzen(u.cmbKontoVoranmPos);
    cmbAbrPos2_Texteinsetzen();
    for (QComboBox *kombi :
         {u.cmbKostenArt, u.cmbBkENAbrDef, u.cmbBkEinnAusgPos, u.cmbEstgPflichtig, u.cmbBkBlockPos,
          u.cmbBkAbrUstProz, u.cmbBkAbrVerdichtKz, u.cmbHeEinnAusgPos, u.cmbHeAbrVerdichtKz,
          u.cmbBeiblPos, u.cmbBeiblVerdichtKz, u.cmbKontoAbschlArt, u.cmbKontoPVAKz,
          u.cmbKontoHmzResPos, u.cmbKontoHmzResVerdichtKz})
        Texteinsetzen(kombi);
    Zl7BilanzPosSelect(true);
    BilanzPosSelect(true);
    bool ok = false;
    const qlonglong pva = rs.feld(QStringLiteral("KontoPVAZusatz")).toLongLong(&ok);
    u.chckPVAZusatz->setChecked(ok && pva != 0);
}

void frmKontenStamm::KKData_Error(int DataErr, int &Response)
{
    platform::Falle(texte::OrtKKDataError, [&] {
        aktuelleNrZurueck();
        const int nummer
            = DataErr == platform::fehlernummer::KeinAktuellerDatensatz ? 3260 : DataErr;
        QString beschreibung = RuntimeError::standardText(nummer);
        if (beschreibung.isEmpty())
            beschreibung = texte::fehlerOhneText(nummer);
        const RuntimeError fehler(nummer, beschreibung);
        mdlFehlerZL::FehlerMelden(texte::OrtKKDataError, fehler);
        MsgBox(QString::number(nummer) + u' ' + beschreibung);
    });
    // 0 and then 1: the data control shows its own standard message as well.
    Response = 0;
    Response = 1;
}

// ---------------------------------------------------------------------------------------------
// Keyboard, buttons and closing

bool frmKontenStamm::eventFilter(QObject *obj, QEvent *ev)
{
    if (obj == m_ui->TabStrip1 && registerVorWechsel(ev))
        return true;
    // A save on leaving a field, or a reload, clears the "*".
    if (ev->type() == QEvent::FocusIn && obj->isWidgetType()
        && static_cast<QWidget *>(obj)->window() == this)
        titelZeigen();
    if (ev->type() != QEvent::KeyPress)
        return QDialog::eventFilter(obj, ev);
    auto *w = qobject_cast<QWidget *>(obj);
    // Key preview: the form sees each key once, when it reaches the control with the focus.
    QWidget *ziel = focusWidget() ? focusWidget() : this;
    if (!w || w != ziel || w->window() != this || !isVisible())
        return QDialog::eventFilter(obj, ev);
    const auto *taste = static_cast<QKeyEvent *>(ev);
    if ((taste->key() == Qt::Key_Tab || taste->key() == Qt::Key_Backtab)
        && (taste->modifiers() & Qt::ControlModifier)) {
        const bool zurueck
            = taste->key() == Qt::Key_Backtab || (taste->modifiers() & Qt::ShiftModifier);
        seiteWeiter(zurueck ? -1 : 1);
        return true;
    }
    int code = tastenCode(static_cast<QKeyEvent *>(ev)->key());
    if (code == 0)
        return QDialog::eventFilter(obj, ev);
    Form_KeyDown(code);
    // Page keys never move the selection of a definition combo; every key handled here is done.
    return true;
}

void frmKontenStamm::Form_KeyDown(int &KeyCode)
{
    // A move refused by the checks has said why already; nothing more to show then.
    try {
        if (!hatZeilen() && KeyCode != TasteEscape)
            return;
        auto &rs = m_ui->KKData->rs();
        // A record move leaves the field being edited first.
        if ((KeyCode == TasteBildAuf || KeyCode == TasteBildAb)
            && !m_fokus->verlassen(m_ui->KKData))
            return;
        switch (KeyCode) {
        case TasteBildAuf:
            rs.MovePrevious();
            if (rs.bof()) {
                MsgBox(texte::DateiAnfang);
                rs.MoveFirst();
            }
            break;
        case TasteBildAb:
            rs.MoveNext();
            if (rs.eof()) {
                MsgBox(texte::DateiEnde);
                rs.MoveLast();
            }
            break;
        case TasteF1:
            frame::hilfeZeigen(m_fokus->ActiveControl() ? m_fokus->ActiveControl() : this);
            break;
        case TasteF2:
            if (m_fokus->empfaengerName() == m_ui->inpKontoNr->objectName())
                m_ui->cmdKontoListe->click();
            break;
        case TasteEscape:
            close();
            break;
        default:
            break;
        }
    } catch (const RuntimeError &e) {
        platform::fehlerMelden(texte::OrtFormKeyDown, e);
    }
}

void frmKontenStamm::cmdExit_Click()
{
    close();
}

void frmKontenStamm::cmdHilfe_Click()
{
    // The original sent {F1} to the screen: help for the control the user is in (a click that
    // gave the button the focus means the control before it).
    QWidget *feld = focusWidget();
    if (feld == m_ui->cmdHilfe && m_feldVorHilfe)
        feld = m_feldVorHilfe;
    frame::hilfeZeigen(feld ? feld : this);
}

void frmKontenStamm::hilfeEinrichten()
{
    // The help file of the call, with its notice when it is missing; "?" only with help.
    mdlFehlerZL::HilfeAufrufChk();
    m_ui->cmdHilfe->setVisible(mks::HilfeVorhanden);
    connect(qApp, &QApplication::focusChanged, this, [this](QWidget *vorher, QWidget *jetzt) {
        if (jetzt == m_ui->cmdHilfe && vorher && vorher->window() == this)
            m_feldVorHilfe = vorher;
    });
}

void frmKontenStamm::reject()
{
    close();
}

void frmKontenStamm::Form_QueryUnload(bool &Cancel)
{
    Eingabeprüfungen();
    if (!mks::PruefungFehlgeschlagen)
        Fehlerprüfungen_0();
    if (mks::PruefungFehlgeschlagen)
        Cancel = true;
}

void frmKontenStamm::closeEvent(QCloseEvent *ev)
{
    // Escape and the window's own close leave the field being edited first.
    bool cancel = !m_fokus->verlassen(m_ui->KKData);
    if (!cancel)
        Form_QueryUnload(cancel);
    // Closing writes the edits of the record shown, through KKData_Validate.
    if (!cancel && !m_ui->KKData->schliessen())
        cancel = true;
    if (cancel) {
        ev->ignore();
        return;
    }
    ev->accept();
    QDialog::done(QDialog::Rejected);
}
