// The record checks of the account shown, the look-up of referenced accounts and the type guard.
#include "accounts/Kontentexte.h"
#include "accounts/frmKontenStamm.h"
#include "accounts/regeln/Konsistenz.h"
#include "accounts/regeln/Kontonummern.h"
#include "accounts/regeln/Typregeln.h"
#include "frame/mdlKontenStamm.h"
#include "platform/ui/DataControl.h"
#include "platform/ui/Fehlerfalle.h"
#include "platform/ui/Fokus.h"
#include "platform/ui/MsgBox.h"
#include "ui_frmKontenStamm.h"

#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>

using platform::MsgBox;
namespace mks = mdlKontenStamm;
namespace texte = kontentexte;
namespace regeln = kontenregeln;

namespace {

const QString SqlSalden = QStringLiteral("SELECT SSObjNr, SSBuNr FROM ObjKanzleiSalden "
                                         "WHERE SSJJ = ? AND rtrim(SSKontoNr) = ? ORDER BY SSId");

// A stored code as a number; `ersatz` for an empty or unreadable field.
int zahl(const QLineEdit *feld, int ersatz)
{
    bool ok = false;
    const int wert = feld->text().trimmed().toInt(&ok);
    return ok ? wert : ersatz;
}

} // namespace

regeln::KontoDefinition frmKontenStamm::definitionAmSchirm() const
{
    const auto &u = *m_ui;
    regeln::KontoDefinition d;
    d.kontoNr = aktuelleNr();
    d.bezeichnung = u.inpKontoBezeichnung->text();
    d.zusatzDatenJN = zahl(u.inpKontoZusatzDatenJN, 0);
    d.ustProz = zahl(u.inpKontoUstProz, 100);
    d.ustKtoNr = u.inpKontoUstKtoNr->text();
    d.voranmPos = zahl(u.inpKontoVoranmPos, 0);
    d.bkENAbrDef = zahl(u.inpBKENAbrDef, 0);
    d.bkBlockPos = u.inpBkBlockPos->text();
    d.bkEinnAusgPos = zahl(u.inpBkEinnAusgPos, 0);
    d.abrUstProz = zahl(u.inpAbrUstProz, 100);
    d.abrPos1 = zahl(u.inpAbrechPosition, 0);
    d.abrPos2 = zahl(u.inpAbrechPosition2, 0);
    d.heEinnAusgPos = u.inpHeEinnAusgPos->text();
    d.heAbrVerdichtKz = zahl(u.inpHeAbrVerdichtKz, 0);
    d.sbkGuvKontoNr = u.inpKontoSbkGuvKontoNr->text();
    d.ebkKontoNr = u.inpKontoEbkKontoNr->text();
    d.zl7Pos1 = zahl(u.inpBilZl7Pos1, 0);
    d.zl7Pos2 = zahl(u.inpBilZl7Pos2, 0);
    d.zl7Pos3 = zahl(u.inpBilZl7Pos3, 0);
    return d;
}

void frmKontenStamm::Fehlerprüfungen_0()
{
    platform::Falle(texte::OrtFehlerpruefungen, [this] {
        if (mks::LoeschungLaeuft || m_unterdrueckung2 || m_pruefungenAus)
            return;
        // Nothing to check passes; a flag left from an earlier check must not block closing.
        mks::PruefungFehlgeschlagen = false;
        if (!hatZeilen() || !aktuelleZeile())
            return;
        auto &u = *m_ui;
        const auto fokus = [](QWidget *w) {
            if (!mks::NurAnzeige)
                w->setFocus();
        };
        if (seite() >= 1 && seite() <= 6) {
            KontoBezeichnungPrüfen();
            if (mks::PruefungFehlgeschlagen)
                return;
            UstKontoQuerPrüfen();
            if (mks::PruefungFehlgeschlagen) {
                seiteZeigen(1);
                u.inpKontoUstKtoNr->setFocus();
                return;
            }
            u.lblUstKontoBezeich->setText(
                KontoNrCheck(u.inpKontoUstKtoNr->text(), regeln::feldname::UstPruefung));
            if (mks::PruefungFehlgeschlagen)
                return;
            namespace t = regeln::pruefungstexte;
            const regeln::KontoDefinition d = definitionAmSchirm();
            if (regeln::bkUnvollstaendig(d)) {
                seiteZeigen(2);
                MsgBox(t::bkUnvollstaendig(), platform::vbOKOnly, t::TitelUnvollstaendig);
                mks::PruefungFehlgeschlagen = true;
                fokus(u.cmbBkENAbrDef);
            } else if (regeln::oenormUnvollstaendig(d)) {
                seiteZeigen(3);
                MsgBox(t::oenormUnvollstaendig(), platform::vbOKOnly, t::TitelUnvollstaendig);
                mks::PruefungFehlgeschlagen = true;
                fokus(u.cmbAbrPos2);
            } else if (regeln::heFehlerhaft(d)) {
                seiteZeigen(4);
                MsgBox(t::heFehlerhaft(), platform::vbOKOnly, t::TitelHeFehler);
                mks::PruefungFehlgeschlagen = true;
                fokus(u.cmbHeEinnAusgPos);
            } else if (u.cmbAbrPos2->currentText().isEmpty()) {
                // No settlement position could be shown: the record keeps none.
                u.inpAbrechPosition->setText(QStringLiteral("0"));
                u.inpAbrechPosition2->setText(QStringLiteral("0"));
                m_korrigiert = true;
            }
            return;
        }
        if (seite() == 7) {
            u.lblSbkGuvKontoNrBezeich->setText(
                KontoNrCheck(u.inpKontoSbkGuvKontoNr->text(), regeln::feldname::SbkGuvPruefung));
            if (mks::PruefungFehlgeschlagen)
                return;
            u.lblEbkKontoNrBezeich->setText(
                KontoNrCheck(u.inpKontoEbkKontoNr->text(), regeln::feldname::EbkPruefung));
            if (mks::PruefungFehlgeschlagen)
                return;
            Zl7PositionPrüfen();
            if (mks::PruefungFehlgeschlagen)
                u.inpBilZl7Pos1->setFocus();
        }
    });
}

void frmKontenStamm::KontoBezeichnungPrüfen()
{
    mks::PruefungFehlgeschlagen = false;
    m_abgelehnteNr.clear();
    auto *feld = m_ui->inpKontoBezeichnung;
    if (!regeln::bezeichnungFehlt(definitionAmSchirm()))
        return;
    MsgBox(regeln::pruefungstexte::BezeichnungLeer);
    m_abgelehnteNr = feld->text();
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

void frmKontenStamm::UstKontoQuerPrüfen()
{
    platform::Falle(texte::OrtUstQuer, [this] {
        mks::PruefungFehlgeschlagen = false;
        m_abgelehnteNr.clear();
        if (!regeln::ustKontoFehlt(definitionAmSchirm()))
            return;
        MsgBox(regeln::pruefungstexte::ustKontoFehlt());
        mks::PruefungFehlgeschlagen = true;
        m_abgelehnteNr = m_ui->inpKontoUstKtoNr->text();
    });
}

void frmKontenStamm::Zl7PositionPrüfen()
{
    mks::PruefungFehlgeschlagen = false;
    m_abgelehnteNr.clear();
    if (!regeln::zl7Zugeordnet(definitionAmSchirm()))
        return;
    // A position that could not be looked up is not taken as valid; the report said why.
    if (!Zl7BilanzPosSelect()) {
        mks::PruefungFehlgeschlagen = true;
        return;
    }
    const auto *rs = m_ui->Zl7BilPosData->recordsetDirekt();
    if (rs && rs->RecordCount() > 0)
        return;
    MsgBox(regeln::pruefungstexte::zl7Fehlt());
    mks::PruefungFehlgeschlagen = true;
}

void frmKontenStamm::KontoZusatzDatenJNPrüfen()
{
    mks::PruefungFehlgeschlagen = false;
    m_abgelehnteNr.clear();
    if (!regeln::zusatzDatenJNFalsch(definitionAmSchirm()))
        return;
    MsgBox(regeln::pruefungstexte::ZusatzDatenJNFalsch);
    mks::PruefungFehlgeschlagen = true;
    m_ui->cmbKontoZusatzdatenJN->setFocus();
}

void frmKontenStamm::Eingabeprüfungen()
{
    platform::Falle(texte::OrtEingabepruefungen, [this] {
        mks::PruefungFehlgeschlagen = false;
        if (mks::LoeschungLaeuft || m_unterdrueckung2 || m_pruefungenAus || !aktuelleZeile())
            return;
        auto &u = *m_ui;
        for (QLineEdit *feld : {u.inpZLSperre, u.inpVerdichtKZ}) {
            if (flagFeldPrüfen(feld))
                continue;
            mks::PruefungFehlgeschlagen = true;
            seiteZeigen(1);
            feld->setFocus();
            return;
        }
        if (regeln::zusatzDatenJNFalsch(definitionAmSchirm())) {
            seiteZeigen(1);
            KontoZusatzDatenJNPrüfen();
        }
    });
}

void frmKontenStamm::TypwechselPrüfen()
{
    auto &u = *m_ui;
    const QString typ = u.inpKontoTypus->text().trimmed();
    if (!aktuelleZeile() || m_fuellt || typ == m_typAngenommen)
        return;
    bool ok = false;
    const int alt = m_typAngenommen.toInt(&ok);
    KontoTypusPrüfen(ok ? alt : 0);
    if (mks::PruefungFehlgeschlagen) {
        // Refused: the type accepted before comes back, and the user goes on from there.
        u.inpKontoTypus->setText(m_typAngenommen);
        mks::PruefungFehlgeschlagen = false;
    } else {
        m_typAngenommen = u.inpKontoTypus->text().trimmed();
    }
    Texteinsetzen(u.cmbKontoTypus);
}

// ---------------------------------------------------------------------------------------------
// Referenced accounts

QString frmKontenStamm::KontoNrCheck(const QString &nummer, const QString &feldname)
{
    QString ergebnis;
    platform::Falle(texte::OrtKontoNrCheck, [&] {
        mks::PruefungFehlgeschlagen = false;
        const QString nr = regeln::referenzNummer(nummer);
        if (nr.isEmpty())
            return;
        // A copy, so that the record shown stays where it is.
        const auto klon = m_ui->KKData->rs().Clone();
        klon->FindFirst({{QStringLiteral("KontoNr"), nr}});
        if (klon->NoMatch()) {
            ergebnis = regeln::UngueltigeReferenz;
            MsgBox(regeln::referenzFehlt(feldname));
            mks::PruefungFehlgeschlagen = true;
            return;
        }
        ergebnis = regeln::referenzName(klon->feld(QStringLiteral("KontoBezeichnung")).toString());
    });
    return ergebnis;
}

void frmKontenStamm::referenzNamenZeigen()
{
    auto &u = *m_ui;
    // Showing a record is no check: a reference that is not found is reported, but blocks
    // nothing the user does next.
    const bool vorher = mks::PruefungFehlgeschlagen;
    u.lblUstKontoBezeich->setText(
        KontoNrCheck(u.inpKontoUstKtoNr->text(), regeln::feldname::UstVerlassen));
    u.lblSbkGuvKontoNrBezeich->setText(
        KontoNrCheck(u.inpKontoSbkGuvKontoNr->text(), regeln::feldname::SbkGuvPruefung));
    u.lblEbkKontoNrBezeich->setText(
        KontoNrCheck(u.inpKontoEbkKontoNr->text(), regeln::feldname::EbkPruefung));
    mks::PruefungFehlgeschlagen = vorher;
}

void frmKontenStamm::referenzFeld_Validate(QWidget *w, bool &Cancel)
{
    auto &u = *m_ui;
    // The user is about to choose the number from the list.
    if (m_fokus->empfaengerName() == u.cmdKontoListe->objectName() || !aktuelleZeile())
        return;
    auto *feld = static_cast<QLineEdit *>(w);
    QLabel *name = u.lblUstKontoBezeich;
    QString feldname = regeln::feldname::UstVerlassen;
    if (feld == u.inpKontoSbkGuvKontoNr) {
        name = u.lblSbkGuvKontoNrBezeich;
        feldname = regeln::feldname::SbkGuvVerlassen;
    } else if (feld == u.inpKontoEbkKontoNr) {
        name = u.lblEbkKontoNrBezeich;
        feldname = regeln::feldname::EbkVerlassen;
    }
    name->setText(KontoNrCheck(feld->text().trimmed(), feldname));
    if (mks::PruefungFehlgeschlagen)
        Cancel = true;
}

// ---------------------------------------------------------------------------------------------
// Account type

bool frmKontenStamm::SsCheckSelect(const QString &nr)
{
    bool gelesen = false;
    platform::Falle(texte::OrtSsCheckSelect, [&] {
        auto &ss = *m_ui->SSData;
        ss.setRecordSource(SqlSalden, {mks::Buchungsjahr, regeln::rtrim(nr)});
        gelesen = ss.RefreshOderFehler();
    });
    return gelesen;
}

void frmKontenStamm::KontoTypusPrüfen(int alterTyp)
{
    platform::Falle(texte::OrtTypus, [&] {
        namespace t = regeln::typtexte;
        auto &u = *m_ui;
        m_abgelehnteNr.clear();
        mks::PruefungFehlgeschlagen = false;
        const QString text = u.inpKontoTypus->text().trimmed();
        bool ok = false;
        int typ = text.toInt(&ok);
        const auto befund = ok ? regeln::typPruefen(typ, u.cmbKontoTypus->count(), aktuelleNr())
                               : regeln::TypBefund::AusserhalbListe;
        if (befund == regeln::TypBefund::AusserhalbListe || typ < 0) {
            MsgBox(t::Falsch);
            u.cmbKontoTypus->setPlaceholderText(t::KlickenSie);
            u.cmbKontoTypus->setCurrentIndex(-1);
            m_abgelehnteNr = text;
            // The code cannot be kept: the caller restores the type the record had.
            mks::PruefungFehlgeschlagen = true;
            return;
        }
        if (befund == regeln::TypBefund::AufKanzleiGestellt) {
            MsgBox(t::verrechnungskontoKanzlei());
            typ = regeln::Kanzleikonto;
            u.inpKontoTypus->setText(QString::number(typ));
        }
        // Without knowing the postings the change cannot be allowed.
        if (!SsCheckSelect(aktuelleNr())) {
            MsgBox(texte::TypNichtGeaendert);
            mks::PruefungFehlgeschlagen = true;
            return;
        }
        const auto *rs = u.SSData->recordsetDirekt();
        const bool zeilen = rs && rs->RecordCount() > 0;
        const int buNr = zeilen ? u.SSData->rs().feld(QStringLiteral("SSBuNr")).toInt() : 0;
        if (!regeln::buchungenVorhanden(zeilen, buNr))
            return;
        const bool richtung = regeln::vonObjektAufKanzlei(alterTyp, typ);
        if (MsgBox(t::frage1(richtung), platform::vbYesNo, t::TitelFrage1) == platform::vbYes
            || MsgBox(t::frage2(), platform::vbYesNo, t::TitelFrage2) == platform::vbYes
            || MsgBox(t::frage3(), platform::vbYesNo, t::TitelFrage3) == platform::vbYes) {
            mks::PruefungFehlgeschlagen = true;
        }
    });
}
