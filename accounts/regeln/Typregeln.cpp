#include "accounts/regeln/Typregeln.h"

#include "accounts/regeln/Kontonummern.h"

namespace kontenregeln {

namespace {
const QString Zeile = QStringLiteral("\r\n");
const QString Verrechnungskonto = QStringLiteral("999998");

QString zurueckOderAendern()
{
    return Zeile + Zeile + QStringLiteral("Ja ... Änderung zurücknehmen, alte Einstellung belassen")
        + Zeile + QStringLiteral("Nein ... Kontotypus ändern");
}
} // namespace

TypBefund typPruefen(int typ, int anzahlTypen, const QString &kontoNr)
{
    if (typ > anzahlTypen - 1)
        return TypBefund::AusserhalbListe;
    if (rtrim(kontoNr) == Verrechnungskonto && typ > 0)
        return TypBefund::AufKanzleiGestellt;
    return TypBefund::Zulaessig;
}

bool vonObjektAufKanzlei(int alterTyp, int neuerTyp)
{
    return alterTyp == Objektkonto && neuerTyp != Objektkonto;
}

bool buchungenVorhanden(bool zeilenVorhanden, int ersteBuchungsNr)
{
    return zeilenVorhanden && ersteBuchungsNr > 0;
}

namespace typtexte {

QString verrechnungskontoKanzlei()
{
    return QStringLiteral("Internes Verrechnungskonto muss als Kanzleikonto ")
        + QStringLiteral("definiert sein.") + Zeile
        + QStringLiteral("Wird auf Kanzleikonto umgestellt.");
}

QString frage1(bool vonObjektAufKanzlei)
{
    return QStringLiteral("Die Änderung des KontoTypus ")
        + (vonObjektAufKanzlei ? QStringLiteral("von Objekt auf Kanzlei")
                               : QStringLiteral("von Kanzlei auf Objekt"))
        + QStringLiteral(" ist unzulässig, da bereits Buchungen auf diesem ")
        + QStringLiteral("Konto vorhanden. ") + Zeile + Zeile
        + QStringLiteral("Ja ... alte Einstellung belassen") + Zeile
        + QStringLiteral("Nein ... Meldung ignorieren, Kontotypus trotzdem ändern");
}

QString frage2()
{
    return QStringLiteral("1. Wiederholungsfrage:") + Zeile
        + QStringLiteral("Bitte bestätigen Sie, daß Sie den Kontotypus verändern möchten ")
        + QStringLiteral("obwohl bereits Buchungen zu diesem Konto vorhanden")
        + zurueckOderAendern();
}

QString frage3()
{
    return QStringLiteral("2. Wiederholungsfrage:") + Zeile
        + QStringLiteral(
               "Bitte bestätigen Sie bitte nochmals, daß Sie den Kontotypus verändern möchten ")
        + QStringLiteral("obwohl bereits Buchungen zu diesem Konto vorhanden")
        + zurueckOderAendern();
}

} // namespace typtexte

} // namespace kontenregeln
