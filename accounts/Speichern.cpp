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

void frmKontenStamm::Fehlerprüfungen_0()
{
    platform::Falle(texte::OrtFehlerpruefungen, [this] {
        if (mks::LoeschungLaeuft || m_unterdrueckung2 || m_pruefungenAus)
            return;
        // Nothing to check passes; a flag left from an earlier check must not block closing.
        mks::PruefungFehlgeschlagen = false;
        if (!hatZeilen())
            return;
        // Pages 1 to 6 check the designation first; page 7 has checks of its own.
        if (seite() >= 1 && seite() <= 6)
            KontoBezeichnungPrüfen();
    });
}

void frmKontenStamm::KontoBezeichnungPrüfen()
{
    mks::PruefungFehlgeschlagen = false;
    auto *feld = m_ui->inpKontoBezeichnung;
    if (!feld->text().isEmpty())
        return;
    platform::MsgBox(texte::BezeichnungLeer);
    mks::PruefungFehlgeschlagen = true;
    feld->setFocus();
}

void frmKontenStamm::inpKontoBezeichnung_GotFocus()
{
    mks::BezeichnungFokusAusstehend = false;
}

void frmKontenStamm::inpKontoBezeichnung_LostFocus()
{
    if (!aktuelleZeile())
        return;
    KontoBezeichnungPrüfen();
}
