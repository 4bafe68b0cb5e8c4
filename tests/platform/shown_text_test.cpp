#include "platform/number_text.h"
#include "platform/runtime_error.h"
#include "platform/shown_text.h"
#include "platform/skipped_steps.h"

#include <gtest/gtest.h>

namespace
{
TEST(OneLine, BlanksWhatBreaksOrTurnsTheLine)
{
    EXPECT_EQ(one_line(QStringLiteral(u"a\r\nb\tc\u2028d\u202Ee\u061Cf")), "a  b c d e f");
    EXPECT_EQ(one_line({}), "");
}

TEST(PlainToolTip, ShowsMarkupAsItIsAndKeepsLines)
{
    EXPECT_EQ(plain_tool_tip({}), "");
    const QString tip = plain_tool_tip("<b>a</b> & b\nc");
    EXPECT_TRUE(tip.contains("&lt;b&gt;a&lt;/b&gt; &amp; b\nc")) << tip.toStdString();
}

struct Number
{
    const char *text;
    double value;
};

TEST(NumberText, IsReadWithBlanksAroundIt)
{
    for (const Number &number :
         {Number{"3", 3}, Number{" 1.5 ", 1.5}, Number{"-2", -2}, Number{"0", 0}, Number{"007", 7}})
        EXPECT_EQ(number_of(number.text), number.value) << number.text;
}

TEST(NumberText, IsATypeMismatchOtherwise)
{
    for (const char *text : {"", " ", "two", "1,000", "1 2", "nan", "inf", "1e999", "0x10"}) {
        try {
            number_of(text);
            ADD_FAILURE() << "'" << text << "' passed for a number";
        } catch (const RuntimeError &error) {
            EXPECT_EQ(error.number(), error_number::type_mismatch);
            EXPECT_TRUE(error.description().contains(QString("'%1'").arg(text)));
        }
    }
}

TEST(SkippedSteps, AreListedOnceWithTheirCount)
{
    SkippedSteps skipped;
    EXPECT_TRUE(skipped.is_empty());
    EXPECT_TRUE(skipped.attempt([] {}));
    for (int i = 0; i < 2; ++i)
        EXPECT_FALSE(skipped.attempt([] { throw RuntimeError(5, "No"); }));
    skipped.add("Never");
    EXPECT_EQ(skipped.count(), 3);
    EXPECT_EQ(skipped.list(), "No (2 times)\nNever");
}

TEST(SkippedSteps, AreBounded)
{
    SkippedSteps skipped;
    for (int i = 0; i < 1000; ++i)
        skipped.add(QString("%1 ").arg(i) + QString(5000, 'x'));
    EXPECT_EQ(skipped.list().count('\n'), 20);
    EXPECT_TRUE(skipped.list().endsWith("\nand 980 more"));
    EXPECT_LT(skipped.list().size(), 7000);
}

TEST(RunStep, PassesFailuresOnWithoutAPlaceForThem)
{
    EXPECT_THROW(run_step(nullptr, [] { throw RuntimeError(5, "No"); }), RuntimeError);
    SkippedSteps skipped;
    EXPECT_FALSE(run_step(&skipped, [] { throw RuntimeError(5, "No"); }));
    EXPECT_EQ(skipped.count(), 1);
}
} // namespace
