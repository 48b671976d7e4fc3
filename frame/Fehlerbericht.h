#pragma once

#include "platform/core/RuntimeError.h"

#include <QString>
#include <functional>

// The seam through which the frame's procedure traps hand a trapped error to the common error
// report. The component sets the real report (error dialog, FehlerOrt) when it starts; until
// then, and after setFehlerMelder({}), reports are written to stderr.
namespace frame {

using FehlerMelder = std::function<void(const QString &fehlerOrt, const platform::RuntimeError &)>;

// Installs `melder`; an empty function restores the stderr report.
void setFehlerMelder(FehlerMelder melder);

// Reports `fehler` that was trapped at `fehlerOrt` ("in mdlInitKK", ...). Never throws.
void FehlerMelden(const QString &fehlerOrt, const platform::RuntimeError &fehler);

} // namespace frame
