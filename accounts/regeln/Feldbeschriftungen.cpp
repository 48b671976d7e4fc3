#include "accounts/regeln/Feldbeschriftungen.h"

namespace kontenregeln {

namespace {

struct Beschriftung
{
    const char16_t *steuerelement;
    const char16_t *text;
};

// Generated with the screen's layout from one table, so the captions cannot drift from it.
constexpr Beschriftung beschriftungen[] = {
#include "accounts/regeln/Feldbeschriftungen.inc"
};

} // namespace

QString feldBeschriftung(QStringView steuerelement)
{
    for (const Beschriftung &b : beschriftungen) {
        if (steuerelement == QStringView(b.steuerelement))
            return QString::fromUtf16(b.text);
    }
    return steuerelement.toString();
}

QString anzahl(qint64 n, const QString &einzahl, const QString &mehrzahl)
{
    return QString::number(n) + u' ' + (n == 1 ? einzahl : mehrzahl);
}

} // namespace kontenregeln
