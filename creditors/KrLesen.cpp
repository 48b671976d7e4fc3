// Reading a creditor account by number: the list of accounts, the existence check and the
// number field's events.
#include "creditors/Kreditorenregeln.h"
#include "creditors/frmKreditorenKontenStamm.h"
#include "creditors/mdlKreditoren.h"
#include "frame/mdlKontenStamm.h"
#include "platform/ui/DataControl.h"
#include "platform/ui/Fehlerfalle.h"
#include "platform/ui/Fokus.h"
#include "platform/ui/MsgBox.h"
#include "ui_frmKreditorenKontenStamm.h"

#include <QLineEdit>
#include <QPushButton>

using namespace creditors::mdlKreditoren;
using platform::MsgBox;
namespace regeln = creditors::regeln;
namespace mks = mdlKontenStamm;

namespace creditors {

namespace {

const QString OrtChkSelect = QStringLiteral("dllKontenStamm, in KrChkSelect");
const QString OrtDirektlesen = QStringLiteral("dllKontenStamm, in KrDirektlesen");

const QString SqlKreditoren
    = QStringLiteral("SELECT * ") + QStringLiteral("from KreditorenKontenstamm ");

} // namespace

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

} // namespace creditors
