#pragma once

#include <QString>
#include <QStringList>

// Account numbers as typed and as referenced by other accounts of the year.
namespace kontenregeln {

// Trailing blanks removed; account numbers are stored and compared so.
QString rtrim(const QString &text);

enum class NummernFehler {
    Keiner,
    NullOderLeer, // empty, "0", "00" or "000"
    ZuKurz, // fewer than four characters
};

// The form rule of a typed account number (trailing blanks do not count). Deliberately no upper
// bound and no test for digits: the field's input mask limits what can be typed.
NummernFehler nummernform(const QString &text);
// The information text for a failed form rule (empty for Keiner).
QString nummernformMeldung(NummernFehler fehler);

// A referenced account number as it is looked up: blanks removed, "0000" means no reference.
QString referenzNummer(const QString &text);
// Shown beside a reference field.
QString referenzName(const QString &kontoBezeichnung);
inline const QString UngueltigeReferenz = QStringLiteral("= ungültige Kontonummer");
// The message for a referenced number the year does not hold; `feld` as the caller names it.
QString referenzFehlt(const QString &feld);

// Field names in front of the message, by path (they differ on purpose).
namespace feldname {
inline const QString UstVerlassen = QStringLiteral("UstKontoNummer ");
inline const QString SbkGuvVerlassen = QStringLiteral("KontoVugSbk-KontoNummer");
inline const QString EbkVerlassen = QStringLiteral("KontoEbk-KontoNummer");
inline const QString UstListe = QStringLiteral("UstKontoNummer ");
inline const QString SbkGuvListe = QStringLiteral("KontoSbkGuv-KontoNummer ");
inline const QString EbkListe = QStringLiteral("KontoEbk-KontoNummer ");
inline const QString UstPruefung = QStringLiteral("UstKontoNummer");
inline const QString SbkGuvPruefung = QStringLiteral("KontoGuv/Sbk-KontoNummer");
inline const QString EbkPruefung = QStringLiteral("KontoEbk-KontoNummer");
} // namespace feldname

// Which field receives a number chosen from the account list: the first of the reference
// fields (VAT, closing, opening account, in this order) whose text equals the entry remembered
// when the last reference field got the focus; -1 for the account number itself.
int listenZiel(const QString &erinnert, const QStringList &referenzTexte);

} // namespace kontenregeln
