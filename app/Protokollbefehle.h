#pragma once

#include "Befehlszeile.h"

// kontenstamm protokoll pruefen [--bis HASH] and kontenstamm protokoll JAHR [--konto NR]
// [--seit DATUM] [--csv]: the change log looked into without changing the database. Returns 0
// when the chain is intact (or the list was written), 1 when it is broken or the hash asked
// for is not part of it, 2 when the database could not be read.
int protokollbefehlAusfuehren(const Aufruf &aufruf);
