#include "jahr/Csv.h"

namespace jahr {

QString csvFeld(const QString &wert)
{
    if (!wert.contains(u';') && !wert.contains(u'"') && !wert.contains(u'\n')
        && !wert.contains(u'\r'))
        return wert;
    return u'"' + QString(wert).replace(QStringLiteral("\""), QStringLiteral("\"\"")) + u'"';
}

namespace {

const QString OffeneAnfuehrung = QStringLiteral("Anführungszeichen wird nicht geschlossen");

// Windows-1252 in 0x80 to 0x9F; the five unassigned bytes keep their value, as Windows does.
constexpr char16_t Cp1252[32] = {
    0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0x008D, 0x017D, 0x008F, 0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178,
};

bool zeilenende(QChar c)
{
    return c == u'\r' || c == u'\n';
}

// Past the line break at `i` (CRLF counts as one).
qsizetype nachZeilenende(QStringView text, qsizetype i)
{
    if (i < text.size() && text.at(i) == u'\r')
        ++i;
    if (i < text.size() && text.at(i) == u'\n')
        ++i;
    return i;
}

void cp1252Anhaengen(QString &text, QByteArrayView daten)
{
    const qsizetype alt = text.size();
    text.resize(alt + daten.size());
    QChar *ziel = text.data() + alt;
    for (qsizetype i = 0; i < daten.size(); ++i) {
        const auto b = static_cast<unsigned char>(daten[i]);
        ziel[i] = b >= 0x80 && b < 0xA0 ? QChar(Cp1252[b - 0x80]) : QChar(b);
    }
}

// Bytes at the end of `daten` that may begin a character the block's end cut off.
qsizetype angefangenesZeichen(QByteArrayView daten)
{
    for (qsizetype k = 1; k <= 3 && k <= daten.size(); ++k) {
        const auto b = static_cast<unsigned char>(daten[daten.size() - k]);
        if ((b & 0xC0) == 0x80)
            continue;
        const int laenge = b >= 0xF0 ? 4 : b >= 0xE0 ? 3 : b >= 0xC0 ? 2 : 1;
        return laenge > k ? k : 0;
    }
    return 0;
}

} // namespace

CsvZerleger::Ergebnis CsvZerleger::lesen(QStringView text, bool ende, CsvSatz &satz)
{
    const qsizetype n = text.size();
    for (;;) {
        if (m_pos >= n)
            return ende ? Ergebnis::Ende : Ergebnis::MehrText;
        qsizetype i = m_pos;
        int zeile = m_zeile;
        satz = CsvSatz {};
        satz.zeile = zeile;
        QString feld;
        bool inAnfuehrung = false;
        bool hatteAnfuehrung = false;
        qsizetype anfuehrung = -1; // where the last quote opened, and its line
        int anfuehrungZeile = 0;
        QString fehler;
        for (; i < n; ++i) {
            const QChar c = text.at(i);
            if (inAnfuehrung) {
                // At the end of text not yet complete nothing is decided: the record is read
                // again from its start once more text has come.
                if (c != u'"') {
                    if (c == u'\n' || (c == u'\r' && (i + 1 >= n || text.at(i + 1) != u'\n')))
                        ++zeile;
                    feld += c;
                } else if (i + 1 < n && text.at(i + 1) == u'"') {
                    feld += u'"';
                    ++i;
                } else if (i + 1 < n && text.at(i + 1) != u';' && !zeilenende(text.at(i + 1))) {
                    // Text after the closing quote: most often the quote of a later field that
                    // ended a quote left open earlier.
                    fehler = zeile == anfuehrungZeile
                        ? QStringLiteral("Text nach dem schließenden Anführungszeichen")
                        : OffeneAnfuehrung;
                    break;
                } else {
                    inAnfuehrung = false;
                }
                continue;
            }
            if (c == u'"' && feld.isEmpty()) {
                inAnfuehrung = hatteAnfuehrung = true;
                anfuehrung = i;
                anfuehrungZeile = zeile;
            } else if (c == u';') {
                satz.felder << feld;
                feld.clear();
            } else if (zeilenende(c)) {
                break;
            } else {
                // The plain characters up to the next one that means something, at once.
                qsizetype j = i + 1;
                while (j < n && text.at(j) != u';' && text.at(j) != u'"' && !zeilenende(text.at(j)))
                    ++j;
                feld += text.sliced(i, j - i);
                i = j - 1;
            }
        }
        // The record may go on in text still to come.
        if (fehler.isEmpty() && !ende && (i >= n || (text.at(i) == u'\r' && i + 1 >= n)))
            return Ergebnis::MehrText;
        if (inAnfuehrung && fehler.isEmpty())
            fehler = OffeneAnfuehrung;
        if (!fehler.isEmpty()) {
            // The record ends with the line of its open quote; the next line is read afresh.
            qsizetype j = anfuehrung;
            while (j < n && !zeilenende(text.at(j)))
                ++j;
            if (!ende && (j >= n || (text.at(j) == u'\r' && j + 1 >= n)))
                return Ergebnis::MehrText;
            m_pos = nachZeilenende(text, j);
            m_zeile = anfuehrungZeile + 1;
            satz.felder.clear();
            satz.fehler = fehler;
            return Ergebnis::Satz;
        }
        m_pos = nachZeilenende(text, i);
        m_zeile = zeile + 1;
        // An empty line carries no account.
        if (satz.felder.isEmpty() && feld.isEmpty() && !hatteAnfuehrung)
            continue;
        satz.felder << feld;
        return Ergebnis::Satz;
    }
}

std::vector<CsvSatz> csvLesen(QStringView text)
{
    std::vector<CsvSatz> saetze;
    CsvZerleger zerleger;
    CsvSatz satz;
    while (zerleger.lesen(text, true, satz) == CsvZerleger::Ergebnis::Satz)
        saetze.push_back(std::move(satz));
    return saetze;
}

QString csvText(const QByteArray &daten)
{
    QByteArrayView rest(daten);
    if (rest.startsWith("\xEF\xBB\xBF"))
        rest = rest.sliced(3);
    QStringDecoder utf8(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
    const QString text = utf8.decode(rest);
    if (!utf8.hasError())
        return text;
    QString cp1252;
    cp1252Anhaengen(cp1252, daten);
    return cp1252;
}

CsvDatei::CsvDatei(QIODevice &geraet, qint64 blockGroesse)
    : m_geraet(geraet)
    , m_blockGroesse(std::max<qint64>(1, blockGroesse))
{
    // The whole file must be valid UTF-8 to be read as such; a character may straddle blocks.
    QByteArray rest;
    while (m_utf8) {
        const QByteArray block = m_geraet.read(m_blockGroesse);
        if (block.isEmpty())
            break;
        rest += block;
        const qsizetype offen = angefangenesZeichen(rest);
        m_utf8 = QByteArrayView(rest).first(rest.size() - offen).isValidUtf8();
        rest = rest.last(offen);
    }
    m_utf8 = m_utf8 && rest.isEmpty();
    m_geraet.seek(0);
}

void CsvDatei::nachladen()
{
    const QByteArray block = m_geraet.read(m_blockGroesse);
    if (block.isEmpty()) {
        m_ende = true;
        return;
    }
    if (m_utf8)
        m_text += m_decoder.decode(block);
    else
        cp1252Anhaengen(m_text, block);
    // The byte-order mark of UTF-8 is no text (in Windows-1252 it is, as csvText() reads it).
    if (m_anfang && m_utf8 && !m_text.isEmpty()) {
        m_anfang = false;
        if (m_text.front() == QChar(0xFEFF))
            m_text.remove(0, 1);
    }
}

bool CsvDatei::naechster(CsvSatz &satz)
{
    for (;;) {
        switch (m_zerleger.lesen(m_text, m_ende, satz)) {
        case CsvZerleger::Ergebnis::Satz:
            return true;
        case CsvZerleger::Ergebnis::Ende:
            return false;
        case CsvZerleger::Ergebnis::MehrText:
            // What is read is dropped before more comes.
            m_text.remove(0, m_zerleger.position());
            m_zerleger.vorne(m_zerleger.position());
            nachladen();
            break;
        }
    }
}

} // namespace jahr
