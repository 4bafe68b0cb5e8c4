#include "mail/failed_addresses.h"

#include <gtest/gtest.h>

namespace
{
struct Notice
{
    QString text;
    QStringList entries;
};
class FailedAddressEntries : public testing::TestWithParam<Notice>
{
};

TEST_P(FailedAddressEntries, AreCutFromTheText)
{
    EXPECT_EQ(failed_addresses(GetParam().text).entries, GetParam().entries);
}

INSTANTIATE_TEST_SUITE_P(
    OneAddress, FailedAddressEntries,
    testing::Values(Notice{"The mail to <ann@example.org> failed", {"ann@example.org"}},
                    Notice{"to:ann@example.org", {"ann@example.org"}}, // a colon parts words
                    Notice{"[ann@example.org];{x}", {"ann@example.org"}},
                    Notice{"a/ann@example.org\\b", {"ann@example.org"}},
                    // A full stop, round brackets, quotes and commas stay part of their word.
                    Notice{"Write to ann@example.org.", {"ann@example.org."}},
                    Notice{"(ann@example.org)", {"(ann@example.org)"}},
                    Notice{"'ann@example.org'", {"'ann@example.org'"}},
                    Notice{"\"ann@example.org\"", {"\"ann@example.org\""}},
                    Notice{"ann@example.org,", {"ann@example.org,"}},
                    Notice{"a bare @ sign", {"@"}},
                    Notice{"  Ann@Example.ORG  ", {"Ann@Example.ORG"}})); // case is kept

INSTANTIATE_TEST_SUITE_P(NoAddress, FailedAddressEntries,
                         testing::Values(Notice{"", {}}, Notice{"   ", {}},
                                         Notice{"nobody was named here", {}}));

// With more than one "@" every address is listed twice: once cut at commas, once as its whole word.
INSTANTIATE_TEST_SUITE_P(
    SeveralAddresses, FailedAddressEntries,
    testing::Values(Notice{"a@x.org b@x.org", {"a@x.org", "b@x.org", "a@x.org", "b@x.org"}},
                    Notice{"a@x.org\r\nb@x.org", {"a@x.org", "b@x.org", "a@x.org", "b@x.org"}},
                    Notice{"a@x.org\nb@x.org", {"a@x.org", "b@x.org", "a@x.org", "b@x.org"}},
                    Notice{"a@x.org,b@x.org", {"a@x.org", "b@x.org", "a@x.org,b@x.org"}},
                    Notice{"a@x.org,,b@x.org,", {"a@x.org", "b@x.org", "a@x.org,,b@x.org,"}},
                    Notice{"one a@x.org  two,three b@x.org four", // only words with "@"
                           {"a@x.org", "b@x.org", "a@x.org", "b@x.org"}},
                    Notice{"two,b@x.org a@x.org",
                           {"two", "b@x.org", "a@x.org", "two,b@x.org", "a@x.org"}},
                    Notice{"a@b@c", {"a@b@c", "a@b@c"}}, // the signs count, not the words
                    Notice{"@ @", {"@", "@", "@", "@"}}));

TEST(FailedAddresses, TellsWhatTheScratchFieldsShow)
{
    const FailedAddresses two = failed_addresses("<a@x.org> and <b@x.org>");
    EXPECT_EQ(two.words, "a@x.org b@x.org");
    EXPECT_EQ(two.lines, "a@x.org\r\nb@x.org");
    EXPECT_EQ(two.comma_list, ",a@x.org,b@x.org");
    EXPECT_EQ(two.last_element, "b@x.org");

    const FailedAddresses one = failed_addresses("a@x.org");
    EXPECT_EQ(one.lines, "a@x.org");
    EXPECT_EQ(one.comma_list, "");
    EXPECT_EQ(one.last_element, "");
}

TEST(FailedAddresses, TakesTimeByTheLengthOfTheText)
{
    const QString hostile = QStringLiteral("@ ,").repeated(300'000);
    EXPECT_EQ(failed_addresses(hostile).entries.size(), 2 * 300'000);
}
} // namespace
