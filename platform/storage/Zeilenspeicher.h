#pragma once

#include "Database.h"

#include <QByteArrayView>
#include <QHash>
#include <QString>
#include <QStringList>
#include <QVariant>
#include <QVariantList>
#include <cstdint>
#include <cstdlib>
#include <functional>
#include <vector>

namespace platform::storage {

// One value of a packed row, viewed in place (texts point into the arena).
struct RohWert
{
    Wertart art = Wertart::Null;
    qint64 ganzzahl = 0;
    double kommazahl = 0;
    QByteArrayView text;
};

// The rows of one query, packed into one byte arena: per value a tag byte, then a zigzag
// varint (integers), 8 bytes (doubles) or a varint length and UTF-8 bytes (texts and dates,
// dates as their text). A QVariantList per row would cost several times the memory.
// Rows keep a stable id (the bookmark) while others are deleted or appended; ids only grow,
// so the row vector stays sorted by id. A replaced row is packed anew at the arena's end.
class Zeilenspeicher
{
public:
    explicit Zeilenspeicher(qint64 ersteId = 1);

    // Takes the columns and every remaining row of the cursor; `jeTausend` hears the number of
    // rows after every thousand.
    void laden(Cursor &cursor, const std::function<void(qint64)> &jeTausend = {});
    // The columns of a store filled by anhaengen() alone.
    void spaltenFestlegen(const QStringList &namen);

    const QStringList &namen() const { return m_namen; }
    int spaltenAnzahl() const { return int(m_namen.size()); }
    // Index of a column, ASCII case ignored; -1 when unknown.
    int spalte(const QString &name) const;

    int anzahl() const { return int(m_zeilen.size()); }
    qint64 id(int zeile) const { return m_zeilen[size_t(zeile)].id; }
    // Offset of the row's packing; changes when the row is replaced.
    quint32 offset(int zeile) const { return m_zeilen[size_t(zeile)].offset; }
    // First row whose id is not below `id` (anzahl() when none).
    int untereGrenze(qint64 id) const;
    // Row of `id`, or -1.
    int finden(qint64 id) const;
    qint64 naechsteId() const { return m_naechsteId; }

    // Values of a row: null, qlonglong, double, QString, QDate. With `alsGelesen` a date stays
    // the text the engine delivered, so that it binds back unchanged.
    QVariantList zeile(int zeile, bool alsGelesen = false) const;
    RohWert feld(int zeile, int spalte) const;
    // Every value of a row in one walk over its packing (spaltenAnzahl() places in `ziel`):
    // reading many fields of a row through feld() walks from its start for each.
    void felder(int zeile, RohWert *ziel) const;
    QVariant wert(int zeile, int spalte) const;

    void anhaengen(const QVariantList &werte);
    void ersetzen(int zeile, const QVariantList &werte);
    void entfernen(int zeile);

    // The first row from `ab` on whose column `spalte` holds exactly the text `text`, through
    // a hash index of the column (built on first use, kept up to date by the changes above).
    // -1 when no row does; -2 when the column holds other values than texts and must be
    // searched row by row.
    int textSuchen(int spalte, QByteArrayView text, int ab);

    // Grows with every change of the rows; a record set compares it to its own copy to know
    // when its position must be looked up again.
    quint64 stand() const { return m_stand; }

    qint64 speicherBytes() const;

    // What the record set knows about its table, filled when the rows are loaded (shared by
    // clones): which result columns are table columns, and the result columns of the key
    // (empty when the rows cannot be written back).
    bool tabelleBekannt = false;
    std::vector<bool> tabellenSpalte;
    std::vector<int> schluessel;

private:
    // The packed rows in blocks that grow from 4 KB to 1 MB: growing never copies what is
    // packed, and memory is neither zeroed nor touched before use. A row lies in one block; its
    // position is the block's number (12 bits) and the row's offset in it (20 bits). A row
    // larger than a block gets a block of its own.
    class Arena
    {
    public:
        Arena() = default;
        ~Arena();
        Arena(const Arena &) = delete;
        Arena &operator=(const Arena &) = delete;

        // Room for `n` more bytes of the row being packed; valid until the next call.
        uint8_t *frei(size_t n)
        {
            if (m_belegt + n > m_groesse)
                neuerBlock(n);
            return m_block + m_belegt;
        }
        // Ends the bytes written since frei() at `ende`.
        void fertig(const uint8_t *ende) { m_belegt = size_t(ende - m_block); }
        // The position of the row packed since the last call; the next row starts.
        quint32 zeileBeenden();
        const uint8_t *zeile(quint32 position) const
        {
            return m_bloecke[position >> OffsetBits].daten + (position & OffsetMaske);
        }
        // Gives the unused end of the last block back.
        void schrumpfen();
        size_t capacity() const { return m_kapazitaet; }

    private:
        static constexpr int OffsetBits = 20;
        static constexpr quint32 OffsetMaske = (1u << OffsetBits) - 1;
        struct Block
        {
            uint8_t *daten;
            size_t groesse;
            bool abgebildet; // mapped, not from the heap
        };
        static Block blockHolen(size_t groesse);
        static void blockFreigeben(const Block &b);
        void neuerBlock(size_t n);

        std::vector<Block> m_bloecke;
        uint8_t *m_block = nullptr; // the last block
        size_t m_groesse = 0;
        size_t m_belegt = 0;
        size_t m_zeilenAnfang = 0; // of the row being packed, in the last block
        size_t m_kapazitaet = 0;
    };

    struct Zeile
    {
        qint64 id;
        quint32 offset;
    };

    // Rows by the hash of one text column's value, open addressing: a place holds the row's id
    // counted from the store's first (1 on), 0 when free, Entfernt when its row left.
    struct Textindex
    {
        std::vector<quint32> plaetze;
        size_t belegt = 0; // ids and removed marks
    };

    quint32 packen(const QVariantList &werte);
    const uint8_t *ueberspringen(const uint8_t *p) const;
    // False when the value is neither text nor null: no index for such a column.
    bool indexEintragen(Textindex &index, int spalte, int zeile);
    void indexAustragen(Textindex &index, int spalte, int zeile);
    void indizesAnpassen(int zeile, bool eintragen);

    QStringList m_namen;
    QHash<QString, int> m_index;
    Arena m_daten;
    std::vector<Zeile> m_zeilen;
    QHash<int, Textindex> m_indizes;
    qint64 m_ersteId;
    qint64 m_naechsteId;
    quint64 m_stand = 0;
};

// Lower-cases ASCII letters only: the engines match names so, umlauts are left alone.
QString asciiKlein(const QString &name);

} // namespace platform::storage
