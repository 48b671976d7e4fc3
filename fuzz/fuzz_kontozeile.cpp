// Account rows with unexpected contents (nulls, wrong kinds, over-long texts) through the
// whole-year check, and CSV text through the import's reader.
#include "accounts/regeln/Jahrespruefung.h"
#include "fuzz/Eingabe.h"
#include "jahr/KontenCsv.h"
#include "platform/storage/Schema.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *daten, size_t laenge)
{
    static const auto spalten = [] {
        QStringList namen;
        for (const auto &s :
             platform::storage::tabelle(QStringLiteral("ObjKanzleiKontenstamm"))->spalten)
            namen << s.name;
        return std::make_shared<const kontenregeln::Spalten>(namen);
    }();
    Eingabe e(daten, laenge);
    kontenregeln::Kontozeile z {spalten, {}};
    for (qsizetype i = 0; i < spalten->namen().size(); ++i)
        z.werte << e.wert();
    kontenregeln::Stammdaten s;
    s.konten.insert(e.text());
    s.abrPositionen.insert(e.zahl());
    s.bkBloecke.insert(e.zahl());
    (void)kontenregeln::kontoPruefen(z, s, e.zahl());

    const QString text
        = jahr::csvText(QByteArray(reinterpret_cast<const char *>(daten), qsizetype(laenge)));
    // Records come in the order of their lines, each after the one before.
    int zeile = 0;
    for (const jahr::CsvSatz &satz : jahr::csvLesen(text)) {
        if (satz.zeile <= zeile)
            __builtin_trap();
        zeile = satz.zeile;
    }
    return 0;
}
