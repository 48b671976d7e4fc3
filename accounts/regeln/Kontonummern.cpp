#include "accounts/regeln/Kontonummern.h"

namespace kontenregeln {

namespace {
const QString Zeile = QStringLiteral("\r\n");
} // namespace

QString rtrim(const QString &s)
{
    qsizetype n = s.size();
    while (n > 0 && s.at(n - 1) == u' ')
        --n;
    return s.left(n);
}

NummernFehler nummernform(const QString &text)
{
    const QString nr = rtrim(text);
    if (nr.isEmpty() || nr == u"0" || nr == u"00" || nr == u"000")
        return NummernFehler::NullOderLeer;
    if (nr.size() < 4)
        return NummernFehler::ZuKurz;
    return NummernFehler::Keiner;
}

QString nummernformMeldung(NummernFehler fehler)
{
    switch (fehler) {
    case NummernFehler::NullOderLeer:
        return QStringLiteral("Kontonummer 0 oder 00 oder 000 oder Leer ist ungültig");
    case NummernFehler::ZuKurz:
        return QStringLiteral("Sachkonten-Kontonummern müssen mindestens 4-stellig ")
            + QStringLiteral("eingegeben werden.") + Zeile
            + QStringLiteral("Z.B. muss die Kontonummer \"1\" als \"0001\" eingegeben werden.")
            + Zeile + Zeile
            + QStringLiteral("Grundsätzlich sind Sachkonten-Kontonummern 4-, 5- oder 6-stellig ")
            + QStringLiteral("verwendbar.");
    case NummernFehler::Keiner:
        break;
    }
    return {};
}

QString referenzNummer(const QString &text)
{
    const QString nr = text.trimmed();
    return nr == u"0000" ? QString() : nr;
}

QString referenzName(const QString &kontoBezeichnung)
{
    return QStringLiteral("= ") + kontoBezeichnung;
}

QString referenzFehlt(const QString &feld)
{
    return feld + QStringLiteral(" ist nicht im Kontenstamm enthalten");
}

int listenZiel(const QString &erinnert, const QStringList &referenzTexte)
{
    return static_cast<int>(referenzTexte.indexOf(erinnert));
}

} // namespace kontenregeln
