#pragma once

#include "core/cverror.h"

// The number of the CvError that f raises, or 0 when it raises none; its description
// into *description when given.
template <typename F> int errorOf(F &&f, QString *description = nullptr)
{
    try {
        f();
    } catch (const CvError &e) {
        if (description)
            *description = e.description();
        return e.number();
    }
    return 0;
}
