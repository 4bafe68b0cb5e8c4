#include "mail/imap_response.h"

#include "mail/server_connection.h"

#include <QByteArrayView>
#include <QStringEncoder>

#include <algorithm>
#include <array>

namespace
{
constexpr qsizetype longest_line = qsizetype(8) * 1024 * 1024;
constexpr qsizetype line_end = 2; // bytes
constexpr qsizetype longest_response = qsizetype(96) * 1024 * 1024;
// More than what a structure of the largest message is made of.
constexpr qint64 most_passed_over = qint64(1024) * 1024 * 1024;
constexpr qsizetype piece_passed_over = qsizetype(64) * 1024;
constexpr qsizetype longest_announcement = 32;
// A thousand parts, the header and the content of each, need 2,000; an empty one costs 80 bytes of
// memory for five.
constexpr qsizetype most_literals = 10'000;

QByteArray next_word(QByteArrayView &text)
{
    const qsizetype blank = text.indexOf(' ');
    const QByteArrayView word = blank < 0 ? text : text.first(blank);
    text = text.sliced(blank < 0 ? text.size() : blank + 1);
    return word.toByteArray();
}

bool is_status(const QByteArray &keyword)
{
    static constexpr std::array<QByteArrayView, 5> keywords = {"OK", "NO", "BAD", "BYE", "PREAUTH"};
    return std::ranges::find(keywords, keyword) != keywords.end();
}

// "{12}", "{12+}" or "~{12}" at a line's end, cut off. @return 12, or nothing.
std::optional<qsizetype> cut_announcement(QByteArray &line)
{
    const qsizetype begin = line.endsWith('}') ? line.lastIndexOf('{') : -1;
    if (begin < 0)
        return std::nullopt;
    QByteArrayView digits = QByteArrayView(line).sliced(begin + 1).chopped(1);
    if (digits.endsWith('+'))
        digits.chop(1);
    const bool are_digits = !digits.isEmpty() && std::ranges::all_of(digits, [](char c) {
        return c >= '0' && c <= '9';
    });
    if (!are_digits)
        return std::nullopt;
    bool fits = false;
    const qlonglong size = digits.toByteArray().toLongLong(&fits);
    line.truncate(begin > 0 && line[begin - 1] == '~' ? begin - 1 : begin);
    return fits && size <= longest_response ? size : longest_response + 1;
}

QByteArray without_line_end(QByteArray line)
{
    line.chop(line.endsWith("\r\n") ? 2 : line.endsWith('\n') ? 1 : 0);
    return line;
}

// The tag, and what stands behind it.
ImapResponse begun_by(const QByteArray &line)
{
    const QByteArray text = without_line_end(line);
    const qsizetype blank = text.indexOf(' ');
    ImapResponse response;
    response.tag = text.first(blank < 0 ? text.size() : blank);
    response.pieces = {text.sliced(blank < 0 ? text.size() : blank + 1)};
    return response;
}

// Reads a response to its end and keeps nothing of that. `line` is what has been read of its last
// line.
void pass_over(ServerConnection &connection, QByteArray line)
{
    qint64 passed = 0;
    const auto count = [&](qint64 size) {
        passed += size;
        if (passed > most_passed_over)
            connection.fail(connection.step(), QStringLiteral("the server never comes to an end"));
    };
    while (true) {
        while (!line.endsWith('\n')) {
            const QByteArray more = connection.read_piece_of_line(piece_passed_over);
            count(more.size());
            line = line.last(std::min(line.size(), longest_announcement)) + more;
        }
        line = without_line_end(std::move(line));
        const auto announced = cut_announcement(line);
        if (!announced)
            return;
        count(*announced);
        for (qsizetype left = *announced; left > 0;)
            left -= connection.read_bytes(std::min(left, piece_passed_over)).size();
        line.clear();
    }
}
} // namespace

QByteArray ImapResponse::keyword() const
{
    QByteArrayView text = pieces.first();
    const QByteArray first = next_word(text);
    return (number() ? next_word(text) : first).toUpper();
}

std::optional<quint32> ImapResponse::number() const
{
    QByteArrayView text = pieces.first();
    bool is_number = false;
    const quint32 value = next_word(text).toUInt(&is_number);
    return is_number ? std::optional(value) : std::nullopt;
}

QByteArray ImapResponse::rest() const
{
    QByteArrayView text = pieces.first();
    if (number())
        next_word(text);
    next_word(text);
    return text.toByteArray();
}

ImapResponse read_imap_response(ServerConnection &connection)
{
    QByteArray line = connection.read_piece_of_line(longest_line + line_end);
    ImapResponse response = begun_by(line);
    if (!response.is_untagged() || is_status(response.keyword())) {
        if (!line.endsWith('\n'))
            connection.fail(
                connection.step(),
                QStringLiteral("the server sent a line of more than %1 bytes").arg(longest_line));
        return response;
    }
    for (qsizetype size = line.size(); line.endsWith('\n'); size += line.size()) {
        const auto announced = cut_announcement(response.pieces.last());
        if (!announced)
            return response;
        if (*announced > longest_response)
            connection.fail(connection.step(),
                            QStringLiteral("the server announced %1 bytes").arg(*announced));
        size += *announced;
        if (size > longest_response || response.literals.size() == most_literals)
            break;
        response.literals += connection.read_bytes(*announced);
        line = connection.read_piece_of_line(longest_line + line_end);
        response.pieces += without_line_end(line);
    }
    response.is_cut = true;
    response.pieces.last().clear();
    pass_over(connection, std::move(line));
    return response;
}

QByteArray imap_mailbox_name(const QString &name)
{
    QByteArray encoded;
    for (qsizetype at = 0; at < name.size();) {
        qsizetype end = at;
        while (end < name.size() && (name[end] < u' ' || name[end] > u'~'))
            ++end;
        if (end == at) {
            encoded += name[at] == u'&' ? QByteArray("&-") : QByteArray(1, name[at].toLatin1());
            ++at;
            continue;
        }
        QStringEncoder utf16(QStringConverter::Utf16BE);
        const QByteArray bytes = utf16(QStringView(name).sliced(at, end - at));
        const QByteArray letters = bytes.toBase64(QByteArray::OmitTrailingEquals).replace('/', ',');
        encoded += '&' + letters + '-';
        at = end;
    }
    return imap_quoted(encoded);
}

QByteArray imap_quoted(const QByteArray &text)
{
    return '"' + QByteArray(text).replace('\\', "\\\\").replace('"', "\\\"") + '"';
}

QByteArray imap_set(const std::vector<quint32> &numbers)
{
    QByteArray set;
    for (std::size_t begin = 0; begin < numbers.size();) {
        std::size_t last = begin;
        while (last + 1 < numbers.size() && numbers[last + 1] == numbers[last] + 1)
            ++last;
        set += (set.isEmpty() ? "" : ",") + QByteArray::number(numbers[begin]);
        if (last > begin)
            set += ':' + QByteArray::number(numbers[last]);
        begin = last + 1;
    }
    return set;
}
