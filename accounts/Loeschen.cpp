// Deleting the account shown, when it is not the internal clearing account and no balance rows
// of the year refer to it.
#include "accounts/Kontentexte.h"
#include "accounts/frmKontenStamm.h"
#include "frame/mdlKontenStamm.h"
#include "platform/ui/DataControl.h"
#include "platform/ui/Fehlerfalle.h"
#include "platform/ui/MsgBox.h"
#include "ui_frmKontenStamm.h"

#include <QLineEdit>
#include <QScopeGuard>

using platform::MsgBox;
namespace mks = mdlKontenStamm;
namespace texte = kontentexte;

void frmKontenStamm::cmdKontoLöschen_Click()
{
    platform::Falle(texte::OrtLoeschen, [this] {
        auto &u = *m_ui;
        const QString nr = u.inpKontoNr->text().trimmed();
        if (nr == texte::Verrechnungskonto) {
            MsgBox(texte::VerrechnungskontoNichtLoeschbar);
            return;
        }
        if (MsgBox(texte::LoeschenFrage, platform::vbYesNo | platform::vbQuestion,
                   texte::TitelBestaetigen)
            != platform::vbYes)
            return;
        if (!hatZeilen())
            return;
        // An account whose balance rows cannot be read is never deleted.
        if (!SsCheckSelect(nr)) {
            MsgBox(texte::nichtGeloeschtOhneSalden(nr), platform::vbOKOnly,
                   texte::TitelNichtLoeschbar);
            u.inpKontoNr->setFocus();
            return;
        }
        const auto *ss = u.SSData->recordsetDirekt();
        if (ss->RecordCount() > 0) {
            MsgBox(texte::nichtLoeschbar(nr, mks::Buchungsjahr, ss->RecordCount()),
                   platform::vbOKOnly, texte::TitelNichtLoeschbar);
            mks::LoeschungLaeuft = false;
            u.inpKontoNr->setFocus();
            return;
        }
        mks::LoeschungLaeuft = true;
        // Also after a failed delete: the checks must not stay switched off.
        const auto ende = qScopeGuard([] { mks::LoeschungLaeuft = false; });
        auto &rs = u.KKData->rs();
        rs.Delete();
        if (rs.RecordCount() > 0) {
            rs.MoveNext();
            if (rs.eof())
                rs.MoveLast();
        } else {
            anzeigen();
        }
        u.inpKontoNr->setFocus();
    });
}
