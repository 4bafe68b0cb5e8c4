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
    const QByteArray &piece() const { return response_.pieces.at(piece_); }

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

// What it takes in memory.
qint64 size_of(const ImapValue &value)
{
    constexpr qint64 usual_block = 40; // of a text's header and what rounding up adds
    qint64 size = static_cast<qint64>(value.items.capacity() * sizeof(ImapValue));
    size += value.text.isEmpty() ? 0 : value.text.capacity() + usual_block;
    for (const ImapValue &item : value.items)
        size += size_of(item);
    return size;
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

// One that is too large counts as nothing.
void take_structure(ImapValue value, ImapFetch &fetch)
{
    const qint64 size = size_of(value);
    const bool is_kept = size <= largest_structure;
    fetch.structure_size = is_kept ? size : 0;
    fetch.structure = is_kept ? std::move(value) : ImapValue();
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
