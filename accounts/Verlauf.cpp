// The history of the account shown, from the change log; an old value goes back into its field
// as an edit of the user.
#include "accounts/frmKontenStamm.h"
#include "accounts/regeln/Feldbeschriftungen.h"
#include "frame/Verlaufsfenster.h"
#include "frame/mdlKontenStamm.h"
#include "platform/ui/DataControl.h"
#include "platform/ui/Fehlerfalle.h"
#include "ui_frmKontenStamm.h"

#include <QPushButton>

namespace mks = mdlKontenStamm;
using platform::storage::Aenderungsprotokoll;

void frmKontenStamm::kontoVerlaufZeigen()
{
    platform::Falle(QStringLiteral("zelKontenStamm, in kontoVerlaufZeigen"), [this] {
        if (!aktuelleZeile())
            return;
        const QString nr = aktuelleNr();
        const auto eintraege = Aenderungsprotokoll::lesen(
            *m_ui->KKData->recordsetDirekt()->database(), QStringLiteral("ObjKanzleiKontenstamm"),
            int(mks::Buchungsjahr), nr);
        auto beschriftung = [this](const QString &feld) {
            return frame::feldBeschriftungAufForm(this, feld, kontenregeln::feldBeschriftung);
        };
        frame::Verlaufsfenster::Uebernehmen uebernehmen;
        if (!mks::NurAnzeige) {
            uebernehmen = [this](const QString &feld, const QString &wert) {
                // The field may lie on another register page.
                for (int seite = m_seite, n = 0; n < 7; ++n, seite = seite % 7 + 1) {
                    seiteZeigen(seite);
                    if (frame::wertEinsetzen(this, feld, wert))
                        return true;
                }
                return false;
            };
        }
        frame::Verlaufsfenster fenster(
            QStringLiteral("Änderungen am Konto %1 (%2)").arg(nr).arg(mks::Buchungsjahr),
            eintraege, beschriftung, uebernehmen, this);
        fenster.uebernehmenKnopf()->setVisible(bool(uebernehmen));
        fenster.exec();
    });
}
