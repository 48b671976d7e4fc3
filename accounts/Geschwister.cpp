// Calls of the sibling components: the account list and the position masters.
#include "accounts/Kontentexte.h"
#include "accounts/frmKontenStamm.h"
#include "accounts/regeln/Kontonummern.h"
#include "frame/mdlKontenStamm.h"
#include "platform/core/CreateObject.h"
#include "platform/ui/Fehlerfalle.h"
#include "platform/ui/Fokus.h"
#include "platform/ui/Sanduhr.h"
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
    if (m_letzteKombi && m_fokus->ActiveControl() == m_letzteKombi)
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
