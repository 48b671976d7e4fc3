#pragma once

#include "accounts/regeln/Kontenzeilen.h"

#include <QStringList>
#include <vector>

// Carries the chart of accounts of one booking year into another.
namespace jahr {

using kontenregeln::Database;
using kontenregeln::Fortschritt;
using kontenregeln::Kontozeile;

struct Abweichung
{
    QString kontoNr;
    QStringList felder; // the columns whose values differ between the two years
};

struct JahreswechselErgebnis
{
    QStringList neu; // accounts copied (or, in a preview, to be copied)
    std::vector<Abweichung> abweichend; // accounts in both years with differing definitions
    int gleich = 0; // accounts in both years with the same definitions
    bool geschrieben = false;
};

// Copies every account of `von` that `nach` lacks, with all its definitions, in one transaction;
// reports the accounts of both years whose definitions differ. `vorschau` writes nothing.
// Throws platform::RuntimeError on database errors (nothing is written then).
JahreswechselErgebnis jahreswechsel(Database &db, int von, int nach, bool vorschau,
                                    const Fortschritt &fortschritt = {});

} // namespace jahr
