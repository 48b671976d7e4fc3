// Reading an account by number: the number field's events and the existence check.
#include "accounts/Kontentexte.h"
#include "accounts/frmKontenStamm.h"
#include "accounts/regeln/Kontonummern.h"
#include "frame/mdlKontenStamm.h"
#include "platform/ui/DataControl.h"
#include "platform/ui/Fehlerfalle.h"
#include "platform/ui/Fokus.h"
#include "platform/ui/MsgBox.h"
#include "ui_frmKontenStamm.h"

#include <QLineEdit>
#include <QPushButton>

using platform::MsgBox;
namespace mks = mdlKontenStamm;
namespace texte = kontentexte;

bool frmKontenStamm::KKChkSelect()
{
    bool gelesen = false;
    platform::Falle(texte::OrtKKChkSelect, [&] {
        mks::KontoGefunden = false;
        auto &chk = *m_ui->KKChkData;
        chk.setRecordSource(texte::SqlKontoLesen, {mks::Buchungsjahr, texte::rtrim(mks::LeseNr)});
        if (!chk.RefreshOderFehler())
            return;
        gelesen = true;
        if (chk.rs().RecordCount() > 0)
            mks::KontoGefunden = true;
    });
    return gelesen;
}

void frmKontenStamm::KontoDirektLesen()
{
    platform::Falle(texte::OrtKontoDirektLesen, [this] {
        auto &u = *m_ui;
        const QString nr = u.inpKontoNr->text().trimmed();
        if (nr.isEmpty()) {
            MsgBox(texte::KontonummerLeer);
            u.inpKontoNr->setFocus();
            mks::ImNummernfeldBleiben = true;
            return;
        }
        mks::LeseNr = mks::festeLaenge6(nr);
        if (!KKChkSelect()) {
            // Not knowing whether the account exists, nothing is read and nothing offered.
            aktuelleNrZurueck();
            u.inpKontoNr->setFocus();
            mks::ImNummernfeldBleiben = true;
            return;
        }
        if (mks::KontoGefunden) {
            u.KKData->rs().FindFirst({{QStringLiteral("KontoNr"), texte::rtrim(nr)}});
            return;
        }
        if (mks::NurAnzeige) {
            MsgBox(texte::nichtExistentNurAnzeige(mks::LeseNr));
            u.inpKontoNr->setFocus();
            // The focus is back in the field: leaving it is refused like after "Ja".
            mks::ImNummernfeldBleiben = true;
            return;
        }
        const int antwort
            = MsgBox(texte::nichtExistentFrage(mks::LeseNr),
                     platform::vbYesNo | platform::vbQuestion, texte::TitelNichtExistent);
        if (antwort == platform::vbYes) {
            aktuelleNrZurueck();
            u.inpKontoNr->setFocus();
            mks::ImNummernfeldBleiben = true;
            return;
        }
        mks::NeueroeffnungVomNummernfeld = true;
        mks::NeueroeffnungsNr = mks::festeLaenge6(nr);
        u.cmdKontoNeueröff->click();
    });
}

void frmKontenStamm::KontoNrFormPrüfen()
{
    mks::PruefungFehlgeschlagen = false;
    m_abgelehnteNr.clear();
    auto *feld = m_ui->inpKontoNr;
    const auto fehler = kontenregeln::nummernform(feld->text());
    if (fehler == kontenregeln::NummernFehler::Keiner)
        return;
    MsgBox(kontenregeln::nummernformMeldung(fehler));
    mks::PruefungFehlgeschlagen = true;
    m_abgelehnteNr = feld->text();
    feld->setFocus();
}

void frmKontenStamm::inpKontoNr_GotFocus()
{
    // Enter in the number field reads the account.
    m_ui->cmdKontoEinlesen->setDefault(true);
    m_letzteNr = m_ui->inpKontoNr->text();
    // From the number field the account list fills the number itself.
    m_erinnert.reset();
    // A focus move to the designation made inside a focus handler raised no LostFocus here.
    mks::BezeichnungFokusAusstehend = false;
}

bool frmKontenStamm::nummerBleibtUngelesen() const
{
    // The list and the opening take the typed number themselves; closing, help, a page header
    // (which has its own guard for a typed number) and a record move stay reachable.
    const auto &u = *m_ui;
    QWidget *ziel = m_fokus->ActiveControl();
    return ziel
        && (ziel == u.cmdKontoListe || ziel == u.cmdKontoNeueröff || ziel == u.cmdExit
            || ziel == u.cmdHilfe || ziel == u.TabStrip1 || ziel == u.KKData
            || u.KKData->isAncestorOf(ziel));
}

void frmKontenStamm::inpKontoNr_Validate(bool &Cancel)
{
    mks::ImNummernfeldBleiben = false;
    if (nummerBleibtUngelesen())
        return;
    if (!hatZeilen()) {
        m_ui->inpKontoNr->setFocus();
        return;
    }
    const QString nr = m_ui->inpKontoNr->text().trimmed();
    if (nr == aktuelleNr())
        return;
    // The form of a typed number is checked before it is looked up ("1" is no account 0001);
    // blanks only are refused by the read itself.
    if (!nr.isEmpty()) {
        KontoNrFormPrüfen();
        if (mks::PruefungFehlgeschlagen) {
            mks::ImNummernfeldBleiben = true;
            Cancel = true;
            return;
        }
    }
    KontoDirektLesen();
    if (mks::ImNummernfeldBleiben)
        Cancel = true;
}

void frmKontenStamm::inpKontoNr_LostFocus()
{
    if (mks::BezeichnungFokusAusstehend) {
        mks::BezeichnungFokusAusstehend = false;
        return;
    }
    auto &u = *m_ui;
    const QString text = u.inpKontoNr->text();
    // Nothing typed since the field got the focus, or the number shown: nothing to read.
    if (text == m_letzteNr || (hatZeilen() && text.trimmed() == aktuelleNr()))
        return;
    const QString empfaenger = m_fokus->empfaengerName();
    if (empfaenger == u.cmdKontoListe->objectName()) {
        m_letzteNr = text;
        return;
    }
    if (empfaenger == u.cmdKontoNeueröff->objectName()) {
        if (!hatZeilen())
            mks::NeueroeffnungsNr = mks::festeLaenge6(text.trimmed());
        return;
    }
    KontoNrFormPrüfen();
    if (!mks::PruefungFehlgeschlagen)
        KontoDirektLesen();
}

void frmKontenStamm::cmdKontoEinlesen_Click()
{
    if (m_fokus->empfaengerName() == m_ui->inpKontoNr->objectName()
        && !mks::PruefungFehlgeschlagen) {
        KontoDirektLesen();
    }
}
