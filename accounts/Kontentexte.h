#pragma once

#include <QString>

// The texts, titles, error places and queries of the record lifecycle of the account screen,
// exactly as the users know them.
namespace kontentexte {

// --- queries (the year and the numbers are bound parameters) ---
inline const QString SqlKontenDesJahres
    = QStringLiteral("SELECT * from ObjKanzleiKontenstamm WHERE KontoJJ = ? ORDER BY Kontonr");
inline const QString SqlKontoLesen
    = QStringLiteral("SELECT * from ObjKanzleiKontenstamm WHERE KontoJJ = ? AND KontoNr = ?");
inline const QString SqlSchluessel
    = QStringLiteral("SELECT * from AllgSchluesselDaten  ORDER BY SchlNummer");

// --- the internal clearing account ---
inline const QString Verrechnungskonto = QStringLiteral("999998");
inline const QString VerrechnungskontoName = QStringLiteral("Internes Verrechnungskonto");
inline const QString SachkontoPraefix = QStringLiteral("Sachkonto-Nr ");

// --- loading and navigation ---
// Captions of the register pages 1 to 7.
inline const QString Registerseiten[] = {
    QStringLiteral("Allgemein"),
    QStringLiteral("BkAbr-Definitionen"),
    QStringLiteral("ÖN-A4000-Definitionen"),
    QStringLiteral("HeAbr-Definitionen"),
    QStringLiteral("Beibl-Definitionen"),
    QStringLiteral("HMZ-Definitionen"),
    QStringLiteral("Abschl-Definitionen"),
};
inline const QString TitelLeererDatenbestand = QStringLiteral("Hinweis auf leeren Datenbestand");
QString leererDatenbestand(int jahr);
inline const QString DateiAnfang = QStringLiteral("DateiAnfang erreicht");
inline const QString DateiEnde = QStringLiteral("DateiEnde erreicht");
// Text of an error number the runtime has no text for.
QString fehlerOhneText(int nummer);

// --- reading by number ---
inline const QString KontonummerLeer = QStringLiteral("Kontonummer LEER ist nicht zulässig");
QString nichtExistentNurAnzeige(const QString &nr);
QString nichtExistentFrage(const QString &nr);
inline const QString TitelNichtExistent = QStringLiteral("KontoStammsatz nicht existent");

// --- opening ---
inline const QString TitelBestaetigen = QStringLiteral("Bitte bestätigen Sie");
QString neueroeffnenFrage(const QString &nr);
inline const QString TitelNeuLeer = QStringLiteral("KontoNr leer ungültig");
inline const QString NeuLeer = QStringLiteral("Ungültige, leere Kontonummer wurde eingegeben");
inline const QString TitelNeuStellen = QStringLiteral("Kontonummer hat falsche Anzahl Stellen");
QString neuZuKurz();
inline const QString BereitsExistent = QStringLiteral("Konto bereits existent");
QString addNewFehlgeschlagen(const QString &nr);
QString nachNeueroeffnungNichtGefunden(const QString &nr);
inline const QString TitelProvisorisch
    = QStringLiteral("Kontrollieren und verändern Sie die provisorischen Feldinhalte");
QString provisorischHinweis(const QString &abschlussNotiz);

// --- copying definitions ---
// The fields a new account takes over from its source, in the order they are copied. Year,
// number and designation stay the new account's own.
inline const QString UebernahmeFelder[] = {
    QStringLiteral("KontoTypus"),
    QStringLiteral("KontoAnmerkung1"),
    QStringLiteral("KontoAnmerkung2"),
    QStringLiteral("KontoUstProz"),
    QStringLiteral("KontoUstKtoNr"),
    QStringLiteral("KontoBkENAbrDef"),
    QStringLiteral("KontoBkBlockPos"),
    QStringLiteral("KontoBkEinnAusgPos"),
    QStringLiteral("KontoBkAbrVerdichtKz"),
    QStringLiteral("KontoAbrSchlPos"),
    QStringLiteral("KontoVSTKuerz"),
    QStringLiteral("KontoAbrUstProz"),
    QStringLiteral("KontoBkEinnUstProz"),
    QStringLiteral("KontoÖNORMAbrPos_I_II_III"),
    QStringLiteral("KontoÖNORMAbrPos_ABC"),
    QStringLiteral("KontoÖNORMAbrBlockPos"),
    QStringLiteral("KontoÖNORMAbrKontenArt"),
    QStringLiteral("KontoHeEinnAusgPos"),
    QStringLiteral("KontoHeAbrVerdichtKz"),
    QStringLiteral("KontoBeiblPos"),
    QStringLiteral("KontoBeiblVerdichtKz"),
    QStringLiteral("KontoHmzresPos"),
    QStringLiteral("KontoHmzresVerdichtKz"),
    QStringLiteral("KontoErhbeitrPos"),
    QStringLiteral("KontoErhbeitrVerdichtKz"),
    QStringLiteral("KontoVoranmPos"),
    QStringLiteral("KontoStornoDatum"),
    QStringLiteral("KontoZusatzdatenJN"),
    QStringLiteral("KontoAbschlArt"),
    QStringLiteral("KontoSbkGuvKontoNr"),
    QStringLiteral("KontoEbkKontoNr"),
};
QString uebernahmeInfo();
inline const QString TitelUebernahmeNichtExistent = QStringLiteral("Kontonummer nicht existent");
QString uebernahmeNichtExistent(const QString &nr);
QString uebernahmeBeendet();

// --- deleting ---
inline const QString VerrechnungskontoNichtLoeschbar
    = QStringLiteral("Internes Verrechnungskonto kann nicht gelöscht werten.");
inline const QString LoeschenFrage = QStringLiteral("Kontenstammsatz löschen ?");
inline const QString TitelNichtLoeschbar = QStringLiteral("Löschung nicht möglich");
QString nichtLoeschbar(const QString &nr, int jahr, int saldensaetze);
// The balance rows could not be read: the account is kept.
QString nichtGeloeschtOhneSalden(const QString &nr);

// --- the account type ---
// The balance rows could not be read: the type change is not allowed.
inline const QString TypNichtGeaendert
    = QStringLiteral("Die Buchungen zu diesem Konto konnten nicht gelesen werden.\r\n"
                     "Der KontoTypus bleibt unverändert.");

// --- allocation key 0 ---
inline const QString SchluesselKeineDefinition = QStringLiteral("keine Definition");

// --- error places ---
inline const QString OrtKontenSelect = QStringLiteral("zelKontenStamm, in KontenSelect");
inline const QString OrtReposition = QStringLiteral("zelKontenStamm, in KkData_Reposition");
inline const QString OrtKKDataError = QStringLiteral("zelKontenStamm, in KKData_Error");
inline const QString OrtFormKeyDown = QStringLiteral("zelKontenStamm, in Form_KeyDown");
inline const QString OrtKKChkSelect = QStringLiteral("zelKontenStamm, in KKChkSelect");
inline const QString OrtKontoDirektLesen = QStringLiteral("zelKontenStamm, in KontoDirektLesen");
inline const QString OrtNeueroeffnung = QStringLiteral("zelKontenStamm, in Neueröffnung");
inline const QString OrtKontoNeueroeffClick
    = QStringLiteral("zelKontenStamm, in cmdKontoNeueröff_Click");
inline const QString OrtAslSelect = QStringLiteral("zelKontenStamm, in AslSelect");
inline const QString OrtSchl0Anlegen = QStringLiteral("zelKontenStamm, in Schl0Anlegen");
inline const QString OrtValidate = QStringLiteral("zelKontenStamm, in KK_Data_Validate");
inline const QString OrtFehlerpruefungen = QStringLiteral("zelKontenStamm, in Fehlerprüfungen_0");
inline const QString OrtUstQuer = QStringLiteral("zelKontenStamm, in UstKontoQuerPrüfen");
inline const QString OrtEingabepruefungen = QStringLiteral("zelKontenStamm, in Eingabeprüfungen");
inline const QString OrtKontoNrCheck = QStringLiteral("zelKontenStamm, in KontoNrCheck");
inline const QString OrtTypus = QStringLiteral("zelKontenStamm, in KontoTypus prüfen");
inline const QString OrtSsCheckSelect = QStringLiteral("zelKontenStamm, in SsCheckSelect");
inline const QString OrtPVAZusatz = QStringLiteral("zelKontenStamm, in chckPVAZusatz_Click");
inline const QString OrtBilanzPosSelect = QStringLiteral("zelKontenStamm, in BilanzPosSelect");
inline const QString OrtZl7BilanzPosSelect
    = QStringLiteral("zelKontenStamm, in Zl7BilanzPosSelect");
inline const QString OrtBkPos2DataSelect = QStringLiteral("zelKontenStamm, in BkPOS2DataSelect");
inline const QString OrtBkBlockPosSelect = QStringLiteral("zelKontenStamm, in BkBlockPosSelect");
// With the small s, as the users' reports have always shown it.
inline const QString OrtAbrPos2Text = QStringLiteral("zelKontenstamm, in cmbAbrPos2_Texteinsetzen");
inline const QString OrtBkBlockPosText
    = QStringLiteral("zelKontenStamm, in cmbBkBlockPos_Texteinsetzen");
inline const QString OrtKontoListe = QStringLiteral("zelKontenStamm, in cmdKontoListe_Click");
inline const QString OrtKoBeginnListe
    = QStringLiteral("zelKontenstamm, frmKoBeginn, in cmdKontoListe_Click");
inline const QString OrtUebernehmen
    = QStringLiteral("zelKontenStamm, in KontendatenÜbernehmenCheck");
inline const QString OrtLoeschen = QStringLiteral("zelKontenStamm, in cmdKontoLöschen_Click");
inline const QString OrtBilPosAuswahl = QStringLiteral("zelKontenStamm, in cmdBilPosAuswahl_Click");
inline const QString OrtZl7BilPosAuswahl
    = QStringLiteral("zelKontenStamm, in cmdZl7BilPosAuswahl_Click");
inline const QString OrtBilPosStamm = QStringLiteral("zelKontenStamm, in cmdBilPosStamm_Click");
inline const QString OrtZl7BilPosStamm
    = QStringLiteral("zelKontenStamm, in cmdZl7BilPosStamm_Click");
inline const QString OrtOenormPosStamm
    = QStringLiteral("zelKontenStamm, in cmdÖNORMPosStammAufruf_Click");
inline const QString OrtAbrPosStamm
    = QStringLiteral("zelKontenStamm, in cmdAbrPosStammAufruf_Click");
inline const QString OrtPruefliste = QStringLiteral("zelKontenStamm, in cmdPruefliste_Click");
inline const QString OrtBilPosLoeschen
    = QStringLiteral("zelKontenStamm, in cmdBilPosloeschen_Click");

// Trailing blanks removed; account numbers are stored and compared so.
QString rtrim(const QString &text);

} // namespace kontentexte
