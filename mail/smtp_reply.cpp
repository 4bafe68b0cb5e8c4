#include "mail/smtp_reply.h"

#include "mail/recipient.h"
#include "mail/server_connection.h"

#include <algorithm>

namespace
{
constexpr qsizetype code_length = 3;
constexpr qsizetype most_lines = 200;
constexpr qsizetype longest_line = 4096;

bool is_digit(char c)
{
    return c >= '0' && c <= '9';
}

// "250 words", "250-words" or "250".
bool is_reply_line(const QByteArray &line)
{
    if (line.size() < code_length ||
        !std::all_of(line.begin(), line.begin() + code_length, is_digit))
        return false;
    return line.size() == code_length || line[code_length] == ' ' || line[code_length] == '-';
}

bool goes_on(const QByteArray &line)
{
    return line.size() > code_length && line[code_length] == '-';
}
} // namespace

QString SmtpReply::text() const
{
    return QString::number(code) + u' ' + QString::fromUtf8(lines.join(' ')).trimmed();
}

SmtpReply read_smtp_reply(ServerConnection &line)
{
    SmtpReply reply;
    for (;;) {
        const QByteArray text = line.read_line(longest_line);
        if (!is_reply_line(text))
            line.fail(line.step(),
                      QStringLiteral("what the server says is no answer: %1")
                          .arg(harmless_text(line.without_secrets(QString::fromUtf8(text)))));
        reply.code = text.left(code_length).toInt();
        reply.lines += text.mid(code_length + 1);
        if (!goes_on(text))
            return reply;
        if (reply.lines.size() >= most_lines)
            line.fail(line.step(), QStringLiteral("the server's answer does not end"));
    }
}
