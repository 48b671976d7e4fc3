#pragma once

#include <QIODevice>
#include <QString>
#include <QStringDecoder>
#include <QStringList>
#include <QStringView>
#include <vector>

// CSV as Excel on Windows writes and reads it.
namespace jahr {

// One record of a CSV file: its fields, the line it starts on (1 = the first), and what is
// wrong with it (empty when it could be read).
struct CsvSatz
{
    QStringList felder;
    int zeile = 0;
    QString fehler;
};

// Splits CSV text into records, as Excel writes them: ';' between fields, CRLF, LF or CR between
// lines, a field in quotes may hold ';', line breaks and doubled quotes. Empty lines carry no
// record. A quote that is not closed (or closed with text after it) makes its record faulty; the
// record then ends with the line the quote opened on, and reading goes on with the next line, so
// that one stray quote does not hide the lines after it.
std::vector<CsvSatz> csvLesen(QStringView text);
// A value as a field of a record: in quotes when it holds ';', a quote or a line break.
QString csvFeld(const QString &wert);
// The text of a CSV file: UTF-8 (with or without byte-order mark) when the bytes are valid
// UTF-8, else Windows-1252, as Excel saves "CSV (Trennzeichen-getrennt)".
QString csvText(const QByteArray &daten);

// Splits records off CSV text that may arrive in pieces.
class CsvZerleger
{
public:
    enum class Ergebnis { Satz, MehrText, Ende };
    // The next record from the current position of `text`. With `ende` false, MehrText when the
    // text so far cannot decide the record; nothing is consumed then. Empty lines are skipped.
    Ergebnis lesen(QStringView text, bool ende, CsvSatz &satz);
    qsizetype position() const { return m_pos; }
    // After the caller dropped the first `n` characters of the text.
    void vorne(qsizetype n) { m_pos -= n; }

private:
    qsizetype m_pos = 0;
    int m_zeile = 1;
};

// The records of a CSV file read block by block, so that a file of any size needs little
// memory: UTF-8 when the whole file is valid UTF-8 (a byte-order mark is dropped), else
// Windows-1252, as csvText() decides.
class CsvDatei
{
public:
    // The device must be open and at its start; it is read twice (the encoding first).
    explicit CsvDatei(QIODevice &geraet, qint64 blockGroesse = 1 << 20);
    // The next record; false at the end of the file.
    bool naechster(CsvSatz &satz);
    // Bytes read so far and the size of the file, for progress.
    qint64 gelesen() const { return m_geraet.pos(); }
    qint64 groesse() const { return m_geraet.size(); }

private:
    void nachladen();

    QIODevice &m_geraet;
    qint64 m_blockGroesse;
    bool m_utf8 = true;
    bool m_ende = false;
    bool m_anfang = true;
    QStringDecoder m_decoder {QStringDecoder::Utf8};
    QString m_text;
    CsvZerleger m_zerleger;
};

} // namespace jahr
