#include "Zeilenspeicher.h"

#include <QDate>
#include <algorithm>
#include <cstring>
#include <limits>
#include <new>
#include <stdexcept>

#ifdef Q_OS_LINUX
#include <sys/mman.h>
#endif

namespace platform::storage {

namespace {

// Tags below 8 name the kind of the value that follows; 8 to 127 are small integers themselves
// (-8 to 111: most numbers of an account), 128 to 255 texts of up to 127 bytes with their length
// in the tag. So most values of a row take one byte beside their text.
enum Tag : uint8_t {
    TagNull = 0,
    TagGanzzahl = 1,
    TagKommazahl = 2,
    TagText = 3,
    TagDatum = 4,
    TagKlein = 8,
    TagKurztext = 128,
};
constexpr qint64 KleinMin = -8;
constexpr qint64 KleinMax = KleinMin + (TagKurztext - TagKlein) - 1;

// Largest packing of one value without its text bytes: tag, 10-byte varint.
constexpr size_t MaxKopf = 11;

inline uint8_t *varintSchreiben(uint8_t *p, quint64 v)
{
    while (v >= 0x80) {
        *p++ = uint8_t(v) | 0x80;
        v >>= 7;
    }
    *p++ = uint8_t(v);
    return p;
}

inline const uint8_t *varintLesen(const uint8_t *p, quint64 &v)
{
    quint64 ergebnis = 0;
    int schub = 0;
    while (*p & 0x80) {
        ergebnis |= quint64(*p++ & 0x7f) << schub;
        schub += 7;
    }
    v = ergebnis | (quint64(*p++) << schub);
    return p;
}

inline quint64 zickzack(qint64 v)
{
    return (quint64(v) << 1) ^ quint64(v >> 63);
}

inline qint64 zurueckZickzack(quint64 v)
{
    return qint64(v >> 1) ^ -qint64(v & 1);
}

// Packs an integer at `p` (room for MaxKopf bytes); returns the end.
inline uint8_t *ganzzahlPacken(uint8_t *p, qint64 v)
{
    if (v >= KleinMin && v <= KleinMax) {
        *p = uint8_t(TagKlein + (v - KleinMin));
        return p + 1;
    }
    *p = TagGanzzahl;
    return varintSchreiben(p + 1, zickzack(v));
}

// Packs a text or date at `p` (room for MaxKopf bytes and the text); returns the end.
inline uint8_t *textPacken(uint8_t *p, bool datum, QByteArrayView text)
{
    const size_t laenge = size_t(text.size());
    if (!datum && laenge < 128) {
        *p++ = uint8_t(TagKurztext | laenge);
    } else {
        *p = datum ? TagDatum : TagText;
        p = varintSchreiben(p + 1, laenge);
    }
    if (laenge)
        std::memcpy(p, text.data(), laenge);
    return p + laenge;
}

// Reads the value packed at `p` into `w`; returns the position after it.
inline const uint8_t *wertLesen(const uint8_t *p, RohWert &w)
{
    const uint8_t tag = *p++;
    if (tag >= TagKurztext) {
        const size_t laenge = tag & 0x7f;
        w.art = Wertart::Text;
        w.text = QByteArrayView(reinterpret_cast<const char *>(p), qsizetype(laenge));
        return p + laenge;
    }
    if (tag >= TagKlein) {
        w.art = Wertart::Ganzzahl;
        w.ganzzahl = qint64(tag - TagKlein) + KleinMin;
        return p;
    }
    quint64 v = 0;
    switch (tag) {
    case TagGanzzahl:
        p = varintLesen(p, v);
        w.art = Wertart::Ganzzahl;
        w.ganzzahl = zurueckZickzack(v);
        return p;
    case TagKommazahl:
        w.art = Wertart::Kommazahl;
        std::memcpy(&w.kommazahl, p, 8);
        return p + 8;
    case TagText:
    case TagDatum:
        w.art = tag == TagText ? Wertart::Text : Wertart::Datum;
        p = varintLesen(p, v);
        w.text = QByteArrayView(reinterpret_cast<const char *>(p), qsizetype(v));
        return p + v;
    default:
        w.art = Wertart::Null;
        return p;
    }
}

QVariant alsVariant(const RohWert &w, bool alsGelesen)
{
    switch (w.art) {
    case Wertart::Null:
        return {};
    case Wertart::Ganzzahl:
        return QVariant::fromValue<qlonglong>(w.ganzzahl);
    case Wertart::Kommazahl:
        return w.kommazahl;
    case Wertart::Text:
        return QString::fromUtf8(w.text);
    case Wertart::Datum: {
        const QString text = QString::fromUtf8(w.text);
        if (alsGelesen)
            return text;
        // As the cursor delivers it: a time part is cut off, anything unreadable stays text.
        const QDate datum = QDate::fromString(text.left(10), Qt::ISODate);
        return datum.isValid() ? QVariant(datum) : QVariant(text);
    }
    }
    return {};
}

} // namespace

namespace {

#ifdef Q_OS_LINUX
// Blocks from this size on are mapped with all their pages at once: written page by page, a
// large year's rows cost a page fault every 4 KB, a quarter of the whole load on a virtual
// machine.
constexpr size_t AbbildenAb = 64 * 1024;
constexpr size_t Seite = 4096;
#endif

} // namespace

Zeilenspeicher::Arena::Block Zeilenspeicher::Arena::blockHolen(size_t groesse)
{
#ifdef Q_OS_LINUX
    if (groesse >= AbbildenAb) {
        const size_t laenge = (groesse + Seite - 1) / Seite * Seite;
        void *p = mmap(nullptr, laenge, PROT_READ | PROT_WRITE,
                       MAP_PRIVATE | MAP_ANONYMOUS | MAP_POPULATE, -1, 0);
        if (p != MAP_FAILED)
            return Block {static_cast<uint8_t *>(p), laenge, true};
    }
#endif
    auto *p = static_cast<uint8_t *>(std::malloc(groesse));
    if (!p)
        throw std::bad_alloc();
    return Block {p, groesse, false};
}

void Zeilenspeicher::Arena::blockFreigeben(const Block &b)
{
#ifdef Q_OS_LINUX
    if (b.abgebildet) {
        munmap(b.daten, b.groesse);
        return;
    }
#endif
    std::free(b.daten);
}

Zeilenspeicher::Arena::~Arena()
{
    for (const Block &b : m_bloecke)
        blockFreigeben(b);
}

void Zeilenspeicher::Arena::neuerBlock(size_t n)
{
    constexpr size_t ErsterBlock = 4096;
    constexpr size_t GroessterBlock = size_t(1) << OffsetBits;
    const size_t teil = m_belegt - m_zeilenAnfang; // the row packed so far moves along
    size_t groesse = m_bloecke.empty() ? ErsterBlock : std::min(GroessterBlock, m_groesse * 2);
    // A row outgrowing the largest block: room for its further values, so that it moves once.
    if (teil + n > groesse)
        groesse = teil + n + (teil + n) / 4;
    // A block holding nothing but the row that outgrew it is replaced.
    const bool ersetzen = !m_bloecke.empty() && m_zeilenAnfang == 0;
    if (!ersetzen && m_bloecke.size() >= (size_t(1) << (32 - OffsetBits)))
        throw std::length_error("Zeilenspeicher: mehr als 4 GB Zeilendaten");
    const Block neu = blockHolen(groesse);
    if (teil)
        std::memcpy(neu.daten, m_block + m_zeilenAnfang, teil);
    if (ersetzen) {
        m_kapazitaet -= m_bloecke.back().groesse;
        blockFreigeben(m_bloecke.back());
        m_bloecke.back() = neu;
    } else {
        m_bloecke.push_back(neu);
    }
    m_kapazitaet += neu.groesse;
    m_block = neu.daten;
    m_groesse = neu.groesse;
    m_belegt = teil;
    m_zeilenAnfang = 0;
}

quint32 Zeilenspeicher::Arena::zeileBeenden()
{
    const quint32 position = quint32(m_bloecke.size() - 1) << OffsetBits | quint32(m_zeilenAnfang);
    m_zeilenAnfang = m_belegt;
    // Offsets of row starts must fit their bits: after a row larger than a block, a new one.
    if (m_belegt > OffsetMaske) {
        schrumpfen();
        m_groesse = m_belegt;
    }
    return position;
}

void Zeilenspeicher::Arena::schrumpfen()
{
    if (m_bloecke.empty() || m_belegt == m_groesse || m_belegt == 0)
        return;
    Block &b = m_bloecke.back();
#ifdef Q_OS_LINUX
    if (b.abgebildet) {
        // The whole pages past the end go back; the block keeps its place.
        const size_t behalten = (m_belegt + Seite - 1) / Seite * Seite;
        if (behalten < b.groesse && munmap(b.daten + behalten, b.groesse - behalten) == 0) {
            m_kapazitaet -= b.groesse - behalten;
            b.groesse = behalten;
        }
        m_groesse = m_belegt;
        return;
    }
#endif
    if (auto *p = static_cast<uint8_t *>(std::realloc(m_block, m_belegt))) {
        m_kapazitaet -= m_groesse - m_belegt;
        m_block = p;
        m_groesse = m_belegt;
        b = Block {p, m_belegt, false};
    }
}

QString asciiKlein(const QString &name)
{
    QString s = name;
    for (QChar &c : s) {
        if (c >= QLatin1Char('A') && c <= QLatin1Char('Z'))
            c = QChar(c.unicode() + 32);
    }
    return s;
}

Zeilenspeicher::Zeilenspeicher(qint64 ersteId)
    : m_ersteId(ersteId)
    , m_naechsteId(ersteId)
{ }

void Zeilenspeicher::spaltenFestlegen(const QStringList &namen)
{
    m_namen = namen;
    m_index.clear();
    // With a name twice in the result the first one wins, as field lookups expect.
    for (qsizetype i = m_namen.size() - 1; i >= 0; --i)
        m_index.insert(asciiKlein(m_namen[i]), int(i));
}

void Zeilenspeicher::laden(Cursor &cursor, const std::function<void(qint64)> &jeTausend)
{
    const int n = cursor.spaltenAnzahl();
    QStringList namen;
    for (int i = 0; i < n; ++i)
        namen.append(cursor.spaltenName(i));
    spaltenFestlegen(namen);

    while (cursor.next()) {
        for (int i = 0; i < n; ++i) {
            const Wertart art = cursor.art(i);
            switch (art) {
            case Wertart::Null: {
                uint8_t *p = m_daten.frei(1);
                *p = TagNull;
                m_daten.fertig(p + 1);
            } break;
            case Wertart::Ganzzahl: {
                uint8_t *p = m_daten.frei(MaxKopf);
                m_daten.fertig(ganzzahlPacken(p, cursor.ganzzahl(i)));
                break;
            }
            case Wertart::Kommazahl: {
                uint8_t *p = m_daten.frei(9);
                *p = TagKommazahl;
                const double d = cursor.kommazahl(i);
                std::memcpy(p + 1, &d, 8);
                m_daten.fertig(p + 9);
                break;
            }
            case Wertart::Text:
            case Wertart::Datum: {
                const QByteArrayView text = cursor.utf8(i);
                uint8_t *p = m_daten.frei(MaxKopf + size_t(text.size()));
                m_daten.fertig(textPacken(p, art == Wertart::Datum, text));
                break;
            }
            }
        }
        m_zeilen.push_back(Zeile {m_naechsteId++, m_daten.zeileBeenden()});
        if (jeTausend && m_zeilen.size() % 1000 == 0)
            jeTausend(qint64(m_zeilen.size()));
    }
    m_daten.schrumpfen();
    m_zeilen.shrink_to_fit();
    ++m_stand;
}

int Zeilenspeicher::spalte(const QString &name) const
{
    return m_index.value(asciiKlein(name), -1);
}

int Zeilenspeicher::untereGrenze(qint64 id) const
{
    const auto it = std::lower_bound(m_zeilen.begin(), m_zeilen.end(), id,
                                     [](const Zeile &z, qint64 w) { return z.id < w; });
    return int(it - m_zeilen.begin());
}

int Zeilenspeicher::finden(qint64 id) const
{
    const int i = untereGrenze(id);
    return i < anzahl() && m_zeilen[size_t(i)].id == id ? i : -1;
}

const uint8_t *Zeilenspeicher::ueberspringen(const uint8_t *p) const
{
    RohWert w;
    return wertLesen(p, w);
}

RohWert Zeilenspeicher::feld(int zeile, int spalte) const
{
    const uint8_t *p = m_daten.zeile(m_zeilen[size_t(zeile)].offset);
    for (int i = 0; i < spalte; ++i)
        p = ueberspringen(p);
    RohWert w;
    wertLesen(p, w);
    return w;
}

QVariant Zeilenspeicher::wert(int zeile, int spalte) const
{
    return alsVariant(feld(zeile, spalte), false);
}

void Zeilenspeicher::felder(int zeile, RohWert *ziel) const
{
    const int n = spaltenAnzahl();
    const uint8_t *p = m_daten.zeile(m_zeilen[size_t(zeile)].offset);
    for (int i = 0; i < n; ++i) {
        ziel[i] = RohWert {};
        p = wertLesen(p, ziel[i]);
    }
}

QVariantList Zeilenspeicher::zeile(int zeile, bool alsGelesen) const
{
    const int n = spaltenAnzahl();
    // Walks the packing once instead of skipping from the start for every field.
    RohWert roh[64];
    std::vector<RohWert> gross;
    RohWert *w = roh;
    if (n > 64) {
        gross.resize(size_t(n));
        w = gross.data();
    }
    felder(zeile, w);
    QVariantList werte;
    werte.reserve(n);
    for (int i = 0; i < n; ++i)
        werte.append(alsVariant(w[i], alsGelesen));
    return werte;
}

quint32 Zeilenspeicher::packen(const QVariantList &werte)
{
    for (int i = 0; i < spaltenAnzahl(); ++i) {
        const QVariant wert = i < werte.size() ? werte[i] : QVariant();
        if (wert.isNull()) {
            {
                uint8_t *p = m_daten.frei(1);
                *p = TagNull;
                m_daten.fertig(p + 1);
            }
            continue;
        }
        switch (wert.typeId()) {
        case QMetaType::Bool:
        case QMetaType::Int:
        case QMetaType::UInt:
        case QMetaType::Long:
        case QMetaType::LongLong:
        case QMetaType::ULong:
        case QMetaType::ULongLong:
        case QMetaType::Short:
        case QMetaType::UShort:
        case QMetaType::Char:
        case QMetaType::SChar:
        case QMetaType::UChar: {
            // True is -1 as everywhere in the stored data.
            const qint64 zahl
                = wert.typeId() == QMetaType::Bool ? (wert.toBool() ? -1 : 0) : wert.toLongLong();
            uint8_t *p = m_daten.frei(MaxKopf);
            m_daten.fertig(ganzzahlPacken(p, zahl));
            break;
        }
        case QMetaType::Double:
        case QMetaType::Float: {
            uint8_t *p = m_daten.frei(9);
            *p = TagKommazahl;
            const double d = wert.toDouble();
            std::memcpy(p + 1, &d, 8);
            m_daten.fertig(p + 9);
            break;
        }
        default: {
            const bool datum = wert.typeId() == QMetaType::QDate;
            const QByteArray text
                = datum ? wert.toDate().toString(Qt::ISODate).toUtf8() : wert.toString().toUtf8();
            uint8_t *p = m_daten.frei(MaxKopf + size_t(text.size()));
            m_daten.fertig(textPacken(p, datum, text));
            break;
        }
        }
    }
    return m_daten.zeileBeenden();
}

void Zeilenspeicher::anhaengen(const QVariantList &werte)
{
    const quint32 offset = packen(werte);
    m_zeilen.push_back(Zeile {m_naechsteId++, offset});
    indizesAnpassen(anzahl() - 1, true);
    ++m_stand;
}

void Zeilenspeicher::ersetzen(int zeile, const QVariantList &werte)
{
    indizesAnpassen(zeile, false);
    const quint32 offset = packen(werte);
    m_zeilen[size_t(zeile)].offset = offset;
    indizesAnpassen(zeile, true);
    ++m_stand;
}

void Zeilenspeicher::entfernen(int zeile)
{
    indizesAnpassen(zeile, false);
    m_zeilen.erase(m_zeilen.begin() + zeile);
    ++m_stand;
}

namespace {

constexpr quint32 Entfernt = 0xffffffff;

size_t streuwert(QByteArrayView text)
{
    return qHash(text, 0x5bd1e995);
}

} // namespace

bool Zeilenspeicher::indexEintragen(Textindex &index, int spalte, int zeile)
{
    const RohWert w = feld(zeile, spalte);
    if (w.art == Wertart::Null)
        return true;
    if (w.art != Wertart::Text && w.art != Wertart::Datum)
        return false;
    // At most half the places taken, so that the chains stay short.
    if ((index.belegt + 1) * 2 > index.plaetze.size()) {
        std::vector<quint32> alt = std::move(index.plaetze);
        size_t groesse = 1024;
        while (groesse < size_t(anzahl()) * 2 + 1024)
            groesse *= 2;
        index.plaetze.assign(groesse, 0);
        index.belegt = 0;
        for (quint32 platz : alt) {
            if (platz != 0 && platz != Entfernt) {
                const int z = finden(m_ersteId + platz - 1);
                if (z >= 0 && z != zeile)
                    indexEintragen(index, spalte, z);
            }
        }
    }
    const size_t maske = index.plaetze.size() - 1;
    for (size_t i = streuwert(w.text) & maske;; i = (i + 1) & maske) {
        if (index.plaetze[i] == 0) {
            index.plaetze[i] = quint32(id(zeile) - m_ersteId + 1);
            ++index.belegt;
            return true;
        }
    }
}

void Zeilenspeicher::indexAustragen(Textindex &index, int spalte, int zeile)
{
    const RohWert w = feld(zeile, spalte);
    if (w.art != Wertart::Text && w.art != Wertart::Datum)
        return;
    const size_t maske = index.plaetze.size() - 1;
    const quint32 gesucht = quint32(id(zeile) - m_ersteId + 1);
    for (size_t i = streuwert(w.text) & maske; index.plaetze[i] != 0; i = (i + 1) & maske) {
        if (index.plaetze[i] == gesucht) {
            index.plaetze[i] = Entfernt;
            return;
        }
    }
}

void Zeilenspeicher::indizesAnpassen(int zeile, bool eintragen)
{
    for (auto it = m_indizes.begin(); it != m_indizes.end();) {
        if (!eintragen) {
            indexAustragen(*it, it.key(), zeile);
            ++it;
        } else if (indexEintragen(*it, it.key(), zeile)) {
            ++it;
        } else {
            it = m_indizes.erase(it);
        }
    }
}

int Zeilenspeicher::textSuchen(int spalte, QByteArrayView text, int ab)
{
    auto it = m_indizes.find(spalte);
    if (it == m_indizes.end()) {
        Textindex index;
        for (int z = 0; z < anzahl(); ++z) {
            if (!indexEintragen(index, spalte, z))
                return -2;
        }
        it = m_indizes.insert(spalte, std::move(index));
    }
    const Textindex &index = *it;
    if (index.plaetze.empty())
        return -1;
    // Rows with equal values share one chain; the first of them from `ab` on wins.
    int erste = -1;
    const size_t maske = index.plaetze.size() - 1;
    for (size_t i = streuwert(text) & maske; index.plaetze[i] != 0; i = (i + 1) & maske) {
        const quint32 kandidat = index.plaetze[i];
        if (kandidat == Entfernt)
            continue;
        const int z = finden(m_ersteId + kandidat - 1);
        if (z < ab || (erste >= 0 && z >= erste))
            continue;
        if (feld(z, spalte).text == text)
            erste = z;
    }
    return erste;
}

qint64 Zeilenspeicher::speicherBytes() const
{
    qint64 namen = 0;
    for (const QString &n : m_namen)
        namen += n.size() * 2 + 32;
    return qint64(m_daten.capacity()) + qint64(m_zeilen.capacity() * sizeof(Zeile)) + namen
        + qint64(m_index.capacity()) * 32;
}

} // namespace platform::storage
