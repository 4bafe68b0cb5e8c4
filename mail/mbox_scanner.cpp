#include "mail/mbox_scanner.h"

#include "mail/mail_file.h"

#include <QHash>

#include <algorithm>

namespace
{
constexpr qint64 chunk_size = qint64(256) * 1024;

bool is_digit(char c)
{
    return c >= '0' && c <= '9';
}

bool is_empty_line(QByteArrayView line)
{
    return line == "\n" || line == "\r\n";
}

// Whether a run of exactly four digits beginning with 19 or 20 is in the line.
bool has_year(QByteArrayView line)
{
    qsizetype digits = 0;
    for (qsizetype at = 0; at <= line.size(); ++at) {
        if (at < line.size() && is_digit(line[at])) {
            ++digits;
            continue;
        }
        const QByteArrayView run = line.sliced(at - digits, digits);
        if (digits == 4 && (run.startsWith("19") || run.startsWith("20")))
            return true;
        digits = 0;
    }
    return false;
}

// Whether "h:mm" or "hh:mm" is in the line.
bool has_time(QByteArrayView line)
{
    for (qsizetype at = line.indexOf(':'); at >= 0; at = line.indexOf(':', at + 1)) {
        if (at >= 1 && at + 2 < line.size() && is_digit(line[at - 1]) && is_digit(line[at + 1]) &&
            is_digit(line[at + 2]))
            return true;
    }
    return false;
}

bool is_separator(QByteArrayView line)
{
    constexpr qsizetype longest = 1000; // an address may be long, a line without end is none
    return line.startsWith("From ") && line.size() <= longest && has_time(line) && has_year(line);
}

// "X-Mozilla-Status: 0009": bit 8 says that the message waits to be removed from the file.
bool is_deleted_mark(QByteArrayView line)
{
    constexpr QByteArrayView name("X-Mozilla-Status:");
    constexpr uint deleted_bit = 8;
    if (!line.startsWith(name))
        return false;
    return (line.sliced(name.size()).trimmed().toByteArray().toUInt(nullptr, 16) & deleted_bit) !=
           0;
}

// Takes the file's lines one after the other and keeps the messages that they make.
class Scan
{
public:
    // `line` is the head of a line that begins at `begin`, its end included when it is near.
    void add(QByteArrayView line, qint64 begin)
    {
        if (line.front() == 'F' && behind_empty_line_ && is_separator(line))
            begin_message(line, begin);
        else if (is_empty_line(line))
            in_header_ = false;
        else if (messages_.empty())
            is_mbox_ = false;
        else if (in_header_ && line.front() == 'X' && is_deleted_mark(line))
            messages_.back().deleted = true;
        behind_empty_line_ = is_empty_line(line);
        empty_line_begin_ = behind_empty_line_ ? begin : -1;
    }

    bool is_mbox() const { return is_mbox_; }

    std::vector<MboxMessage> finish(qint64 size)
    {
        end_message(size);
        return std::move(messages_);
    }

private:
    void begin_message(QByteArrayView line, qint64 begin)
    {
        end_message(begin);
        messages_.push_back({begin, begin, qHash(line), false});
        in_header_ = true;
    }

    void end_message(qint64 end)
    {
        if (!messages_.empty())
            messages_.back().end = empty_line_begin_ >= 0 ? empty_line_begin_ : end;
    }

    std::vector<MboxMessage> messages_;
    bool behind_empty_line_ = true;
    qint64 empty_line_begin_ = -1;
    bool in_header_ = false;
    bool is_mbox_ = true;
};

// Hands over the chunk's whole lines. @return how many bytes they are; a line that is longer than
// the chunk counts as its head, and its rest is passed over by the caller.
qint64 add_lines(Scan &scan, QByteArrayView chunk, qint64 offset, bool is_last)
{
    qsizetype at = 0;
    while (at < chunk.size()) {
        const qsizetype line_feed = chunk.indexOf('\n', at);
        if (line_feed < 0 && !is_last)
            break;
        const qsizetype end = line_feed < 0 ? chunk.size() : line_feed + 1;
        scan.add(chunk.sliced(at, end - at), offset + at);
        at = end;
    }
    return at;
}

// Behind the line feed that ends the overlong line at `offset`.
qint64 behind_long_line(const MailFile &file, qint64 offset, qint64 size)
{
    while (offset < size) {
        const QByteArray chunk = file.read(offset, std::min(chunk_size, size - offset));
        const qsizetype line_feed = chunk.indexOf('\n');
        if (line_feed >= 0)
            return offset + line_feed + 1;
        if (chunk.isEmpty())
            break;
        offset += chunk.size();
    }
    return size;
}
} // namespace

std::optional<std::vector<MboxMessage>> scan_mbox(const MailFile &file, qint64 size)
{
    Scan scan;
    qint64 offset = 0;
    while (offset < size && scan.is_mbox()) {
        const QByteArray chunk = file.read(offset, std::min(chunk_size, size - offset));
        if (chunk.isEmpty())
            break; // shorter than it was; the caller compares its state
        const bool is_last = offset + chunk.size() >= size;
        const qint64 taken = add_lines(scan, chunk, offset, is_last);
        if (taken > 0) {
            offset += taken;
        } else {
            scan.add(chunk, offset);
            offset = behind_long_line(file, offset, size);
        }
    }
    return scan.is_mbox() ? std::optional(scan.finish(size)) : std::nullopt;
}

void unquote_from_lines(QByteArray &message)
{
    qsizetype kept = 0; // what is in front of it has its place already
    qsizetype from = 0;
    for (qsizetype at = message.indexOf("From "); at >= 0; at = message.indexOf("From ", at + 1)) {
        qsizetype begin = at;
        while (begin > from && message[begin - 1] == '>')
            --begin;
        const bool begins_line = begin == 0 || message[begin - 1] == '\n';
        if (begin == at || !begins_line)
            continue;
        std::copy(message.cbegin() + from, message.cbegin() + begin, message.begin() + kept);
        kept += begin - from;
        from = begin + 1;
    }
    std::copy(message.cbegin() + from, message.cend(), message.begin() + kept);
    message.truncate(kept + message.size() - from);
}
