#pragma once

#include <QString>

// The account type: office or property account, and the guard on changing it once postings
// exist.
namespace kontenregeln {

enum KontoTypus : int {
    Kanzleikonto = 0,
    Objektkonto = 1,
    KanzleikontoUnterteilt = 2,
};

// What the type check decides before it asks about postings.
enum class TypBefund {
    Zulaessig,
    AusserhalbListe, // beyond the type list: refused
    AufKanzleiGestellt, // the internal clearing account must be an office account: set to 0
};
TypBefund typPruefen(int typ, int anzahlTypen, const QString &kontoNr);

// Changing from a property account to an office account (either kind). The screen words its
// first question after it.
bool vonObjektAufKanzlei(int alterTyp, int neuerTyp);

// Postings exist when the first balance row of the account carries a posting number above 0.
bool buchungenVorhanden(bool zeilenVorhanden, int ersteBuchungsNr);

namespace typtexte {
inline const QString Falsch = QStringLiteral("KontoTypus falsch - bitte berichtigen");
inline const QString KlickenSie = QStringLiteral("Klicken Sie");
QString verrechnungskontoKanzlei();
inline const QString TitelFrage1 = QStringLiteral("Bereits Buchungen zum Konto vorhanden");
QString frage1(bool vonObjektAufKanzlei);
inline const QString TitelFrage2 = QStringLiteral("1.Wiederholungsfrage");
QString frage2();
inline const QString TitelFrage3 = QStringLiteral("2.Wiederholungsfrage");
QString frage3();
} // namespace typtexte

} // namespace kontenregeln
