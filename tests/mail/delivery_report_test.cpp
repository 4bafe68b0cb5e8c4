#include "mail/delivery_report.h"
#include "mail/message_fields.h"
#include "tests/mail/mail_texts.h"

#include <gtest/gtest.h>

namespace
{
struct Case
{
    QByteArray status;
    QStringList addresses;
};
class StatusPart : public testing::TestWithParam<Case>
{
};

TEST_P(StatusPart, GivesTheFailedRecipients)
{
    FailedRecipients failed;
    failed.add_status("Reporting-MTA: dns; mx.example.com\r\n\r\n" + GetParam().status);
    EXPECT_EQ(failed.addresses(), GetParam().addresses);
}

INSTANTIATE_TEST_SUITE_P(
    Recipients, StatusPart,
    testing::Values(
        Case{"Final-Recipient: rfc822; ann@example.org\r\nAction: failed\r\n", {"ann@example.org"}},
        Case{"final-recipient: RFC822;\n <ann@example.org>\naction: FAILED (no such user)\n",
             {"ann@example.org"}},
        Case{"Action: failed\n\nFinal-Recipient: rfc822; a@example.org\n", {}}, // another block's
        Case{"Final-Recipient: rfc822; a@x.example\nAction: failed\n\n"
             "Final-Recipient: rfc822; b@x.example\nAction: delayed\n\n"
             "Final-Recipient: rfc822; c@x.example\nAction: relayed\n\n"
             "Final-Recipient: rfc822; d@x.example\nAction: delivered\n\n"
             "Final-Recipient: rfc822; e@x.example\nAction: expanded\n\n\n"
             "Final-Recipient: rfc822; f@x.example\nAction: failed\n",
             {"a@x.example", "f@x.example"}},
        Case{"Original-Recipient: rfc822; alias@x.example\nFinal-Recipient: rfc822; box@y.example\n"
             "Action: failed\n",
             {"box@y.example", "alias@x.example"}}, // the list knows the one that was written to
        Case{"Original-Recipient: rfc822; a@x.example\nFinal-Recipient: rfc822; a@x.example\n"
             "Action: failed\n",
             {"a@x.example"}},
        Case{"Original-Recipient: rfc822; a@x.example\nFinal-Recipient: x400; /S=a/C=GB/\n"
             "Action: failed\n",
             {"a@x.example"}},
        Case{"Final-Recipient: a@x.example\nAction: failure\n", {"a@x.example"}}, // no type
        Case{"Final-Recipient: utf-8; j\xC3\xBCrgen@x.example\nAction: failed\n",
             {u"jürgen@x.example"_qs}},
        Case{"Final-Recipient: rfc822; a@x.example\n", {}}, Case{"stray\n\n\nstray", {}}));

TEST(FailedRecipientsHeader, IsAListThatIsJoinedWithTheStatus)
{
    FailedRecipients failed;
    failed.add_list(" a@x.example,\r\n <b@x.example> ,, a@x.example");
    failed.add_status("\n\nFinal-Recipient: rfc822; b@x.example\nAction: failed\n");
    EXPECT_EQ(failed.addresses(), (QStringList{"a@x.example", "b@x.example"}));
}

QByteArray report(const QByteArray &first_part)
{
    return mail("From: MAILER-DAEMON@example.com\nSubject: failure\n"
                "Content-Type: multipart/report; report-type=delivery-status; boundary=b",
                "--b\n" + first_part +
                    "\n--b\nContent-Type: message/delivery-status\n\n"
                    "Reporting-MTA: dns; x\n\nFinal-Recipient: rfc822; gone@example.net\n"
                    "Action: failed\n\n--b\nContent-Type: message/rfc822\n\n"
                    "From: me@example.com\nTo: other@example.net\n\nreturned text\n--b--\n");
}

TEST(DeliveryNotice, GivesTheExplanationAndThenTheFailedRecipients)
{
    const MessageFields fields = fields_of(report("Content-Type: text/plain\n\nSorry.\nReally."));
    EXPECT_EQ(fields.text, "Sorry.\r\nReally.\r\ngone@example.net");
    EXPECT_EQ(fields.address, "MAILER-DAEMON@example.com");
}

TEST(DeliveryNotice, NeverShowsTheReturnedMessage)
{
    EXPECT_EQ(fields_of(report("Content-Type: text/html\n\n<p>Sorry.</p>")).text,
              "Sorry.\r\ngone@example.net");
    EXPECT_EQ(fields_of(report("Content-Type: text/rfc822-headers\n\nTo: x@example.net\n")).text,
              "gone@example.net");
}

TEST(DeliveryNotice, ReadsTheHeaderListOfANoticeWithoutStatusPart)
{
    const QByteArray message = mail("X-Failed-Recipients: a@x.example, b@x.example\n"
                                    "X-Failed-Recipients: c@x.example",
                                    "failed.\n");
    EXPECT_EQ(fields_of(message).text, "failed.\r\na@x.example\r\nb@x.example\r\nc@x.example");
}

TEST(DeliveryNotice, KeepsANoticeInOneTextAsItIs)
{
    const QByteArray body =
        "Could not deliver to:\n<a@x.example>\n\n--- a copy ---\nTo: c@x.example\n";
    EXPECT_EQ(fields_of(mail("Subject: failure notice", body)).text,
              QString::fromLatin1(body).replace("\n", "\r\n"));
}

TEST(FailedRecipientsHeader, EndsBeforeTheRecipientThatWouldBeTooMuch)
{
    QByteArray list;
    for (int i = 0; i < 60'000; ++i)
        list += "user" + QByteArray::number(100'000 + i) + "@x.example,";
    FailedRecipients failed;
    failed.add_list(list);
    failed.add_list("late@x.example");
    // Twenty characters and a line end each.
    EXPECT_EQ(failed.addresses().size(), 512 * 1024 / 22);
    EXPECT_EQ(failed.addresses().last(), "user123830@x.example");
    EXPECT_EQ(failed.bytes_left_out(), (60'000 - 23'831) * 20 + 14);
    const MessageFields fields = fields_of(mail("X-Failed-Recipients: " + list, "failed"));
    EXPECT_TRUE(fields.text.endsWith("\r\nuser123830@x.example\r\n[723,380 bytes of this message "
                                     "are not shown here.]"))
        << fields.text.right(200).toStdString();
}

QByteArray wrapped(const QByteArray &inner, const QByteArray &own_part = {})
{
    return mail("Content-Type: multipart/report; report-type=Delivery-Status; boundary=o",
                own_part + "--o\nContent-Type: message/rfc822\n\n" + inner + "\n--o--\n");
}

TEST(DeliveryNotice, ReadsTheReportThatAGatewayWrappedInAnother)
{
    const QByteArray inner = report("Content-Type: text/plain\n\nSorry.");
    EXPECT_EQ(fields_of(wrapped(inner)).text, "Sorry.\r\ngone@example.net");
    EXPECT_EQ(fields_of(wrapped(inner, "--o\n\nSee below.\n")).text,
              "Sorry.\r\ngone@example.net\r\n[some parts of this message are not shown here.]");
    EXPECT_EQ(fields_of(wrapped(report("Content-Type: image/png\n\nx"), "--o\n\nOuter.\n")).text,
              "Outer.\r\ngone@example.net");
}

TEST(DeliveryNotice, AReturnedMessageIsNoWrappedReport)
{
    EXPECT_EQ(fields_of(wrapped(mail("To: x@example.net", "returned text"))).text,
              "[the parts of this message are not shown here.]");
    const QByteArray status = "--o\nContent-Type: message/delivery-status\n\nA: b\n\n"
                              "Final-Recipient: rfc822; first@example.net\nAction: failed\n\n";
    EXPECT_EQ(fields_of(wrapped(report("\nreturned notice"), status)).text, "first@example.net");
}

TEST(DeliveryNotice, RecipientsAreNotCrowdedOutByALongText)
{
    const QByteArray endless(3 * 1024 * 1024, 'x');
    const MessageFields fields = fields_of(report("Content-Type: text/plain\n\n" + endless));
    EXPECT_TRUE(fields.text.startsWith("gone@example.net\r\n["));
    EXPECT_TRUE(fields.text.endsWith(" characters of this message are not shown here.]"));
}
} // namespace
