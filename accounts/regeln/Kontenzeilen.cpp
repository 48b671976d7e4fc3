#include "accounts/regeln/Kontenzeilen.h"

#include "accounts/regeln/Kontonummern.h"

namespace kontenregeln {

Spalten::Spalten(QStringList namen)
    : m_namen(std::move(namen))
{
    for (int i = 0; i < m_namen.size(); ++i)
        m_index.insert(m_namen.at(i).toLower(), i);
}

QVariant Kontozeile::wert(const QString &spalte) const
{
    const int i = spalten ? spalten->index(spalte) : -1;
    return i >= 0 && i < werte.size() ? werte.at(i) : QVariant();
}

QString Kontozeile::text(const QString &spalte) const
{
    const QVariant v = wert(spalte);
    return v.isNull() ? QString() : rtrim(v.toString());
}

int Kontozeile::zahl(const QString &spalte, int ersatz) const
{
    const QVariant v = wert(spalte);
    bool ok = false;
    const int z = v.isNull() ? 0 : v.toString().trimmed().toInt(&ok);
    return ok ? z : ersatz;
}

std::vector<Kontozeile> kontenLaden(Database &db, int jahr, const Fortschritt &fortschritt)
{
    const qint64 gesamt
        = db.scalar(QStringLiteral("SELECT COUNT(*) FROM ObjKanzleiKontenstamm WHERE KontoJJ = ?"),
                    {jahr})
              .toLongLong();
    auto cursor = db.query(
        QStringLiteral("SELECT * FROM ObjKanzleiKontenstamm WHERE KontoJJ = ? ORDER BY KontoNr"),
        {jahr});
    QStringList namen;
    for (int i = 0; i < cursor->spaltenAnzahl(); ++i)
        namen << cursor->spaltenName(i);
    const auto spalten = std::make_shared<const Spalten>(namen);
    std::vector<Kontozeile> zeilen;
    zeilen.reserve(size_t(gesamt));
    while (cursor->next()) {
        Kontozeile z {spalten, {}};
        z.werte.reserve(namen.size());
        for (int i = 0; i < namen.size(); ++i)
            z.werte.append(cursor->wert(i));
        zeilen.push_back(std::move(z));
        if (fortschritt && zeilen.size() % 1000 == 0)
            fortschritt(qint64(zeilen.size()), gesamt);
    }
    return zeilen;
}

KontoDefinition definition(const Kontozeile &z)
{
    KontoDefinition d;
    d.kontoNr = z.kontoNr();
    d.bezeichnung = z.text(QStringLiteral("KontoBezeichnung"));
    d.zusatzDatenJN = z.zahl(QStringLiteral("KontoZusatzDatenJN"));
    d.ustProz = z.zahl(QStringLiteral("KontoUstProz"), 100);
    d.ustKtoNr = z.text(QStringLiteral("KontoUstKtoNr"));
    d.voranmPos = z.zahl(QStringLiteral("KontoVoranmPos"));
    d.bkENAbrDef = z.zahl(QStringLiteral("KontoBkENAbrDef"));
    d.bkBlockPos = QString::number(z.zahl(QStringLiteral("KontoBkBlockPos")));
    d.bkEinnAusgPos = z.zahl(QStringLiteral("KontoBkEinnAusgPos"));
    d.abrUstProz = z.zahl(QStringLiteral("KontoAbrUstProz"), 100);
    d.abrPos1 = z.zahl(QStringLiteral("KontoÖNORMAbrPos_I_II_III"));
    d.abrPos2 = z.zahl(QStringLiteral("KontoÖNORMAbrPos_ABC"));
    d.heEinnAusgPos = QString::number(z.zahl(QStringLiteral("KontoHeEinnAusgPos")));
    d.heAbrVerdichtKz = z.zahl(QStringLiteral("KontoHeAbrVerdichtKz"));
    d.sbkGuvKontoNr = z.text(QStringLiteral("KontoSbkGuvKontoNr"));
    d.ebkKontoNr = z.text(QStringLiteral("KontoEbkKontoNr"));
    d.zl7Pos1 = z.zahl(QStringLiteral("KontoPos1"));
    d.zl7Pos2 = z.zahl(QStringLiteral("KontoPos2"));
    d.zl7Pos3 = z.zahl(QStringLiteral("KontoPos3"));
    return d;
}

} // namespace kontenregeln
