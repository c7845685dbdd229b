#include "support/qtprinters.h"

#include <gtest/gtest.h>

void PrintTo(const QString &text, std::ostream *out)
{
    *out << ::testing::PrintToString(text.toStdString());
}

void PrintTo(const QByteArray &bytes, std::ostream *out)
{
    *out << ::testing::PrintToString(bytes.toStdString());
}
