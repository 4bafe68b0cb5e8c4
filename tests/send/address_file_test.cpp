#include "send/address_file.h"

#include <gtest/gtest.h>

namespace
{
struct Load
{
    const char *box;
    QStringList lines;
    const char *result;
};

class AddressLines : public testing::TestWithParam<Load>
{
};

TEST_P(AddressLines, AreAddedAndOnlyPiecesWithAnAtSignAreKept)
{
    EXPECT_EQ(with_address_lines(GetParam().box, GetParam().lines), GetParam().result);
}

INSTANTIATE_TEST_SUITE_P(
    Files, AddressLines,
    testing::Values(
        // One address a line is one piece, kept whole when any line holds an address.
        Load{"", {"a@x.org", "word"}, "a@x.org\r\nword\r\n"}, Load{"", {"word", "words"}, ""},
        Load{"", {"a@x.org; b@x.org"}, "a@x.org;  b@x.org\r\n"},
        Load{"", {"a@x.org;word;b@x.org;"}, "a@x.org; b@x.org"},
        Load{"c@x.org; ", {"a@x.org"}, "c@x.org;  a@x.org\r\n"},
        Load{"c@x.org", {"a@x.org"}, "c@x.orga@x.org\r\n"}, Load{"word", {}, ""},
        Load{"a@x.org; word; ", {}, "a@x.org"}, Load{"", {}, ""}));
} // namespace
