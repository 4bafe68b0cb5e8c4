#include "send/recipients.h"

#include <gtest/gtest.h>

namespace
{
struct Split
{
    const char *text;
    QStringList recipients;
};

class Recipients : public testing::TestWithParam<Split>
{
};

TEST_P(Recipients, AreThePiecesBetweenSemicolons)
{
    EXPECT_EQ(split_recipients(GetParam().text), GetParam().recipients);
}

INSTANTIATE_TEST_SUITE_P(
    Boxes, Recipients,
    testing::Values(Split{"a@x.org", {"a@x.org"}}, Split{"a@x.org;", {"a@x.org"}},
                    Split{"a@x.org; b@x.org; c@x.org;", {"a@x.org", " b@x.org", " c@x.org"}},
                    Split{"a@x.org;;b@x.org", {"a@x.org", "", "b@x.org"}}, Split{";", {""}},
                    Split{";;", {"", ""}}, Split{";a@x.org", {"", "a@x.org"}},
                    Split{"a@x.org, b@x.org", {"a@x.org, b@x.org"}}, Split{"", {}},
                    Split{"one\r\ntwo", {"one\r\ntwo"}}));
} // namespace
