#include "tests/support/print_qt.h"
#include "textedit/text_transforms.h"

#include <gtest/gtest.h>

namespace
{
struct Case
{
    const char *what;
    QString text;
    QString expected;
};

struct Replacement
{
    const char *what;
    QString text;
    QString wanted;
    QString replacement;
    QString expected;
};

struct Lines
{
    const char *what;
    QString text;
    QString wanted;
    QString kept;
    QString last;
};

template <typename SomeCase>
std::string name_of(const testing::TestParamInfo<SomeCase> &info)
{
    return info.param.what;
}

class EndedLines : public testing::TestWithParam<Case>
{
};

TEST_P(EndedLines, AreEachFollowedByCrLf)
{
    EXPECT_EQ(with_ended_lines(GetParam().text), GetParam().expected);
}

INSTANTIATE_TEST_SUITE_P(
    Of, EndedLines,
    testing::Values(Case{"Nothing", "", ""}, Case{"OneLine", "a", "a\r\n"},
                    Case{"OneEndedLine", "a\r\n", "a\r\n"}, Case{"LfLines", "a\nb\n", "a\r\nb\r\n"},
                    Case{"CrLines", "a\rb", "a\r\nb\r\n"},
                    Case{"MixedLines", "a\r\n\r\nb\n\rc", "a\r\n\r\nb\r\n\r\nc\r\n"},
                    Case{"AnEmptyLine", "\n", "\r\n"}, Case{"Blanks", " a \n ", " a \r\n \r\n"}),
    name_of<Case>);

class Replacements : public testing::TestWithParam<Replacement>
{
};

TEST_P(Replacements, AreMadeFromTheFirstCharacterOn)
{
    const auto &[what, text, wanted, replacement, expected] = GetParam();
    EXPECT_EQ(with_replaced(text, wanted, replacement), expected);
}

INSTANTIATE_TEST_SUITE_P(
    Of, Replacements,
    testing::Values(Replacement{"EveryOccurrence", "a-b-c", "-", "+", "a+b+c"},
                    Replacement{"NothingInAnEmptyText", "", "a", "b", ""},
                    Replacement{"NothingForNothing", "abc", "", "x", "abc"},
                    Replacement{"WhatIsNotThere", "abc", "x", "y", "abc"},
                    Replacement{"LetterCaseCounts", "Ann ann ANN", "ann", "bob", "Ann bob ANN"},
                    Replacement{"ByNothing", "a, b, c", ", ", "", "abc"},
                    Replacement{"ByALongerText", "a,b", ",", " and ", "a and b"},
                    Replacement{"ByItselfAndMore", "aaa", "a", "aa", "aaaaaa"},
                    Replacement{"WithoutOverlap", "aaaaa", "aa", "b", "bba"},
                    Replacement{"NotWhatAReplacementMade", "aab", "ab", "b", "ab"},
                    Replacement{"TheWholeText", "abc", "abc", "x", "x"},
                    Replacement{"LineBreaks", "a\r\nb\r\n", "\r\n", ",", "a,b,"},
                    Replacement{"NoPattern", "a.c abc a*c", "a.c", "x", "x abc a*c"}),
    name_of<Replacement>);

class ReversedItems : public testing::TestWithParam<Case>
{
};

TEST_P(ReversedItems, StandOneALineWithoutWhatFollowsTheLastComma)
{
    EXPECT_EQ(items_from_the_last(GetParam().text), GetParam().expected);
}

INSTANTIATE_TEST_SUITE_P(Of, ReversedItems,
                         testing::Values(Case{"ThreeItems", "A,B,C", "B\r\nA\r\n"},
                                         Case{"ThreeItemsAndAComma", "A,B,C,", "C\r\nB\r\nA\r\n"},
                                         Case{"Nothing", "", ""}, Case{"OneItem", "A", ""},
                                         Case{"OneItemAndAComma", "A,", "A\r\n"},
                                         Case{"AComma", ",", "\r\n"},
                                         Case{"CommasInARow", ",,A,,", "\r\nA\r\n\r\n\r\n"},
                                         Case{"ItemsWithBlanks", " A , B ,", " B \r\n A \r\n"},
                                         Case{"ItemsOnLines", "A,\r\nB,\r\n", "\r\nB\r\nA\r\n"}),
                         name_of<Case>);

class LinesThatContain : public testing::TestWithParam<Lines>
{
};

TEST_P(LinesThatContain, AreKeptInTheirOrder)
{
    const auto &[what, text, wanted, kept, last] = GetParam();
    const KeptLines lines = lines_that_contain(text, wanted);
    EXPECT_EQ(lines.text, kept);
    EXPECT_EQ(lines.last, last);
}

INSTANTIATE_TEST_SUITE_P(
    Of, LinesThatContain,
    testing::Values(Lines{"TheSign", "b@x\r\nName\r\na@x\r\n", "@", "b@x\r\na@x\r\n", "a@x"},
                    Lines{"Nothing", "", "@", "", ""},
                    Lines{"ALastLineWithoutEnd", "no\na@x", "@", "a@x\r\n", "a@x"},
                    Lines{"ALastLineNotKept", "a@x\nno", "@", "a@x\r\n", "no"},
                    Lines{"NoneOfThem", "a\nb\n", "@", "", "b"},
                    Lines{"MoreThanOneCharacter", "x@a.org\nx@b.org\n", "@b.", "x@b.org\r\n",
                          "x@b.org"},
                    Lines{"LetterCase", "Ann\nann\n", "ann", "ann\r\n", "ann"},
                    Lines{"AllLineEnds", "a@\rb@\nc@\r\nd@", "@", "a@\r\nb@\r\nc@\r\nd@\r\n", "d@"},
                    Lines{"EmptyLines", "\n\n@\n\n", "@", "@\r\n", ""},
                    Lines{"EveryLineForNothing", "a\n\nb", "", "a\r\n\r\nb\r\n", "b"},
                    Lines{"NoPattern", "a.b\naxb\n", "a.b", "a.b\r\n", "axb"}),
    name_of<Lines>);

TEST(Commas, TakeThePlaceOfEveryBlank)
{
    EXPECT_EQ(with_commas_for_blanks("a b  c "), "a,b,,c,");
    EXPECT_EQ(with_commas_for_blanks(QString::fromUtf16(u"a\tb\u00A0c")),
              QString::fromUtf16(u"a\tb\u00A0c"));
    EXPECT_EQ(with_commas_for_blanks(""), "");
}

TEST(Commas, TakeThePlaceOfEverySemicolon)
{
    EXPECT_EQ(with_commas_for_semicolons("a;b;;c;"), "a,b,,c,");
    EXPECT_EQ(with_commas_for_semicolons("a,b"), "a,b");
}

TEST(Commas, JoinItemsOfBothKinds)
{
    EXPECT_EQ(with_commas_for_semicolons(with_commas_for_blanks("A B;C")), "A,B,C");
}
} // namespace
