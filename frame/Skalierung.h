#pragma once

#include <QString>

namespace frame {

// What the scaling factor depends on: the display width in pixels and the two settings as read
// from the settings file ("Section1"/"Skalieren", "Section2"/"SkFaktor").
struct SkalierEingabe
{
    int bildschirmBreite = 0;
    QString skalieren;
    QString skFaktor;
};

// The screens' scaling factor; 0 means "do not scale". A display exactly 800 pixels wide and
// "Skalieren" "0" or empty give 0; "SkFaktor" "10" gives 2.0. Otherwise SkFaktor, read as a
// currency number with a decimal comma, is turned into an intermediate value by the display
// width (1024: ×10÷3, 1280: ×10÷5, wider: ×10÷8, other widths unchanged) and the factor is the
// number written "1," and that value (2 -> 1.2, 25 -> 1.25), or 2.0 when the value is 10. That
// only reads as a number for whole, non-negative values; anything else, and an unreadable
// SkFaktor, gives 0, so the screen stays unscaled.
float SkalierFaktorBerechnen(const SkalierEingabe &eingabe);

// "W X H", as the database session reports the display.
QString Bildschirmaufloesung(int breite, int hoehe);

// The two settings from the given settings file (missing entries stay empty).
SkalierEingabe skalierEingabeLesen(int bildschirmBreite, const QString &einstellungsDatei);

// The factor for this display from the user's settings file.
float SkalierFaktorErmitteln(int bildschirmBreite);

} // namespace frame
