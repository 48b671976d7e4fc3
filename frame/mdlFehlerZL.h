#pragma once

#include "platform/core/RuntimeError.h"

#include <QString>

// The common error report, the notice for an outdated database structure and the check of the
// help file.
namespace mdlFehlerZL {

// Reports `fehler` through the suite's error dialog zelAllgError: number, description, help
// file, help context, current program, error place (FehlerOrt), the two extra texts and a flag.
// Keeps the dialog's answer in FehlerAntwort and clears FehlerOrt. When the dialog cannot be
// created the user gets a German message box instead; error 482 of the dialog ends silently.
void FehlerMelden(const platform::RuntimeError &fehler);

// Sets FehlerOrt and reports: what a procedure's trap does.
void FehlerMelden(const QString &fehlerOrt, const platform::RuntimeError &fehler);

// The notice shown when a field or table that the program expects is missing.
void DatenbankStrukturMelden(int fehlernummer);
QString datenbankStrukturText(int fehlernummer);

// Checks the help file of the call information (slot 7); sets HilfeVorhanden.
void HilfeAufrufChk();

// The application's help file as set by HilfeAufrufChk.
QString hilfedatei();

// Routes every trapped error of the platform and frame layers to FehlerMelden.
void alsFehlerberichtEinrichten();

} // namespace mdlFehlerZL
