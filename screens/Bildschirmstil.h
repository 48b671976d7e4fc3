#pragma once

class QWidget;

namespace screens {

// The look every screen gets right after setupUi: the suite's dialog font ("MS Sans Serif",
// 8 points, mapped to a narrow font that is installed on Linux) and push buttons that wrap
// their captions onto two lines where the layout gives them the height, as the suite's
// buttons always did. Captions stay exactly as they are; only the drawing wraps. Tab strips
// get their tabs from their "Tabs" property.
void bildschirmEinrichten(QWidget *form);

} // namespace screens
