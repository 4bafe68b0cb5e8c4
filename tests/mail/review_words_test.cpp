#include "mail/review_words.h"
#include "tests/support/print_qt.h"

#include <gtest/gtest.h>

namespace
{
struct Message
{
    QString text;
    QString words;
};
class ReviewWords : public testing::TestWithParam<Message>
{
};

TEST_P(ReviewWords, AreTheWordsWithTheSign)
{
    EXPECT_EQ(review_words(GetParam().text), GetParam().words);
}

INSTANTIATE_TEST_SUITE_P(
    Messages, ReviewWords,
    testing::Values(Message{"", ""}, Message{"no address at all", ""},
                    Message{"user gone@x.org is unknown", "gone@x.org"},
                    Message{"[gone@x.org]", "xgone@x.orgx"}, // brackets are no blanks here
                    Message{"to [a@x.org][b@x.org] c", "xa@x.orgxxb@x.orgx"}, // … and part nothing
                    Message{"a@x.org and b@x.org", "a@x.org b@x.org"}, // all into one pattern
                    Message{"<a@x.org>; (b@x.org), {c@x.org}:/\\",     // no other mark is touched
                            "<a@x.org>; (b@x.org), {c@x.org}:/\\"},
                    Message{"one\r\na@x.org\r\ntwo", "a@x.org"},
                    Message{"one\na@x.org\rtwo", "a@x.org"}, Message{"a@x.org\tb", "a@x.org\tb"},
                    Message{"  a@x.org   b@x.org  ", "a@x.org b@x.org"}, Message{"@", "@"},
                    Message{"A@X.ORG", "A@X.ORG"}));

TEST(BoxedText, IsCutToWhatABoxCanShow)
{
    EXPECT_EQ(boxed_text(""), "");
    EXPECT_EQ(boxed_text("two\nlines"), "two\nlines");
    const QString longest = QString("a").repeated(2000);
    EXPECT_EQ(boxed_text(longest), longest);
    EXPECT_EQ(boxed_text(longest + QString("b").repeated(1234)),
              longest + "\n(1,234 more characters)");
    const QString face = QStringLiteral("\U0001F600");
    EXPECT_EQ(boxed_text(QString("a").repeated(1999) + face),
              QString("a").repeated(1999) + "\n(2 more characters)");
}

TEST(BoxedText, HasThirtyLinesAtMost)
{
    const QString thirty = QString("a\n").repeated(30);
    EXPECT_EQ(boxed_text(thirty), thirty);
    EXPECT_EQ(boxed_text(thirty + "b\nc"), thirty + "\n(3 more characters)");
}
} // namespace
