#include "accounts/regeln/Kontenzeilen.h"

#include "accounts/regeln/Kontonummern.h"

#include <limits>

namespace kontenregeln {

namespace {

const QString SqlJahr
    = QStringLiteral("SELECT * FROM ObjKanzleiKontenstamm WHERE KontoJJ = ? ORDER BY KontoNr");

} // namespace

Spalten::Spalten(QStringList namen)
    : m_namen(std::move(namen))
{
    for (int i = 0; i < m_namen.size(); ++i)
        m_index.insert(m_namen.at(i).toLower(), i);
}

int Spalten::index(const QString &name) const
{
    const auto it = m_gefragt.constFind(name);
    if (it != m_gefragt.cend())
        return *it;
    const int i = m_index.value(name.toLower(), -1);
    if (m_gefragt.size() < 1024)
        m_gefragt.insert(name, i);
    return i;
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

bool ganzzahlVon(const QVariant &v, int &z)
{
    if (v.isNull()) {
        z = 0;
        return true;
    }
    // Numbers as stored need no detour through their text.
    if (v.typeId() == QMetaType::LongLong || v.typeId() == QMetaType::Int) {
        const qlonglong l = v.toLongLong();
        z = int(l);
        return l >= std::numeric_limits<int>::min() && l <= std::numeric_limits<int>::max();
    }
    bool ok = false;
    z = v.toString().trimmed().toInt(&ok);
    return ok;
}

int Kontozeile::zahl(const QString &spalte, int ersatz) const
{
    // An empty field is no definition: the caller's stand-in, not the 0 a check would read.
    const QVariant v = wert(spalte);
    int z = 0;
    return !v.isNull() && ganzzahlVon(v, z) ? z : ersatz;
}

Kontenliste::Kontenliste(std::shared_ptr<const Spalten> spalten,
                         std::shared_ptr<const platform::storage::Zeilenspeicher> zeilen)
    : m_spalten(std::move(spalten))
    , m_zeilen(std::move(zeilen))
    , m_nummer(m_spalten->index(QStringLiteral("KontoNr")))
{ }

Kontozeile Kontenliste::operator[](size_t i) const
{
    return Kontozeile {m_spalten, m_zeilen->zeile(int(i))};
}

platform::storage::RohWert Kontenliste::feld(size_t i, int spalte) const
{
    return m_zeilen->feld(int(i), spalte);
}

void Kontenliste::felder(size_t i, std::vector<platform::storage::RohWert> &ziel) const
{
    ziel.resize(size_t(m_zeilen->spaltenAnzahl()));
    m_zeilen->felder(int(i), ziel.data());
}

QString Kontenliste::kontoNr(size_t i) const
{
    if (m_nummer < 0)
        return {};
    const platform::storage::RohWert w = feld(i, m_nummer);
    if (w.art == platform::storage::Wertart::Null)
        return {};
    if (w.art == platform::storage::Wertart::Ganzzahl)
        return QString::number(w.ganzzahl);
    return rtrim(QString::fromUtf8(w.text));
}

qint64 kontenAnzahl(Database &db, int jahr)
{
    return db
        .scalar(QStringLiteral("SELECT COUNT(*) FROM ObjKanzleiKontenstamm WHERE KontoJJ = ?"),
                {jahr})
        .toLongLong();
}

namespace {

std::shared_ptr<const Spalten> spaltenVon(const platform::storage::Cursor &cursor)
{
    QStringList namen;
    for (int i = 0; i < cursor.spaltenAnzahl(); ++i)
        namen << cursor.spaltenName(i);
    return std::make_shared<const Spalten>(namen);
}

} // namespace

Kontenliste kontenLaden(Database &db, int jahr, const Fortschritt &fortschritt)
{
    const qint64 gesamt = fortschritt ? kontenAnzahl(db, jahr) : 0;
    auto cursor = db.query(SqlJahr, {jahr});
    auto zeilen = std::make_shared<platform::storage::Zeilenspeicher>();
    zeilen->laden(*cursor, [&](qint64 n) {
        if (fortschritt)
            fortschritt(n, gesamt);
    });
    return Kontenliste(spaltenVon(*cursor), std::move(zeilen));
}

void kontenDurchgehen(Database &db, int jahr, const std::function<void(const Kontozeile &)> &tun,
                      const Fortschritt &fortschritt)
{
    const qint64 gesamt = fortschritt ? kontenAnzahl(db, jahr) : 0;
    auto cursor = db.query(SqlJahr, {jahr});
    Kontozeile z {spaltenVon(*cursor), {}};
    const int n = cursor->spaltenAnzahl();
    qint64 erledigt = 0;
    while (cursor->next()) {
        z.werte.clear();
        for (int i = 0; i < n; ++i)
            z.werte.append(cursor->wert(i));
        tun(z);
        if (fortschritt && ++erledigt % 1000 == 0)
            fortschritt(erledigt, gesamt);
    }
    if (fortschritt)
        fortschritt(erledigt, std::max(gesamt, erledigt));
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
