#include "mail/html_text.h"
#include "mail/mailbox_field.h"
#include "mail/message_fields.h"
#include "mail/parser_guard.h"
#include "tests/mail/mail_texts.h"

#include <gtest/gtest.h>

#include <random>

namespace
{
// Each of these stopped some mail parser, or kept it busy for minutes. Here a failure shows as a
// crash or as the test's time-out.
struct Case
{
    const char *what;
    QByteArray message;
};
class HostileMessage : public testing::TestWithParam<Case>
{
};

TEST_P(HostileMessage, IsReadLikeAnyOther)
{
    const MessageFields fields = fields_of("Subject: here\n" + GetParam().message);
    EXPECT_EQ(fields.subject, "here");
    EXPECT_LE(fields.text.size(), 1024 * 1024 + 200);
    EXPECT_LE(fields.address.size(), 65'536);
    EXPECT_LE(fields.name.size(), 65'536);
}

QByteArray repeated(const char *piece, int times)
{
    return QByteArray(piece).repeated(times);
}

QByteArray nested_multiparts(int levels)
{
    QByteArray message;
    for (int i = 0; i < levels; ++i) {
        const QByteArray boundary = "b" + QByteArray::number(i);
        message +=
            "Content-Type: multipart/mixed; boundary=" + boundary + "\n\n--" + boundary + "\n";
    }
    return message + "\ninner\n";
}

INSTANTIATE_TEST_SUITE_P(
    Headers, HostileMessage,
    testing::Values(
        Case{"groups in From", "From: " + repeated("a:", 40'000) + "\n\nx"},
        Case{"groups in To", "To: " + repeated("a:", 40'000) + "\n\nx"},
        Case{"folded groups", "Cc: x" + repeated("\n a:", 40'000) + "\n\nx"},
        Case{"groups in a returned message",
             "Content-Type: message/rfc822\n\nReply-To : " + repeated("a:", 40'000) + "\n\nx"},
        Case{"comments", "From: " + repeated("(", 1'000'000) + "\n\nx"},
        Case{"brackets", "From: " + repeated("<", 1'000'000) + "\n\nx"},
        Case{"quotes", "From: " + repeated("\\\"", 500'000) + "\n\nx"},
        Case{"commas", "From: " + repeated("a,", 500'000) + "\n\nx"},
        Case{"ats", "From: " + repeated("@ ", 500'000) + "\n\nx"},
        Case{"words", "From: " + repeated("=?a?q?", 200'000) + "\n\nx"},
        Case{"quotes in an encoded word",
             "From: =?a?q?\"" + repeated("\\\"", 120'000) + "?= a@b\n\nx"},
        Case{"endless quotes in an encoded word",
             "From: =?a?q?\"" + repeated("\\\"", 2'000'000) + "?= a@b\n\nx"},
        Case{"alternating charsets",
             "To: x\nSubject: " + repeated("=?utf-8?q?a?= =?koi8-r?q?b?= ", 1'000'000) + "\n\nx"},
        Case{"failed recipients", "X-Failed-Recipients: " + repeated("a@b,", 1'000'000) + "\n\nx"},
        Case{"many fields", repeated("a:b\n", 300'000) + "\nx"},
        Case{"many parameters",
             "Content-Type: text/plain" + repeated("; a=b", 100'000) + "\n\nx"}));

INSTANTIATE_TEST_SUITE_P(
    Bodies, HostileMessage,
    testing::Values(
        Case{"nested", nested_multiparts(50'000)},
        Case{"nested messages", repeated("Content-Type: message/rfc822\n\n", 50'000) + "x"},
        Case{"many parts",
             "Content-Type: multipart/mixed; boundary=b\n\n" + repeated("--b\n", 1'000'000)},
        Case{"many part headers",
             "Content-Type: multipart/mixed; boundary=b\n\n--b\n" + repeated("a:\n", 1'000'000)},
        Case{"quoted-printable blanks",
             "Content-Transfer-Encoding: quoted-printable\n\n" + repeated(" ", 1'000'000) + "x"},
        Case{"long line", "\n" + QByteArray(5'000'000, 'x')}));

INSTANTIATE_TEST_SUITE_P(
    HtmlBodies, HostileMessage,
    testing::Values(
        Case{"<", "Content-Type: text/html\n\n" + repeated("<", 1'000'000)},
        Case{"<a", "Content-Type: text/html\n\n" + repeated("<a", 500'000)},
        Case{"quotes", "Content-Type: text/html\n\n" + repeated("<a b=\">\" ", 200'000)},
        Case{"comments", "Content-Type: text/html\n\n" + repeated("<!--", 300'000)},
        Case{"scripts", "Content-Type: text/html\n\n" + repeated("<script>", 200'000)},
        Case{"entities", "Content-Type: text/html\n\n" + repeated("&#", 500'000)},
        Case{"digits", "Content-Type: text/html\n\n&#" + repeated("9", 1'000'000)},
        Case{"a long link", "Content-Type: text/html\n\n<a href=mailto:" + repeated("a", 500'000) +
                                "b" + ">" + repeated("a", 1'000'000)},
        Case{"links", "Content-Type: text/html\n\n" + repeated("<a href=mailto:a@b>x", 100'000)}));

TEST(ParserGuard, BlanksColonsOfAddressFieldsAlone)
{
    QByteArray message = "Subject: " + repeated("a:", 300) + "\nsender : " + repeated("a:", 300) +
                         "\n " + repeated("b:", 10) + "\nTopic: c:\n";
    const QByteArray before = message;
    EXPECT_EQ(guard_for_parser(message), before.size());
    EXPECT_EQ(message.count(':'), 301 + 200 + 2);
    EXPECT_TRUE(message.startsWith("Subject: " + repeated("a:", 300)));
    EXPECT_TRUE(message.endsWith("Topic: c:\n"));
    EXPECT_EQ(message.size(), before.size());
}

TEST(ParserGuard, EndsTheMessageBeforeItBecomesMillionsOfObjects)
{
    QByteArray message = repeated("--b\n", 300'000);
    EXPECT_EQ(guard_for_parser(message), 200'000 * 4);
}

TEST(HugeMessage, IsReadInBoundedTime)
{
    const QByteArray line = QByteArray(76, 'A') + "\n";
    const QByteArray message = mail(
        "Content-Type: multipart/mixed; boundary=b",
        "--b\n\nshort\n--b\nContent-Type: application/zip\nContent-Transfer-Encoding: base64\n\n" +
            line.repeated(650'000) + "--b--\n");
    EXPECT_EQ(fields_of(message).text, "short");
}

TEST(MutatedMessages, NeverBreakTheReader)
{
    const QByteArray seed =
        mail("From: =?utf-8?Q?J=C3=BCrgen?= <j@example.org>\nSubject: =?utf-8?B?R3LDvMOf?=\n"
             "Date: Mon, 02 Jan 2006 10:20:30 +0000\nTo: a:b@x.example;\n"
             "Content-Type: multipart/report; boundary=\"b\"",
             "--b\nContent-Type: text/html; charset=iso-2022-jp\n"
             "Content-Transfer-Encoding: quoted-printable\n\n<a href=3D\"mailto:x@y.example\">&amp;"
             "=1B$B</a><!-- c -->\n--b\nContent-Type: message/delivery-status\n\n"
             "Final-Recipient: rfc822; g@x.example\nAction: failed\n\n--b\n"
             "Content-Type: message/rfc822\n\nTo: x@y.example\n\nback\n--b--\n");
    std::mt19937 random(20060102);
    const auto below = [&random](qsizetype limit) {
        return static_cast<qsizetype>(random() % static_cast<unsigned>(limit));
    };
    const QByteArray favourites("\n\r:;<>()\"'=?-_&#@,\0\x1B\x80\xFF b", 24);
    for (int round = 0; round < 5'000; ++round) {
        QByteArray message = seed;
        for (qsizetype edits = 1 + below(8); edits > 0; --edits) {
            const qsizetype at = below(message.size());
            if (below(3) == 0)
                message.remove(at, below(20));
            else if (below(2) == 0)
                message.insert(at, message.mid(below(message.size()), below(40)));
            else
                message[at] = favourites[below(favourites.size())];
        }
        const MessageFields fields = fields_of(message);
        for (const QString &line : {fields.address, fields.subject, fields.name, fields.date})
            ASSERT_FALSE(line.contains('\n') || line.contains('\r') || line.contains(QChar(0)))
                << message.constData();
        ASSERT_EQ(fields.text.count("\r\n"), fields.text.count('\n')) << message.constData();
        ASSERT_EQ(fields.text.count('\r'), fields.text.count('\n')) << message.constData();
    }
}
} // namespace
