// Opening a new account: the button, the number dialog, the confirmation and the new record.
#include "accounts/Kontentexte.h"
#include "accounts/frmKoBeginn.h"
#include "accounts/frmKontenStamm.h"
#include "accounts/frmNeu.h"
#include "frame/mdlInitKK.h"
#include "frame/mdlKontenStamm.h"
#include "platform/core/RuntimeError.h"
#include "platform/ui/DataControl.h"
#include "platform/ui/Fehlerfalle.h"
#include "platform/ui/MsgBox.h"
#include "platform/ui/Sanduhr.h"
#include "ui_frmKontenStamm.h"

#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QScopeGuard>

using platform::MsgBox;
using platform::storage::EditMode;
namespace mks = mdlKontenStamm;
namespace texte = kontentexte;

void frmKontenStamm::cmdKontoNeueröff_Click()
{
    platform::Falle(texte::OrtKontoNeueroeffClick, [this] {
        auto &u = *m_ui;
        mks::NeueroeffnungsNr = mks::festeLaenge6(u.inpKontoNr->text());
        aktuelleNrZurueck();
        // Pending edits of the record shown are dropped; re-setting the bookmark then leaves
        // the record as stored through KKData_Validate.
        if (aktuelleZeile()) {
            u.KKData->UpdateControls();
            m_korrigiert = false;
            m_typAngenommen = u.inpKontoTypus->text().trimmed();
            u.KKData->rs().setBookmark(u.KKData->rs().bookmark());
        }
        if (mks::PruefungFehlgeschlagen)
            return;
        if (hatZeilen() && texte::rtrim(mks::NeueroeffnungsNr) == aktuelleNr())
            mks::NeueroeffnungsNr = mks::festeLaenge6({});

        mks::DialogAbgebrochen = false;
        {
            frmNeu dialog(this);
            if (dialog.exec() != QDialog::Accepted)
                mks::DialogAbgebrochen = true;
        }
        if (mks::DialogAbgebrochen) {
            aktuelleNrZurueck();
            u.inpKontoNr->setFocus();
            return;
        }
        const int antwort
            = MsgBox(texte::neueroeffnenFrage(mks::NeueKontoNr),
                     platform::vbYesNo | platform::vbQuestion, texte::TitelBestaetigen);
        if (antwort == platform::vbYes) {
            mks::NeueroeffnungsNr = mks::NeueKontoNr;
            Neueröffnung();
        } else {
            aktuelleNrZurueck();
        }
    });
}

void frmKontenStamm::Neueröffnung()
{
    auto &u = *m_ui;
    const auto flaggenLoeschen = [this] {
        mks::NeueroeffnungLaeuft = false;
        m_unterdrueckung1 = false;
        m_unterdrueckung2 = false;
    };
    // Steps 11 and 12 run whatever happened before them.
    const auto abschluss = qScopeGuard([this, &u, flaggenLoeschen] {
        flaggenLoeschen();
        if (!mks::VerrechnungskontoWirdEroeffnet) {
            mks::BezeichnungFokusAusstehend = true;
            u.inpKontoBezeichnung->setFocus();
        }
        m_ustLabelFlag = false;
        u.cmdKontoNeueröff->setEnabled(true);
        mks::NeueroeffnungsNr = mks::festeLaenge6({});
    });
    platform::Falle(texte::OrtNeueroeffnung, [&] {
        u.cmdKontoNeueröff->setEnabled(false);
        mks::NeueroeffnungVomNummernfeld = false;
        mks::NeueroeffnungLaeuft = true;
        m_unterdrueckung1 = true;
        m_unterdrueckung2 = true;

        seiteZeigen(1);
        u.lblUstKontoBezeich->clear();
        m_ustLabelFlag = true;
        u.lblKontoBezeichnung->clear();

        // An empty year always gets the internal clearing account, whatever number the last
        // number dialog left behind.
        const QString nr = mks::VerrechnungskontoWirdEroeffnet ? texte::Verrechnungskonto
                                                               : texte::rtrim(mks::NeueKontoNr);
        const QString nr6 = mks::festeLaenge6(nr);
        auto &chk = *u.KKChkData;
        if (!chk.recordsetDirekt()) {
            // Nothing has been read yet: a selection that adds into the same table.
            chk.setRecordSource(texte::SqlKontoLesen, {mks::Buchungsjahr, nr});
            if (!chk.RefreshOderFehler())
                return;
        }
        auto &rs = *chk.recordsetDirekt();
        rs.AddNew();
        if (mks::PruefungFehlgeschlagen) {
            rs.CancelUpdate();
            MsgBox(texte::addNewFehlgeschlagen(nr6));
            flaggenLoeschen();
            return;
        }
        try {
            mdlInitKK::KontoFelderInitialisieren(rs);
            rs.setFeld(QStringLiteral("KontoJJ"), mks::Buchungsjahr);
            rs.setFeld(QStringLiteral("kontonr"), nr);
            if (mks::VerrechnungskontoWirdEroeffnet)
                rs.setFeld(QStringLiteral("KontoBezeichnung"), texte::VerrechnungskontoName);
            rs.setFeld(QStringLiteral("KontoBezeichnung"), texte::SachkontoPraefix + nr);
            rs.Update();
        } catch (const platform::RuntimeError &e) {
            // No half-written record: the row is dropped, the error reported by the trap.
            if (rs.editMode() != EditMode::Keiner)
                rs.CancelUpdate();
            if (e.nummer() != platform::fehlernummer::DoppelterSchluessel)
                throw;
            vonAnderemEroeffnet(nr);
            return;
        }

        if (!neuLesenUndFinden(nr)) {
            MsgBox(texte::nachNeueroeffnungNichtGefunden(nr6));
            return;
        }
        u.inpKontoNr->setText(nr);
        if (nr != texte::Verrechnungskonto) {
            KontendatenÜbernehmenCheck();
            MsgBox(texte::provisorischHinweis(m_abschlussNotiz), platform::vbOKOnly,
                   texte::TitelProvisorisch);
        }
    });
}

bool frmKontenStamm::neuLesenUndFinden(const QString &nr)
{
    // The year read again, with the opened account among its rows, and moved to.
    auto &kk = *m_ui->KKData;
    if (kk.recordsetDirekt()) {
        kk.rs().Requery();
    } else {
        kk.setRecordSource(texte::SqlKontenDesJahres, {mks::Buchungsjahr});
        kk.Refresh();
    }
    m_unterdrueckung2 = false;
    mks::NeueroeffnungLaeuft = false;
    const bool gefunden = kk.rs().FindFirst({{QStringLiteral("KontoNr"), nr}});
    m_unterdrueckung1 = false;
    return gefunden;
}

void frmKontenStamm::vonAnderemEroeffnet(const QString &nr)
{
    // Another user opened the number between the dialog's check and this write: his account
    // is shown instead, as stored.
    neuLesenUndFinden(nr);
    MsgBox(texte::vonAnderemEroeffnet(nr), platform::vbOKOnly | platform::vbInformation,
           texte::TitelNichtEroeffnet);
    aktuelleNrZurueck();
}

void frmKontenStamm::KontendatenÜbernehmenCheck()
{
    m_abschlussNotiz.clear();
    {
        frmKoBeginn dialog(this);
        dialog.exec();
    }
    if (mks::UebernahmeKontoNr.trimmed().isEmpty() || mks::UebernahmeAbgebrochen)
        return;
    platform::Falle(texte::OrtUebernehmen, [this] {
        platform::Sanduhr sanduhr;
        auto &rs = m_ui->KKData->rs();
        auto &quelle = m_ui->KKChkData->rs();
        rs.Edit();
        // A field that cannot be copied (an older database lacks it) is reported; the copy
        // goes on with the next one.
        platform::WeiterBeiFehler feldweise(texte::OrtUebernehmen);
        for (const QString &feld : texte::UebernahmeFelder)
            feldweise([&] { rs.setFeld(feld, quelle.feld(feld)); });
        try {
            rs.Update();
        } catch (...) {
            // A failed save writes nothing: the new account keeps its initial values.
            rs.CancelUpdate();
            throw;
        }
        m_ui->KKData->UpdateControls();
        anzeigen();
        m_abschlussNotiz = texte::uebernahmeBeendet();
    });
}
