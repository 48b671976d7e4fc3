#include "Skalierung.h"

#include "platform/core/IniLesen.h"

#include <algorithm>
#include <optional>

namespace frame {

namespace {

// Text as the runtime reads a currency value with Austrian settings: blanks around it, a sign,
// '.' as digit grouping (ignored), ',' as the decimal comma; four decimals, rounded half to even.
// Gives the value in ten-thousandths.
std::optional<qint64> waehrungLesen(const QString &text)
{
    QString t = text.trimmed();
    t.remove(u'.');
    bool negativ = false;
    if (t.startsWith(u'-') || t.startsWith(u'+')) {
        negativ = t.front() == u'-';
        t = t.mid(1).trimmed();
    }
    const qsizetype komma = t.indexOf(u',');
    const QString ganz = komma < 0 ? t : t.left(komma);
    const QString bruch = komma < 0 ? QString() : t.mid(komma + 1);
    auto nurZiffern = [](const QString &s) {
        return std::all_of(s.begin(), s.end(), [](QChar c) { return c >= u'0' && c <= u'9'; });
    };
    if ((ganz.isEmpty() && bruch.isEmpty()) || !nurZiffern(ganz) || !nurZiffern(bruch)
        || ganz.size() > 14)
        return std::nullopt;
    qint64 einheiten = ganz.isEmpty() ? 0 : ganz.toLongLong() * 10000;
    const QString vier = (bruch + QStringLiteral("0000")).left(4);
    einheiten += vier.toLongLong();
    const QString rest = bruch.mid(4);
    if (!rest.isEmpty()) {
        const int erste = rest.front().digitValue();
        const bool mehr
            = std::any_of(rest.begin() + 1, rest.end(), [](QChar c) { return c != u'0'; });
        if (erste > 5 || (erste == 5 && (mehr || einheiten % 2 == 1)))
            ++einheiten;
    }
    return negativ ? -einheiten : einheiten;
}

} // namespace

float SkalierFaktorBerechnen(const SkalierEingabe &e)
{
    if (e.bildschirmBreite == 800)
        return 0;
    if (e.skalieren.isEmpty() || e.skalieren == QLatin1String("0"))
        return 0;
    if (e.skFaktor == QLatin1String("10"))
        return 2.0f;
    const auto faktor = waehrungLesen(e.skFaktor);
    if (!faktor)
        return 0;

    // The intermediate value as a fraction of ten-thousandths, kept exact.
    qint64 zaehler = *faktor;
    qint64 nenner = 10000;
    switch (e.bildschirmBreite) {
    case 1024:
        zaehler *= 10, nenner *= 3;
        break;
    case 1280:
        zaehler *= 10, nenner *= 5;
        break;
    default:
        if (e.bildschirmBreite > 1280)
            zaehler *= 10, nenner *= 8;
    }
    if (zaehler % nenner != 0)
        return 0; // "1," and a value with decimals is not a number
    const qint64 zwischenwert = zaehler / nenner;
    if (zwischenwert == 10)
        return 2.0f;
    if (zwischenwert < 0)
        return 0; // "1,-5" is not a number either
    return QStringLiteral("1.%1").arg(zwischenwert).toFloat();
}

QString Bildschirmaufloesung(int breite, int hoehe)
{
    return QStringLiteral("%1 X %2").arg(breite).arg(hoehe);
}

SkalierEingabe skalierEingabeLesen(int bildschirmBreite, const QString &einstellungsDatei)
{
    using platform::IniLesen;
    return {bildschirmBreite,
            IniLesen(einstellungsDatei, QStringLiteral("Section1"), QStringLiteral("Skalieren")),
            IniLesen(einstellungsDatei, QStringLiteral("Section2"), QStringLiteral("SkFaktor"))};
}

float SkalierFaktorErmitteln(int bildschirmBreite)
{
    return SkalierFaktorBerechnen(
        skalierEingabeLesen(bildschirmBreite, platform::EinstellungsDatei()));
}

} // namespace frame
