#pragma once

namespace platform {

// Installs Qt's own German texts (the standard buttons "Ja", "Nein", "Abbrechen", context menus,
// file dialogs) in the running application, once; the product speaks German whatever the
// user's locale. False, with a warning in the log, when Qt's translations are not installed.
bool deutscheStandardtexte();

} // namespace platform
