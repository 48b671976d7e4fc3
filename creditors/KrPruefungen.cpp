// The record checks of the creditor screen: name and type, the type corrected against the
// account's postings, and the save-time check.
#include "creditors/Kreditorenregeln.h"
#include "creditors/frmKreditorenKontenStamm.h"
#include "creditors/mdlKreditoren.h"
#include "frame/mdlKontenStamm.h"
#include "platform/core/RuntimeError.h"
#include "platform/core/VbWerte.h"
#include "platform/ui/DataControl.h"
#include "platform/ui/Fehlerfalle.h"
#include "platform/ui/Fokus.h"
#include "platform/ui/MsgBox.h"
#include "ui_frmKreditorenKontenStamm.h"

#include <QLineEdit>
#include <QPushButton>

using namespace creditors::mdlKreditoren;
using platform::MsgBox;
using platform::RuntimeError;
namespace regeln = creditors::regeln;
namespace mks = mdlKontenStamm;

namespace creditors {

namespace {

const QString OrtBuchungenSelect = QStringLiteral("dllKontenStamm, in KrBuchungenSelect");

} // namespace

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
        // The focus first: leaving the type combo checks the type, which clears the verdict.
        m_ui->inpKrKontoBezeichnung->setFocus();
        KrFehlerFeld = m_ui->inpKrKontoBezeichnung->objectName();
        mks::PruefungFehlgeschlagen = true;
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

} // namespace creditors
