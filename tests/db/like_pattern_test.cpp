#include "db/like_pattern.h"
#include "platform/runtime_error.h"

#include <QString>
#include <gtest/gtest.h>

#include <ostream>

namespace
{
struct Case
{
    std::string pattern;
    std::string text;
    bool matches;
};
void PrintTo(const Case &test, std::ostream *out)
{
    *out << '"' << test.text << "\" like \"" << test.pattern << '"';
}
class Like : public testing::TestWithParam<Case>
{
};

TEST_P(Like, MatchesTheWholeText)
{
    EXPECT_EQ(LikePattern(GetParam().pattern).matches(GetParam().text), GetParam().matches);
}

std::string with_nul(const char *before, const char *after)
{
    return std::string(before) + '\0' + after;
}

INSTANTIATE_TEST_SUITE_P(
    Stars, Like,
    testing::Values(Case{"", "", true}, Case{"", "a", false}, Case{"a", "", false},
                    Case{"*", "", true}, Case{"**", "abc", true}, Case{"abc", "ABC", true},
                    Case{"abc", "abcd", false}, Case{"a*", "abc", true}, Case{"*c", "abc", true},
                    Case{"*b*", "abc", true}, Case{"*d*", "abc", false}, Case{"a*c", "abc", true},
                    Case{"a*c", "ac", true}, Case{"ab*bc", "abc", false}, // no letter serves twice
                    Case{"*ab*ab*", "abab", true}, Case{"*ab*ab*", "aba", false},
                    Case{"*a*b", "aab", true}, Case{"*b*c", "abcc", true},
                    Case{"*aab*", "aaaab", true}, Case{"*abc*", "ABABC", true},
                    Case{"*\r\n*", "a\r\nb", true}, Case{"*%*", "a_b", false},
                    Case{"*_*", "a_b", true}));

INSTANTIATE_TEST_SUITE_P(
    Characters, Like,
    testing::Values(Case{"?", "a", true}, Case{"?", "", false}, Case{"?", "ab", false},
                    Case{"?", "\xC3\xA4", true}, Case{"?", "\xF0\x9F\x98\x80", true},
                    Case{"??", "\xF0\x9F\x98\x80", false}, Case{"a?c", "a\nc", true},
                    Case{"*?", "", false}, Case{"?*", "a", true}, Case{"*b?d*", "abbcde", true},
                    Case{"#", "7", true}, Case{"#", "a", false}, Case{"#", "\xD9\xA7", false},
                    Case{"*#*#", "a1b2", true}, Case{"*#*#", "a1b", false}, Case{"!", "!", true},
                    Case{"]", "]", true}, Case{"-", "-", true}));

INSTANTIATE_TEST_SUITE_P(
    Lists, Like,
    testing::Values(Case{"[abc]", "B", true}, Case{"[abc]", "d", false}, Case{"[a-c]x", "Bx", true},
                    Case{"[A-C]", "b", true}, Case{"[a-c]", "d", false}, Case{"[!a-c]", "b", false},
                    Case{"[!a-c]", "d", true}, Case{"[!a]", "", false}, Case{"[*]", "*", true},
                    Case{"[*]", "a", false}, Case{"*[?]*", "a?b", true}, Case{"*[?]*", "ab", false},
                    Case{"[#]", "#", true}, Case{"[[]", "[", true}, Case{"[]", "", true},
                    Case{"a[]b", "ab", true}, Case{"[]", "a", false}, Case{"[!]", "!", true},
                    Case{"[-a]", "-", true}, Case{"[a-]", "-", true}, Case{"[!-a]", "-", false},
                    Case{"[!-a]", "b", true}, Case{"[a!]", "!", true}, Case{"[a-cx-z]", "y", true},
                    Case{"[a-c-e]", "-", true}, Case{"[a-c-e]", "d", false},
                    Case{"[\xC3\xA0-\xC3\xBF]", "\xC3\x84", true})); // à-ÿ and Ä

INSTANTIATE_TEST_SUITE_P(
    LetterCase, Like,
    testing::Values(Case{"*\xC3\xA4*", "x\xC3\x84y", true}, // ä, Ä
                    Case{"*\xC3\x9F*",
                         "stra\xC3\x9F"
                         "e",
                         true},                             // ß
                    Case{"\xC3\x9F", "\xE1\xBA\x9E", true}, // ß, capital ẞ
                    Case{"\xC3\x9F", "ss", false},          // one letter is not two
                    Case{"i", "\xC4\xB0", false},           // dotted capital I
                    Case{"*k*", "\xE2\x84\xAA", true},      // the Kelvin sign
                    Case{"*\xE2\x84\xAA*", "xkx", true}, Case{"*s*", "\xC5\xBF", true}, // long s
                    Case{"*k*", "\xC3\xA4", false},
                    Case{"\xCF\x83", "\xCF\x82", true}, // sigma, final sigma
                    Case{"\xCF\x82", "\xCE\xA3", true},
                    Case{"*\xF0\x90\x90\xA8*", "a\xF0\x90\x90\x80z", true}, // Deseret
                    Case{"*\xE1\xBE\x80*", "\xE1\xBE\x88", true},           // alpha with iota
                    Case{"*\xE2\xB1\xA5*", "\xC8\xBA", true}));             // grows when folded

INSTANTIATE_TEST_SUITE_P(
    HostileText, Like,
    testing::Values(Case{"*b*", with_nul("a", "b"), true}, Case{"a?b", with_nul("a", "b"), true},
                    Case{with_nul("*a", "b*"), with_nul("xA", "By"), true},
                    Case{with_nul("*a", "b*"), "xaby", false},
                    Case{"*b*",
                         "\xFF\xFE"
                         "b",
                         true},
                    Case{"?b",
                         "\xFF"
                         "b",
                         true},
                    Case{"a?", "a\xC3", true}, Case{"*\xEF\xBF\xBD*", "\xED\xA0\x80", true},
                    Case{"??", "\xC0\xAF", true})); // overlong: two characters, none of them "/"

TEST(LikePatternErrors, NameThePattern)
{
    for (const char *pattern : {"[", "*[abc*", "[z-a]", "[Z-a]", "[b-B-A-]x[", "[!"}) {
        try {
            const LikePattern compiled(pattern);
            ADD_FAILURE() << pattern;
        } catch (const RuntimeError &error) {
            EXPECT_EQ(error.number(), error_number::invalid_pattern);
            EXPECT_TRUE(error.description().contains(QString::fromUtf8(pattern)));
        }
    }
}

// Steps would be squares of these lengths if any of this were quadratic, and the test never ends.
TEST(LikePatternCost, IsLinearForTextThatMatchesAlmost)
{
    const std::string as(1 << 20, 'a');
    EXPECT_FALSE(LikePattern('*' + as + "b*").matches(as + as));
    EXPECT_FALSE(LikePattern("*" + as.substr(1, 1 << 19) + "b*").matches(as));
    std::string stars;
    for (int i = 0; i < 1000; ++i)
        stars += "*a";
    EXPECT_FALSE(LikePattern(stars + "*b").matches(as));
    EXPECT_TRUE(LikePattern(stars + "*").matches(as));
}
} // namespace
