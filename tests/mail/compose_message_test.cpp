#include "mail/compose_message.h"
#include "mail/message_reader.h"
#include "tests/mail/mail_texts.h"
#include "tests/support/print_qt.h"

#include <QRegularExpression>
#include <QTimeZone>
#include <gtest/gtest.h>

#include <algorithm>

namespace
{
const MessageStamp stamp{QDateTime(QDate(2026, 3, 4), QTime(5, 6, 7), QTimeZone(3600)), "0123abcd"};

OutgoingMessage plain()
{
    OutgoingMessage message;
    message.sender = {"me@sender.example", "Me Myself"};
    message.to = {"ann@example.org"};
    message.blind_copies = {"bob@example.org", "cid@example.org"};
    message.subject = "Hello";
    message.text = "First line\r\nSecond line\r\n";
    return message;
}

QByteArray composed(const OutgoingMessage &message)
{
    QByteArray bytes = compose_message(message, stamp);
    EXPECT_TRUE(bytes.endsWith("\r\n"));
    for (const QByteArray &line : bytes.split('\n')) {
        EXPECT_LE(line.size(), 999) << line.left(80).constData(); // 998 and the CR
        EXPECT_TRUE(line.isEmpty() || line.endsWith('\r')) << line.left(80).constData();
        EXPECT_EQ(line.count('\r'), line.isEmpty() ? 0 : 1) << line.left(80).constData();
    }
    return bytes;
}

QByteArray header_of(const QByteArray &bytes)
{
    return bytes.left(bytes.indexOf("\r\n\r\n") + 2);
}

QList<QByteArray> field_names(const QByteArray &bytes)
{
    QList<QByteArray> names;
    for (const QByteArray &line : header_of(bytes).split('\n')) {
        if (!line.isEmpty() && line[0] != ' ' && line[0] != '\t')
            names += line.left(line.indexOf(':'));
    }
    std::ranges::sort(names);
    return names;
}

const QList<QByteArray> plain_fields = {"Content-Transfer-Encoding",
                                        "Content-Type",
                                        "Date",
                                        "From",
                                        "MIME-Version",
                                        "Message-Id",
                                        "Subject",
                                        "To"};

QByteArray field(const QByteArray &bytes, const QByteArray &name)
{
    const QByteArray header = "\r\n" + header_of(bytes);
    const qsizetype start = header.indexOf("\r\n" + name + ": ");
    if (start < 0)
        return "(none)";
    QByteArray value = header.mid(start + 2 + name.size() + 2);
    const QRegularExpressionMatch end =
        QRegularExpression("\r\n(?![ \t])").match(QString::fromLatin1(value));
    return value.left(end.capturedStart()).replace("\r\n", "");
}

bool is_ascii(const QByteArray &bytes)
{
    return std::ranges::all_of(bytes, [](char c) { return (c & 0x80) == 0; });
}

TEST(ComposedMessage, HasTheFieldsOfAPlainOne)
{
    const QByteArray bytes = composed(plain());
    EXPECT_EQ(field_names(bytes), plain_fields) << bytes.constData();
    EXPECT_EQ(field(bytes, "From"), "Me Myself <me@sender.example>");
    EXPECT_EQ(field(bytes, "To"), "ann@example.org");
    EXPECT_EQ(field(bytes, "Subject"), "Hello");
    EXPECT_EQ(field(bytes, "Date"), "Wed, 04 Mar 2026 05:06:07 +0100");
    EXPECT_EQ(field(bytes, "Message-Id"), "<0123abcd@sender.example>");
    EXPECT_EQ(field(bytes, "Content-Type"), "text/plain; charset=utf-8");
    EXPECT_TRUE(bytes.endsWith("\r\n\r\nFirst line\r\nSecond line\r\n"));
}

TEST(ComposedMessage, IsTheSameForTheSameValues)
{
    OutgoingMessage message = plain();
    message.attachment = Attachment{"/x/a.txt", "a.txt", "content"};
    EXPECT_EQ(composed(message), composed(message));
}

TEST(ComposedMessage, NamesNoBlindCopy)
{
    const QByteArray bytes = composed(plain());
    EXPECT_FALSE(bytes.contains("bob"));
    EXPECT_FALSE(bytes.toLower().contains("bcc"));
}

TEST(ComposedMessage, WithoutAVisibleRecipientSaysSo)
{
    OutgoingMessage message = plain();
    message.to.clear();
    EXPECT_EQ(field(composed(message), "To"), "undisclosed-recipients: ;");
}

TEST(ComposedMessage, CarriesEveryLanguage)
{
    OutgoingMessage message = plain();
    message.sender.name = "Jörg, \"der\" Größte";
    message.subject =
        "Grüße 你好 " + QString("ein langer Betreff mit Umläuten ").repeated(8).trimmed();
    message.text = "Grüße\r\n你好\r\n\U0001F600\r\n";
    const QByteArray bytes = composed(message);
    EXPECT_TRUE(is_ascii(bytes));
    EXPECT_EQ(field_names(bytes), plain_fields);
    const MessageFields read = fields_of(bytes);
    EXPECT_EQ(read.name, message.sender.name);
    EXPECT_EQ(read.address, "me@sender.example");
    EXPECT_EQ(read.subject, message.subject);
    EXPECT_EQ(read.text, message.text);
}

TEST(ComposedMessage, KeepsLongLines)
{
    OutgoingMessage message = plain();
    message.text =
        QString(5'000, 'x') + "\r\n" + QString("wörter ").repeated(2'000).trimmed() + "\r\n";
    message.subject = QString(3'000, 's');
    message.sender.name = QString(2'000, 'n');
    const MessageFields read = fields_of(composed(message));
    EXPECT_EQ(read.text, message.text);
    EXPECT_EQ(read.subject, message.subject);
    EXPECT_EQ(read.name, message.sender.name);
}

struct Text
{
    QString typed;
    QString read;
};

class ComposedText : public testing::TestWithParam<Text>
{
};

TEST_P(ComposedText, IsReadAsTyped)
{
    OutgoingMessage message = plain();
    message.text = GetParam().typed;
    EXPECT_EQ(fields_of(composed(message)).text, GetParam().read);
}

INSTANTIATE_TEST_SUITE_P(
    Texts, ComposedText,
    testing::Values(Text{"", ""}, Text{"no end", "no end\r\n"},
                    Text{"a\nb\rc\r\n", "a\r\nb\r\nc\r\n"}, // every kind of line end
                    Text{".\r\n..\r\n.x\r\n", ".\r\n..\r\n.x\r\n"},
                    Text{"From here\r\n>From there\r\n", "From here\r\n>From there\r\n"},
                    Text{"blanks at the end   \r\n=3D\r\n", "blanks at the end   \r\n=3D\r\n"},
                    Text{"日本語の長い文章\r\nもう一行\r\n", "日本語の長い文章\r\nもう一行\r\n"}));

TEST(ComposedMessage, EndsLinesOfABase64TextWithCrLf)
{
    OutgoingMessage message = plain();
    message.text = QString("日本語の文章です\r\n").repeated(20);
    const QByteArray bytes = composed(message);
    ASSERT_EQ(field(bytes, "Content-Transfer-Encoding"), "base64");
    const QByteArray body = bytes.mid(bytes.indexOf("\r\n\r\n") + 4).replace("\r\n", "");
    EXPECT_EQ(QString::fromUtf8(QByteArray::fromBase64(body)), message.text);
}

struct Injection
{
    const char *where;
    void (*put)(OutgoingMessage &message, const QString &text);
};

class InjectedHeader : public testing::TestWithParam<Injection>
{
};

// Neither a field of its own nor, for a reader that takes a lone CR or LF for one, a line's begin.
TEST_P(InjectedHeader, BecomesNone)
{
    for (const QString end : {"\r\n", "\n", "\r", "\r\n\r\n", "\u2028", "\u0085", "\v", "\f"}) {
        OutgoingMessage message = plain();
        message.attachment = Attachment{"/x/a.bin", "a.bin", "content"};
        const QByteArray untouched = composed(message);
        GetParam().put(message, "x" + end + "Bcc: victim@example.org" + end + "y");
        const QByteArray bytes = composed(message);
        EXPECT_EQ(field_names(bytes), field_names(untouched)) << bytes.constData();
        EXPECT_FALSE(bytes.contains("\nBcc")) << bytes.constData();
        EXPECT_FALSE(bytes.contains("\rBcc")) << bytes.constData();
    }
}

INSTANTIATE_TEST_SUITE_P(
    Places, InjectedHeader,
    testing::Values(
        Injection{"subject", [](OutgoingMessage &m, const QString &text) { m.subject = text; }},
        Injection{"name", [](OutgoingMessage &m, const QString &text) { m.sender.name = text; }},
        Injection{"umlauts",
                  [](OutgoingMessage &m, const QString &text) { m.subject = "ü" + text; }},
        Injection{"file name",
                  [](OutgoingMessage &m, const QString &text) { m.attachment->name = text; }},
        Injection{"file name with umlauts", [](OutgoingMessage &m, const QString &text) {
                      m.attachment->name = "ü" + text;
                  }}));

QByteArray attachment_part(const QByteArray &bytes)
{
    const QList<QByteArray> parts =
        QByteArray(bytes).replace("\r\n--=-0123abcd", "\x01").split('\x01');
    EXPECT_EQ(parts.size(), 4) << bytes.constData(); // header, text, attachment, end
    return parts.value(2).mid(2);
}

QByteArray attached(const QString &name, const QByteArray &content)
{
    OutgoingMessage message = plain();
    message.attachment = Attachment{"/x/" + name, name, content};
    const QByteArray bytes = composed(message);
    EXPECT_TRUE(is_ascii(bytes));
    EXPECT_EQ(fields_of(bytes).text, message.text);
    return attachment_part(bytes);
}

TEST(Attachment, KeepsItsBytesNameAndType)
{
    QByteArray content;
    for (int i = 0; i < 100'000; ++i)
        content += static_cast<char>(i * 7);
    const QByteArray part = attached("picture.png", content);
    EXPECT_EQ(field(part, "Content-Type"), "image/png; name=picture.png");
    EXPECT_EQ(field(part, "Content-Disposition"), "attachment; filename=picture.png");
    EXPECT_EQ(field(part, "Content-Transfer-Encoding"), "base64");
    const QByteArray body = part.mid(part.indexOf("\r\n\r\n") + 4).replace("\r\n", "");
    EXPECT_EQ(QByteArray::fromBase64(body), content);
}

TEST(Attachment, NamesBeyondAsciiGoByRfc2231)
{
    const QByteArray part = attached("Übersicht 2026.pdf", "%PDF-1.4");
    EXPECT_EQ(field(part, "Content-Disposition"),
              "attachment; filename*=UTF-8''%C3%9Cbersicht%202026.pdf");
    EXPECT_TRUE(field(part, "Content-Type").startsWith("application/pdf; "));
}

TEST(Attachment, LongNamesStayWhole)
{
    const QString name = QString("ein sehr langer Name ").repeated(11) + "ä.txt";
    const QByteArray part = attached(name, "x");
    EXPECT_TRUE(part.contains("filename*0*="));
    EXPECT_FALSE(part.contains(" filename=")); // cut or encoded in another way
}

struct Type
{
    QString name;
    QByteArray content;
    QByteArray type;
};

class AttachmentType : public testing::TestWithParam<Type>
{
};

TEST_P(AttachmentType, ComesFromNameAndContent)
{
    const QByteArray type = field(attached(GetParam().name, GetParam().content), "Content-Type");
    EXPECT_TRUE(type.startsWith(GetParam().type + "; ")) << type.constData();
}

INSTANTIATE_TEST_SUITE_P(Types, AttachmentType,
                         testing::Values(Type{"a.txt", "Grüße", "text/plain; charset=utf-8"},
                                         Type{"a.txt",
                                              "Gr\xFC\xDF"
                                              "e",
                                              "text/plain"},
                                         Type{"a.csv", "a,b", "text/csv; charset=utf-8"},
                                         Type{"noextension", "%PDF-1.4\n", "application/pdf"},
                                         Type{"a.unheard-of", QByteArray("\x00\x01\xFE\xFF", 4),
                                              "application/octet-stream"},
                                         Type{"empty", "", "application/octet-stream"},
                                         Type{"mail.eml", "From: a\n\nb",
                                              "application/octet-stream"}));

TEST(ComposedMessage, ShowsAnAddressBeyondAsciiAsItIs)
{
    OutgoingMessage message = plain();
    message.to = {"jörg@xn--bcher-kva.example"};
    EXPECT_EQ(field(composed(message), "To"), "jörg@xn--bcher-kva.example");
}

TEST(ComposedMessage, IsFromAnAddressAloneWithoutAName)
{
    OutgoingMessage message = plain();
    message.sender.name = " ";
    EXPECT_EQ(field(composed(message), "From"), "me@sender.example");
}

TEST(OutgoingMessage, GoesToEveryAddressOnce)
{
    OutgoingMessage message = plain();
    message.to = {"ann@example.org"};
    message.blind_copies = {"bob@x.example", "ann@EXAMPLE.org", "Bob@x.example", "bob@x.example"};
    EXPECT_EQ(message.recipients(),
              (QStringList{"ann@example.org", "bob@x.example", "Bob@x.example"}));
}
} // namespace
