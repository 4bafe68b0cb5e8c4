#include "mail/imap_fetch.h"

#include <QByteArrayView>

#include <algorithm>
#include <utility>

namespace
{
constexpr int most_levels = 100;
// A part has about 20 values and a thousand parts are looked at; a value takes 100 bytes.
constexpr int most_values = 100'000;
constexpr qint64 largest_structure = qint64(16) * 1024 * 1024;

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
        if (++values_ > most_values)
            return std::nullopt;
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
        if (level == most_levels)
            return std::nullopt;
        take('(');
        ImapValue result;
        result.kind = ImapValue::Kind::List;
        for (skip_blanks(); !take(')'); skip_blanks()) {
            auto item = is_at_end() ? std::nullopt : value(level + 1);
            if (!item)
                return std::nullopt;
            result.items.push_back(std::move(*item));
        }
        return result;
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
    int values_ = 0;
};

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
    if (value.held() <= largest_structure)
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

QByteArray ImapValue::text_at(std::size_t index) const
{
    return index < items.size() ? items[index].text : QByteArray();
}

qint64 ImapValue::held() const
{
    constexpr qint64 usual_block = 40; // of a text's header and what rounding up adds
    qint64 bytes = static_cast<qint64>(items.capacity() * sizeof(ImapValue)) + text.capacity();
    bytes += text.isEmpty() ? 0 : usual_block;
    for (const ImapValue &item : items)
        bytes += item.held();
    return bytes;
}

ImapFetch read_fetch(ImapResponse response)
{
    ImapFetch fetch;
    const qsizetype skipped = response.pieces.first().size() - response.rest().size();
    Cursor cursor(response);
    cursor.skip(response.pieces.first().first(skipped));
    if (!cursor.take('('))
        return fetch;
    while (!cursor.is_at_end() && cursor.next() != ')') {
        cursor.skip_blanks();
        const QByteArray name = cursor.item_name();
        auto value = cursor.value();
        if (name.isEmpty() || !value)
            break;
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
    const qsizetype month = months.indexOf(day[1]);
    const QDate date(day[2].toInt(), static_cast<int>(month / 3 + 1), day[0].toInt());
    const QTime time = QTime::fromString(QString::fromLatin1(words[1]), Qt::ISODate);
    const int zone = words[2].toInt(); // ±hhmm
    if (month < 0 || month % 3 != 0 || !date.isValid() || !time.isValid())
        return {};
    return QDateTime(date, time, Qt::OffsetFromUTC, (zone / 100 * 60 + zone % 100) * 60).toUTC();
}
