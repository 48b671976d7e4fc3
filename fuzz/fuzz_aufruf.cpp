// The host's command line and the call information the component reads (slots of any kind).
#include "app/Befehlszeile.h"
#include "frame/Datenbanksitzung.h"
#include "fuzz/Eingabe.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *daten, size_t laenge)
{
    Eingabe e(daten, laenge);
    QStringList argumente;
    for (int i = 0; i < 8 && !e.leer(); ++i)
        argumente << e.text();
    QString fehler;
    if (const auto aufruf = befehlszeileLesen(argumente, fehler))
        (void)aufrufInfo(*aufruf, aufruf->jahr.value_or(2024));

    QVariantList info;
    for (int i = 0; i < 101 && !e.leer(); ++i)
        info << e.wert();
    QString art = e.text();
    (void)frame::verbindungsPraefix(info, art, e.text());
    (void)frame::datenSteuerungConnect(info, art, e.text(), e.text());
    return 0;
}
