#pragma once

#include <QString>
#include <QVariantList>

// Session state and working values shared by every screen of the component. One instance per
// process, alive while the component is loaded, like the module state of the original; written by
// the call of the public class and by the screens named beside each value.
namespace mdlKontenStamm {

// Size of the call-information array prepared by the class (indices 0 to 100).
constexpr int AufrufInfoGroesse = 101;

// Slots of the call information.
namespace slot {
constexpr int Datenbank = 0;
constexpr int Text1 = 1;
constexpr int Zahl2 = 2;
constexpr int VerbindungsArt = 4;
constexpr int Hilfedatei = 7;
constexpr int Aufrufart = 9;
constexpr int Buchungsjahr = 10;
constexpr int VerarbeitungsBuchungsjahr = 11;
constexpr int Aufrufer = 39;
constexpr int HostVariante = 42;
} // namespace slot

// Call values that select behaviour.
constexpr int AufrufartNurAnzeige = 20;
constexpr int AufrufartKreditorenNurAnzeige = 200;

// --- session state ---
extern QVariantList AufrufInfo;
extern QString DatenbankPfad;
extern QString AufrufText1;
extern qint16 AufrufZahl2;
extern QString AufrufText4;
extern bool NurAnzeige;
extern qint16 Buchungsjahr;
extern qint16 VerarbeitungsBuchungsjahr;
extern bool Sondereinstieg;
extern QString AktuellesProgramm;
extern bool Programmende_OK;
// Connect prefix used when the component runs for the document import.
extern QString VerbindungsArt;

// Display size in pixels, as last measured by Bildschirmaufloesung().
extern qint16 BildschirmBreite;
extern qint16 BildschirmHoehe;

// --- error report ---
extern QString FehlerOrt;
extern QString FehlerZusatz1;
extern QString FehlerZusatz2;
extern qint16 FehlerAntwort;
extern bool HilfeVorhanden;
// The session's help file (slot 7 of the call, taken by HilfeAufrufChk).
extern QString Hilfedatei;

// --- working values of the record lifecycle ---
extern bool PruefungFehlgeschlagen; // check-failed flag
extern QString NeueroeffnungsNr; // number to open, 6 characters
extern QString NeueKontoNr; // new account number, 6 characters
extern QString LeseNr; // number to read, 6 characters
extern bool KontoGefunden; // account found
extern QString UebernahmeKontoNr; // source account number of the last copy
extern bool ImNummernfeldBleiben; // stay in the number field
extern bool NeueroeffnungVomNummernfeld; // opening requested from the number field
extern bool VerrechnungskontoWirdEroeffnet;
extern bool NeueroeffnungLaeuft;
extern bool BezeichnungFokusAusstehend;
extern bool DialogAbgebrochen;
extern bool UebernahmeAbgebrochen;
extern bool LoeschungLaeuft;

// Fixed-length texts of 6 characters keep their padding, as the messages show them.
QString festeLaenge6(const QString &text);

// Back to the state of a freshly loaded component (tests, and a host that loads anew).
void zuruecksetzen();

} // namespace mdlKontenStamm
