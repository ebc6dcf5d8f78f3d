#pragma once

#include "cmerror.h"
#include "trstring.h"

#include <cstdio>
#include <cstdlib>

// An error whose text is translated in the context of the function that
// raises it: callers pass Q_FUNC_INFO, whose signature text translators key on.
inline CMError translatedError(char const* signature, QString const& text,
                               QString const& name = CMError::DefaultName())
{
    return CMError(name, TrString(TrCharData(trExtractContext(signature), text)));
}

// A broken invariant is a fault of the program, not of the cloud: it stops
// the process with the condition's text.
#define AIRABLE_ASSERT(condition, text)                                                                                \
    do {                                                                                                               \
        if (!(condition)) {                                                                                            \
            std::fprintf(stderr, "Assertion failed: %s\n", text);                                                      \
            std::abort();                                                                                              \
        }                                                                                                              \
    } while (false)
