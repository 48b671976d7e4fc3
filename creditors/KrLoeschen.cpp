// Deleting the creditor account shown, when it has no postings; removing an account's balances
// and postings.
#include "creditors/Kreditorenregeln.h"
#include "creditors/frmKreditorenKontenStamm.h"
#include "creditors/mdlKreditoren.h"
#include "frame/mdlKontenStamm.h"
#include "platform/storage/Database.h"
#include "platform/ui/DataControl.h"
#include "platform/ui/MsgBox.h"
#include "ui_frmKreditorenKontenStamm.h"

#include <QLineEdit>
#include <QScopeGuard>

using namespace creditors::mdlKreditoren;
using platform::MsgBox;
namespace regeln = creditors::regeln;
namespace mks = mdlKontenStamm;

namespace creditors {

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

} // namespace creditors
