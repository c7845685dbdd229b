#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <QString>

// Helpers shared by the fuzz targets.

// The input as text the way typed or stored text reaches the parsers: UTF-8,
// malformed sequences replaced.
inline QString fuzzText(const uint8_t *data, size_t size)
{
    return QString::fromUtf8(reinterpret_cast<const char *>(data), qsizetype(size));
}

// A broken property aborts, so that libFuzzer keeps the input as a reproducer.
inline void fuzzCheck(bool ok, const char *what, const QString &detail = QString())
{
    if (ok)
        return;
    std::fprintf(stderr, "fuzz property broken: %s\n  %s\n", what, qPrintable(detail));
    std::abort();
}
