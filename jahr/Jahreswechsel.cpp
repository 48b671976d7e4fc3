#include "jahr/Jahreswechsel.h"

#include "accounts/regeln/Kontonummern.h"
#include "platform/storage/Aenderungsprotokoll.h"

#include <QHash>

namespace jahr {

using kontenregeln::kontenLaden;

namespace {

// Values compared as the user sees them: null and empty alike, trailing blanks ignored.
QString vergleichswert(const QVariant &v)
{
    return v.isNull() ? QString() : kontenregeln::rtrim(v.toString());
}

} // namespace

JahreswechselErgebnis jahreswechsel(Database &db, int von, int nach, bool vorschau,
                                    const Fortschritt &fortschritt)
{
    const platform::storage::Protokollquelle protokoll(
        db, platform::storage::protokollquelle::Jahreswechsel);
    JahreswechselErgebnis ergebnis;
    const std::vector<Kontozeile> quelle = kontenLaden(db, von);
    const std::vector<Kontozeile> ziel = kontenLaden(db, nach);
    QHash<QString, const Kontozeile *> vorhanden;
    for (const Kontozeile &z : ziel)
        vorhanden.insert(z.kontoNr(), &z);

    std::vector<const Kontozeile *> kopieren;
    for (const Kontozeile &z : quelle) {
        const Kontozeile *gegenstueck = vorhanden.value(z.kontoNr());
        if (!gegenstueck) {
            kopieren.push_back(&z);
            ergebnis.neu << z.kontoNr();
            continue;
        }
        Abweichung a {z.kontoNr(), {}};
        for (const QString &spalte : z.spalten->namen()) {
            if (spalte.compare(QLatin1String("KontoJJ"), Qt::CaseInsensitive) == 0)
                continue;
            if (vergleichswert(z.wert(spalte)) != vergleichswert(gegenstueck->wert(spalte)))
                a.felder << spalte;
        }
        if (a.felder.isEmpty())
            ++ergebnis.gleich;
        else
            ergebnis.abweichend.push_back(std::move(a));
    }
    if (vorschau || kopieren.empty())
        return ergebnis;

    const QStringList spalten = quelle.front().spalten->namen();
    QStringList platzhalter;
    for (qsizetype i = 0; i < spalten.size(); ++i)
        platzhalter << QStringLiteral("?");
    const QString sql
        = QStringLiteral("INSERT INTO ObjKanzleiKontenstamm (%1) VALUES (%2)")
              .arg(spalten.join(QStringLiteral(", ")), platzhalter.join(QStringLiteral(", ")));
    const int jahrSpalte = quelle.front().spalten->index(QStringLiteral("KontoJJ"));
    platform::storage::Transaktion t(db);
    qint64 erledigt = 0;
    for (const Kontozeile *z : kopieren) {
        QVariantList werte = z->werte;
        werte[jahrSpalte] = nach;
        db.execute(sql, werte);
        if (fortschritt && ++erledigt % 500 == 0)
            fortschritt(erledigt, qint64(kopieren.size()));
    }
    t.commit();
    ergebnis.geschrieben = true;
    if (fortschritt)
        fortschritt(qint64(kopieren.size()), qint64(kopieren.size()));
    return ergebnis;
}

} // namespace jahr
