// Opening a creditor account: the number dialog, the confirmation and writing the new row.
#include "creditors/Kreditorenregeln.h"
#include "creditors/frmKrNeu.h"
#include "creditors/frmKreditorenKontenStamm.h"
#include "creditors/mdlKreditoren.h"
#include "frame/mdlKontenStamm.h"
#include "platform/core/RuntimeError.h"
#include "platform/ui/DataControl.h"
#include "platform/ui/MsgBox.h"
#include "ui_frmKreditorenKontenStamm.h"

#include <QLineEdit>
#include <QScopeGuard>

using namespace creditors::mdlKreditoren;
using platform::MsgBox;
using platform::RuntimeError;
namespace regeln = creditors::regeln;
namespace mks = mdlKontenStamm;

namespace creditors {

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

} // namespace creditors
