// Calls of the sibling components: the account list and the position masters.
#include "accounts/Kontentexte.h"
#include "accounts/frmKontenStamm.h"
#include "accounts/regeln/Kontonummern.h"
#include "frame/mdlKontenStamm.h"
#include "platform/core/CreateObject.h"
#include "platform/ui/DataControl.h"
#include "platform/ui/Fehlerfalle.h"
#include "platform/ui/Fokus.h"
#include "platform/ui/Sanduhr.h"
#include "screens/Bildschirmstil.h"
#include "ui_frmKontenStamm.h"

#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QScopeGuard>

namespace mks = mdlKontenStamm;
namespace texte = kontentexte;
namespace regeln = kontenregeln;

namespace {
const QString Aufrufer = QStringLiteral("zelKontenStamm");
const QString ListenProgId = QStringLiteral("zelDiverseListen");
const QString PositionenProgId = QStringLiteral("zelAbrPosStamm");

const char *const BilanzFelder[] = {"KontoBilPosAktPass", "KontoBilPosABC", "KontoBilPosRöm",
                                    "KontoBilPosArab", "KontoBilPosABCklein"};
} // namespace

QVariant frmKontenStamm::geschwisterAufruf(const QString &progId, const char *methode,
                                           const char *ergebnis, const QString &fehlerOrt)
{
    QVariant gewaehlt;
    platform::Sanduhr sanduhr;
    const QString vorher = mks::AktuellesProgramm;
    const auto zurueck = qScopeGuard([&] { mks::AktuellesProgramm = vorher; });
    platform::Falle(fehlerOrt, [&] {
        auto &info = mks::AufrufInfo;
        if (info.size() < mks::AufrufInfoGroesse)
            info.resize(mks::AufrufInfoGroesse);
        info[mks::slot::Datenbank] = mks::DatenbankPfad;
        info[mks::slot::VerarbeitungsBuchungsjahr] = QVariant::fromValue<qint16>(mks::Buchungsjahr);
        info[mks::slot::Aufrufer] = Aufrufer;
        mks::AktuellesProgramm = progId;
        const auto komponente = platform::CreateObject(progId);
        platform::aufrufen(komponente.get(), methode, {QVariant(info)});
        if (ergebnis)
            gewaehlt = platform::aufrufen(komponente.get(), ergebnis);
    });
    if (m_letzteKombi)
        m_letzteKombi->setFocus();
    m_erinnert.reset();
    return gewaehlt;
}

void frmKontenStamm::cmdKontoListe_Click()
{
    auto &u = *m_ui;
    const std::optional<QString> erinnert = m_erinnert;
    const QVariant gewaehlt
        = geschwisterAufruf(ListenProgId, "KontenListe", "AuswahlNr", texte::OrtKontoListe);
    const QString nr = gewaehlt.isNull() ? QString() : regeln::rtrim(gewaehlt.toString());
    const bool gueltig = !nr.isEmpty() && nr != u"0";

    QLineEdit *felder[] = {u.inpKontoUstKtoNr, u.inpKontoSbkGuvKontoNr, u.inpKontoEbkKontoNr};
    QLabel *namen[] = {u.lblUstKontoBezeich, u.lblSbkGuvKontoNrBezeich, u.lblEbkKontoNrBezeich};
    const QString *feldnamen[] = {&regeln::feldname::UstListe, &regeln::feldname::SbkGuvListe,
                                  &regeln::feldname::EbkListe};
    const int ziel = erinnert
        ? regeln::listenZiel(*erinnert, {felder[0]->text(), felder[1]->text(), felder[2]->text()})
        : -1;
    if (ziel >= 0) {
        if (gueltig) {
            felder[ziel]->setText(nr);
            namen[ziel]->setText(KontoNrCheck(nr, *feldnamen[ziel]));
        }
        felder[ziel]->setFocus();
        return;
    }
    if (gueltig) {
        u.inpKontoNr->setText(nr);
        mks::PruefungFehlgeschlagen = false;
        KontoNrFormPrüfen();
        if (!mks::PruefungFehlgeschlagen)
            KontoDirektLesen();
    }
    u.inpKontoNr->setFocus();
}

// ---------------------------------------------------------------------------------------------
// Position masters

namespace {
// The balance-sheet position written into the current record and saved at once: its side and
// text parts are shown in labels, which never carry an edit of their own.
void bilanzPositionSchreiben(platform::DataControl &kk, const QVariantList &teile)
{
    auto &rs = kk.rs();
    rs.Edit();
    try {
        for (int i = 0; i < 5; ++i)
            rs.setFeld(QString::fromUtf8(BilanzFelder[i]), teile.value(i));
        rs.Update();
    } catch (...) {
        rs.CancelUpdate();
        throw;
    }
}
} // namespace

void frmKontenStamm::cmdBilPosAuswahl_Click()
{
    const QVariant gewaehlt = geschwisterAufruf(PositionenProgId, "BilanzPosAuswahl", "Auswahl",
                                                texte::OrtBilPosAuswahl);
    const QVariantList teile = gewaehlt.toList();
    if (teile.size() < 5 || mks::NurAnzeige || !aktuelleZeile())
        return;
    platform::Falle(texte::OrtBilPosAuswahl, [&] {
        auto &u = *m_ui;
        QVariantList werte {teile[0].toInt()};
        for (int i = 1; i < 5; ++i)
            werte << regeln::rtrim(teile[i].toString());
        bilanzPositionSchreiben(*u.KKData, werte);
        bilanzPositionZeigen();
    });
}

void frmKontenStamm::cmdBilPosloeschen_Click()
{
    if (!aktuelleZeile())
        return;
    platform::Falle(texte::OrtBilPosLoeschen, [this] {
        bilanzPositionSchreiben(*m_ui->KKData, {0, QString(), QString(), QString(), QString()});
        bilanzPositionZeigen();
    });
}

void frmKontenStamm::bilanzPositionZeigen()
{
    auto &u = *m_ui;
    const auto &rs = *u.KKData->recordsetDirekt();
    // The side's field keeps an edit of the user only if it differs from what was stored.
    u.inpBilPosAktPass->setText(rs.feld(QStringLiteral("KontoBilPosAktPass")).toString());
    u.lblBilPosABC->setText(rs.feld(QStringLiteral("KontoBilPosABC")).toString());
    u.lblBilPosRöm->setText(rs.feld(QStringLiteral("KontoBilPosRöm")).toString());
    u.lblBilPosArab->setText(rs.feld(QStringLiteral("KontoBilPosArab")).toString());
    u.lblBilPosABCklein->setText(rs.feld(QStringLiteral("KontoBilPosABCklein")).toString());
    BilanzPosSelect();
}

void frmKontenStamm::cmdZl7BilPosAuswahl_Click()
{
    const QVariant gewaehlt = geschwisterAufruf(PositionenProgId, "Zl7PosAuswahl", "Auswahl",
                                                texte::OrtZl7BilPosAuswahl);
    const QVariantList stufen = gewaehlt.toList();
    if (stufen.size() < 3 || mks::NurAnzeige || !aktuelleZeile())
        return;
    auto &u = *m_ui;
    // The levels are edits of the record like typed ones: saved with it, checked before.
    u.inpBilZl7Pos1->setText(QString::number(stufen[0].toInt()));
    u.inpBilZl7Pos2->setText(QString::number(stufen[1].toInt()));
    u.inpBilZl7Pos3->setText(QString::number(stufen[2].toInt()));
    Zl7BilanzPosSelect();
}

void frmKontenStamm::cmdBilPosStamm_Click()
{
    geschwisterAufruf(PositionenProgId, "BilanzPosStamm", nullptr, texte::OrtBilPosStamm);
    m_positionsTexte.clear();
    if (!mks::NurAnzeige && aktuelleZeile())
        BilanzPosSelect();
}

void frmKontenStamm::cmdZl7BilPosStamm_Click()
{
    geschwisterAufruf(PositionenProgId, "Zl7PosStamm", nullptr, texte::OrtZl7BilPosStamm);
    m_positionsTexte.clear();
    if (!mks::NurAnzeige && aktuelleZeile())
        Zl7BilanzPosSelect();
}

void frmKontenStamm::positionslistenNeu()
{
    if (mks::NurAnzeige)
        return;
    BkPOS2DataSelect();
    BkBlockPosSelect();
    screens::listenBreiteAnpassen(this);
    if (!aktuelleZeile())
        return;
    m_fuellt = true;
    const auto ende = qScopeGuard([this] { m_fuellt = false; });
    cmbAbrPos2_Texteinsetzen();
    cmbBkBlockPos_Texteinsetzen();
}

void frmKontenStamm::cmdÖNORMPosStammAufruf_Click()
{
    geschwisterAufruf(PositionenProgId, "AbrPosStamm", nullptr, texte::OrtOenormPosStamm);
    positionslistenNeu();
}

void frmKontenStamm::cmdAbrPosStammAufruf_Click()
{
    geschwisterAufruf(PositionenProgId, "AbrPosStamm", nullptr, texte::OrtAbrPosStamm);
    positionslistenNeu();
}
