#pragma once

#include "accounts/regeln/Kontenzeilen.h"

#include <QSet>
#include <QString>
#include <vector>

// Checks every account of a booking year as the account screen would, and beyond it the keys
// the screen only shows: positions, operating-cost blocks, allocation keys.
namespace kontenregeln {

// A faulty definition of one account: the message as the screen words it, the register page
// and the control that holds the field (feldBeschriftung() names it as the screen does).
struct Kontobefund
{
    QString kontoNr;
    QString meldung;
    int seite = 1;
    QString feld;
};

// What the references of a year's accounts may point to.
struct Stammdaten
{
    QSet<QString> konten; // account numbers of the year
    QSet<qint64> abrPositionen; // level 1 * 100000 + level 2
    QSet<int> bkBloecke;
    QSet<QString> bilanzPositionen; // side and the four text parts joined by '|'
    QSet<qint64> zl7Positionen; // level 1 * 10^8 + level 2 * 10^4 + level 3
    QSet<qint64> schluessel; // allocation key numbers

    // The masters of the database; the accounts are added by the caller.
    static Stammdaten laden(Database &db);
    static QString bilanzSchluessel(int seite, const QString &abc, const QString &roem,
                                    const QString &arab, const QString &klein);
    static qint64 zl7Schluessel(int p1, int p2, int p3);
};

// Every faulty definition of one account, the screen's record checks first.
std::vector<Kontobefund> kontoPruefen(const Kontozeile &z, const Stammdaten &s, int jahr);

// Every faulty definition of every account of `jahr`, in account order.
std::vector<Kontobefund> jahrPruefen(Database &db, int jahr, const Fortschritt &fortschritt = {});

} // namespace kontenregeln
