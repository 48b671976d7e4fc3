#include "Recordset.h"

#include "Zeilenspeicher.h"
#include "platform/core/RuntimeError.h"

#include <QDate>
#include <QHash>
#include <QSet>

namespace platform::storage {

using fehlernummer::FeldNichtGefunden;
using fehlernummer::KeinAktuellerDatensatz;
using fehlernummer::KeinEditModus;
using fehlernummer::NichtAktualisierbar;

struct Recordset::Zustand
{
    QVariantList werte;
    std::vector<bool> gesetzt;
    // Edit only: the row being changed and its values as read (dates as delivered text).
    qint64 id = 0;
    QVariantList angezeigt;
    QVariantList gelesen;
};

namespace {

// Rows from which FindFirst uses an index instead of comparing row by row.
constexpr int IndexAb = 256;

bool istBezeichnerZeichen(QChar c)
{
    return c.isLetterOrNumber() || c == QLatin1Char('_') || c == QLatin1Char('$');
}

// Words of `sql` outside quotes and parentheses, upper-cased, with their start; a single
// character token for every other sign at that level.
struct Wort
{
    QString text;
    qsizetype anfang;
    qsizetype ende;
};

std::vector<Wort> woerterAufEbeneNull(const QString &sql)
{
    std::vector<Wort> woerter;
    int tiefe = 0;
    qsizetype i = 0;
    const qsizetype n = sql.size();
    while (i < n) {
        const QChar c = sql[i];
        if (c == QLatin1Char('\'') || c == QLatin1Char('"') || c == QLatin1Char('`')
            || c == QLatin1Char('[')) {
            const QChar zu = c == QLatin1Char('[') ? QLatin1Char(']') : c;
            const qsizetype anfang = i++;
            while (i < n && sql[i] != zu)
                ++i;
            ++i;
            if (tiefe == 0 && c != QLatin1Char('\''))
                woerter.push_back(Wort {sql.mid(anfang, i - anfang), anfang, i});
            continue;
        }
        if (c == QLatin1Char('(')) {
            if (tiefe == 0)
                woerter.push_back(Wort {QStringLiteral("("), i, i + 1});
            ++tiefe;
            ++i;
            continue;
        }
        if (c == QLatin1Char(')')) {
            --tiefe;
            ++i;
            continue;
        }
        if (istBezeichnerZeichen(c)) {
            const qsizetype anfang = i;
            while (i < n && istBezeichnerZeichen(sql[i]))
                ++i;
            if (tiefe == 0)
                woerter.push_back(Wort {sql.mid(anfang, i - anfang), anfang, i});
            continue;
        }
        if (!c.isSpace() && tiefe == 0)
            woerter.push_back(Wort {QString(c), i, i + 1});
        ++i;
    }
    return woerter;
}

bool istWort(const Wort &w, const char *schluesselwort)
{
    return w.text.compare(QLatin1String(schluesselwort), Qt::CaseInsensitive) == 0;
}

// The one table of a plain SELECT ("" when the query joins, groups or combines tables).
// `alsSql` receives the name as the statements write it.
QString tabelleAusSql(const QString &sql, QString &alsSql)
{
    const std::vector<Wort> w = woerterAufEbeneNull(sql);
    if (w.empty() || !istWort(w[0], "SELECT"))
        return {};
    if (w.size() > 1 && istWort(w[1], "DISTINCT"))
        return {};
    size_t i = 1;
    while (i < w.size() && !istWort(w[i], "FROM"))
        ++i;
    if (i + 1 >= w.size())
        return {};
    const Wort &name = w[i + 1];
    QString tabelle;
    const QChar erstes = name.text.front();
    if (erstes == QLatin1Char('"') || erstes == QLatin1Char('`') || erstes == QLatin1Char('[')) {
        tabelle = name.text.mid(1, name.text.size() - 2);
        alsSql = QLatin1Char('"') + tabelle + QLatin1Char('"');
    } else if (istBezeichnerZeichen(erstes) && !erstes.isDigit()) {
        tabelle = name.text;
        alsSql = tabelle;
    } else {
        return {};
    }
    size_t j = i + 2;
    // An alias is allowed ("FROM t AS k", "FROM t k").
    if (j < w.size() && istWort(w[j], "AS"))
        j += 2;
    else if (j < w.size() && istBezeichnerZeichen(w[j].text.front()) && !istWort(w[j], "WHERE")
             && !istWort(w[j], "ORDER") && !istWort(w[j], "LIMIT") && !istWort(w[j], "GROUP")
             && !istWort(w[j], "JOIN") && !istWort(w[j], "INNER") && !istWort(w[j], "LEFT")
             && !istWort(w[j], "RIGHT") && !istWort(w[j], "FULL") && !istWort(w[j], "CROSS")
             && !istWort(w[j], "NATURAL") && !istWort(w[j], "UNION"))
        j += 1;
    if (j < w.size() && !istWort(w[j], "WHERE") && !istWort(w[j], "ORDER")
        && !istWort(w[j], "LIMIT") && w[j].text != QLatin1String(";"))
        return {};
    for (size_t k = j; k < w.size(); ++k) {
        if (istWort(w[k], "GROUP") || istWort(w[k], "UNION") || istWort(w[k], "INTERSECT")
            || istWort(w[k], "EXCEPT") || istWort(w[k], "HAVING"))
            return {};
    }
    return tabelle;
}

// A FindFirst condition prepared once for the comparison with packed values.
struct Bedingung
{
    enum class Art { Null, Zahl, Text };
    int spalte = -1;
    Art art = Art::Null;
    // Zahl: the value; Text: the number it spells, if any.
    bool ganz = false;
    qint64 ganzzahl = 0;
    double kommazahl = 0;
    bool istZahl = false;
    QByteArray utf8;
    bool datum = false;
};

Bedingung vorbereiten(int spalte, const QVariant &wert)
{
    Bedingung b;
    b.spalte = spalte;
    if (wert.isNull())
        return b;
    switch (wert.typeId()) {
    case QMetaType::Bool:
        b.art = Bedingung::Art::Zahl;
        b.ganz = b.istZahl = true;
        b.ganzzahl = wert.toBool() ? -1 : 0;
        b.kommazahl = double(b.ganzzahl);
        return b;
    case QMetaType::Int:
    case QMetaType::UInt:
    case QMetaType::Long:
    case QMetaType::LongLong:
    case QMetaType::ULong:
    case QMetaType::ULongLong:
    case QMetaType::Short:
    case QMetaType::UShort:
    case QMetaType::SChar:
    case QMetaType::UChar:
        b.art = Bedingung::Art::Zahl;
        b.ganz = b.istZahl = true;
        b.ganzzahl = wert.toLongLong();
        b.kommazahl = double(b.ganzzahl);
        return b;
    case QMetaType::Double:
    case QMetaType::Float:
        b.art = Bedingung::Art::Zahl;
        b.istZahl = true;
        b.kommazahl = wert.toDouble();
        return b;
    case QMetaType::QDate:
        b.art = Bedingung::Art::Text;
        b.datum = true;
        b.utf8 = wert.toDate().toString(Qt::ISODate).toUtf8();
        return b;
    default:
        break;
    }
    b.art = Bedingung::Art::Text;
    const QString text = wert.toString();
    b.utf8 = text.toUtf8();
    bool ok = false;
    b.ganzzahl = text.toLongLong(&ok);
    if (ok) {
        b.istZahl = b.ganz = true;
        b.kommazahl = double(b.ganzzahl);
    } else {
        b.kommazahl = text.toDouble(&ok);
        b.istZahl = ok;
    }
    return b;
}

bool zahlGleich(const RohWert &f, const Bedingung &b)
{
    if (f.art == Wertart::Ganzzahl)
        return b.ganz ? f.ganzzahl == b.ganzzahl : double(f.ganzzahl) == b.kommazahl;
    return f.kommazahl == b.kommazahl;
}

bool passt(const RohWert &f, const Bedingung &b)
{
    if (b.art == Bedingung::Art::Null)
        return f.art == Wertart::Null;
    switch (f.art) {
    case Wertart::Null:
        return false;
    case Wertart::Ganzzahl:
    case Wertart::Kommazahl:
        return b.istZahl && zahlGleich(f, b);
    case Wertart::Text:
    case Wertart::Datum:
        if (b.art == Bedingung::Art::Text) {
            if (b.datum && f.art == Wertart::Datum)
                return f.text.first(std::min<qsizetype>(10, f.text.size()))
                    == QByteArrayView(b.utf8);
            return f.text == QByteArrayView(b.utf8);
        } else {
            // A number against a text column: by value when the text spells a number.
            const QByteArray text = f.text.toByteArray();
            bool ok = false;
            if (b.ganz) {
                const qint64 z = text.toLongLong(&ok);
                if (ok)
                    return z == b.ganzzahl;
            }
            const double d = text.toDouble(&ok);
            return ok && d == b.kommazahl;
        }
    }
    return false;
}

} // namespace

Recordset::Recordset(std::shared_ptr<Database> db, QString sql, QVariantList params)
    : m_db(std::move(db))
    , m_sql(std::move(sql))
    , m_params(std::move(params))
{
    if (!m_db)
        RuntimeError::ausloesen(fehlernummer::ObjektvariableNichtFestgelegt);
    m_tabelle = tabelleAusSql(m_sql, m_tabelleSql);
    m_zeilen = std::make_shared<Zeilenspeicher>();
    laden();
}

Recordset::Recordset(KlonTag, const Recordset &quelle)
    : m_db(quelle.m_db)
    , m_sql(quelle.m_sql)
    , m_params(quelle.m_params)
    , m_tabelle(quelle.m_tabelle)
    , m_tabelleSql(quelle.m_tabelleSql)
    , m_zeilen(quelle.m_zeilen)
{
    if (m_zeilen->anzahl() > 0)
        positionieren(0);
    else
        ansEnde();
}

Recordset::~Recordset() = default;

void Recordset::laden()
{
    auto cursor = m_db->query(m_sql, m_params);
    auto neu = std::make_shared<Zeilenspeicher>(m_zeilen->naechsteId());
    neu->laden(*cursor);
    cursor.reset();
    // Known now, so that the first save costs no look-up; when that fails, the first edit
    // asks again and reports it.
    if (!m_tabelle.isEmpty()) {
        try {
            tabelleZuordnen(*neu);
        } catch (const RuntimeError &) { }
    }
    // Only now: a failed query leaves the rows as they were.
    m_zeilen = std::move(neu);
    m_cacheSpeicher = nullptr;
    m_cache.clear();
    m_noMatch = false;
    if (m_zeilen->anzahl() > 0)
        positionieren(0);
    else
        ansEnde();
}

void Recordset::abgleichen() const
{
    if (m_stand == m_zeilen->stand())
        return;
    m_stand = m_zeilen->stand();
    if (m_lage == Lage::AufZeile || m_lage == Lage::Geloescht) {
        m_pos = m_zeilen->untereGrenze(m_id);
        if (m_lage == Lage::AufZeile
            && (m_pos >= m_zeilen->anzahl() || m_zeilen->id(m_pos) != m_id))
            m_lage = Lage::Geloescht; // deleted through a clone
    }
}

void Recordset::positionieren(int index)
{
    m_lage = Lage::AufZeile;
    m_pos = index;
    m_id = m_zeilen->id(index);
    m_stand = m_zeilen->stand();
}

void Recordset::ansEnde()
{
    m_lage = Lage::NachLetztem;
    m_pos = m_zeilen->anzahl();
    m_stand = m_zeilen->stand();
}

void Recordset::bearbeitungVerwerfen()
{
    m_zustand.reset();
    m_editMode = EditMode::Keiner;
}

int Recordset::RecordCount() const
{
    return m_zeilen->anzahl();
}

bool Recordset::eof() const
{
    abgleichen();
    return m_zeilen->anzahl() == 0 || m_lage == Lage::NachLetztem;
}

bool Recordset::bof() const
{
    abgleichen();
    return m_zeilen->anzahl() == 0 || m_lage == Lage::VorErstem;
}

int Recordset::AbsolutePosition() const
{
    abgleichen();
    switch (m_lage) {
    case Lage::AufZeile:
        return m_pos;
    case Lage::NachLetztem:
        return m_zeilen->anzahl();
    default:
        return -1;
    }
}

void Recordset::MoveFirst()
{
    if (m_zeilen->anzahl() == 0)
        RuntimeError::ausloesen(KeinAktuellerDatensatz);
    bearbeitungVerwerfen();
    positionieren(0);
}

void Recordset::MoveLast()
{
    if (m_zeilen->anzahl() == 0)
        RuntimeError::ausloesen(KeinAktuellerDatensatz);
    bearbeitungVerwerfen();
    positionieren(m_zeilen->anzahl() - 1);
}

void Recordset::MoveNext()
{
    if (eof())
        RuntimeError::ausloesen(KeinAktuellerDatensatz);
    bearbeitungVerwerfen();
    int ziel = 0;
    switch (m_lage) {
    case Lage::VorErstem:
        ziel = 0;
        break;
    case Lage::AufZeile:
        ziel = m_pos + 1;
        break;
    case Lage::Geloescht:
        ziel = m_pos; // the row that followed the deleted one
        break;
    case Lage::NachLetztem:
        break;
    }
    if (ziel >= m_zeilen->anzahl())
        ansEnde();
    else
        positionieren(ziel);
}

void Recordset::MovePrevious()
{
    if (bof())
        RuntimeError::ausloesen(KeinAktuellerDatensatz);
    bearbeitungVerwerfen();
    int ziel = -1;
    switch (m_lage) {
    case Lage::NachLetztem:
        ziel = m_zeilen->anzahl() - 1;
        break;
    case Lage::AufZeile:
    case Lage::Geloescht:
        ziel = m_pos - 1;
        break;
    case Lage::VorErstem:
        break;
    }
    if (ziel < 0) {
        m_lage = Lage::VorErstem;
        m_stand = m_zeilen->stand();
    } else {
        positionieren(ziel);
    }
}

void Recordset::suchen(const std::vector<Kriterium> &kriterien, int ab)
{
    std::vector<Bedingung> bedingungen;
    bedingungen.reserve(kriterien.size());
    for (const Kriterium &k : kriterien)
        bedingungen.push_back(vorbereiten(feldPruefen(k.feld), k.wert));
    const auto alle = [&](int zeile) {
        for (const Bedingung &b : bedingungen) {
            if (!passt(m_zeilen->feld(zeile, b.spalte), b))
                return false;
        }
        return true;
    };
    const auto gefunden = [&](int zeile) {
        bearbeitungVerwerfen();
        positionieren(zeile);
        m_noMatch = false;
    };
    ab = std::max(ab, 0);
    const int n = m_zeilen->anzahl();
    // A year of many accounts is searched by number on every record shown: by the column's
    // index where a text is compared exactly, row by row otherwise.
    const auto text = std::find_if(bedingungen.begin(), bedingungen.end(), [](const Bedingung &b) {
        return b.art == Bedingung::Art::Text && !b.datum;
    });
    if (text != bedingungen.end() && n - ab >= IndexAb) {
        int zeile = m_zeilen->textSuchen(text->spalte, QByteArrayView(text->utf8), ab);
        if (zeile != -2) {
            while (zeile >= 0 && !alle(zeile))
                zeile = m_zeilen->textSuchen(text->spalte, QByteArrayView(text->utf8), zeile + 1);
            if (zeile >= 0)
                gefunden(zeile);
            else
                m_noMatch = true;
            return;
        }
    }
    for (int i = ab; i < n; ++i) {
        if (alle(i)) {
            gefunden(i);
            return;
        }
    }
    m_noMatch = true;
}

void Recordset::FindFirst(const std::vector<Kriterium> &kriterien)
{
    suchen(kriterien, 0);
}

void Recordset::FindNext(const std::vector<Kriterium> &kriterien)
{
    abgleichen();
    switch (m_lage) {
    case Lage::VorErstem:
        suchen(kriterien, 0);
        break;
    case Lage::AufZeile:
        suchen(kriterien, m_pos + 1);
        break;
    case Lage::Geloescht:
        suchen(kriterien, m_pos);
        break;
    case Lage::NachLetztem:
        suchen(kriterien, m_zeilen->anzahl());
        break;
    }
}

int Recordset::aktuellerIndex() const
{
    abgleichen();
    if (m_lage != Lage::AufZeile)
        RuntimeError::ausloesen(KeinAktuellerDatensatz);
    return m_pos;
}

Recordset::Bookmark Recordset::bookmark() const
{
    aktuellerIndex();
    return m_id;
}

void Recordset::setBookmark(Bookmark b)
{
    // A deleted row, or one of the rows before a Requery, is no record any more.
    const int index = m_zeilen->finden(b);
    if (index < 0)
        RuntimeError::ausloesen(KeinAktuellerDatensatz);
    bearbeitungVerwerfen();
    positionieren(index);
}

std::unique_ptr<Recordset> Recordset::Clone() const
{
    return std::make_unique<Recordset>(KlonTag {}, *this);
}

void Recordset::Requery()
{
    laden();
    bearbeitungVerwerfen();
}

const QVariantList &Recordset::aktuelleWerte() const
{
    const int index = aktuellerIndex();
    const quint32 offset = m_zeilen->offset(index);
    if (m_cacheSpeicher != m_zeilen.get() || m_cacheOffset != offset) {
        m_cache = m_zeilen->zeile(index);
        m_cacheSpeicher = m_zeilen.get();
        m_cacheOffset = offset;
    }
    return m_cache;
}

QStringList Recordset::feldnamen() const
{
    return m_zeilen->namen();
}

int Recordset::feldIndex(const QString &name) const
{
    return m_zeilen->spalte(name);
}

int Recordset::feldPruefen(const QString &name) const
{
    const int index = m_zeilen->spalte(name);
    if (index < 0) {
        throw RuntimeError(FeldNichtGefunden,
                           RuntimeError::standardText(FeldNichtGefunden)
                               + QStringLiteral(" (%1)").arg(name));
    }
    return index;
}

QVariant Recordset::feld(const QString &name) const
{
    return feld(feldPruefen(name));
}

QVariant Recordset::feld(int index) const
{
    if (index < 0 || index >= m_zeilen->spaltenAnzahl())
        RuntimeError::ausloesen(FeldNichtGefunden);
    if (m_zustand)
        return m_zustand->werte[index];
    return aktuelleWerte()[index];
}

void Recordset::setFeld(const QString &name, const QVariant &wert)
{
    setFeld(feldPruefen(name), wert);
}

void Recordset::setFeld(int index, const QVariant &wert)
{
    if (index < 0 || index >= m_zeilen->spaltenAnzahl())
        RuntimeError::ausloesen(FeldNichtGefunden);
    if (!m_zustand)
        RuntimeError::ausloesen(KeinEditModus);
    m_zustand->werte[index] = wert;
    m_zustand->gesetzt[size_t(index)] = true;
}

QStringList Recordset::geaenderteFelder() const
{
    QStringList felder;
    if (!m_zustand)
        return felder;
    for (int i = 0; i < m_zeilen->spaltenAnzahl(); ++i) {
        if (!m_zustand->gesetzt[size_t(i)])
            continue;
        // Assigning the value that was read changes nothing (and risks no conflict).
        if (m_editMode == EditMode::Bearbeiten && m_zustand->werte[i] == m_zustand->angezeigt[i]
            && m_zustand->werte[i].isNull() == m_zustand->angezeigt[i].isNull())
            continue;
        felder.append(m_zeilen->namen()[i]);
    }
    return felder;
}

void Recordset::tabelleZuordnen(Zeilenspeicher &z) const
{
    const auto istBekannt = [&](const Tabellenbeschreibung &b) {
        QSet<QString> spalten;
        for (const QString &s : b.spalten)
            spalten.insert(asciiKlein(s));
        z.tabellenSpalte.assign(size_t(z.spaltenAnzahl()), false);
        bool alle = true;
        for (int i = 0; i < z.spaltenAnzahl(); ++i) {
            z.tabellenSpalte[size_t(i)] = spalten.contains(asciiKlein(z.namen()[i]));
            alle = alle && z.tabellenSpalte[size_t(i)];
        }
        return alle;
    };
    auto b = m_db->beschreibung(m_tabelle);
    // A column the remembered description lacks: another program may have added it since.
    // Computed columns of the result are neither compared nor written.
    if (!istBekannt(*b)) {
        b = m_db->beschreibung(m_tabelle, true);
        istBekannt(*b);
    }
    z.schluessel.clear();
    for (const QString &s : b->schluessel) {
        const int index = z.spalte(s);
        if (index < 0) {
            z.schluessel.clear();
            break;
        }
        z.schluessel.push_back(index);
    }
    z.tabelleBekannt = true;
}

void Recordset::aktualisierbarPruefen()
{
    if (m_tabelle.isEmpty())
        RuntimeError::ausloesen(NichtAktualisierbar);
    if (!m_zeilen->tabelleBekannt)
        tabelleZuordnen(*m_zeilen);
    if (m_zeilen->schluessel.empty())
        RuntimeError::ausloesen(NichtAktualisierbar);
}

QString Recordset::vergleichsOperator() const
{
    return m_db->engine() == Engine::PostgreSql ? QStringLiteral(" IS NOT DISTINCT FROM ?")
                                                : QStringLiteral(" IS ?");
}

QVariantList Recordset::schluesselAus(const QVariantList &werte) const
{
    QVariantList schluessel;
    for (int s : m_zeilen->schluessel)
        schluessel.append(werte[s]);
    return schluessel;
}

QString Recordset::zeilenBedingung(const QVariantList &gelesen, QVariantList &params) const
{
    const QStringList &namen = m_zeilen->namen();
    QStringList teile;
    const std::vector<int> &schluessel = m_zeilen->schluessel;
    for (int s : schluessel) {
        teile.append(namen[s] + QStringLiteral(" = ?"));
        params.append(gelesen[s]);
    }
    const QString vergleich = vergleichsOperator();
    for (int i = 0; i < m_zeilen->spaltenAnzahl(); ++i) {
        if (!m_zeilen->tabellenSpalte[size_t(i)]
            || std::find(schluessel.begin(), schluessel.end(), i) != schluessel.end())
            continue;
        teile.append(namen[i] + vergleich);
        params.append(gelesen[i]);
    }
    return teile.join(QStringLiteral(" AND "));
}

void Recordset::zeileLesen(const QVariantList &schluesselWerte, Zeilenspeicher &ziel) const
{
    const QStringList &namen = m_zeilen->namen();
    QStringList auswahl;
    for (int i = 0; i < m_zeilen->spaltenAnzahl(); ++i)
        auswahl.append(m_zeilen->tabellenSpalte[size_t(i)] ? namen[i] : QStringLiteral("NULL"));
    QStringList bedingung;
    for (int s : m_zeilen->schluessel)
        bedingung.append(namen[s] + QStringLiteral(" = ?"));
    const QString sql = QStringLiteral("SELECT ") + auswahl.join(QStringLiteral(", "))
        + QStringLiteral(" FROM ") + m_tabelleSql + QStringLiteral(" WHERE ")
        + bedingung.join(QStringLiteral(" AND "));
    auto cursor = m_db->query(sql, schluesselWerte);
    ziel.laden(*cursor);
}

QVariantList Recordset::zeileLesen(const QVariantList &schluesselWerte) const
{
    Zeilenspeicher gelesen;
    zeileLesen(schluesselWerte, gelesen);
    return gelesen.anzahl() > 0 ? gelesen.zeile(0) : QVariantList();
}

void Recordset::AddNew()
{
    aktualisierbarPruefen();
    bearbeitungVerwerfen();
    m_zustand = std::make_unique<Zustand>();
    const int n = m_zeilen->spaltenAnzahl();
    for (int i = 0; i < n; ++i)
        m_zustand->werte.append(QVariant());
    m_zustand->gesetzt.assign(size_t(n), false);
    m_editMode = EditMode::Neu;
}

void Recordset::Edit()
{
    aktualisierbarPruefen();
    const int index = aktuellerIndex();
    bearbeitungVerwerfen();
    auto zustand = std::make_unique<Zustand>();
    zustand->id = m_zeilen->id(index);
    zustand->angezeigt = aktuelleWerte();
    zustand->werte = zustand->angezeigt;
    zustand->gelesen = m_zeilen->zeile(index, true);
    zustand->gesetzt.assign(size_t(m_zeilen->spaltenAnzahl()), false);
    m_zustand = std::move(zustand);
    m_editMode = EditMode::Bearbeiten;
}

void Recordset::Update()
{
    if (!m_zustand)
        RuntimeError::ausloesen(KeinEditModus);
    if (m_editMode == EditMode::Neu)
        neueZeileSpeichern();
    else
        geaenderteZeileSpeichern();
    // Reached only when the row was written; on an error the pending values stay.
    bearbeitungVerwerfen();
}

void Recordset::neueZeileSpeichern()
{
    const QStringList &namen = m_zeilen->namen();
    QStringList spalten;
    QStringList platzhalter;
    QVariantList params;
    for (int i = 0; i < m_zeilen->spaltenAnzahl(); ++i) {
        if (!m_zustand->gesetzt[size_t(i)] || !m_zeilen->tabellenSpalte[size_t(i)])
            continue;
        spalten.append(namen[i]);
        platzhalter.append(QStringLiteral("?"));
        params.append(m_zustand->werte[i]);
    }
    QString sql = QStringLiteral("INSERT INTO ") + m_tabelleSql;
    if (spalten.isEmpty()) {
        sql += QStringLiteral(" DEFAULT VALUES");
    } else {
        sql += QStringLiteral(" (") + spalten.join(QStringLiteral(", "))
            + QStringLiteral(") VALUES (") + platzhalter.join(QStringLiteral(", "))
            + QLatin1Char(')');
    }
    m_db->execute(sql, params);

    // Read back so that defaults and the engine's types are what the row holds.
    const QVariantList schluessel = schluesselAus(m_zustand->werte);
    bool schluesselVollstaendig = true;
    for (const QVariant &s : schluessel)
        schluesselVollstaendig = schluesselVollstaendig && !s.isNull();
    QVariantList gespeichert;
    if (schluesselVollstaendig) {
        try {
            gespeichert = zeileLesen(schluessel);
        } catch (const RuntimeError &) { }
    }
    // A key the engine assigned itself cannot be found again; keep what was assigned.
    m_zeilen->anhaengen(gespeichert.isEmpty() ? m_zustand->werte : gespeichert);
    abgleichen();
}

QString Recordset::zuweisungenDer(const QStringList &geaendert, QVariantList &params) const
{
    // "Spalte = ?" for each changed column of the table, its new value appended to params.
    const QStringList &namen = m_zeilen->namen();
    QStringList zuweisungen;
    for (int i = 0; i < m_zeilen->spaltenAnzahl(); ++i) {
        if (!geaendert.contains(namen[i]) || !m_zeilen->tabellenSpalte[size_t(i)])
            continue;
        zuweisungen.append(namen[i] + QStringLiteral(" = ?"));
        params.append(m_zustand->werte[i]);
    }
    return zuweisungen.join(QStringLiteral(", "));
}

void Recordset::geaenderteZeileSpeichern()
{
    const QStringList geaendert = geaenderteFelder();
    if (geaendert.isEmpty())
        return;
    QVariantList params;
    const QString zuweisungen = zuweisungenDer(geaendert, params);
    if (zuweisungen.isEmpty())
        return;
    const QString sql = QStringLiteral("UPDATE ") + m_tabelleSql + QStringLiteral(" SET ")
        + zuweisungen + QStringLiteral(" WHERE ") + zeilenBedingung(m_zustand->gelesen, params);
    m_fremdGeaendert.clear();
    if (m_db->execute(sql, params) == 0 && !zusammenfuehren(geaendert))
        RuntimeError::ausloesen(fehlernummer::DatensatzGeaendert);

    // The row is written: a failed read-back must not report the save as failed (a retry
    // would write it twice), the values written stand in for it.
    QVariantList gespeichert;
    try {
        gespeichert = zeileLesen(schluesselAus(m_zustand->werte));
    } catch (const RuntimeError &) { }
    if (gespeichert.isEmpty())
        gespeichert = m_zustand->werte;
    const int index = m_zeilen->finden(m_zustand->id);
    if (index >= 0)
        m_zeilen->ersetzen(index, gespeichert);
    abgleichen();
}

bool Recordset::zusammenfuehren(const QStringList &geaendert)
{
    const QStringList &namen = m_zeilen->namen();
    const QVariantList schluessel = schluesselAus(m_zustand->gelesen);
    // A third change between the read and the write is met by reading once more.
    for (int runde = 0; runde < 3; ++runde) {
        Zeilenspeicher jetzt;
        zeileLesen(schluessel, jetzt);
        if (jetzt.anzahl() == 0)
            return false;
        const QVariantList gespeichert = jetzt.zeile(0, true);
        QStringList fremd;
        for (int i = 0; i < m_zeilen->spaltenAnzahl(); ++i) {
            const QVariant &a = gespeichert[i];
            const QVariant &b = m_zustand->gelesen[i];
            if (m_zeilen->tabellenSpalte[size_t(i)] && (a.isNull() != b.isNull() || a != b))
                fremd.append(namen[i]);
        }
        const bool ueberschneidung = std::any_of(
            fremd.cbegin(), fremd.cend(), [&](const QString &f) { return geaendert.contains(f); });
        if (fremd.isEmpty() || ueberschneidung)
            return false;
        QVariantList params;
        // The values of the assignments come before those of the condition.
        const QString zuweisungen = zuweisungenDer(geaendert, params);
        const QString sql = QStringLiteral("UPDATE ") + m_tabelleSql + QStringLiteral(" SET ")
            + zuweisungen + QStringLiteral(" WHERE ") + zeilenBedingung(gespeichert, params);
        if (m_db->execute(sql, params) > 0) {
            m_fremdGeaendert = fremd;
            return true;
        }
    }
    return false;
}

bool Recordset::zeileAuffrischen()
{
    aktualisierbarPruefen();
    const int index = aktuellerIndex();
    bearbeitungVerwerfen();
    Zeilenspeicher jetzt;
    zeileLesen(schluesselAus(m_zeilen->zeile(index, true)), jetzt);
    if (jetzt.anzahl() == 0)
        return false;
    QVariantList werte = jetzt.zeile(0);
    // Computed columns of the result are no column of the table: they keep what was read.
    const QVariantList bisher = m_zeilen->zeile(index);
    for (int i = 0; i < m_zeilen->spaltenAnzahl(); ++i) {
        if (!m_zeilen->tabellenSpalte[size_t(i)])
            werte[i] = bisher[i];
    }
    if (werte != bisher || jetzt.zeile(0, true) != m_zeilen->zeile(index, true))
        m_zeilen->ersetzen(index, werte);
    abgleichen();
    return true;
}

void Recordset::alsGeloeschtVermerken()
{
    const int index = aktuellerIndex();
    bearbeitungVerwerfen();
    m_zeilen->entfernen(index);
    m_lage = Lage::Geloescht;
    abgleichen();
}

void Recordset::setAbsolutePosition(int index)
{
    if (index < 0 || index >= m_zeilen->anzahl())
        RuntimeError::ausloesen(KeinAktuellerDatensatz);
    bearbeitungVerwerfen();
    positionieren(index);
}

void Recordset::CancelUpdate()
{
    if (!m_zustand)
        RuntimeError::ausloesen(KeinEditModus);
    bearbeitungVerwerfen();
}

void Recordset::Delete()
{
    aktualisierbarPruefen();
    const int index = aktuellerIndex();
    bearbeitungVerwerfen();
    QVariantList params;
    const QString sql = QStringLiteral("DELETE FROM ") + m_tabelleSql + QStringLiteral(" WHERE ")
        + zeilenBedingung(m_zeilen->zeile(index, true), params);
    if (m_db->execute(sql, params) == 0)
        RuntimeError::ausloesen(fehlernummer::DatensatzGeaendert);
    m_zeilen->entfernen(index);
    // m_id still names the deleted row: the next move continues from its place.
    m_lage = Lage::Geloescht;
    abgleichen();
}

QVariantList Recordset::gespeicherteZeile()
{
    aktualisierbarPruefen();
    QVariantList schluessel;
    if (m_zustand && m_editMode == EditMode::Bearbeiten)
        schluessel = schluesselAus(m_zustand->gelesen);
    else if (m_zustand)
        schluessel = schluesselAus(m_zustand->werte);
    else
        schluessel = schluesselAus(m_zeilen->zeile(aktuellerIndex(), true));
    return zeileLesen(schluessel);
}

qint64 Recordset::speicherBytes() const
{
    return m_zeilen->speicherBytes();
}

} // namespace platform::storage
