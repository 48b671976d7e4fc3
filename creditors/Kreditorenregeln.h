#pragma once

#include <QString>
#include <QVariant>
#include <optional>

// The creditor screen's rules that need no widgets: the number and type values as the fields
// hold them, the type decision against stored postings, and the texts of its messages.
namespace creditors::regeln {

inline const QString CrLf = QStringLiteral("\r\n");

// A creditor account number as the number fields hold it: the runtime's conversion to a long
// (blanks around it allowed, empty gives 0). Raises RuntimeError 13 for text that is no number
// and 6 for one beyond the long range.
qint32 kontoNr(const QString &feldtext);

// "The typed value equals 0" of the number dialog: empty and blank input count as 0, and so
// does text that is no number (the field lets none be typed).
bool istNull(const QString &feldtext);

// The type code a type field holds, or nullopt when it is no whole number. Codes outside the
// combo's entries are the caller's to judge (typusGueltig).
std::optional<qint64> typusCode(const QString &feldtext);

// A code shown by a combo with `eintraege` entries: 0 to eintraege - 1.
bool typusGueltig(const std::optional<qint64> &code, int eintraege);

// The type a creditor account must have after its postings: nullopt when `typus` agrees, else
// the corrected type. Only the first posting decides (`buchungMitObjekt` 1 when it carries an
// object number). An account without postings may have either type.
enum Typus : int { Kanzleikonto = 0, Objektkonto = 1 };
std::optional<int> typusKorrektur(qint64 typus, bool buchungenVorhanden, int buchungMitObjekt);

// The object number of the first posting as KrBuchungMitObjekt: 0 for exactly 0, else 1 (an
// empty object number counts as one).
int buchungMitObjekt(const QVariant &kbObjNr);

// --- texts ---
inline const QString TitelBestaetigen = QStringLiteral("Bitte bestätigen Sie");
inline const QString TitelLeer = QStringLiteral("Hinweis auf leeren Datenbestand");
inline const QString TextLeer = QStringLiteral("Der KreditorenKontenstamm ist komplett leer");
inline const QString TitelNichtExistent = QStringLiteral("KreditorenKontoStammsatz nicht existent");
inline const QString TextDateiAnfang = QStringLiteral("DateiAnfang erreicht");
inline const QString TextDateiEnde = QStringLiteral("DateiEnde erreicht");
inline const QString TextUngueltigerWert = QStringLiteral("ungültiger Wert");
inline const QString TextNullUngueltig = QStringLiteral("Kontonummer Null ist ungültig");
inline const QString TitelNullUngueltig = QStringLiteral("KontoNr Null ungültig");
inline const QString TextBereitsExistent = QStringLiteral("Konto bereits existent");
inline const QString TextBezeichnungLeer
    = QStringLiteral("KontoBezeichnung darf nicht leer gelassen werden");
inline const QString TextTypusFalsch = QStringLiteral("KontoTypus falsch - bitte berichtigen");
inline const QString TextKlickenSie = QStringLiteral("Klicken Sie");
inline const QString TextKrNrNull = QStringLiteral("KreditorenKontonummer Null ist ungültig");
inline const QString TextLoeschenFrage = QStringLiteral("KreditorenKontenstammsatz löschen ?");
// Handed to the message box where its button style belongs (see cmdKontoLöschen_Click).
inline const QString TextLoeschungNichtMoeglich = QStringLiteral("Löschung nicht möglich");

QString nichtExistentNurAnzeige(qint32 nr);
QString nichtExistentFrage(qint32 nr);
// `nrText6` is KrNeuNrText with all six characters, padding included.
QString neueroeffnenFrage(const QString &nrText6);
QString neuAngelegt();
// The correction message for the type the account is corrected to.
QString typusKorrigiert(int neuerTypus);
QString nichtLoeschbar(const QString &nrFeldtext);
// The postings could not be read: the account is kept.
QString nichtGeloeschtOhneBuchungen(const QString &nrFeldtext);
QString buchungenGeloescht(qint32 anzahl);

} // namespace creditors::regeln
