#pragma once

#include "platform/core/RuntimeError.h"

#include <QString>

// The common error report, the notice for an outdated database structure and the check of the
// help file.
namespace mdlFehlerZL {

// Reports `fehler` through the suite's error dialog zelAllgError: number, description, help
// file and the help context of the focused control (empty and "0" without help), current program,
// error place (FehlerOrt), the two extra texts and a flag. Keeps the dialog's answer in
// FehlerAntwort and clears FehlerOrt. When the dialog cannot be created the user gets a German
// message box instead; error 482 of the dialog ends silently.
void FehlerMelden(const platform::RuntimeError &fehler);

// Sets FehlerOrt and reports: what a procedure's trap does.
void FehlerMelden(const QString &fehlerOrt, const platform::RuntimeError &fehler);

// The notice shown when a field or table that the program expects is missing.
void DatenbankStrukturMelden(int fehlernummer);
QString datenbankStrukturText(int fehlernummer);

// Takes the help file of the call information (slot 7) into the session and checks it: a notice
// when it is empty or cannot be found. Sets HilfeVorhanden, which the screens read before they
// offer help. Screens call it when they load.
void HilfeAufrufChk();

// The session's help file as set by HilfeAufrufChk.
QString hilfedatei();

// Routes every trapped error of the platform and frame layers to FehlerMelden, and the error
// dialog's help to the product's help window.
void alsFehlerberichtEinrichten();

} // namespace mdlFehlerZL
