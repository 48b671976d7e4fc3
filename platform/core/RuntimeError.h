#pragma once

#include <QByteArray>
#include <QString>

#include <exception>

namespace platform {

// Error numbers the code relies on; they keep the values of the original runtime so that
// handlers comparing numbers (3078 in the position lists, 429 in the error report) work as before.
namespace fehlernummer {
constexpr int IndexAusserhalb = 9;          // subscript out of range
constexpr int Typenkonflikt = 13;           // type mismatch
constexpr int ObjektvariableNichtFestgelegt = 91;
constexpr int ObjektNichtErstellbar = 429;  // component cannot be created
constexpr int KeinAktuellerDatensatz = 3021;
constexpr int DoppelterSchluessel = 3022;
constexpr int DateiNichtGefunden = 3024;
constexpr int UngueltigesKennwort = 3031;
// Files that are no database of this program, or not whole, or out of reach.
constexpr int DatenbankBeschaedigt = 3049;
constexpr int KeinZugriff = 3051;
constexpr int KeineDatenbank = 3343;
constexpr int NichtVerschluesselt = 3344;
constexpr int TabelleNichtGefunden = 3078;
constexpr int DatensatzGeaendert = 3197;   // row changed or deleted by another user
constexpr int DatenbankNichtErreichbar = 3151;
constexpr int FeldNichtGefunden = 3265;
constexpr int NichtAktualisierbar = 3027;
constexpr int KeinEditModus = 3020;
// Faults of the database and its server, each with a German text that says what to do.
constexpr int DatentraegerVoll = 3026;
constexpr int AnmeldungAbgelehnt = 3029;
constexpr int KeineBerechtigung = 3033;
constexpr int DatentraegerFehler = 3043;     // disk or network error
constexpr int AndererSchreibt = 3218;        // another workstation holds the write lock
constexpr int ServerUnbekannt = 3152;
constexpr int ServerAntwortetNicht = 3153;
constexpr int ZertifikatAbgelehnt = 3154;    // the encrypted connection was refused
constexpr int AdresseUngueltig = 3155;
} // namespace fehlernummer

// The runtime error of the original's error object: a number and a German description.
// Thrown by the platform layer; caught by procedure traps and by the top-level handler.
class RuntimeError : public std::exception
{
public:
    RuntimeError(int nummer, QString beschreibung);

    int nummer() const { return m_nummer; }
    const QString &beschreibung() const { return m_beschreibung; }
    const char *what() const noexcept override { return m_what.constData(); }

    // The German standard text for the numbers above; empty for unknown numbers.
    static QString standardText(int nummer);

    // Throws the error with its standard text.
    [[noreturn]] static void ausloesen(int nummer);

private:
    int m_nummer;
    QString m_beschreibung;
    QByteArray m_what;
};

} // namespace platform
