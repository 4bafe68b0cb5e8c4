#include "mail/recipient.h"
#include "platform/runtime_error.h"
#include "tests/support/print_qt.h"

#include <gtest/gtest.h>

namespace
{
struct Resolved
{
    QString text;
    QString address;
};

class ResolvedRecipient : public testing::TestWithParam<Resolved>
{
};

TEST_P(ResolvedRecipient, IsTheAddressAlone)
{
    EXPECT_EQ(resolve_recipient(GetParam().text).value_or("nobody"), GetParam().address);
}

INSTANTIATE_TEST_SUITE_P(Blank, ResolvedRecipient,
                         testing::Values(Resolved{"", "nobody"}, Resolved{"   ", "nobody"},
                                         Resolved{"\r\n", "nobody"},
                                         Resolved{" \t\u00A0\r\n ", "nobody"}));

INSTANTIATE_TEST_SUITE_P(
    Trimmed, ResolvedRecipient,
    testing::Values(Resolved{"ann@example.org", "ann@example.org"},
                    Resolved{" ann@example.org", "ann@example.org"}, // as list clicks leave it
                    Resolved{"\tann@example.org  ", "ann@example.org"},
                    Resolved{" ann@example.org\r\n", "ann@example.org"}, // a file's last one
                    Resolved{"\u00A0ann@example.org", "ann@example.org"}));

INSTANTIATE_TEST_SUITE_P(
    Forms, ResolvedRecipient,
    testing::Values(Resolved{"Ann.O'Neill+x=y/z_{1}@Mail-2.Example.ORG",
                             "Ann.O'Neill+x=y/z_{1}@Mail-2.Example.ORG"},
                    Resolved{"-x@example.org", "-x@example.org"},
                    Resolved{"root@localhost", "root@localhost"},
                    Resolved{R"("ann b"@example.org)", R"("ann b"@example.org)"},
                    Resolved{R"("a\"@\\b"@example.org)", R"("a\"@\\b"@example.org)"},
                    Resolved{"ann@[192.0.2.1]", "ann@[192.0.2.1]"},
                    Resolved{"ann@[IPv6:2001:db8::1]", "ann@[IPv6:2001:db8::1]"},
                    Resolved{"Ann <ann@example.org>", "ann@example.org"},
                    Resolved{R"("O'Neill, Ann <x>" <ann@example.org>)", "ann@example.org"},
                    Resolved{"<ann@example.org>", "ann@example.org"},
                    Resolved{QString(64, 'a') + "@example.org",
                             QString(64, 'a') + "@example.org"}));

INSTANTIATE_TEST_SUITE_P(
    BeyondAscii, ResolvedRecipient,
    testing::Values(Resolved{"ann@bücher.example", "ann@xn--bcher-kva.example"},
                    Resolved{"ann@例え.example", "ann@xn--r8jz45g.example"},
                    Resolved{"jörg@example.org", "jörg@example.org"},
                    Resolved{"用户@例え.example", "用户@xn--r8jz45g.example"}));

class RefusedRecipient : public testing::TestWithParam<QString>
{
};

TEST_P(RefusedRecipient, IsNoAddress)
{
    try {
        resolve_recipient(GetParam());
        FAIL() << GetParam().toStdString();
    } catch (const RuntimeError &error) {
        EXPECT_EQ(error.number(), 32000);
        EXPECT_EQ(error.description(),
                  "The recipient \"" + GetParam() +
                      "\" cannot be used: it is not an e-mail address. Nothing "
                      "was sent.");
    }
}

INSTANTIATE_TEST_SUITE_P(
    Malformed, RefusedRecipient,
    testing::Values("ann", "@example.org", "ann@", "@", "ann@@example.org", "ann@example..org",
                    ".ann@example.org", "ann.@example.org", "a..n@example.org", "ann@.example.org",
                    "ann@example.org.", "ann b@example.org", "ann@exa mple.org", "ann@-x.org",
                    "ann@x-.org", "ann@example_org", "ann@example.org bob@example.org",
                    "ann@example.org, bob@example.org", "ann@example.org>", "<ann@example.org",
                    "Ann <ann@example.org> x", "Ann <>", R"("ann@example.org)",
                    R"("a"b@example.org)", R"("a"b"@example.org)", "ann@[300.1.1.1]", "ann@[1.2.3]",
                    "ann@[IPv6:::g]", "ann@[IPv6:fe80::1%eth0]", "ann@[example.org]",
                    "(x)ann@example.org", "ann@bücher_.example", "j\u00A0g@example.org",
                    "ann:x@example.org", "mailto:ann@example.org", "a\\b@example.org"));

INSTANTIATE_TEST_SUITE_P(TooLong, RefusedRecipient,
                         testing::Values(QString(65, 'a') + "@example.org",
                                         "a@" + QString(64, 'b') + ".org",
                                         "a@" + QString("b.").repeated(130) + "org"));

struct Hidden
{
    QString text;
    QString shown;
};

class HiddenInRecipient : public testing::TestWithParam<Hidden>
{
};

TEST_P(HiddenInRecipient, IsRefusedAndShownHarmless)
{
    try {
        resolve_recipient(GetParam().text);
        FAIL() << GetParam().shown.toStdString();
    } catch (const RuntimeError &error) {
        EXPECT_EQ(error.description(), "The recipient \"" + GetParam().shown +
                                           "\" cannot be used: it holds a line break or another "
                                           "control character. Nothing was sent.");
    }
}

INSTANTIATE_TEST_SUITE_P(
    Controls, HiddenInRecipient,
    testing::Values(Hidden{"ann@example.org\r\nbob", "ann@example.org\\r\\nbob"},
                    Hidden{"ann@example.org\nBcc: x@example.org",
                           "ann@example.org\\nBcc: x@example.org"},
                    Hidden{"an\tn@example.org", "an\\tn@example.org"},
                    Hidden{QString("an") + QChar(0) + "n@example.org", "an\\u0000n@example.org"},
                    Hidden{"an\u0085n@example.org", "an\\u0085n@example.org"},
                    Hidden{"an\u2028n@example.org", "an\\u2028n@example.org"},
                    Hidden{"an\u202En@example.org", "an\\u202En@example.org"},
                    Hidden{"an\u200Bn@example.org", "an\\u200Bn@example.org"},
                    Hidden{"\"a\nb\"@example.org", "\"a\\nb\"@example.org"}));

TEST(Recipient, WithHalfACharacterIsRefused)
{
    EXPECT_THROW(resolve_recipient(QString("a") + QChar(0xD800) + "@example.org"), RuntimeError);
}

TEST(Recipient, SaysWhetherItNeedsMoreThanAscii)
{
    EXPECT_FALSE(needs_utf8("ann@xn--bcher-kva.example"));
    EXPECT_TRUE(needs_utf8("jörg@example.org"));
}

TEST(Recipient, HasItsDomainBehindTheLastAt)
{
    EXPECT_EQ(domain_of("\"a@b\"@example.org"), "example.org");
}

TEST(HarmlessText, IsCut)
{
    const QString shown = harmless_text(QString(1'000'000, 'x'));
    EXPECT_EQ(shown, QString(300, 'x') + "…");
    EXPECT_EQ(harmless_text("a\U0001F600b"), "a\U0001F600b");
}
} // namespace
