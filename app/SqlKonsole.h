#pragma once

#include "Befehlszeile.h"

// kontenstamm sql ORT [ANWEISUNG]: runs queries on a database without changing it and prints
// the rows with "|" between the values (a header line first). Returns 0 when every statement
// ran, 1 when one failed, 2 when the database could not be opened.
int sqlKonsole(const Aufruf &aufruf);
