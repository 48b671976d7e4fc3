#pragma once

#include <QString>

// Working values of the creditor screen and its number dialog. Module state like the session
// values of mdlKontenStamm: one instance per process, shared by frmKreditorenKontenStamm and
// frmKrNeu. The check-failed flag, NurAnzeige and the "opening requested from the number field"
// flag are the component-wide ones of mdlKontenStamm.
namespace creditors::mdlKreditoren {

extern qint32 KrSuchNr; // input of KRChkSelect
extern bool KrGefunden; // result of KRChkSelect
extern qint32 KrNeuNr; // number of the account being opened; 0 when none
extern QString KrNeuNrText; // typed in frmKrNeu, fixed 6 characters, blank-padded
extern bool KrNeuAbbruch; // frmKrNeu was cancelled
// Control name of the field whose check failed, empty, or KrNichtPrüfen.
extern QString KrFehlerFeld;
extern bool KrPositionieren; // the main record set is moving
extern bool KrAnlageLäuft; // a new row is being written
extern bool KrLöschungLäuft; // a row is being deleted
extern QString KrRückgabeFeld; // field that asked the selection list for a number
extern bool KrBuchungenVorhanden; // set by KrBuchungenSelect
extern int KrBuchungMitObjekt; // 1 when the first posting carries an object number
extern qint32 KrGelöschteBuchungen; // posting rows removed by the last KrBuchungenLöschen

// Where the creditor screen stood at its load; frmKrNeu centres itself with these.
extern int KrFormLeft;
extern int KrFormTop;
extern int KrFormWidth;
extern int KrFormHeight;

// KrFehlerFeld after the user chose to pick another number: the field checks stay quiet
// until the next move.
inline const QString KrNichtPrüfen = QStringLiteral("nicht prüfen");

// Back to the state of a freshly loaded component.
void zuruecksetzen();

} // namespace creditors::mdlKreditoren
