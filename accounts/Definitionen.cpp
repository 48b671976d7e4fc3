// The definition combos (fill, choose, show), the editing protocol of the page fields and the
// register pages with their change guard.
#include "accounts/Kontentexte.h"
#include "accounts/frmKontenStamm.h"
#include "accounts/regeln/Codelisten.h"
#include "accounts/regeln/Positionen.h"
#include "frame/mdlKontenStamm.h"
#include "platform/ui/DataControl.h"
#include "platform/ui/Fehlerfalle.h"
#include "platform/ui/Fokus.h"
#include "platform/ui/MsgBox.h"
#include "ui_frmKontenStamm.h"

#include <QAbstractItemView>
#include <QCheckBox>
#include <QComboBox>
#include <QGroupBox>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMouseEvent>
#include <QPushButton>
#include <QScopeGuard>
#include <QSignalBlocker>
#include <QTabBar>

using platform::MsgBox;
namespace mks = mdlKontenStamm;
namespace texte = kontentexte;
namespace regeln = kontenregeln;

namespace {

const QString TitelEingabefehler = QStringLiteral("Eingabefehler");
const QString TitelEinlesen = QStringLiteral("erforderlich: zuerst Kontenstammsatz einlesen");

QString einlesenZuerst()
{
    return QStringLiteral("Sie haben im Feld \"KontoNummer:\" die Kontonummer ")
        + QStringLiteral("geändert und dann auf eine Register-Überschrift geklickt.")
        + QStringLiteral("\r\n")
        + QStringLiteral("Bitte klicken Sie zuerst die Schaltfläche \"Kontenstammsatz einlesen\" ")
        + QStringLiteral("bevor Sie mit der Maus eine Register-Überschrift anklicken");
}

// The two single-letter flag fields: accepted letters and the message for anything else.
struct FlagFeld
{
    const char *feld;
    QStringView erlaubt;
    const char *meldung;
};
const FlagFeld FlagFelder[] = {
    {"inpZLSperre", u"SN", "ZL-Sperre darf nur 'S' oder 'N' sein"},
    {"inpVerdichtKZ", u"VNS", "Verdichtungs-Kennzeichen darf nur 'V' oder 'N' oder 'S' sein"},
};

// Page Up and Page Down never move the selection of an open definition list.
class BlaetternSperren : public QObject
{
public:
    using QObject::QObject;

protected:
    bool eventFilter(QObject *obj, QEvent *ev) override
    {
        if (ev->type() == QEvent::KeyPress || ev->type() == QEvent::ShortcutOverride) {
            const int taste = static_cast<QKeyEvent *>(ev)->key();
            if (taste == Qt::Key_PageUp || taste == Qt::Key_PageDown)
                return true;
        }
        return QObject::eventFilter(obj, ev);
    }
};

} // namespace

// ---------------------------------------------------------------------------------------------
// Code lists

void frmKontenStamm::kombisFuellen()
{
    for (const regeln::Codeliste &liste : regeln::codelisten()) {
        auto *kombi = findChild<QComboBox *>(liste.kombi);
        if (!kombi)
            continue;
        const QSignalBlocker still(kombi);
        kombi->clear();
        for (const regeln::Eintrag &e : liste.eintraege)
            kombi->addItem(e.text, e.code);
    }
}

void frmKontenStamm::Kombi_Click(QComboBox *kombi)
{
    if (m_fuellt || !kombi)
        return;
    auto &u = *m_ui;
    const int index = kombi->currentIndex();
    if (index < 0)
        return;
    const QVariant code = kombi->itemData(index);
    if (kombi == u.cmbAbrPos2) {
        const auto [stufe1, stufe2] = regeln::abrPosStufen(code.toLongLong());
        u.inpAbrechPosition->setText(QString::number(stufe1));
        u.inpAbrechPosition2->setText(QString::number(stufe2));
        return;
    }
    if (kombi == u.cmbBkBlockPos) {
        u.inpBkBlockPos->setText(QString::number(code.toLongLong()));
        return;
    }
    const regeln::Codeliste *liste = regeln::codeliste(kombi->objectName());
    auto *feld = liste ? findChild<QLineEdit *>(liste->feld) : nullptr;
    if (!feld)
        return;
    feld->setText(
        QString::number(regeln::gespeicherterWert(*liste, code.toInt(), mks::Buchungsjahr)));
    if (kombi == u.cmbKontoVoranmPos) {
        const QString hinweis = regeln::code75Hinweis(code.toInt());
        u.lblCode75->setText(hinweis);
        u.lblCode75->setVisible(!hinweis.isEmpty());
    }
}

void frmKontenStamm::Texteinsetzen(QComboBox *kombi)
{
    auto &u = *m_ui;
    if (kombi == u.cmbAbrPos2) {
        cmbAbrPos2_Texteinsetzen();
        return;
    }
    if (kombi == u.cmbBkBlockPos) {
        cmbBkBlockPos_Texteinsetzen();
        return;
    }
    const regeln::Codeliste *liste = kombi ? regeln::codeliste(kombi->objectName()) : nullptr;
    auto *feld = liste ? findChild<QLineEdit *>(liste->feld) : nullptr;
    if (!feld)
        return;
    const QString text = feld->text().trimmed();
    bool zahl = true;
    const int wert = text.isEmpty() ? 0 : text.toInt(&zahl);
    regeln::Anzeige anzeige;
    if (zahl) {
        anzeige = regeln::anzeige(*liste, wert, mks::Buchungsjahr);
    } else if (liste->abbildung == regeln::Abbildung::Einfach) {
        anzeige = {-1, !liste->ungueltigText.isEmpty()};
    } else {
        anzeige = {0, false};
    }
    if (anzeige.ungueltig) {
        MsgBox(liste->ungueltigText);
    } else {
        const QSignalBlocker still(kombi);
        kombi->setCurrentIndex(anzeige.position);
    }
    if (kombi == u.cmbKontoVoranmPos) {
        const QString hinweis = zahl ? regeln::code75HinweisFuerWert(wert) : QString();
        u.lblCode75->setText(hinweis);
        u.lblCode75->setVisible(!hinweis.isEmpty());
    }
}

// ---------------------------------------------------------------------------------------------
// Editing protocol

void frmKontenStamm::definitionenVerbinden()
{
    auto &u = *m_ui;
    auto *sperre = new BlaetternSperren(this);
    QList<QComboBox *> kombis {u.cmbAbrPos2, u.cmbBkBlockPos};
    for (const regeln::Codeliste &liste : regeln::codelisten()) {
        if (auto *k = findChild<QComboBox *>(liste.kombi))
            kombis.append(k);
    }
    for (QComboBox *kombi : kombis) {
        connect(kombi, &QComboBox::activated, this, [this, kombi] { Kombi_Click(kombi); });
        kombi->installEventFilter(sperre);
        kombi->view()->installEventFilter(sperre);
        m_fokus->setGotFocus(kombi, [this, kombi] { m_letzteKombi = kombi; });
        m_fokus->setLostFocus(kombi, [this, kombi] { Texteinsetzen(kombi); });
    }
    // Checked as the combo is left (not towards the delete button), so that a wrong flag can
    // stop every way out, also those that do not move the focus.
    m_fokus->setValidate(u.cmbKontoZusatzdatenJN, [this](bool &cancel) {
        if (m_fokus->ActiveControl() == m_ui->cmdKontoLöschen)
            return;
        KontoZusatzDatenJNPrüfen();
        cancel = mks::PruefungFehlgeschlagen;
    });
    // The settlement position's text may be shorter than its list item: it shows free text.
    u.cmbAbrPos2->setEditable(true);
    u.cmbAbrPos2->lineEdit()->setReadOnly(true);
    u.cmbKontoTypus->setPlaceholderText(QString());

    // A changed type is checked when the user leaves the type combo or its field; every way of
    // leaving the record checks it as well (KKData_Validate).
    for (QWidget *w :
         {static_cast<QWidget *>(u.cmbKontoTypus), static_cast<QWidget *>(u.inpKontoTypus)}) {
        m_fokus->setValidate(w, [this](bool &) { kontoTypus_Validate(); });
        m_fokus->setLostFocus(w, [this] { Texteinsetzen(m_ui->cmbKontoTypus); });
    }

    for (QWidget *feld : {static_cast<QWidget *>(u.inpKontoUstKtoNr),
                          static_cast<QWidget *>(u.inpKontoSbkGuvKontoNr),
                          static_cast<QWidget *>(u.inpKontoEbkKontoNr)}) {
        m_fokus->setGotFocus(feld,
                             [this, feld] { m_erinnert = static_cast<QLineEdit *>(feld)->text(); });
        m_fokus->setValidate(feld,
                             [this, feld](bool &cancel) { referenzFeld_Validate(feld, cancel); });
    }
    for (const FlagFeld &f : FlagFelder) {
        auto *feld = findChild<QLineEdit *>(QString::fromUtf8(f.feld));
        m_fokus->setValidate(feld, [this, feld](bool &cancel) { flagFeld_Validate(feld, cancel); });
    }
    connect(u.chckPVAZusatz, &QCheckBox::clicked, this, [this] { chckPVAZusatz_Click(); });
    using F = frmKontenStamm;
    connect(u.cmdKontoListe, &QPushButton::clicked, this, &F::cmdKontoListe_Click);
    connect(u.cmdKontoLöschen, &QPushButton::clicked, this, &F::cmdKontoLöschen_Click);
    connect(u.cmdBilPosAuswahl, &QPushButton::clicked, this, &F::cmdBilPosAuswahl_Click);
    connect(u.cmdZl7BilPosAuswahl, &QPushButton::clicked, this, &F::cmdZl7BilPosAuswahl_Click);
    connect(u.cmdBilPosStamm, &QPushButton::clicked, this, &F::cmdBilPosStamm_Click);
    connect(u.cmdZl7BilPosStamm, &QPushButton::clicked, this, &F::cmdZl7BilPosStamm_Click);
    connect(u.cmdÖNORMPosStammAufruf, &QPushButton::clicked, this,
            &F::cmdÖNORMPosStammAufruf_Click);
    connect(u.cmdAbrPosStammAufruf, &QPushButton::clicked, this, &F::cmdAbrPosStammAufruf_Click);
    connect(u.cmdBilPosloeschen, &QPushButton::clicked, this, &F::cmdBilPosloeschen_Click);
    connect(u.cmdPruefliste, &QPushButton::clicked, this, &F::cmdPruefliste_Click);
}

void frmKontenStamm::flagFeld_Validate(QWidget *w, bool &Cancel)
{
    if (m_fokus->empfaengerName() == m_ui->cmdKontoListe->objectName())
        return;
    if (!flagFeldPrüfen(static_cast<QLineEdit *>(w)))
        Cancel = true;
}

bool frmKontenStamm::flagFeldPrüfen(QLineEdit *feld)
{
    const FlagFeld *f = nullptr;
    for (const FlagFeld &kandidat : FlagFelder) {
        if (feld->objectName() == QLatin1String(kandidat.feld))
            f = &kandidat;
    }
    if (!f)
        return true;
    const QString text = feld->text();
    if (text.size() == 1 && f->erlaubt.contains(text.at(0).toUpper()) && text != text.toUpper()) {
        feld->setText(text.toUpper());
    }
    const QString wert = feld->text();
    if (wert.isEmpty() || (wert.size() == 1 && f->erlaubt.contains(wert.at(0))))
        return true;
    MsgBox(QString::fromUtf8(f->meldung), platform::vbOKOnly, TitelEingabefehler);
    return false;
}

void frmKontenStamm::chckPVAZusatz_Click()
{
    if (m_fuellt || !aktuelleZeile())
        return;
    platform::Falle(texte::OrtPVAZusatz, [this] {
        auto &rs = m_ui->KKData->rs();
        rs.Edit();
        rs.setFeld(QStringLiteral("KontoPVAZusatz"), m_ui->chckPVAZusatz->isChecked() ? -1 : 0);
        rs.Update();
    });
}

void frmKontenStamm::kontoTypus_Validate()
{
    auto &u = *m_ui;
    // Moving between the combo and its field is no change yet; a record about to be deleted
    // needs no type.
    QWidget *ziel = m_fokus->ActiveControl();
    if (ziel == u.cmbKontoTypus || ziel == u.inpKontoTypus || ziel == u.cmdKontoLöschen)
        return;
    TypwechselPrüfen();
}

// ---------------------------------------------------------------------------------------------
// Register pages

void frmKontenStamm::seiteZeigen(int seite)
{
    if (seite < 1 || seite > 7)
        return;
    m_seiteIntern = true;
    const auto ende = qScopeGuard([this] { m_seiteIntern = false; });
    {
        const QSignalBlocker still(m_ui->TabStrip1);
        m_ui->TabStrip1->setCurrentIndex(seite - 1);
    }
    m_seite = seite;
    seiteEinrichten();
}

void frmKontenStamm::TabStrip1_BeforeClick(bool &Cancel)
{
    if (m_fuellt)
        return;
    auto &u = *m_ui;
    if (hatZeilen() && u.inpKontoNr->text().trimmed() != aktuelleNr()) {
        MsgBox(einlesenZuerst(), platform::vbOKOnly, TitelEinlesen);
        Cancel = true;
        u.inpKontoNr->setFocus();
        return;
    }
    Eingabeprüfungen();
    if (!mks::PruefungFehlgeschlagen)
        Fehlerprüfungen_0();
    if (mks::PruefungFehlgeschlagen)
        Cancel = true;
}

bool frmKontenStamm::registerVorWechsel(QEvent *ev)
{
    auto *tabs = m_ui->TabStrip1;
    int ziel = -1;
    switch (ev->type()) {
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonDblClick: {
        const auto *m = static_cast<QMouseEvent *>(ev);
        if (m->button() != Qt::LeftButton)
            return false;
        ziel = tabs->tabAt(m->position().toPoint());
        break;
    }
    case QEvent::MouseButtonRelease:
        if (!m_registerLoslassenSchlucken)
            return false;
        m_registerLoslassenSchlucken = false;
        return true;
    case QEvent::KeyPress: {
        // The tab bar itself moves one page with the arrow keys.
        const int taste = static_cast<QKeyEvent *>(ev)->key();
        if (taste != Qt::Key_Left && taste != Qt::Key_Right)
            return false;
        const bool zurueck = (taste == Qt::Key_Left) != tabs->isRightToLeft();
        ziel = tabs->currentIndex() + (zurueck ? -1 : 1);
        if (ziel >= tabs->count())
            ziel = -1;
        break;
    }
    case QEvent::Wheel:
        // Pages change by a click or a key, never while scrolling over the headers.
        return true;
    default:
        return false;
    }
    if (ziel < 0 || ziel == tabs->currentIndex())
        return false;
    if (!seiteFreigeben(ziel)) {
        m_registerLoslassenSchlucken = ev->type() != QEvent::KeyPress;
        return true;
    }
    return false;
}

bool frmKontenStamm::seiteFreigeben(int ziel)
{
    // The field being edited is left first, then the page: a refused change shows nothing of
    // the other page.
    bool cancel = !m_fokus->verlassen(m_ui->TabStrip1);
    if (!cancel)
        TabStrip1_BeforeClick(cancel);
    if (cancel)
        return false;
    m_freigegebeneSeite = ziel + 1;
    return true;
}

void frmKontenStamm::seiteWeiter(int schritt)
{
    auto *tabs = m_ui->TabStrip1;
    const int ziel = (tabs->currentIndex() + schritt + tabs->count()) % tabs->count();
    if (ziel == tabs->currentIndex() || !seiteFreigeben(ziel))
        return;
    tabs->setCurrentIndex(ziel);
    // The focus goes to the first field of the page now shown.
    auto &u = *m_ui;
    QGroupBox *rahmen[]
        = {u.frame1_0, u.frame1_1, u.frame1_2, u.frame1_3, u.frame1_4, u.frame1_5, u.frame1_6};
    QWidget *seite = rahmen[m_seite - 1];
    for (QWidget *w = u.inpKontoNr->nextInFocusChain(); w && w != u.inpKontoNr;
         w = w->nextInFocusChain()) {
        if (seite->isAncestorOf(w) && w->isVisible() && w->isEnabled()
            && (w->focusPolicy() & Qt::TabFocus)) {
            w->setFocus(Qt::TabFocusReason);
            break;
        }
    }
}

void frmKontenStamm::TabStrip1_Click()
{
    const int neu = m_ui->TabStrip1->currentIndex() + 1;
    if (m_seiteIntern || neu < 1)
        return;
    const bool freigegeben = neu == m_freigegebeneSeite;
    m_freigegebeneSeite = 0;
    if (freigegeben) {
        m_seite = neu;
        seiteEinrichten();
        return;
    }
    // A change that did not pass the guard before (none of the user's ways does): checked now,
    // and taken back when refused.
    const int alt = m_seite;
    bool cancel = false;
    TabStrip1_BeforeClick(cancel);
    if (cancel) {
        // A failed check may have shown the page of its field; otherwise the old page stays.
        const QSignalBlocker still(m_ui->TabStrip1);
        m_ui->TabStrip1->setCurrentIndex(m_seite - 1);
        if (m_seite == alt)
            return;
        seiteEinrichten();
        return;
    }
    m_seite = neu;
    seiteEinrichten();
}

void frmKontenStamm::anzeigeFarben()
{
    auto &u = *m_ui;
    // The locked pages keep the colours of editable ones: to be read, not greyed out.
    QWidget *flaechen[] = {u.frame1_0, u.frame1_1, u.frame1_2, u.frame1_3,
                           u.frame1_4, u.frame1_5, u.frame1_6, u.fraBkUstSchl};
    for (QWidget *w : flaechen) {
        QPalette p = w->palette();
        for (const auto rolle : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText,
                                 QPalette::Base, QPalette::Button, QPalette::Window})
            p.setColor(QPalette::Disabled, rolle, p.color(QPalette::Active, rolle));
        w->setPalette(p);
    }
}

void frmKontenStamm::seiteEinrichten()
{
    auto &u = *m_ui;
    QGroupBox *rahmen[]
        = {u.frame1_0, u.frame1_1, u.frame1_2, u.frame1_3, u.frame1_4, u.frame1_5, u.frame1_6};
    QGroupBox *eigener = rahmen[m_seite - 1];
    // The other pages are hidden and locked; the page's own frame is never locked in between,
    // so the field a check has just focused keeps the focus.
    for (QGroupBox *r : rahmen) {
        if (r == eigener)
            continue;
        r->setVisible(false);
        r->setEnabled(false);
    }
    eigener->setVisible(true);
    eigener->raise();
    const bool ustSchl = m_seite == 2 || m_seite == 3;
    u.fraBkUstSchl->setVisible(ustSchl);
    if (ustSchl)
        u.fraBkUstSchl->raise();

    // In view-only mode nothing on the page nor any command can change the account.
    const bool aendern = !mks::NurAnzeige;
    if (!aendern)
        anzeigeFarben();
    eigener->setEnabled(aendern);
    u.fraBkUstSchl->setEnabled(aendern);
    QWidget *befehle[] = {u.cmdKontoNeueröff,  u.cmdKontoLöschen,      u.cmdBilPosAuswahl,
                          u.cmdBilPosStamm,    u.cmdBilPosloeschen,    u.cmdZl7BilPosAuswahl,
                          u.cmdZl7BilPosStamm, u.cmdAbrPosStammAufruf, u.cmdÖNORMPosStammAufruf};
    for (QWidget *b : befehle)
        b->setEnabled(aendern);
}
