#pragma once

#include <QString>

class QWidget;

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

// The display size as "W X H" in pixels; also kept in the session for the scaling.
QString Bildschirmaufloesung();

} // namespace frame
