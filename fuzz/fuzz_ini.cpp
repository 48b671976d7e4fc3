// The settings file and the scaling factor read from it.
#include "frame/Skalierung.h"
#include "fuzz/Eingabe.h"
#include "platform/core/IniLesen.h"

#include <QFile>
#include <QTemporaryDir>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *daten, size_t laenge)
{
    static QTemporaryDir ordner;
    const QString datei = ordner.filePath(QStringLiteral("zep.ini"));
    Eingabe e(daten, laenge);
    const int breite = e.zahl();
    const QString sektion = e.text();
    const QString schluessel = e.text();
    {
        QFile f(datei);
        if (!f.open(QIODevice::WriteOnly | QIODevice::Truncate))
            return 0;
        f.write(reinterpret_cast<const char *>(daten), qint64(laenge));
    }
    (void)platform::IniLesen(datei, sektion, schluessel);
    const frame::SkalierEingabe eingabe = frame::skalierEingabeLesen(breite, datei);
    const float faktor = frame::SkalierFaktorBerechnen(eingabe);
    const frame::SkalierEingabe direkt {breite, sektion, schluessel};
    const float zweiter = frame::SkalierFaktorBerechnen(direkt);
    // A factor is 0 (do not scale) or a sensible enlargement.
    if (faktor < 0 || faktor > 100 || zweiter < 0 || zweiter > 100)
        __builtin_trap();
    return 0;
}
