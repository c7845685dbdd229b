// Which setting texts count as numbers.
#include "core/numerictext.h"

#include <gtest/gtest.h>

namespace {

TEST(NumericTextTest, AcceptsTheFormsASettingMayTake)
{
    const std::pair<const char *, double> numbers[] = {
        {"44", 44},   {" 44 ", 44},     {"1,000", 1000}, {"-5", -5},     {"5-", -5},
        {"(5)", -5},  {"$12.50", 12.5}, {"1e3", 1000},   {"1.5D2", 150}, {".5", 0.5},
        {"&H10", 16}, {"&HFFFF", -1},   {"&O17", 15},    {"+7", 7},      {"\t8\t", 8},
    };
    for (const auto &[text, value] : numbers) {
        const std::optional<double> parsed = numericValue(text);
        ASSERT_TRUE(parsed.has_value()) << text;
        EXPECT_DOUBLE_EQ(*parsed, value) << text;
    }
    for (const char *text :
         {"", " ", "abc", "12abc", ".", "-", "1.2.3", ",5", "(5", "-(5)", "&H", "&HG", "5--", "1e"})
        EXPECT_FALSE(isNumericText(text)) << text;
}

TEST(NumericTextTest, IntegerConversionRoundsHalfToEvenAndChecksRange)
{
    EXPECT_EQ(numericTextToInt32("2.5"), 2);
    EXPECT_EQ(numericTextToInt32("3.5"), 4);
    EXPECT_EQ(numericTextToInt32("-2147483648"), std::numeric_limits<qint32>::min());
    EXPECT_FALSE(numericTextToInt32("2147483648").has_value());
    EXPECT_FALSE(roundToInt16(32767.5).has_value());
    EXPECT_EQ(roundToInt16(-32768.4), -32768);
}

TEST(NumericTextTest, LeadingNumberStopsAtTheFirstStranger)
{
    EXPECT_DOUBLE_EQ(leadingNumber("12abc"), 12);
    EXPECT_DOUBLE_EQ(leadingNumber(" 1 2|3|"), 12);
    EXPECT_DOUBLE_EQ(leadingNumber("1,000"), 1);
    EXPECT_DOUBLE_EQ(leadingNumber("-3.5e1x"), -35);
    EXPECT_DOUBLE_EQ(leadingNumber("abc"), 0);
    EXPECT_DOUBLE_EQ(leadingNumber("&H1F|"), 31);
}

} // namespace
