// The history of the creditor account shown, from the change log; an old value goes back into
// its field as an edit of the user.
#include "creditors/Kreditorenregeln.h"
#include "creditors/frmKreditorenKontenStamm.h"
#include "frame/Verlaufsfenster.h"
#include "frame/mdlKontenStamm.h"
#include "platform/storage/Aenderungsmelder.h"
#include "platform/ui/DataControl.h"
#include "platform/ui/Fehlerfalle.h"
#include "ui_frmKreditorenKontenStamm.h"

#include <QPushButton>

namespace mks = mdlKontenStamm;
using platform::storage::Aenderungsprotokoll;
namespace regeln = creditors::regeln;

namespace creditors {

void frmKreditorenKontenStamm::kontoVerlaufZeigen()
{
    platform::Falle(QStringLiteral("zelKontenStamm, in kontoVerlaufZeigen"), [this] {
        if (!aktuelleZeile())
            return;
        const QString nr = m_ui->KRData->rs().feld(QStringLiteral("KrKontoNr")).toString();
        const auto eintraege
            = Aenderungsprotokoll::lesen(*m_ui->KRData->recordsetDirekt()->database(),
                                         QStringLiteral("KreditorenKontenstamm"), std::nullopt, nr);
        auto beschriftung = [](const QString &feld) {
            const QString text = regeln::feldBeschriftung(feld);
            return text.isEmpty() ? feld : text;
        };
        frame::Verlaufsfenster::Uebernehmen uebernehmen;
        if (!mks::NurAnzeige) {
            uebernehmen = [this](const QString &feld, const QString &wert) {
                return frame::wertEinsetzen(this, feld, wert);
            };
        }
        frame::Verlaufsfenster fenster(QStringLiteral("Änderungen am Kreditorenkonto %1").arg(nr),
                                       eintraege, beschriftung, uebernehmen, this);
        fenster.uebernehmenKnopf()->setVisible(bool(uebernehmen));
        fenster.exec();
    });
}

QString frmKreditorenKontenStamm::aktuelleNrText() const
{
    return aktuelleZeile() ? m_ui->KRData->rs().feld(QStringLiteral("KrKontoNr")).toString()
                           : QString();
}

void frmKreditorenKontenStamm::fremdeAenderungBeobachten()
{
    platform::Falle(QStringLiteral("dllKontenStamm, in fremdeAenderungBeobachten"), [this] {
        const auto *rs = m_ui->KRData->recordsetDirekt();
        if (!rs)
            return;
        auto *leiste = new frame::FremdeAenderungLeiste(this, [this] {
            const QString nr = aktuelleNrText();
            auto &rs = m_ui->KRData->rs();
            if (rs.Requery() && !nr.isEmpty())
                rs.FindFirst({{QStringLiteral("KrKontoNr"), nr.toInt()}});
        });
        // The notice speaks of the account it names; on another one it goes.
        connect(m_ui->KRData, &platform::DataControl::Reposition, leiste, [this, leiste] {
            if (!leiste->konto().isEmpty() && aktuelleNrText() != leiste->konto())
                leiste->ausblenden();
        });
        auto *melder = new platform::storage::Aenderungsmelder(rs->database(), this);
        connect(melder, &platform::storage::Aenderungsmelder::geaendert, this,
                [this, leiste](const QString &tabelle, int, const QString &konto,
                               const QString &wer, const QStringList &felder, bool geloescht) {
                    if (tabelle != QLatin1String("KreditorenKontenstamm") || konto.isEmpty()
                        || konto != aktuelleNrText())
                        return;
                    QStringList namen;
                    for (const QString &f : felder) {
                        const QString text = regeln::feldBeschriftung(f);
                        namen << (text.isEmpty() ? f : text);
                    }
                    leiste->zeigen(konto, wer, namen, geloescht, m_ui->KRData->bearbeitet());
                });
    });
}

} // namespace creditors
