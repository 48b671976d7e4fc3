#pragma once

#include "platform/core/RuntimeError.h"

#include <QString>

namespace testhilfe {

// Runs `f` and returns the number of the RuntimeError it raised (0 when none); `text` gets its
// description.
template<typename F> int fehlerVon(F &&f, QString *text = nullptr)
{
    try {
        f();
    } catch (const platform::RuntimeError &e) {
        if (text)
            *text = e.beschreibung();
        return e.nummer();
    }
    return 0;
}

} // namespace testhilfe
