#pragma once

#include "platform/storage/Database.h"
#include "platform/storage/Recordset.h"

#include <QString>
#include <QVariant>
#include <vector>

// Initial values of a new account master record and the guard that adds the column
// KontoZusatzDatenJN to older databases.
namespace mdlInitKK {

struct Feldwert
{
    QString feld;
    QVariant wert;
};

// The 51 writes of KontoFelderInitialisieren in their order, field names spelled as written
// ("KontozusatzdatenJN"; KontoVSTKuerz appears twice).
const std::vector<Feldwert> &kontoAnfangswerte();

// Writes the initial value of every data field into the current row of `Datensatz`, which must
// be in AddNew or Edit mode. Neither the key fields nor Update are touched: the caller sets
// KontoNr and KontoJJ and saves. Each write is trapped on its own: a failing write is reported
// with FehlerOrt "in mdlInitKK" and the next field is written.
void KontoFelderInitialisieren(platform::storage::Recordset &Datensatz);

// Adds the column KontoZusatzDatenJN to ObjKanzleiKontenstamm with the statement of the original;
// any error (the column exists already on every current database) is reported with the place
// "zelKontenStamm: in KKFeldKontrolle".
void KKFeldKontrolle(platform::storage::Database &db);

// Adds the column only when the table lacks it, so that nothing is reported on a current
// database; rows that exist keep no value (the same statement, no default). Returns whether the
// column was added. Errors are reported as by KKFeldKontrolle.
bool KKFeldKontrolleStill(platform::storage::Database &db);

} // namespace mdlInitKK
