#include "mail/mailbox_field.h"

#include "mail/blank.h"
#include "mail/encoded_words.h"
#include "mail/text_shape.h"

#include <QByteArray>

#include <algorithm>

namespace
{
// The quoted string at `begin`, its quotes included; 0 when it is not closed.
qsizetype quoted_length(QByteArrayView value, qsizetype begin)
{
    for (qsizetype at = begin + 1; at < value.size(); ++at) {
        if (value[at] == '\\')
            ++at;
        else if (value[at] == '"')
            return at + 1 - begin;
    }
    return 0;
}

// The comment at `begin`, its brackets and those inside it included; 0 when it is not closed.
qsizetype comment_length(QByteArrayView value, qsizetype begin)
{
    qsizetype depth = 0;
    for (qsizetype at = begin; at < value.size(); ++at) {
        if (value[at] == '\\')
            ++at;
        else if (value[at] == '(')
            ++depth;
        else if (value[at] == ')' && --depth == 0)
            return at + 1 - begin;
    }
    return 0;
}

// The text without quotes and the backslashes that quote.
QByteArray unquoted(QByteArrayView text)
{
    QByteArray plain;
    plain.reserve(text.size());
    bool is_quoted = false;
    for (qsizetype at = 0; at < text.size(); ++at) {
        if (text[at] == '"') {
            is_quoted = !is_quoted;
            continue;
        }
        if (is_quoted && text[at] == '\\' && at + 1 < text.size())
            ++at;
        plain.append(text[at]);
    }
    return plain;
}

QString decoded_line(QByteArrayView text)
{
    return as_one_line(decode_header_text(text));
}

// Walks the value up to the end of its first mailbox and keeps what it finds on the way.
class MailboxScan
{
public:
    explicit MailboxScan(QByteArrayView value) : value_(value) {}

    Mailbox read()
    {
        while (!is_done_ && at_ < value_.size())
            step();
        return has_angle_ ? angle_mailbox() : bare_mailbox();
    }

private:
    void step()
    {
        switch (value_[at_]) {
        case '"':
            quotes();
            break;
        case '=':
            keep(std::max<qsizetype>(1, encoded_word_length(value_.sliced(at_))));
            break;
        case '(':
            comment();
            break;
        case '<':
            angle();
            break;
        case ':':
            colon();
            break;
        case ',':
        case ';':
            separator();
            break;
        default:
            keep(1);
        }
    }

    void keep(qsizetype length)
    {
        const QByteArrayView text = value_.sliced(at_, length);
        if (!has_angle_) {
            phrase_.append(text);
            phrase_is_blank_ = phrase_is_blank_ && std::ranges::all_of(text, is_blank);
            phrase_has_at_ = phrase_has_at_ || (text.contains('@') && text[0] != '"');
        }
        at_ += length;
    }

    // A quote or bracket that was found unclosed once is an ordinary character from then on: the
    // search for its end is not repeated.
    void quotes()
    {
        const qsizetype length = quotes_close_ ? quoted_length(value_, at_) : 0;
        quotes_close_ = length > 0;
        if (length > 0)
            keep(length);
        else
            ++at_;
    }

    void comment()
    {
        const qsizetype length = comments_close_ ? comment_length(value_, at_) : 0;
        comments_close_ = length > 0;
        if (length == 0) {
            keep(1);
            return;
        }
        comment_ = value_.sliced(at_ + 1, length - 2);
        at_ += length;
        if (has_angle_)
            return;
        // What stood on both sides is kept apart by one blank.
        while (at_ < value_.size() && is_blank(value_[at_]))
            ++at_;
        if (!phrase_is_blank_ && !is_blank(phrase_.back()))
            phrase_.append(' ');
    }

    void angle()
    {
        if (has_angle_) {
            is_done_ = true;
            return;
        }
        while (at_ < value_.size() && (value_[at_] == '<' || is_blank(value_[at_])))
            ++at_;
        const qsizetype end = angle_end();
        angle_ = value_.sliced(at_, end - at_);
        has_angle_ = true;
        at_ = end;
        while (at_ < value_.size() && value_[at_] == '>')
            ++at_;
    }

    // Where the address in angle brackets ends: at its bracket or, when that is missing, at what
    // begins the next address. A route has commas of its own.
    qsizetype angle_end() const
    {
        qsizetype begin = at_;
        if (begin < value_.size() && value_[begin] == '"')
            begin += quoted_length(value_, begin);
        const bool is_route = begin < value_.size() && value_[begin] == '@';
        const QByteArrayView ends = is_route ? QByteArrayView(">") : QByteArrayView(">,;<");
        const auto *end = std::find_if(value_.begin() + begin, value_.end(),
                                       [ends](char c) { return ends.contains(c); });
        return end - value_.begin();
    }

    // Before an address a colon ends a group's name ("friends: ann@example.org;").
    void colon()
    {
        if (phrase_has_at_ || has_angle_)
            keep(1);
        else
            start_anew();
    }

    // A separator behind an address ends the mailbox. Behind other text it may belong to a name
    // that should have been quoted ("Doe, Ann <ann@example.org>").
    void separator()
    {
        if (has_angle_ || phrase_has_at_)
            is_done_ = true;
        else if (phrase_is_blank_ || value_[at_] == ';')
            start_anew();
        else
            keep(1);
    }

    void start_anew()
    {
        phrase_.clear();
        phrase_is_blank_ = true;
        phrase_has_at_ = false;
        ++at_;
    }

    Mailbox angle_mailbox() const
    {
        QByteArrayView address = angle_.trimmed();
        // A route ("@relay,@relay:ann@example.org") is history; the mailbox stands behind it.
        if (address.startsWith('@') && address.contains(':'))
            address = address.sliced(address.lastIndexOf(':') + 1).trimmed();
        const QString name = decoded_line(unquoted(phrase_));
        return {decoded_line(address), name.isEmpty() ? decoded_line(unquoted(comment_)) : name};
    }

    // "ann@example.org (Ann)", "ann@example.org", "Ann ann@example.org", or a name alone.
    Mailbox bare_mailbox() const
    {
        const QByteArray text = with_joined_at(phrase_.trimmed());
        const auto [begin, end] = address_word(text);
        if (begin == end)
            return lone_word_or_name(text);
        const QByteArray around = (text.first(begin) + ' ' + text.sliced(end)).trimmed();
        const QString name = decoded_line(unquoted(around));
        return {decoded_line(QByteArrayView(text).sliced(begin, end - begin)),
                name.isEmpty() ? decoded_line(unquoted(comment_)) : name};
    }

    // A single word without "@" is a local address ("root"); several words are a name.
    Mailbox lone_word_or_name(const QByteArray &text) const
    {
        const QString decoded = decoded_line(unquoted(text));
        const bool is_local = !decoded.isEmpty() && !decoded.contains(u' ');
        if (is_local || decoded.contains(u'@'))
            return {decoded, decoded_line(unquoted(comment_))};
        return {{}, decoded};
    }

    // Old mail may have blanks round the "@".
    static QByteArray with_joined_at(const QByteArray &text)
    {
        QByteArray joined;
        joined.reserve(text.size());
        for (const char c : text) {
            while (c == '@' && !joined.isEmpty() && is_blank(joined.back()))
                joined.chop(1);
            const bool follows_at = is_blank(c) && joined.endsWith('@');
            if (!follows_at)
                joined.append(c);
        }
        return joined;
    }

    // The last word that holds an "@"; blanks inside quotes do not end a word.
    static std::pair<qsizetype, qsizetype> address_word(QByteArrayView text)
    {
        std::pair<qsizetype, qsizetype> found{0, 0};
        bool quotes_close = true; // as in quotes(): one search for an end that is not there
        for (qsizetype at = 0; at < text.size();) {
            const qsizetype begin = at;
            bool has_at = false;
            while (at < text.size() && !is_blank(text[at])) {
                has_at = has_at || text[at] == '@';
                const bool is_quote = text[at] == '"' && quotes_close;
                const qsizetype quoted = is_quote ? quoted_length(text, at) : 0;
                quotes_close = quotes_close && (!is_quote || quoted > 0);
                at += std::max<qsizetype>(1, quoted);
            }
            if (has_at)
                found = {begin, at};
            ++at;
        }
        return found;
    }

    QByteArrayView value_;
    qsizetype at_ = 0;
    bool is_done_ = false;
    bool quotes_close_ = true;
    bool comments_close_ = true;
    QByteArray phrase_;
    bool phrase_is_blank_ = true;
    bool phrase_has_at_ = false;
    QByteArrayView comment_;
    QByteArrayView angle_;
    bool has_angle_ = false;
};
} // namespace

Mailbox first_mailbox(QByteArrayView value)
{
    return MailboxScan(value).read();
}
