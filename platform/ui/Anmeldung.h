#pragma once

#include <QString>
#include <optional>

// The password dialog of a server login.
namespace platform {

// Asks for the password of `benutzer` on `server` (a socket directory counts as this computer)
// in a German dialog that hides what is typed; `grund` is said first when it asks again.
// Nothing when the user cancels.
std::optional<QString> kennwortErfragen(const QString &benutzer, const QString &server,
                                        const QString &grund);

// Makes every PostgreSQL login of this process ask with kennwortErfragen() when the server
// wants a password that the address, PGPASSWORD, the password file and a service did not give;
// also masks passwords in the log. For programs with a screen; idempotent.
void anmeldungEinrichten();

} // namespace platform
