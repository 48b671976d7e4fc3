#pragma once

class QWidget;

namespace screens {

// Binds every widget under form that carries the dynamic properties "DataSource" (the
// objectName of a DataControl on the same form, matched case-insensitively as the original
// did) and "DataField" to that data control. Returns the number of widgets bound.
// A DataSource naming no data control on the form is a layout fault and throws
// misconfiguration: platform::RuntimeError 3265 naming the widget and the data control.
int bindungenHerstellen(QWidget *form);

} // namespace screens
