#include "mail/mailbox_field.h"

#include <gtest/gtest.h>

namespace
{
struct Case
{
    QByteArray value;
    QString address;
    QString name;
};
class FirstMailbox : public testing::TestWithParam<Case>
{
};

TEST_P(FirstMailbox, GivesAddressAndName)
{
    const Mailbox mailbox = first_mailbox(GetParam().value);
    EXPECT_EQ(mailbox.address, GetParam().address);
    EXPECT_EQ(mailbox.name, GetParam().name);
}

INSTANTIATE_TEST_SUITE_P(
    RegularForms, FirstMailbox,
    testing::Values(
        Case{"ann@example.org", "ann@example.org", ""},
        Case{"<ann@example.org>", "ann@example.org", ""},
        Case{"Ann Doe <ann@example.org>", "ann@example.org", "Ann Doe"},
        Case{"\"Doe, Ann\" <ann@example.org>", "ann@example.org", "Doe, Ann"},
        Case{"\"Ann \\\"A\\\" Doe\" <ann@example.org>", "ann@example.org", "Ann \"A\" Doe"},
        Case{"ann@example.org (Ann (old) Doe)", "ann@example.org", "Ann (old) Doe"},
        Case{"<ann@example.org> (Ann)", "ann@example.org", "Ann"},
        Case{"Ann (home) Doe <ann@example.org>", "ann@example.org", "Ann Doe"},
        Case{"Ann <ann@example.org>, Bob <bob@example.org>", "ann@example.org", "Ann"},
        Case{"ann@example.org, bob@example.org", "ann@example.org", ""},
        Case{"friends: Ann <ann@example.org>, bob@example.org;", "ann@example.org", "Ann"},
        Case{"\"a b\"@example.org", "\"a b\"@example.org", ""},
        Case{"Ann <@relay.example,@b.example:ann@example.org>", "ann@example.org", "Ann"},
        Case{"=?utf-8?Q?J=C3=BCrgen?= <j@example.org>", "j@example.org", u"Jürgen"_qs},
        Case{"\"=?utf-8?Q?J=C3=BCrgen?=\" <j@example.org>", "j@example.org", u"Jürgen"_qs},
        Case{"=?utf-8?Q?Doe=2C_Ann?= <ann@example.org>", "ann@example.org", "Doe, Ann"},
        Case{"j@example.org (=?iso-8859-1?Q?J=FCrgen?=)", "j@example.org", u"Jürgen"_qs}));

INSTANTIATE_TEST_SUITE_P(
    BrokenForms, FirstMailbox,
    testing::Values(
        Case{"Doe, Ann <ann@example.org>", "ann@example.org", "Doe, Ann"},
        Case{"=?utf-8?Q?Re: Doe, Ann?= <ann@example.org>", "ann@example.org", "Re: Doe, Ann"},
        Case{"Bob <<bob@example.org>>", "bob@example.org", "Bob"},
        Case{"Bob <bob@example.org", "bob@example.org", "Bob"},
        Case{"Bob <bob@example.org, Ann <ann@example.org>", "bob@example.org", "Bob"},
        Case{"Ann ann@example.org", "ann@example.org", "Ann"},
        Case{"ann @ example.org", "ann@example.org", ""},
        Case{"\"Ann <ann@example.org>", "ann@example.org", "Ann"},
        Case{"Ann (home <ann@example.org>", "ann@example.org", "Ann (home"},
        Case{"J\xFCrgen <j@example.org>", "j@example.org", u"Jürgen"_qs},
        Case{"=?utf-8?Q?ann=40example.org?=", "ann@example.org", ""},
        Case{", ,ann@example.org", "ann@example.org", ""},
        Case{"\"evil@example.net\" <ann@example.org>", "ann@example.org", "evil@example.net"},
        Case{"<ann@example.org> <bob@example.org>", "ann@example.org", ""},
        Case{"<an\x01n@example.org>", "an n@example.org", ""}));

INSTANTIATE_TEST_SUITE_P(WithoutAddress, FirstMailbox,
                         testing::Values(Case{"", "", ""}, Case{"<>", "", ""},
                                         Case{"root", "root", ""},
                                         Case{"root (Charlie)", "root", "Charlie"},
                                         Case{"Mail Delivery System", "", "Mail Delivery System"},
                                         Case{"undisclosed-recipients:;", "", ""},
                                         Case{"Mailer <>", "", "Mailer"}));
} // namespace
