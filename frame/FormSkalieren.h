#pragma once

class QWidget;

// Enlarging a screen laid out for an 800-pixel display by the user's scaling factor.
namespace frame {

// The session's factor as last determined by FormSkalieren (0: not scaled).
extern float SkalierFaktor;

// Determines the factor from the display and the user's settings file and scales the screen:
// with `Positionen` its size and position, with `Schriften` its font, and always every control's
// Left, Width and Height, grid columns and fonts ("Small Fonts" excepted). `Faktor` is set to 0.7
// when it comes in as 0, as the callers expect. A display exactly 800 pixels wide, scaling
// switched off or an unusable factor leave the screen as it is.
void FormSkalieren(QWidget *formular, bool &Positionen, bool &Schriften, double &Faktor);

// The scaling itself with a given factor. Top of the controls is deliberately left alone: the
// screens were designed so that only widths and horizontal positions grow with the fonts.
void formSkalierenMit(QWidget *formular, bool positionen, bool schriften, float faktor);

} // namespace frame
