#pragma once

#include <QString>
#include <functional>

// How a component opens a help file at a context. The frame installs the product's own help
// window; until then (a sibling used on its own) the desktop opens the file.
namespace platform {

using HilfeOeffner = std::function<bool(const QString &datei, const QString &kontext)>;

// An empty function restores the desktop's handler.
void setHilfeOeffner(HilfeOeffner oeffner);

// Opens `datei` at `kontext` ("" or "0": at its beginning). False when it could not be opened.
bool hilfeOeffnen(const QString &datei, const QString &kontext);

} // namespace platform
