#pragma once

#include <QKeySequence>

#include <utility>
#include <vector>

class QPushButton;
class QWidget;

namespace screens {

// The look every screen gets right after setupUi: the suite's dialog font ("MS Sans Serif",
// 8 points, mapped to a narrow font that is installed on Linux) and push buttons that wrap
// their captions onto two lines where the layout gives them the height, as the suite's
// buttons always did. Captions stay exactly as they are; only the drawing wraps. Tab strips
// get their tabs from their "Tabs" property. A one-line caption the font makes longer than
// its label grows into free room beside it, and a dialog too narrow for its title widens, its
// controls moved to the middle: the positions of the layout files stay as they are.
void bildschirmEinrichten(QWidget *form);

// Opens the lists of the form's combos wide enough for their longest entry (the combos keep
// their width on the screen). Call it again after a list was filled anew.
void listenBreiteAnpassen(QWidget *form);

// Keys for the form's main buttons, captions untouched. A key acts as a click: the focus goes to
// the button first, so the field being left is checked, and a refused check stops the button.
void knopfTasten(QWidget *form, const std::vector<std::pair<QKeySequence, QPushButton *>> &tasten);

} // namespace screens
