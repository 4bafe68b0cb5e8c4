#include "mail/imap_response.h"

#include "mail/server_connection.h"

#include <QByteArrayView>
#include <QStringEncoder>

#include <algorithm>
#include <array>

namespace
{
constexpr qsizetype longest_line = qsizetype(8) * 1024 * 1024;
constexpr qsizetype longest_response = qsizetype(96) * 1024 * 1024;
constexpr qsizetype most_literals = 10'000;
constexpr int most_levels = 100;
constexpr int most_values = 100'000;

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

// Walks the text of a response and takes its literals where they stand.
class Cursor
{
public:
    explicit Cursor(ImapResponse &response) : response_(response) {}

    void skip(const QByteArray &text) { at_ += text.size(); }

    void skip_blanks()
    {
        while (next() == ' ')
            ++at_;
    }

    // The next character; 0 at the end of the piece.
    char next() const { return at_ < piece().size() ? piece()[at_] : '\0'; }
    bool take(char c)
    {
        const bool is_next = next() == c;
        at_ += is_next ? 1 : 0;
        return is_next;
    }
    bool is_at_literal() const
    {
        return at_ == piece().size() && piece_ < response_.literals.size();
    }
    bool is_at_end() const { return at_ == piece().size() && !is_at_literal(); }

    // Item names hold blanks and parentheses within brackets: "BODY[HEADER.FIELDS (FROM)]<0>".
    QByteArray item_name()
    {
        QByteArray name;
        int brackets = 0;
        while (!is_at_end()) {
            if (is_at_literal()) { // a field's name may be one
                name += literal();
                continue;
            }
            const char c = next();
            if (brackets == 0 && (c == ' ' || c == '(' || c == ')'))
                break;
            brackets += c == '[' ? 1 : c == ']' ? -1 : 0;
            name += c;
            ++at_;
        }
        return name.toUpper();
    }

    std::optional<ImapValue> value(int level = 0)
    {
        ++values_;
        skip_blanks();
        if (is_at_literal())
            return text(literal());
        if (next() == '(')
            return list(level);
        if (take('"'))
            return quoted();
        return atom();
    }

private:
    const QByteArray &piece() const { return response_.pieces[piece_]; }

    static ImapValue text(QByteArray bytes)
    {
        return {ImapValue::Kind::Text, std::move(bytes), {}};
    }

    QByteArray literal()
    {
        at_ = 0;
        return std::move(response_.literals[piece_++]);
    }

    std::optional<ImapValue> list(int level)
    {
        take('(');
        ImapValue result;
        result.kind = ImapValue::Kind::List;
        for (skip_blanks(); !take(')'); skip_blanks()) {
            if (level == most_levels || values_ > most_values)
                return skip_rest_of_list() ? std::optional(ImapValue()) : std::nullopt;
            auto item = is_at_end() ? std::nullopt : value(level + 1);
            if (!item)
                return std::nullopt;
            result.items.push_back(std::move(*item));
        }
        return result;
    }

    // @return whether it ends.
    bool skip_rest_of_list()
    {
        for (int open = 1; open > 0;) {
            if (is_at_literal()) {
                literal();
            } else if (is_at_end()) {
                return false;
            } else if (take('"')) {
                if (!quoted())
                    return false;
            } else {
                open += next() == '(' ? 1 : next() == ')' ? -1 : 0;
                ++at_;
            }
        }
        return true;
    }

    std::optional<ImapValue> quoted()
    {
        QByteArray bytes;
        while (!take('"')) {
            take('\\');
            if (at_ == piece().size())
                return std::nullopt;
            bytes += piece()[at_++];
        }
        return text(std::move(bytes));
    }

    std::optional<ImapValue> atom()
    {
        const qsizetype begin = at_;
        while (at_ < piece().size() && !QByteArrayView(" ()\"").contains(piece()[at_]))
            ++at_;
        QByteArray bytes = piece().sliced(begin, at_ - begin);
        if (bytes.isEmpty())
            return std::nullopt;
        if (bytes.compare("NIL", Qt::CaseInsensitive) == 0)
            return ImapValue();
        return text(std::move(bytes));
    }

    ImapResponse &response_;
    qsizetype piece_ = 0;
    qsizetype at_ = 0;
    int values_ = 0; // begun so far
};

qint64 size_of(const ImapValue &value)
{
    qint64 size = qint64(sizeof value) + value.text.size();
    for (const ImapValue &item : value.items)
        size += size_of(item);
    return size;
}

void pass_over(ServerConnection &connection, qsizetype count)
{
    constexpr qsizetype piece = qsizetype(64) * 1024;
    for (; count > 0; count -= std::min(count, piece))
        connection.read_bytes(std::min(count, piece));
}

bool has_deleted_flag(const ImapValue &flags)
{
    return std::ranges::any_of(flags.items, [](const ImapValue &flag) {
        return flag.text.compare("\\Deleted", Qt::CaseInsensitive) == 0;
    });
}

void take_section(const QByteArray &name, ImapValue &value, ImapFetch &fetch)
{
    const qsizetype end = name.lastIndexOf(']');
    if (name.startsWith("BODY[") && end > 0 && value.kind == ImapValue::Kind::Text)
        fetch.sections.emplace_back(name.sliced(5, end - 5), std::move(value.text));
}

void take_structure(ImapValue value, ImapFetch &fetch)
{
    fetch.structure_size = size_of(value);
    fetch.structure = std::move(value);
}

void take_item(const QByteArray &name, ImapValue value, ImapFetch &fetch)
{
    if (name == "UID")
        fetch.uid = value.text.toUInt();
    else if (name == "RFC822.SIZE")
        fetch.size = value.text.toLongLong();
    else if (name == "INTERNALDATE")
        fetch.arrived = read_internal_date(value.text);
    else if (name == "FLAGS")
        fetch.is_deleted = has_deleted_flag(value);
    else if (name == "BODYSTRUCTURE")
        take_structure(std::move(value), fetch);
    else
        take_section(name, value, fetch);
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
    QByteArray line = connection.read_line(longest_line);
    const qsizetype blank = line.indexOf(' ');
    ImapResponse response;
    response.tag = line.first(blank < 0 ? line.size() : blank);
    line.remove(0, blank < 0 ? line.size() : blank + 1);
    response.pieces = {line};
    if (!response.is_untagged() || is_status(response.keyword()))
        return response;
    qsizetype size = line.size();
    while (const auto announced = cut_announcement(response.pieces.last())) {
        size += *announced;
        if (size > longest_response)
            connection.fail(connection.step(),
                            QStringLiteral("the server announced %1 bytes").arg(size));
        // Whoever writes a message can make it have this many: that is no failure of the line.
        response.is_cut = response.is_cut || response.literals.size() == most_literals;
        if (response.is_cut) {
            pass_over(connection, *announced);
            response.pieces.last() = connection.read_line(longest_line);
        } else {
            response.literals += connection.read_bytes(*announced);
            response.pieces += connection.read_line(longest_line);
        }
        size += response.pieces.last().size();
    }
    if (response.is_cut)
        response.pieces.last().clear();
    return response;
}

QByteArray ImapValue::text_at(std::size_t index) const
{
    return index < items.size() ? items[index].text : QByteArray();
}

ImapFetch read_fetch(ImapResponse response)
{
    ImapFetch fetch;
    fetch.is_cut = response.is_cut;
    const qsizetype skipped = response.pieces.first().size() - response.rest().size();
    Cursor cursor(response);
    cursor.skip(response.pieces.first().first(skipped));
    if (!cursor.take('('))
        return fetch;
    while (!cursor.is_at_end() && cursor.next() != ')') {
        cursor.skip_blanks();
        const QByteArray name = cursor.item_name();
        auto value = cursor.value();
        if (name.isEmpty() || !value) {
            fetch.is_cut = true;
            break;
        }
        take_item(name, std::move(*value), fetch);
        cursor.skip_blanks();
    }
    return fetch;
}

QDateTime read_internal_date(const QByteArray &text)
{
    static constexpr QByteArrayView months("JanFebMarAprMayJunJulAugSepOctNovDec");
    const QList<QByteArray> words = text.trimmed().split(' ');
    const QList<QByteArray> day = words.first().split('-');
    if (words.size() != 3 || day.size() != 3 || day[1].size() != 3 || words[2].size() != 5)
        return {};
    const qsizetype month = months.indexOf(day[1].left(1).toUpper() + day[1].mid(1).toLower());
    const QDate date(day[2].toInt(), static_cast<int>(month / 3 + 1), day[0].toInt());
    const QTime time = QTime::fromString(QString::fromLatin1(words[1]), Qt::ISODate);
    const int zone = words[2].toInt(); // ±hhmm
    if (month < 0 || month % 3 != 0 || !date.isValid() || !time.isValid())
        return {};
    return QDateTime(date, time, Qt::OffsetFromUTC, (zone / 100 * 60 + zone % 100) * 60).toUTC();
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
