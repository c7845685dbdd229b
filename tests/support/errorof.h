#pragma once

#include "core/cverror.h"

// The number of the CvError that f raises, or 0 when it raises none.
template <typename F> int errorOf(F &&f)
{
    try {
        f();
    } catch (const CvError &e) {
        return e.number();
    }
    return 0;
}
