#pragma once

#include "platform/storage/Database.h"

#include <QString>

// A demo accounting database of a property-management office in Vienna: the office's own
// accounts and those of eight managed properties, the position masters, allocation keys,
// balance rows and creditors with postings. The rows are CSV files in the resource ":/demo/";
// the accounts are the export of a year and go in through the import, with all its checks.
namespace jahr {

// Booking years of the demo database; both hold the same accounts.
inline constexpr int demoErstesJahr = 2025;
inline constexpr int demoLetztesJahr = 2026;

// Creates the schema and all demo data on an empty database, in one transaction: on an error
// nothing is left behind (on PostgreSQL not even the tables).
void demoDatenbankAnlegen(platform::storage::Database &db);

// Adds `anzahlKonten` accounts of booking year `jahr` (for benchmarks), made from the demo's
// accounts: the office's, then as many properties as needed (numbered from 100000 after the
// ninth), "999998" always first. Every reference of an account (VAT, closing and opening
// account) points to an account before it, so any count gives a consistent year. Creates the
// schema and the masters when missing. One transaction; raises RuntimeError 3022 when the year
// holds accounts already.
void jahrErzeugen(platform::storage::Database &db, int jahr, int anzahlKonten);

// A short German summary: accounts per booking year and rows per table.
QString zusammenfassung(platform::storage::Database &db);

} // namespace jahr
