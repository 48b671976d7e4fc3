#pragma once

#include <QString>
#include <QStringList>
#include <memory>

class QWidget;
namespace platform {
class DataControl;
}
namespace platform::storage {
class Database;
}

// Wiring the data controls of a screen to the session's database.
namespace frame {

// The type name of a control: its class info "TypeName" when it declares one (the data control
// says "Data"), else its class name without namespace.
QString typName(const QWidget *steuerelement);

// Puts the password on an unprotected database file. Any failure shows the English error box
// and is otherwise swallowed. A PostgreSQL URI has no file password: nothing to do.
void DBPasswortSetzen(const QString &pfad);

// Gives every data control of the screen the connect string of the session (prefix from slot 4
// of the call information, or the import's connect prefix, then the password) and re-assigns
// its DatabaseName so the next refresh uses it. A property a control refuses is passed over.
void DatenSteuerungenVerbinden(QWidget *formular, bool passwortSetzen);

// Opens the session's database (DatenbankPfad) before a screen loads and asks what its user may
// do with the screen's tables (see zugangPruefen). A connection that fails or a user who may not
// read gets one message box saying why, and null: the screen is not loaded. A user who may only
// read makes the session view-only (NurAnzeige, SchreibrechtFehlt). Holding the connection
// returned while the screen loads spares it a second login (and key derivation).
std::shared_ptr<platform::storage::Database> sitzungOeffnen(const QStringList &lesen,
                                                            const QString &schreiben);

// Says in the window title of `bildschirm` that the session is view-only because the database
// lets its user only read (SchreibrechtFehlt); takes it away again otherwise.
void schreibrechtImTitel(QWidget *bildschirm);
// The title of a master screen: its caption, the position of the shown record in the year
// ("Konto 17 von 314", when there is one), and "nur Anzeige" (with the reason when the database
// refuses writing) or a "*" for edits not yet saved.
QString titelMitStand(const QString &caption, const platform::DataControl *daten, bool aufZeile);

inline const QString NurLesenTitel
    = QStringLiteral(" \u2013 nur Anzeige (keine Schreibberechtigung in der Datenbank)");

// The display size as "W X H" in pixels; also kept in the session for the scaling.
QString Bildschirmaufloesung();

} // namespace frame
