// Texts read as numbers, booleans and fields, the way settings and the command line are.
#include "core/conversions.h"
#include "core/extractfield.h"
#include "core/numerictext.h"
#include "support/errorof.h"

#include <gtest/gtest.h>

namespace {

TEST(NumericTextTest, AcceptsTheFormsASettingMayTake)
{
    const std::pair<const char *, double> numbers[] = {
        {" 44 ", 44},     {"1,000", 1000}, {"5-", -5},     {"(5)", -5},
        {"$12.50", 12.5}, {"1.5D2", 150},  {"&HFFFF", -1}, {"&O17", 15}};
    for (const auto &[text, value] : numbers) {
        const std::optional<double> parsed = numericValue(text);
        ASSERT_TRUE(parsed.has_value()) << text;
        EXPECT_DOUBLE_EQ(*parsed, value) << text;
    }
    for (const char *text : {"", "12abc", ".", "1.2.3", ",5", "(5", "-(5)", "&HG", "1e"})
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
    EXPECT_DOUBLE_EQ(leadingNumber(" 1 2|3|"), 12);
    EXPECT_DOUBLE_EQ(leadingNumber("-3.5e1x"), -35);
    EXPECT_DOUBLE_EQ(leadingNumber("&H1F|"), 31);
}

TEST(ExtractField, FieldsCountFromOneAndKeepEverything)
{
    EXPECT_EQ(ExtractField("a,,c", ",", 3), "c");
    EXPECT_EQ(ExtractField("a,b", ",", 0), "");
    EXPECT_EQ(ExtractField("1, 37 ,x", ",", 2), " 37 ");
    EXPECT_EQ(ExtractField("a::b:c", "::", 2), "b:c");
    // An empty delimiter is blank, CR, LF, tab as one unit, not any blank.
    EXPECT_EQ(ExtractField("a b \r\n\tc", "", 1), "a b");
    EXPECT_EQ(ExtractField("a b \r\n\tc", "", 2), "c");
}

TEST(Conversions, NumbersAndBooleansFollowThePlatform)
{
    EXPECT_EQ(textToInt32("40000"), 40000);
    EXPECT_FALSE(textToBool(" FALSE "));
    EXPECT_TRUE(textToBool("-1"));

    EXPECT_EQ(errorOf([] { textToInt16("12abc"); }), CvError::TypeMismatch);
    EXPECT_EQ(errorOf([] { textToBool("Yes"); }), CvError::TypeMismatch);
    EXPECT_EQ(errorOf([] { textToInt16("40000"); }), CvError::Overflow);
    EXPECT_EQ(errorOf([] { textToInt16("32767.5"); }), CvError::Overflow);
}

} // namespace
