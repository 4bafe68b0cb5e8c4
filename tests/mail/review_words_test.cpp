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
} // namespace
