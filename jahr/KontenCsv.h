#pragma once

#include "accounts/regeln/Kontenzeilen.h"

#include <QString>
#include <vector>

// The accounts of a booking year as a CSV file: semicolon-separated UTF-8 with a byte-order mark
// (so that Excel shows the umlauts), a header with the field names, one account per line, CRLF.
// The year is not in the file; it is named by the call.
namespace jahr {

using kontenregeln::Database;
using kontenregeln::Fortschritt;
using kontenregeln::Kontozeile;

struct ExportErgebnis
{
    qint64 konten = 0;
    QString fehler; // German, empty when all went well
};

ExportErgebnis exportieren(Database &db, int jahr, const QString &datei,
                           const Fortschritt &fortschritt = {});

struct ImportFehler
{
    int zeile = 0; // line of the file (1 = the header, 0 = the file as a whole)
    QString feld; // column of the file, empty for the whole line
    QString meldung;
};

struct ImportErgebnis
{
    qint64 konten = 0; // data lines read
    std::vector<ImportFehler> fehler;
    bool geschrieben = false;
};

// Checks every line (number rules, value ranges and lengths, code lists, references to
// accounts, positions and keys, the record checks of the screen); writes all accounts in one
// transaction only when no line failed and `probelauf` is false.
ImportErgebnis importieren(Database &db, int jahr, const QString &datei, bool probelauf,
                           const Fortschritt &fortschritt = {});

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

} // namespace jahr
