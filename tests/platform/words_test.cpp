#include "platform/words.h"

#include <gtest/gtest.h>

namespace
{
struct Split
{
    QString text;
    QString delimiter;
    QStringList elements;
};
class SplitText : public testing::TestWithParam<Split>
{
};

TEST_P(SplitText, KeepsTheElementsAndASlotForEveryDelimiter)
{
    EXPECT_EQ(split_text(GetParam().text, GetParam().delimiter), GetParam().elements);
}

INSTANTIATE_TEST_SUITE_P(
    Texts, SplitText,
    testing::Values(Split{"a,b,c", ",", {"a", "b", "c"}},
                    Split{"abc", ",", {"abc"}}, // no delimiter: the whole text
                    Split{"", ",", {""}},       //
                    Split{",a,b", ",", {"a", "b", ""}}, Split{"a,,,b", ",", {"a", "b", "", ""}},
                    Split{"a,b,", ",", {"a", "b", ""}}, Split{",,", ",", {"", "", ""}},
                    Split{"a, b", ",", {"a", " b"}}, // blanks are no empty piece
                    Split{"a--b-c", "--", {"a", "b-c"}}, Split{"a,b", "", {"a,b"}}));

TEST(TrimBlanks, TakesBlanksAndNothingElse)
{
    EXPECT_EQ(trim_blanks("  a b  "), "a b");
    EXPECT_EQ(trim_blanks("\t a\r\n "), "\t a\r\n");
    EXPECT_EQ(trim_blanks("   "), "");
    EXPECT_EQ(trim_blanks(""), "");
}

TEST(WithCrLf, EveryLineBreakIsCrLf)
{
    EXPECT_EQ(with_cr_lf("a\nb\rc\r\nd\n\r\n"), "a\r\nb\r\nc\r\nd\r\n\r\n");
    EXPECT_EQ(with_cr_lf("a\r"), "a\r\n");
    EXPECT_EQ(with_cr_lf("a\n\rb"), "a\r\n\r\nb");
    EXPECT_EQ(with_cr_lf(""), "");
}

TEST(KeepAddresses, KeepsWholePiecesThatHoldAnAtSign)
{
    EXPECT_EQ(keep_addresses("a@x; b ; c@y;;@", ";", "; "), "a@x;  c@y; @");
    EXPECT_EQ(keep_addresses("none", ";", "; "), "");
}
} // namespace
