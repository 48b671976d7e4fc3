// The single gate of every save of KKData, and the record checks it runs.
#include "accounts/Kontentexte.h"
#include "accounts/frmKontenStamm.h"
#include "frame/mdlKontenStamm.h"
#include "platform/ui/DataControl.h"
#include "platform/ui/Fehlerfalle.h"
#include "platform/ui/MsgBox.h"
#include "ui_frmKontenStamm.h"

#include <QLineEdit>

namespace mks = mdlKontenStamm;
namespace texte = kontentexte;

void frmKontenStamm::KKData_Validate(int &Action, bool &Save)
{
    platform::Falle(texte::OrtValidate, [&] {
        if (!aktuelleZeile())
            return;
        // An opening is under way: it writes its record itself, unchecked.
        if (m_ustLabelFlag || m_unterdrueckung1)
            return;
        // A changed type is asked about on every way out of the record; then the entries and
        // the record checks.
        TypwechselPrüfen();
        Eingabeprüfungen();
        if (!mks::PruefungFehlgeschlagen)
            Fehlerprüfungen_0();
        if (mks::PruefungFehlgeschlagen) {
            Action = platform::vbDataActionCancel;
            return;
        }
        if (m_korrigiert) {
            m_korrigiert = false;
            Save = true;
        }
        if (Save
            && SpeichernVerweigert(*m_ui->KKData, aktuelleNr(),
                                   QStringLiteral("ObjKanzleiKontenstamm")))
            Action = platform::vbDataActionCancel;
    });
}

bool frmKontenStamm::SpeichernVerweigert(platform::DataControl &, const QString &, const QString &)
{
    return false;
}
