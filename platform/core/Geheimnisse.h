#pragma once

#include <QString>
#include <QStringList>

// Passwords of database addresses never reach a screen, a terminal or a log: every text that may
// carry one (libpq's messages, message boxes, the error dialog, standard error, the log) passes
// through geheimnisseMaskieren() before it is shown.
namespace platform {

// What stands where a password was.
inline const QString Maske = QStringLiteral("*****");

// Remembers a password that must never be shown (one typed into the password dialog).
void kennwortMerken(const QString &kennwort);

// Remembers the password of a postgresql:// address, as written and percent-decoded, also
// where the address is malformed ("%" in the password, a broken IPv6 host). Does nothing for
// file paths.
void adresseMerken(const QString &adresse);

// The passwords an address carries, as written: in its user part and in a password parameter.
// Read liberally, as libpq and as a user might mean a malformed address.
QStringList kennwoerterDerAdresse(const QString &adresse);

// `text` with every password masked: those remembered (wherever they stand between characters
// that are no letters or digits), the user part of any address ("://benutzer:*****@") and any
// password parameter ("password=*****").
QString geheimnisseMaskieren(const QString &text);

// Installs a log handler that masks every message before the previous handler writes it.
// Idempotent.
void protokollSchuetzen();

// Blanks the password of every database address among the program's own arguments (what the
// process list shows) after they were read. Returns how many arguments were changed.
int kennwoerterInArgumentenLoeschen(int argc, char **argv);

// The warning printed once when the command line held a password.
QString kennwortAufBefehlszeileWarnung();

} // namespace platform
