#pragma once

#include <QString>
#include <QStringList>
#include <QVariantList>
#include <optional>

// The host program's command line, turned into what the component needs.
struct Aufruf
{
    enum class Art {
        Kontenstamm,
        Kreditoren,
        Init,
        Demo,
        Hilfe,
        Jahreswechsel,
        Pruefen,
        Export,
        Import,
        Sql,
        Protokoll
    };

    Art art = Art::Kontenstamm;
    QString datenbank; // empty: the demo database in the user's data directory
    std::optional<int> jahr; // empty: the latest booking year of the database
    std::optional<int> verarbeitungsjahr;
    bool nurAnzeige = false;
    QString hilfedatei;
    // The year tools: target year of the year change, the CSV file, write nothing.
    std::optional<int> nachJahr;
    QString datei;
    bool ohneSchreiben = false;
    // sql: the statement given on the command line (empty: read them from standard input).
    QString anweisung;
    // protokoll: check the chain (else list the entries of `jahr`), the hash that must be part
    // of it, the filters of the list and CSV output.
    bool protokollPruefen = false;
    QString bisHash;
    QString konto;
    QString seit; // ISO date
    bool csv = false;
};

// Reads the arguments (without the program name). Returns the call, or sets `fehler` to a German
// message for the user and returns nothing.
std::optional<Aufruf> befehlszeileLesen(const QStringList &argumente, QString &fehler);

// The help text of --help.
QString befehlszeilenHilfe();

// The call-information array for zelKontenStamm (indices 0 to 100).
QVariantList aufrufInfo(const Aufruf &aufruf, int jahr);
