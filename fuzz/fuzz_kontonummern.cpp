// Account numbers as typed and as referenced.
#include "accounts/regeln/Kontonummern.h"
#include "fuzz/Eingabe.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *daten, size_t laenge)
{
    Eingabe e(daten, laenge);
    const QString nr = e.text();
    const auto fehler = kontenregeln::nummernform(nr);
    (void)kontenregeln::nummernformMeldung(fehler);
    (void)kontenregeln::referenzNummer(nr);
    (void)kontenregeln::referenzName(e.text());
    (void)kontenregeln::referenzFehlt(e.text());
    (void)kontenregeln::listenZiel(e.text(), {e.text(), e.text(), e.text()});
    if (kontenregeln::rtrim(nr).size() > nr.size())
        __builtin_trap();
    return 0;
}
