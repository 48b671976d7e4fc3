#pragma once

#include "accounts/regeln/Kontenzeilen.h"
#include "jahr/Csv.h"

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

} // namespace jahr
