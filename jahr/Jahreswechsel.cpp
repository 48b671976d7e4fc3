#include "jahr/Jahreswechsel.h"

#include "accounts/regeln/Kontonummern.h"
#include "jahr/Einfuegen.h"
#include "platform/storage/Aenderungsprotokoll.h"

#include <QHash>

namespace jahr {

using kontenregeln::kontenLaden;
using kontenregeln::Kontenliste;
using platform::storage::RohWert;
using platform::storage::Wertart;

namespace {

// Values compared as the user sees them: null and empty alike, trailing blanks ignored.
QString vergleichswert(const QVariant &v)
{
    return v.isNull() ? QString() : kontenregeln::rtrim(v.toString());
}

QByteArrayView ohneBlanks(QByteArrayView t)
{
    while (!t.isEmpty() && t.back() == ' ')
        t.chop(1);
    return t;
}

// vergleichswert() of both equal, without making texts for the usual kinds (half a million
// accounts of fifty columns). `x` and `y` are the values of the columns `sa` and `sb` (-1: the
// other year lacks the column).
bool gleich(const RohWert &x, const Kontenliste &a, size_t i, int sa, const RohWert &y,
            const Kontenliste &b, size_t j, int sb)
{
    const auto leerOderText = [](const RohWert &w) {
        return w.art == Wertart::Null || w.art == Wertart::Text;
    };
    if (leerOderText(x) && leerOderText(y))
        return ohneBlanks(x.text) == ohneBlanks(y.text);
    if (x.art == Wertart::Ganzzahl && y.art == Wertart::Ganzzahl)
        return x.ganzzahl == y.ganzzahl;
    return vergleichswert(sa < 0 ? QVariant() : a.wert(i, sa))
        == vergleichswert(sb < 0 ? QVariant() : b.wert(j, sb));
}

} // namespace

JahreswechselErgebnis jahreswechsel(Database &db, int von, int nach, bool vorschau,
                                    const Fortschritt &fortschritt)
{
    const platform::storage::Protokollquelle protokoll(
        db, platform::storage::protokollquelle::Jahreswechsel);
    JahreswechselErgebnis ergebnis;
    // Progress over reading both years, comparing and copying, in accounts of `von`.
    const qint64 imZiel = kontenregeln::kontenAnzahl(db, nach);
    const qint64 inQuelle = kontenregeln::kontenAnzahl(db, von);
    qint64 gesamt = imZiel + 2 * inQuelle;
    const auto melden = [&](qint64 erledigt) {
        if (fortschritt && gesamt > 0)
            fortschritt(erledigt * inQuelle / gesamt, inQuelle);
    };
    const Kontenliste ziel = kontenLaden(db, nach, [&](qint64 n, qint64) { melden(n); });
    const Kontenliste quelle = kontenLaden(db, von, [&](qint64 n, qint64) { melden(imZiel + n); });
    QHash<QString, int> vorhanden;
    vorhanden.reserve(qsizetype(ziel.size()));
    for (size_t j = 0; j < ziel.size(); ++j)
        vorhanden.insert(ziel.kontoNr(j), int(j));

    // The columns of the source, each with its place among the target's.
    const QStringList &namen = quelle.spalten() ? quelle.spalten()->namen() : QStringList();
    std::vector<std::pair<int, int>> vergleiche;
    for (int s = 0; s < namen.size(); ++s) {
        if (namen[s].compare(QLatin1String("KontoJJ"), Qt::CaseInsensitive) != 0)
            vergleiche.emplace_back(s, ziel.spalten() ? ziel.spalten()->index(namen[s]) : -1);
    }

    std::vector<size_t> kopieren;
    std::vector<RohWert> quellWerte;
    std::vector<RohWert> zielWerte;
    for (size_t i = 0; i < quelle.size(); ++i) {
        const QString nr = quelle.kontoNr(i);
        const int j = vorhanden.value(nr, -1);
        if (j < 0) {
            kopieren.push_back(i);
            ergebnis.neu << nr;
        } else {
            Abweichung a {nr, {}};
            quelle.felder(i, quellWerte);
            ziel.felder(size_t(j), zielWerte);
            for (const auto &[s, t] : vergleiche) {
                const RohWert y = t < 0 ? RohWert {} : zielWerte[size_t(t)];
                if (!gleich(quellWerte[size_t(s)], quelle, i, s, y, ziel, size_t(j), t))
                    a.felder << namen[s];
            }
            if (a.felder.isEmpty())
                ++ergebnis.gleich;
            else
                ergebnis.abweichend.push_back(std::move(a));
        }
        if ((i + 1) % 1000 == 0)
            melden(imZiel + inQuelle + qint64(i + 1));
    }
    if (vorschau || kopieren.empty()) {
        melden(gesamt);
        return ergebnis;
    }

    gesamt += qint64(kopieren.size());
    const int jahrSpalte = quelle.spalten()->index(QStringLiteral("KontoJJ"));
    platform::storage::Transaktion t(db);
    kontenEinfuegen(
        db, namen, qint64(kopieren.size()),
        [&](qint64 k) {
            QVariantList werte = quelle[kopieren[size_t(k)]].werte;
            werte[jahrSpalte] = nach;
            return werte;
        },
        [&](qint64 erledigt) { melden(imZiel + 2 * inQuelle + erledigt); });
    t.commit();
    ergebnis.geschrieben = true;
    return ergebnis;
}

} // namespace jahr
