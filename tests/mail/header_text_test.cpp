#include "mail/encoded_words.h"
#include "mail/header_fields.h"
#include "mail/text_shape.h"

#include <gtest/gtest.h>

namespace
{
struct Case
{
    QByteArray value;
    QString text;
};
class HeaderText : public testing::TestWithParam<Case>
{
};

TEST_P(HeaderText, IsDecoded)
{
    EXPECT_EQ(decode_header_text(GetParam().value), GetParam().text);
}

INSTANTIATE_TEST_SUITE_P(
    Words, HeaderText,
    testing::Values(
        Case{"plain = text? yes", "plain = text? yes"},
        Case{"=?utf-8?Q?Gr=C3=BC=C3=9Fe?=", u"Grüße"_qs},
        Case{"=?UTF-8?b?R3LDvMOfZQ==?= an alle", u"Grüße an alle"_qs},
        Case{"=?iso-8859-1*de?q?Gr=FC=DFe_?=", u"Grüße "_qs},            // with a language
        Case{"=?utf-8?B?R3LDvA==?= =?utf-8?B?w59l?=", u"Grüße"_qs},      // each padded by itself
        Case{"=?utf-8?Q?Gr=C3?=\t =?utf-8?Q?=BC=C3=9Fe?=", u"Grüße"_qs}, // a split character
        Case{"=?utf-8?B?R3LD?= =?UTF-8?B?vMOfZQ==?=", u"Grüße"_qs},
        Case{"=?utf-8?Q?a?= =?iso-8859-1?Q?=E4?=", u"aä"_qs},
        Case{"=?utf-8?Q?a?= b =?utf-8?Q?c?=", "a b c"},
        Case{"=?iso-2022-jp?B?GyRCJCIbKEI=?= =?iso-2022-jp?B?GyRCJCIbKEI=?=", u"ああ"_qs}));

INSTANTIATE_TEST_SUITE_P(
    BrokenWords, HeaderText,
    testing::Values(Case{"Gr\xC3\xBC\xC3\x9F"
                         "e",
                         u"Grüße"_qs}, // bare UTF-8
                    Case{"Gr\xFC\xDF"
                         "e",
                         u"Grüße"_qs},                              // bare Windows-1252
                    Case{"Gr\xFC=?utf-8?Q?=C3=9F?=e", u"Grüße"_qs}, // glued
                    Case{"\"=?utf-8?Q?=C3=A4?=\"", u"\"ä\""_qs},    // inside quotes
                    Case{"=?utf-8?Q?with blanks?= x", "with blanks x"},
                    Case{"=?utf-8?Q?what?_yes?=", "what? yes"},
                    Case{"=?x-none?Q?=E4?= =?x-none?Q?=C3=A4?=", u"äÃ¤"_qs}, // unknown charset
                    Case{"=?utf-8?Q?no_end", "no end"},
                    Case{"=?utf-8?Q?no_end rest", "no end rest"},
                    Case{"=?utf-8?B?YWI= =?utf-8?B?Y2Q=?=", "abcd"}, // first end forgotten
                    Case{"=?utf-8?Q?a=?=", "a="}, Case{"=?utf-8?Q?\?=x", "x"},
                    Case{"=?utf-8?X?a?=", "=?utf-8?X?a?="}, Case{"=?utf-8?Q", "=?utf-8?Q"},
                    Case{"=?=?utf-8?Q?a?=", "=?a"}, Case{"=?", "=?"}));

TEST(EncodedWordLength, IsZeroForTextAndForWordsWithoutEnd)
{
    EXPECT_EQ(encoded_word_length("=?utf-8?Q?a?= b"), 13);
    EXPECT_EQ(encoded_word_length("=?utf-8?Q?a"), 0);
    EXPECT_EQ(encoded_word_length("a"), 0);
}

TEST(OneLine, HasNoControlCharacters)
{
    EXPECT_EQ(as_one_line(QString::fromUtf16(u"\ta\r\nb\x7F\u0085\u2028c\x01 ")), "a  b   c");
    EXPECT_EQ(as_one_line(QString::fromLatin1("a\0b", 3)), "a b");
    // A text document makes line breaks of the first two.
    EXPECT_EQ(as_one_line(QString::fromUtf16(u"a\uFDD0b\uFDD1c\uFDEFd\uFFFEe\uFFFFf\u2029g")),
              "a b c d e f g");
}

TEST(WithCrlf, MakesEveryLineBreakOne)
{
    EXPECT_EQ(with_crlf(u"a\nb\rc\r\nd\u2028e\u2029f\n\n"_qs),
              "a\r\nb\r\nc\r\nd\r\ne\r\nf\r\n\r\n");
    EXPECT_EQ(with_crlf(QString::fromLatin1("a\0\x0B", 3)), QString::fromLatin1("a\0\x0B", 3));
    EXPECT_EQ(with_crlf(QString::fromUtf16(u"a\uFDD0b\uFDD1c\uFFFFd")), "a b c d");
    EXPECT_EQ(with_crlf({}), "");
}

struct ShortenCase
{
    QString text;
    qsizetype limit;
    QString kept;
};
class Shorten : public testing::TestWithParam<ShortenCase>
{
};

TEST_P(Shorten, KeepsWholeWordsAlone)
{
    QString text = GetParam().text;
    EXPECT_EQ(shorten(text, GetParam().limit), GetParam().text.size() - GetParam().kept.size());
    EXPECT_EQ(text, GetParam().kept);
}

INSTANTIATE_TEST_SUITE_P(
    Texts, Shorten,
    testing::Values(ShortenCase{"to ann@example.org", 18, "to ann@example.org"},
                    ShortenCase{"to ann@example.org", 17, "to"},
                    ShortenCase{"to ann@example.org", 2, "to"}, ShortenCase{"a\r\nb@c", 4, "a"},
                    ShortenCase{"a\r\nb@c", 2, "a"}, // between CR and LF
                    ShortenCase{u"a\tb\u2028c@d"_qs, 5, "a\tb"}, ShortenCase{u"x 😀😀"_qs, 4, "x"},
                    ShortenCase{"ann@example.org", 7, ""}, ShortenCase{"a b", 0, ""}));

TEST(DropLastWord, LeavesWhatStandsBeforeIt)
{
    QString text = "for ann bob@exam";
    EXPECT_EQ(drop_last_word(text), 9);
    EXPECT_EQ(text, "for ann");
    text = "bob@exam";
    EXPECT_EQ(drop_last_word(text), 8);
    EXPECT_EQ(text, "");
    EXPECT_EQ(drop_last_word(text), 0);
}

TEST(HeaderFieldsWalk, PassesOverStrayLinesAndStopsAtTheEmptyLine)
{
    const QByteArray block = "A: one\r\n two\r\nstray\r\nB :three\nC:\n\nD: body\n";
    HeaderFields fields(block);
    ASSERT_TRUE(fields.next());
    EXPECT_TRUE(fields.is("a"));
    EXPECT_EQ(unfolded(fields.value()), "one two");
    ASSERT_TRUE(fields.next());
    EXPECT_TRUE(fields.is("B"));
    EXPECT_EQ(unfolded(fields.value()), "three");
    ASSERT_TRUE(fields.next());
    EXPECT_EQ(unfolded(fields.value()), "");
    EXPECT_FALSE(fields.next());
    EXPECT_EQ(block.mid(fields.body()), "D: body\n");
}
} // namespace
