#include "mail/parser_guard.h"

#include "mail/blank.h"

#include <QByteArrayView>

#include <algorithm>
#include <array>

namespace
{
constexpr int most_colons = 200;
constexpr int most_lines = 200'000;

// Whether the line is the first of a field that the parser reads as addresses. Cheap for all
// others: most lines fail at their first letter.
bool begins_address_field(QByteArrayView line, qsizetype colon)
{
    static constexpr std::array<QByteArrayView, 6> names = {"from", "sender", "reply-to",
                                                            "to",   "cc",     "bcc"};
    if (!QByteArrayView("fFsSrRtTcCbB").contains(line[0]))
        return false;
    QByteArrayView name = line.first(colon);
    while (!name.isEmpty() && is_blank(name.back()))
        name.chop(1);
    return std::ranges::any_of(
        names, [name](QByteArrayView n) { return n.compare(name, Qt::CaseInsensitive) == 0; });
}

class Guard
{
public:
    explicit Guard(QByteArray &message) : message_(message), view_(message) {}

    qsizetype run()
    {
        qsizetype at = 0;
        while (at < view_.size() && lines_ < most_lines) {
            const qsizetype line_feed = view_.indexOf('\n', at);
            const qsizetype end = line_feed < 0 ? view_.size() : line_feed + 1;
            line(at, view_.sliced(at, end - at));
            at = end;
        }
        return at;
    }

private:
    void line(qsizetype begin, QByteArrayView line)
    {
        const qsizetype colon = line.indexOf(':');
        if (is_blank(line[0])) {
            if (in_address_field_ && colon >= 0)
                limit_colons(begin, line);
            return;
        }
        in_address_field_ = colon > 0 && begins_address_field(line, colon);
        colons_ = 0;
        if (in_address_field_)
            limit_colons(begin, line);
        if (colon > 0 || line.startsWith("--"))
            ++lines_;
    }

    void limit_colons(qsizetype begin, QByteArrayView line)
    {
        for (qsizetype at = line.indexOf(':'); at >= 0; at = line.indexOf(':', at + 1)) {
            if (++colons_ <= most_colons)
                continue;
            message_[begin + at] = ' '; // detaches a shared buffer, so the view is taken anew
            view_ = message_;
            line = view_.sliced(begin, line.size());
        }
    }

    QByteArray &message_;
    QByteArrayView view_;
    int lines_ = 0;
    int colons_ = 0;
    bool in_address_field_ = false;
};
} // namespace

qsizetype guard_for_parser(QByteArray &message)
{
    return Guard(message).run();
}
