// The whole year's check from the account screen.
#include "accounts/Kontentexte.h"
#include "accounts/frmKontenStamm.h"
#include "accounts/frmPruefliste.h"
#include "accounts/regeln/Jahrespruefung.h"
#include "frame/mdlKontenStamm.h"
#include "platform/storage/Database.h"
#include "platform/ui/DataControl.h"
#include "platform/ui/Fehlerfalle.h"
#include "platform/ui/Sanduhr.h"
#include "ui_frmKontenStamm.h"

#include <QLineEdit>
#include <QPushButton>

namespace mks = mdlKontenStamm;
namespace texte = kontentexte;

void frmKontenStamm::cmdPruefliste_Click()
{
    std::vector<kontenregeln::Kontobefund> befunde;
    const bool ok = platform::Falle(texte::OrtPruefliste, [&] {
        platform::Sanduhr sanduhr;
        // The stored accounts are checked: edits of the record shown are saved first.
        if (aktuelleZeile() && !m_ui->KKData->UpdateRecord())
            return;
        auto db = platform::storage::Database::open(mks::DatenbankPfad);
        befunde = kontenregeln::jahrPruefen(*db, mks::Buchungsjahr);
    });
    if (!ok)
        return;
    frmPruefliste liste(std::move(befunde), mks::Buchungsjahr, this);
    if (liste.exec() != QDialog::Accepted || liste.gewaehlt() < 0)
        return;
    const kontenregeln::Kontobefund &b = liste.befund(liste.gewaehlt());
    befundZeigen(b.kontoNr, b.seite, b.feld);
}

void frmKontenStamm::befundZeigen(const QString &nr, int seite, const QString &feld)
{
    platform::Falle(texte::OrtPruefliste, [&] {
        if (aktuelleNr() != nr && !m_ui->KKData->rs().FindFirst({{QStringLiteral("KontoNr"), nr}}))
            return;
        seiteZeigen(seite);
        if (auto *w = findChild<QWidget *>(feld); w && w->isEnabled())
            w->setFocus();
    });
}
