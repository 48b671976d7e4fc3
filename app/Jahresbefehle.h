#pragma once

#include "Befehlszeile.h"

// Runs a year tool of the command line on its database; returns the program's exit code
// (0 all went well, 1 faulty accounts or lines, 2 the work could not be done).
int jahresbefehlAusfuehren(const Aufruf &aufruf);

// The call is one of the year tools.
bool istJahreswerkzeug(const Aufruf &aufruf);
