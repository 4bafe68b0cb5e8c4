#include "mail/message_fields.h"
#include "mail/message_reader.h"
#include "tests/mail/mail_texts.h"

#include <gtest/gtest.h>

namespace
{
TEST(ReadMessage, GivesTheFiveFields)
{
    const MessageFields fields =
        fields_of("Received: from x\r\n\tby y\r\nFrom: =?utf-8?Q?J=C3=BCrgen?= <j@example.org>\r\n"
                  "Subject: Hello\r\n there\r\nDate: Mon, 02 Jan 2006 10:20:30 +0000\r\n"
                  "Content-Type: text/plain; charset=iso-8859-1\r\n"
                  "Content-Transfer-Encoding: quoted-printable\r\n\r\nGr=FC=DFe\r\n");
    EXPECT_EQ(fields.address, "j@example.org");
    EXPECT_EQ(fields.name, u"Jürgen"_qs);
    EXPECT_EQ(fields.subject, "Hello there");
    EXPECT_EQ(fields.date, "2006-01-02 11:20:30"); // local time
    EXPECT_EQ(fields.text, u"Grüße\r\n"_qs);
}

TEST(ReadMessage, TakesTheSenderWhereFromGivesNoAddress)
{
    EXPECT_EQ(fields_of(mail("Sender: s@example.org")).address, "s@example.org");
    EXPECT_EQ(fields_of(mail("From:\nSender: s@example.org")).address, "s@example.org");
    EXPECT_EQ(fields_of(mail("Sender: s@example.org\nFrom: f@example.org")).address,
              "f@example.org");
    EXPECT_EQ(fields_of(mail("From: Some Body")).name, "Some Body");
}

// An address that a notice indents by a tab must be a word of its own.
TEST(ReadMessage, TabsAndNoBreakSpacesOfTheTextAreBlanks)
{
    EXPECT_EQ(fields_of("From: d@x.example\r\n\r\nYour message to:\r\n\tann@x.example\r\n").text,
              "Your message to:\r\n ann@x.example\r\n");
    EXPECT_EQ(fields_of("Content-Type: text/plain; charset=utf-8\r\n\r\na\xC2\xA0z\r\n").text,
              "a z\r\n");
}

TEST(ReadMessage, OfRepeatedFieldsTheFirstCounts)
{
    const MessageFields fields = fields_of(mail("Subject: one\nFrom: a@x.example\nSubject: two\n"
                                                "From: b@x.example\nDate: 1 Jan 2001 00:00 +0100\n"
                                                "Date: 1 Jan 2002 00:00 +0100"));
    EXPECT_EQ(fields.subject, "one");
    EXPECT_EQ(fields.address, "a@x.example");
    EXPECT_EQ(fields.date, "2001-01-01 00:00:00");
}

TEST(ReadMessage, ALineBreakInAnEncodedFieldIsABlank)
{
    const MessageFields fields = fields_of(mail("Subject: =?utf-8?Q?a=0D=0ABcc:_x?=\n"
                                                "From: =?utf-8?Q?a=0Ab=00?= <a@x.example>"));
    EXPECT_EQ(fields.subject, "a  Bcc: x");
    EXPECT_EQ(fields.name, "a b");
}

struct DateCase
{
    QByteArray value;
    QString text;
};
class MessageDate : public testing::TestWithParam<DateCase>
{
};

TEST_P(MessageDate, IsLocalTime)
{
    const QDateTime arrived(QDate(2024, 7, 1), QTime(12, 0));
    EXPECT_EQ(read_message({"Date: " + GetParam().value + "\n\n", arrived, 0}).date,
              GetParam().text);
}

INSTANTIATE_TEST_SUITE_P(
    Forms, MessageDate,
    testing::Values(DateCase{"Mon, 02 Jan 2006 10:20:30 +0100", "2006-01-02 10:20:30"},
                    DateCase{"3 Jul 2006 10:20 +0000", "2006-07-03 12:20:00"}, // summer time
                    DateCase{"Mon, 2 Jan 2006 10:20:30 GMT", "2006-01-02 11:20:30"},
                    DateCase{"Mon, 2 Jan 2006 10:20:30 EST", "2006-01-02 16:20:30"},
                    DateCase{"Mon, 2 Jan 2006 10:20:30 -0500 (EST)", "2006-01-02 16:20:30"},
                    DateCase{"Mon, 2 Jan 06 10:20:30 +0100", "2006-01-02 10:20:30"},
                    DateCase{"2 Jan 99 10:20:30 +0100", "1999-01-02 10:20:30"},
                    DateCase{"Mon,\n 2 Jan 2006\n 10:20:30 +0100", "2006-01-02 10:20:30"}));

INSTANTIATE_TEST_SUITE_P(Unreadable, MessageDate,
                         testing::Values(DateCase{"", "2024-07-01 12:00:00"},
                                         DateCase{"yesterday", "2024-07-01 12:00:00"},
                                         DateCase{QByteArray(5000, '1'), "2024-07-01 12:00:00"}));

struct BodyCase
{
    const char *what;
    QByteArray message;
    QString text;
};
class MessageText : public testing::TestWithParam<BodyCase>
{
};

TEST_P(MessageText, IsTheFirstReadableText)
{
    EXPECT_EQ(fields_of(GetParam().message).text, GetParam().text) << GetParam().what;
}

const QByteArray mixed = "Content-Type: multipart/mixed; boundary=b";

INSTANTIATE_TEST_SUITE_P(
    Choice, MessageText,
    testing::Values(
        BodyCase{"no type", mail("Subject: x", "a\nb\n"), "a\r\nb\r\n"},
        BodyCase{"plain before html",
                 mail("Content-Type: multipart/alternative; boundary=\"b\"",
                      "--b\nContent-Type: text/html\n\n<p>html</p>\n--b\n\nplain\n--b--\n"),
                 "plain"},
        BodyCase{"html alone", mail("Content-Type: text/html", "<p>a<p>b"), "a\r\nb"},
        BodyCase{"an attached text is no body",
                 mail(mixed, "--b\nContent-Disposition: attachment\n\nlist\n--b\n\nbody\n--b--"),
                 "body"},
        BodyCase{"only an attachment", mail(mixed, "--b\nContent-Type: image/png\n\nx\n--b--\n"),
                 "[the parts of this message are not shown here.]"},
        BodyCase{"nested",
                 mail(mixed, "--b\nContent-Type: multipart/related; boundary=c\n\n--c\n"
                             "Content-Type: text/html\n\nx\n--c\n\ninner\n--c--\n--b--\n"),
                 "inner"},
        BodyCase{"enclosed message",
                 mail(mixed,
                      "--b\nContent-Type: message/rfc822\n\nSubject: x\n\nno\n--b\n\nyes\n--b--\n"),
                 "yes"},
        BodyCase{"other text", mail("Content-Type: text/enriched", "rich"), "rich"}));

INSTANTIATE_TEST_SUITE_P(
    BrokenStructure, MessageText,
    testing::Values(
        BodyCase{"no end boundary", mail(mixed, "--b\n\nbody\n"), "body\r\n"},
        BodyCase{"boundary nowhere", mail(mixed, "all of\nthis\n"), "all of\r\nthis\r\n"},
        BodyCase{"no boundary named", mail("Content-Type: multipart/mixed", "text\n"), "text\r\n"},
        BodyCase{"boundary nowhere, NUL bytes", mail(mixed, QByteArray("all\0of\nthis\n", 12)),
                 QString::fromLatin1("all\0of\r\nthis\r\n", 14)},
        BodyCase{"unknown type", mail("Content-Type: foo/bar", "body\n"), "body\r\n"},
        BodyCase{"unreadable type", mail("Content-Type: text", "body\n"), "body\r\n"},
        BodyCase{"empty type", mail("Content-Type:", "body\n"), "body\r\n"},
        BodyCase{"unknown encoding", mail("Content-Transfer-Encoding: rot13", "body"), "body"},
        BodyCase{"base64 with padding inside",
                 mail("Content-Transfer-Encoding: base64", "SGVsbG8=\nIHdvcmxk\n"), "Hello world"},
        BodyCase{"uuencoded",
                 mail("Content-Transfer-Encoding: x-uuencode", "begin 644 a\n%2&5L;&\\\n`\nend\n"),
                 "Hello"},
        BodyCase{"header alone", "Subject: x\nContent-Type: text/plain", ""},
        BodyCase{"header and empty line", "Subject: x\n\n", ""}, BodyCase{"nothing", "", ""},
        BodyCase{"no header", "just text\nand more\n\nend", "just text\r\nand more\r\n\r\nend"},
        BodyCase{"no empty line", "Subject: x\nbody line\n\nmore", "body line\r\n\r\nmore"},
        BodyCase{"no empty line, short header", "Content-Type: text/html\n<p>a", "a"},
        BodyCase{"nul bytes", mail("Subject: x", QByteArray("a\0b\n", 4)),
                 QString::fromLatin1("a\0b\r\n", 5)},
        BodyCase{"wrong label", mail("Content-Type: text/plain; charset=x-none", "\xE4"), u"ä"_qs},
        BodyCase{"no label", mail("Content-Transfer-Encoding: 8bit", "\xC3\xA4"), u"ä"_qs},
        BodyCase{"utf-16",
                 mail("Content-Type: text/plain; charset=utf-16\nContent-Transfer-Encoding: base64",
                      "//7kAA=="),
                 u"ä"_qs}));

TEST(ReadMessage, PassesOverAMailboxLineInFront)
{
    EXPECT_EQ(fields_of("From x@y.example Mon Jan  2 10:20:30 2006\nFrom: a@x.example\n\n").address,
              "a@x.example");
    EXPECT_EQ(fields_of(">From x@y.example Mon Jan  2 2006\nFrom: a@x.example\n\n").address,
              "a@x.example");
    EXPECT_EQ(fields_of("From : a@x.example\n\n").address, "a@x.example");
    EXPECT_EQ(fields_of("From someone").text, "From someone");
}

TEST(ReadMessage, TellsWhatItDoesNotShow)
{
    const MessageFields fields = fields_of(
        mail("Subject: one " + QByteArray(65'636, 's'), QByteArray("x ").repeated(524'300)));
    EXPECT_EQ(fields.subject, "one");
    EXPECT_EQ(fields.text.indexOf('\r'), 1'048'575);
    EXPECT_TRUE(
        fields.text.endsWith("x\r\n[65,662 characters of this message are not shown here.]"));
}

TEST(ReadMessage, KeepsNoHalfLineOfAFileThatWasReadInItsFirstPart)
{
    EXPECT_EQ(read_message({mail("A: b", "x\nann@exam"), {}, 12'345}).text,
              "x\r\n\r\n[12,353 bytes of this message are not shown here.]");
}

TEST(ReadMessage, KeepsNoHalfAddress)
{
    const QByteArray filler = QByteArray("x ").repeated(524'288 - 4); // 8 characters remain
    const MessageFields fields = fields_of(mail("From: a@x.example", filler + "ann@example.org"));
    EXPECT_FALSE(fields.text.contains('@'));
    EXPECT_TRUE(fields.text.endsWith("x\r\n[16 characters of this message are not shown here.]"));
    EXPECT_EQ(fields_of(mail("From: " + QByteArray(70'000, 'a') + "@x.example")).address, "");
}

TEST(ReadMessage, DecodesOnlyTheBeginningOfAnEndlessHeaderField)
{
    const QByteArray words =
        QByteArray("=?utf-8?q?a?= =?iso-8859-2?q?b_?= ").repeated(8'000) + "=?utf-8?q?ann@x.ex";
    const MessageFields fields = fields_of(mail("Subject: " + words));
    EXPECT_TRUE(fields.subject.startsWith("ab ab "));
    EXPECT_TRUE(fields.subject.endsWith(" ab"));
    EXPECT_LT(fields.subject.size(), 23'500);
    EXPECT_TRUE(fields.text.endsWith("bytes of this message are not shown here.]"));
    const QByteArray blanks(300'000, ' ');
    EXPECT_EQ(fields_of(mail("From: a@x.example" + blanks + "(late)")).address, "a@x.example");
}

TEST(ReadMessage, SaysThatItShowsNothingOfAMessageWithoutText)
{
    const QString told = "[the parts of this message are not shown here.]";
    for (const QByteArray header :
         {"Content-Type: application/octet-stream", "Content-Type: image/png",
          "Content-Type: message/rfc822", "Content-Type: message/partial; id=a; number=1; total=2",
          "Content-Disposition: attachment"})
        EXPECT_EQ(fields_of(mail(header, "Subject: inner\n\nbody\n")).text, told)
            << header.constData();
}

TEST(ReadMessage, LooksAtAThousandPartsAndTellsThatThereAreMore)
{
    QByteArray body;
    for (int i = 0; i < 1'100; ++i)
        body += "--b\nContent-Type: image/png\n\n\n";
    EXPECT_EQ(fields_of(mail(mixed, body + "--b\n\nlate\n--b--\n")).text,
              "[the parts of this message are not shown here.]");
    EXPECT_EQ(fields_of(mail(mixed, "--b\n\nearly\n" + body + "--b--\n")).text,
              "early\r\n[some parts of this message are not shown here.]");
}
} // namespace
