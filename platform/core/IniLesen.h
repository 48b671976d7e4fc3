#pragma once

#include <QString>

namespace platform {

// Reads one value of a private-profile INI file as the original's reader did: the value is cut
// at 31 characters; a missing file, section or key gives empty text; section and key names
// match without regard to case; blanks around names and values are dropped and one pair of
// matching quotes around the value is removed; nothing else is interpreted (a decimal comma
// stays text, a ';' inside a value belongs to it). Lines starting with ';' are comments. The
// first matching section and, within it, the first matching key count. The file is read as
// UTF-8 when it is valid UTF-8, otherwise as Latin-1 (files written by the old programs).
QString IniLesen(const QString &datei, const QString &sektion, const QString &schluessel);

// The user settings file: "ZEL-Settings.ini" in USERPROFILE, or in HOME where USERPROFILE is
// not set.
QString EinstellungsDatei();

} // namespace platform
