// The history of the account shown, from the change log; an old value goes back into its field
// as an edit of the user.
#include "accounts/frmKontenStamm.h"
#include "accounts/regeln/Feldbeschriftungen.h"
#include "frame/Verlaufsfenster.h"
#include "frame/mdlKontenStamm.h"
#include "platform/storage/Aenderungsmelder.h"
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
            QStringLiteral("Änderungen am Konto %1 (%2)").arg(nr).arg(mks::Buchungsjahr), eintraege,
            beschriftung, uebernehmen, this);
        fenster.uebernehmenKnopf()->setVisible(bool(uebernehmen));
        fenster.exec();
    });
}

void frmKontenStamm::fremdeAenderungBeobachten()
{
    platform::Falle(QStringLiteral("zelKontenStamm, in fremdeAenderungBeobachten"), [this] {
        const auto *rs = m_ui->KKData->recordsetDirekt();
        if (!rs)
            return;
        auto *leiste = new frame::FremdeAenderungLeiste(this, [this] {
            const QString nr = aktuelleNr();
            auto &rs = m_ui->KKData->rs();
            if (rs.Requery() && !nr.isEmpty())
                rs.FindFirst({{QStringLiteral("KontoNr"), nr}});
        });
        // The notice speaks of the account it names; on another one it goes.
        connect(m_ui->KKData, &platform::DataControl::Reposition, leiste, [this, leiste] {
            if (!leiste->konto().isEmpty() && (!aktuelleZeile() || aktuelleNr() != leiste->konto()))
                leiste->ausblenden();
        });
        auto *melder = new platform::storage::Aenderungsmelder(rs->database(), this);
        connect(melder, &platform::storage::Aenderungsmelder::geaendert, this,
                [this, leiste](const QString &tabelle, int jahr, const QString &konto,
                               const QString &wer, const QStringList &felder, bool geloescht) {
                    if (tabelle != QLatin1String("ObjKanzleiKontenstamm")
                        || jahr != mks::Buchungsjahr || !aktuelleZeile() || konto != aktuelleNr())
                        return;
                    QStringList namen;
                    for (const QString &f : felder) {
                        namen << frame::feldBeschriftungAufForm(this, f,
                                                                kontenregeln::feldBeschriftung);
                    }
                    leiste->zeigen(konto, wer, namen, geloescht, m_ui->KKData->bearbeitet());
                });
    });
}
