#pragma once

#include "Database.h"

#include <QString>
#include <QStringList>
#include <QVariant>
#include <vector>

// The catalogue of every table the component reads or writes: columns with their types, keys
// and initial values. It creates new databases and tells which columns an older one lacks.
namespace platform::storage {

enum class Spaltentyp {
    Text, // laenge = maximum number of characters
    Ganzzahl16, // smallint
    Ganzzahl32, // integer
    Kommazahl, // double precision (amounts)
    Datum, // a date; travels as ISO text
    JaNein // smallint holding -1 (true) or 0
};

struct Spalte
{
    QString name;
    Spaltentyp typ = Spaltentyp::Ganzzahl16;
    int laenge = 0;
    // Value of a new row where one is defined (also the column's DEFAULT); invalid = none.
    QVariant anfangswert = {};
    // Numbered by the engine when an insert leaves it out (the id of posting and balance rows).
    // Such a column is the table's only key column.
    bool autoWert = false;
};

struct Tabelle
{
    QString name;
    std::vector<Spalte> spalten;
    QStringList schluessel;
    // Secondary indexes, each a list of columns; for the reads the screens make.
    std::vector<QStringList> indizes = {};

    // The column named `name` (ASCII case ignored), or nullptr.
    const Spalte *spalte(const QString &name) const;
    QStringList spaltenNamen() const;
};

// All tables, in the order they are created.
const std::vector<Tabelle> &schemaKatalog();

// The table named `name` (case ignored), or nullptr when the catalogue does not know it.
const Tabelle *tabelle(const QString &name);

// CREATE TABLE for `engine`. Identifiers are never quoted (PostgreSQL folds them to lower case,
// umlauts included unchanged; every query of the component names them unquoted as well).
// Text key columns compare byte-wise on both engines, so ORDER BY KontoNr agrees.
QString ddl(const Tabelle &t, Engine engine);
// CREATE INDEX statements of the table.
QStringList indexDdl(const Tabelle &t);
// The column's definition as it follows the column name ("smallint DEFAULT 0", ...).
QString spaltenDdl(const Spalte &s, Engine engine, bool istSchluessel = false);

// Creates every table of the catalogue with its keys and indexes, in one transaction (the
// caller's, when one is running): either all tables exist afterwards or none was created.
// Throws RuntimeError (the engine's error) when a table exists already.
void schemaAnlegen(Database &db);

// Columns of the catalogue's table `tabelle` that the database lacks, in catalogue order;
// every column when the table itself is missing. Names are compared without regard to case.
// Throws RuntimeError 3078 for a table the catalogue does not know.
QStringList fehlendeSpalten(Database &db, const QString &tabelle);

} // namespace platform::storage
