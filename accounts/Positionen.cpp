// Look-ups in the four position masters: the texts of the balance-sheet positions, the lists of
// settlement positions and operating-cost blocks, and the stored keys shown in their combos.
#include "accounts/regeln/Positionen.h"

#include "accounts/Kontentexte.h"
#include "accounts/frmKontenStamm.h"
#include "accounts/regeln/Kontonummern.h"
#include "frame/mdlFehlerZL.h"
#include "frame/mdlKontenStamm.h"
#include "platform/core/RuntimeError.h"
#include "platform/ui/DataControl.h"
#include "platform/ui/Fehlerfalle.h"
#include "platform/ui/MsgBox.h"
#include "ui_frmKontenStamm.h"

#include <QComboBox>
#include <QHash>
#include <QLabel>
#include <QLineEdit>
#include <QSignalBlocker>

using platform::MsgBox;
namespace mks = mdlKontenStamm;
namespace texte = kontentexte;
namespace regeln = kontenregeln;

namespace {

const QString SqlBilanzPos = QStringLiteral(
    "SELECT * FROM BilanzPos WHERE BilPosAktPass = ? AND BilPosABC = ? AND BilPosRöm = ? "
    "AND BilPosArab = ? AND BilPosABCklein = ?");
const QString SqlZl7 = QStringLiteral(
    "SELECT * FROM BilanzPosZL7 WHERE BilZl7Pos1 = ? AND BilZl7Pos2 = ? AND BilZl7Pos3 = ?");
const QString SqlUeberschriften = QStringLiteral(
    "SELECT * FROM AbrPosBkAbr WHERE AbrPosBkPos2 = 0 ORDER BY AbrPosBkPos1, AbrPosBkPos2");
const QString SqlAbrPositionen = QStringLiteral(
    "SELECT * FROM AbrPosBkAbr WHERE AbrPosBkPos2 > 0 ORDER BY AbrPosBkPos1, AbrPosBkPos2");
const QString SqlBkBloecke = QStringLiteral("SELECT * FROM AbrPosBkBlöcke ORDER BY BkBlockPos");

int zahl(const QString &text)
{
    bool ok = false;
    const int wert = text.trimmed().toInt(&ok);
    return ok ? wert : 0;
}

// Every row of a look-up control, in its order (the control's position is not kept).
template<class F> void jedeZeile(platform::DataControl &d, F &&f)
{
    auto *rs = d.recordsetDirekt();
    if (!rs || rs->RecordCount() == 0)
        return;
    for (rs->MoveFirst(); !rs->eof(); rs->MoveNext())
        f(*rs);
}

// The first heading text of each level 1, right-trimmed.
QHash<int, QString> ueberschriften(platform::DataControl &chk)
{
    QHash<int, QString> h;
    jedeZeile(chk, [&](const platform::storage::Recordset &rs) {
        const int stufe1 = rs.feld(QStringLiteral("AbrPosBkPos1")).toInt();
        if (!h.contains(stufe1))
            h.insert(stufe1, regeln::rtrim(rs.feld(QStringLiteral("AbrPosBkPosText")).toString()));
    });
    return h;
}

// Shows `text` in an editable combo, with the item of `code` current where there is one.
void zeigen(QComboBox *kombi, const QString &text, qint64 code)
{
    const QSignalBlocker still(kombi);
    kombi->setCurrentIndex(kombi->findData(code));
    kombi->setEditText(text);
}

} // namespace

void frmKontenStamm::BilanzPosSelect(bool gemerkt)
{
    platform::Falle(texte::OrtBilanzPosSelect, [&] {
        auto &u = *m_ui;
        const int seite = zahl(u.inpBilPosAktPass->text());
        if (seite == 0) {
            u.lblBilPosText->clear();
            return;
        }
        const QVariantList params {seite, u.lblBilPosABC->text(), u.lblBilPosRöm->text(),
                                   u.lblBilPosArab->text(), u.lblBilPosABCklein->text()};
        QString schluessel = QStringLiteral("B");
        for (const QVariant &p : params)
            schluessel += u'|' + p.toString();
        if (const auto it = m_positionsTexte.constFind(schluessel);
            gemerkt && it != m_positionsTexte.cend()) {
            u.lblBilPosText->setText(*it);
            return;
        }
        auto &bp = *u.BilPosData;
        bp.setRecordSource(SqlBilanzPos, params);
        u.lblBilPosText->clear();
        if (!bp.RefreshOderFehler())
            return;
        const QString text = bp.rs().RecordCount() > 0
            ? bp.rs().feld(QStringLiteral("BilPosText")).toString()
            : regeln::Unbekannt;
        m_positionsTexte.insert(schluessel, text);
        u.lblBilPosText->setText(text);
    });
}

bool frmKontenStamm::Zl7BilanzPosSelect(bool gemerkt)
{
    bool gelesen = false;
    platform::Falle(texte::OrtZl7BilanzPosSelect, [&] {
        auto &u = *m_ui;
        const QVariantList params {zahl(u.inpBilZl7Pos1->text()), zahl(u.inpBilZl7Pos2->text()),
                                   zahl(u.inpBilZl7Pos3->text())};
        QString schluessel = QStringLiteral("Z");
        for (const QVariant &p : params)
            schluessel += u'|' + p.toString();
        if (const auto it = m_positionsTexte.constFind(schluessel);
            gemerkt && it != m_positionsTexte.cend()) {
            u.lblBilZl7PosText->setText(*it);
            gelesen = true;
            return;
        }
        auto &zl7 = *u.Zl7BilPosData;
        zl7.setRecordSource(SqlZl7, params);
        u.lblBilZl7PosText->clear();
        if (!zl7.RefreshOderFehler())
            return;
        gelesen = true;
        const QString text = zl7.rs().RecordCount() > 0
            ? zl7.rs().feld(QStringLiteral("BilZl7PosText")).toString()
            : regeln::Unbekannt;
        m_positionsTexte.insert(schluessel, text);
        u.lblBilZl7PosText->setText(text);
    });
    return gelesen;
}

void frmKontenStamm::BkPOS2DataSelect()
{
    platform::Falle(texte::OrtBkPos2DataSelect, [this] {
        auto &u = *m_ui;
        m_abrPosFehlen = false;
        {
            const QSignalBlocker still(u.cmbAbrPos2);
            u.cmbAbrPos2->clear();
        }
        auto &chk = *u.BkPosChkData;
        chk.setRecordSource(SqlUeberschriften);
        chk.Refresh();
        if (m_abrPosFehlen)
            return;
        auto &pos = *u.BkPosData;
        pos.setRecordSource(SqlAbrPositionen);
        pos.Refresh();
        const auto *rs = pos.recordsetDirekt();
        if (!rs || rs->RecordCount() == 0)
            return;
        const QHash<int, QString> kopf = ueberschriften(chk);
        const QSignalBlocker still(u.cmbAbrPos2);
        u.cmbAbrPos2->addItem(regeln::KeineDefinition, qint64(0));
        jedeZeile(pos, [&](const platform::storage::Recordset &z) {
            const int stufe1 = z.feld(QStringLiteral("AbrPosBkPos1")).toInt();
            const int stufe2 = z.feld(QStringLiteral("AbrPosBkPos2")).toInt();
            u.cmbAbrPos2->addItem(
                regeln::abrPosEintrag(kopf.value(stufe1, regeln::PosNichtGefunden),
                                      z.feld(QStringLiteral("AbrPosBkPosText")).toString()),
                regeln::abrPosCode(stufe1, stufe2));
        });
        u.cmbAbrPos2->setCurrentIndex(-1);
    });
}

void frmKontenStamm::positionsFehler(int DataErr, int &Response)
{
    // An older database without the settlement positions: said once, the list stays empty.
    Response = 0;
    if (DataErr == platform::fehlernummer::TabelleNichtGefunden) {
        if (!m_abrPosFehlen) {
            m_abrPosFehlen = true;
            MsgBox(regeln::tabelleFehlt(DataErr), platform::vbOKOnly, regeln::TitelTabelleFehlt);
        }
        return;
    }
    mdlFehlerZL::FehlerMelden(
        texte::OrtBkPos2DataSelect,
        platform::RuntimeError(DataErr, platform::RuntimeError::standardText(DataErr)));
}

void frmKontenStamm::BkBlockPosSelect()
{
    platform::Falle(texte::OrtBkBlockPosSelect, [this] {
        auto &u = *m_ui;
        auto &bl = *u.BkBlockData;
        bl.setRecordSource(SqlBkBloecke);
        const QSignalBlocker still(u.cmbBkBlockPos);
        u.cmbBkBlockPos->clear();
        if (!bl.RefreshOderFehler())
            return;
        u.cmbBkBlockPos->addItem(regeln::KeineDefinition, qint64(0));
        jedeZeile(bl, [&](const platform::storage::Recordset &z) {
            const int pos = z.feld(QStringLiteral("BkBlockPos")).toInt();
            u.cmbBkBlockPos->addItem(
                regeln::bkBlockEintrag(pos, z.feld(QStringLiteral("BkBlockText")).toString(),
                                       z.feld(QStringLiteral("BkBlockSchlPos")).toLongLong()),
                qint64(pos));
        });
        u.cmbBkBlockPos->setCurrentIndex(-1);
    });
}

void frmKontenStamm::cmbAbrPos2_Texteinsetzen()
{
    platform::Falle(texte::OrtAbrPos2Text, [this] {
        auto &u = *m_ui;
        const int stufe1 = zahl(u.inpAbrechPosition->text());
        const int stufe2 = zahl(u.inpAbrechPosition2->text());
        if (stufe1 == 0 && stufe2 == 0) {
            zeigen(u.cmbAbrPos2, regeln::KeineDefinition, 0);
            return;
        }
        // Without the master nothing can be shown; the user has been told when it was read.
        if (m_abrPosFehlen) {
            zeigen(u.cmbAbrPos2, QString(), -1);
            return;
        }
        QString text;
        bool gefunden = false;
        jedeZeile(*u.BkPosData, [&](const platform::storage::Recordset &z) {
            if (gefunden || z.feld(QStringLiteral("AbrPosBkPos1")).toInt() != stufe1
                || z.feld(QStringLiteral("AbrPosBkPos2")).toInt() != stufe2)
                return;
            gefunden = true;
            text = z.feld(QStringLiteral("AbrPosBkPosText")).toString();
        });
        if (gefunden) {
            const QString kopf
                = ueberschriften(*u.BkPosChkData).value(stufe1, regeln::PosNichtGefunden);
            zeigen(u.cmbAbrPos2, regeln::abrPosAnzeige(kopf, text),
                   regeln::abrPosCode(stufe1, stufe2));
            return;
        }
        MsgBox(regeln::abrPosFehlt(stufe1, stufe2));
        u.inpAbrechPosition->setText(QStringLiteral("0"));
        u.inpAbrechPosition2->setText(QStringLiteral("0"));
        zeigen(u.cmbAbrPos2, regeln::KeineDefinition, 0);
    });
}

void frmKontenStamm::cmbBkBlockPos_Texteinsetzen()
{
    platform::Falle(texte::OrtBkBlockPosText, [this] {
        auto &u = *m_ui;
        const QString schluessel = u.inpBkBlockPos->text().trimmed();
        const QSignalBlocker still(u.cmbBkBlockPos);
        if (schluessel.isEmpty() || schluessel == u"0") {
            u.cmbBkBlockPos->setCurrentIndex(u.cmbBkBlockPos->findData(qint64(0)));
            return;
        }
        bool zahlOk = false;
        const qint64 block = schluessel.toLongLong(&zahlOk);
        const int index = zahlOk ? u.cmbBkBlockPos->findData(block) : -1;
        u.cmbBkBlockPos->setCurrentIndex(index);
        if (index < 0)
            MsgBox(regeln::bkBlockFehlt(aktuelleNr(), schluessel));
    });
}
