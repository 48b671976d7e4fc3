// The history of the creditor account shown, from the change log; an old value goes back into
// its field as an edit of the user.
#include "creditors/frmKreditorenKontenStamm.h"
#include "frame/Verlaufsfenster.h"
#include "frame/mdlKontenStamm.h"
#include "platform/ui/DataControl.h"
#include "platform/ui/Fehlerfalle.h"
#include "ui_frmKreditorenKontenStamm.h"

#include <QHash>
#include <QPushButton>

namespace mks = mdlKontenStamm;
using platform::storage::Aenderungsprotokoll;

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
        // The captions of the labels beside the fields.
        auto beschriftung = [](const QString &feld) {
            static const QHash<QString, QString> texte {
                {QStringLiteral("krkontonr"), QStringLiteral("KontoNummer")},
                {QStringLiteral("krkontobezeichnung"), QStringLiteral("Konto-Bezeichnung")},
                {QStringLiteral("krkontotypus"), QStringLiteral("Konto-Typus")},
            };
            return texte.value(feld.toLower(), feld);
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

} // namespace creditors
