// Placeholder substitution.
#include "core/cverror.h"
#include "core/translate.h"
#include "support/qtprinters.h"

#include <gtest/gtest.h>

namespace {

TEST(TranslateTest, FillsPlaceholders)
{
    const QVariantList values{"Smith", 42, QVariant()};
    const std::pair<const char *, const char *> cases[] = {
        {"", ""},
        {"no placeholders", "no placeholders"},
        {"Are you sure you want to delete |0|", "Are you sure you want to delete Smith"},
        {"|1| and |0|, again |1|", "42 and Smith, again 42"},
        {"Data error: |2|", "Data error: ..."},
        // No closing bar: the value, then the bar and the digits as text.
        {"Total |1", "Total 42|1"},
        {"a|1|b|0", "a42bSmith|0"},
        // The index is the number the rest starts with; blanks inside it are skipped.
        {"|1 st|", "42"},
        {"|x|", "Smith"},
        {"|0.6|", "42"},
        {"|1.5|", "..."}, // rounds half to even
        {"||", "Smith"},
    };
    for (const auto &[text, expected] : cases)
        EXPECT_EQ(Translate(text, values), expected) << text;
    EXPECT_EQ(Translate("|0|", {true}), "True");
}

TEST(TranslateTest, IndexOutsideTheValuesIsTheCallersError)
{
    for (const char *text : {"|3|", "|-1|", "x|0|", "|99999|"}) {
        try {
            Translate(text, text[0] == 'x' ? QVariantList{} : QVariantList{1, 2, 3});
            ADD_FAILURE() << "no error for " << text;
        } catch (const CvError &e) {
            if (QByteArray(text) == "|99999|") {
                EXPECT_EQ(e.number(), CvError::Overflow);
            } else {
                EXPECT_EQ(e.number(), CvError::SubscriptOutOfRange) << text;
                EXPECT_EQ(e.description(), "Subscript out of range");
            }
        }
    }
}

} // namespace
