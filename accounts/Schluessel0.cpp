// Allocation key 0 ("keine Definition") must always exist.
#include "accounts/Kontentexte.h"
#include "accounts/frmKontenStamm.h"
#include "platform/core/RuntimeError.h"
#include "platform/ui/DataControl.h"
#include "platform/ui/Fehlerfalle.h"
#include "ui_frmKontenStamm.h"

#include <QDate>

namespace texte = kontentexte;

void frmKontenStamm::AslSelect()
{
    platform::Falle(texte::OrtAslSelect, [this] {
        auto &asl = *m_ui->ASLData;
        asl.setRecordSource(texte::SqlSchluessel);
        // Without the keys read, key 0 is not added on a guess.
        if (!asl.RefreshOderFehler())
            return;
        if (asl.rs().RecordCount() == 0) {
            Schl0Anlegen();
            return;
        }
        // Only a lowest key above 0 lacks key 0; a negative lowest key leaves the table alone.
        bool ok = false;
        const qlonglong niedrigste = asl.rs().feld(QStringLiteral("SchlNummer")).toLongLong(&ok);
        if (ok && niedrigste > 0)
            Schl0Anlegen();
    });
}

void frmKontenStamm::Schl0Anlegen()
{
    platform::Falle(texte::OrtSchl0Anlegen, [this] {
        auto &asl = *m_ui->ASLData;
        auto &rs = asl.rs();
        rs.AddNew();
        try {
            rs.setFeld(QStringLiteral("SchlNummer"), 0);
            rs.setFeld(QStringLiteral("SchlKurzbezeich"), QString());
            rs.setFeld(QStringLiteral("SchlLangBezeich"), texte::SchluesselKeineDefinition);
            rs.setFeld(QStringLiteral("SchlAbDatum"), QDate(1900, 1, 1));
            rs.setFeld(QStringLiteral("SchlBisDatum"), QDate(2099, 12, 31));
            rs.Update();
        } catch (const platform::RuntimeError &) {
            if (rs.editMode() != platform::storage::EditMode::Keiner)
                rs.CancelUpdate();
            throw;
        }
        rs.Requery();
    });
}
