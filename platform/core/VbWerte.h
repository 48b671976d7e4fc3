#pragma once

#include <QString>
#include <QVariant>

namespace platform {

// The runtime's ordinary variant conversions, as the call information relies on them.
// Each raises RuntimeError: 13 for a value that cannot be converted, 6 for an overflow,
// 94 for Null.
namespace vb {

// Text of a variant: empty/invalid -> "", numbers as decimal text, dates as dd.MM.yyyy.
QString CStr(const QVariant &wert);

// 16-bit integer: numbers are rounded half to even, numeric text is accepted (blanks around it,
// a decimal comma or point), empty -> 0, booleans -> -1/0.
qint16 CInt(const QVariant &wert);

// 32-bit integer, same rules.
qint32 CLng(const QVariant &wert);

// `wert = zahl` as the runtime compares a variant with a number: Null is never equal, empty
// counts as 0, numeric text is compared by value, other text raises 13.
bool gleich(const QVariant &wert, double zahl);

} // namespace vb
} // namespace platform
