// The code lists: any stored value, any item code, any year.
#include "accounts/regeln/Codelisten.h"
#include "accounts/regeln/Positionen.h"
#include "fuzz/Eingabe.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *daten, size_t laenge)
{
    Eingabe e(daten, laenge);
    const int jahr = e.zahl();
    while (!e.leer()) {
        const int wert = e.zahl();
        for (const kontenregeln::Codeliste &l : kontenregeln::codelisten()) {
            const auto a = kontenregeln::anzeige(l, wert, jahr);
            // A position shown is always one of the list's items.
            if (a.position >= int(l.eintraege.size()) || a.position < -1)
                __builtin_trap();
            (void)kontenregeln::gespeicherterWert(l, wert, jahr);
            (void)kontenregeln::wertZulaessig(l, wert, jahr);
        }
        (void)kontenregeln::code75Hinweis(wert);
        (void)kontenregeln::code75HinweisFuerWert(wert);
        (void)kontenregeln::abrPosStufen(qint64(wert) * 37);
        (void)kontenregeln::abrPosCode(wert, e.zahl());
        (void)kontenregeln::abrPosAnzeige(e.text(), e.text());
    }
    return 0;
}
