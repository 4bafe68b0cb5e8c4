#include "mail/html_text.h"

#include "mail/html_entities.h"

#include <QByteArray>

#include <algorithm>
#include <array>

namespace
{
bool is_space(QChar c)
{
    return c == u' ' || c == u'\t' || c == u'\n' || c == u'\r' || c == u'\f';
}

bool is_letter(QChar c)
{
    const auto lower = static_cast<char16_t>(c.unicode() | 0x20);
    return lower >= u'a' && lower <= u'z';
}

bool is_one_of(QStringView name, std::initializer_list<QStringView> names)
{
    return std::ranges::any_of(names, [name](QStringView candidate) {
        return name.compare(candidate, Qt::CaseInsensitive) == 0;
    });
}

bool is_block(QStringView name)
{
    return is_one_of(name, {u"p",       u"div",     u"tr",      u"li",         u"ul",     u"ol",
                            u"table",   u"h1",      u"h2",      u"h3",         u"h4",     u"h5",
                            u"h6",      u"dl",      u"dt",      u"dd",         u"pre",    u"hr",
                            u"title",   u"body",    u"head",    u"blockquote", u"center", u"form",
                            u"address", u"section", u"article", u"header",     u"footer", u"option",
                            u"caption", u"fieldset"});
}

QString decode_entities(QStringView text)
{
    QString decoded;
    decoded.reserve(text.size());
    while (!text.isEmpty()) {
        const HtmlEntity entity = text[0] == u'&' ? html_entity(text) : HtmlEntity();
        decoded += entity.length > 0 ? entity.text : QString(text[0]);
        text = text.sliced(std::max<qsizetype>(1, entity.length));
    }
    return decoded;
}

// What gathers under the rules of HTML white space.
class ReadableText
{
public:
    explicit ReadableText(qsizetype expected) { text_.reserve(expected); }

    void add(QChar c)
    {
        // A no-break space is a blank too: it must not glue an address to the word before it.
        const bool is_white = is_space(c) || c == QChar::Nbsp;
        if (is_white && preformatted_ == 0) {
            blank_pending_ = true;
            return;
        }
        add_pending_blank();
        text_ += c == QChar::Nbsp ? QChar(u' ') : c;
    }

    void add(QStringView word)
    {
        for (const QChar c : word)
            add(c);
    }

    void blank() { blank_pending_ = true; }

    void line_break()
    {
        blank_pending_ = false;
        text_ += u'\n';
    }

    void end_line()
    {
        blank_pending_ = false;
        if (!at_line_start())
            text_ += u'\n';
    }

    void preformatted(bool begins)
    {
        preformatted_ = begins ? preformatted_ + 1 : std::max(0, preformatted_ - 1);
    }

    qsizetype size() const { return text_.size(); }
    QStringView since(qsizetype begin) const { return QStringView(text_).sliced(begin); }
    QString take() { return std::move(text_); }

private:
    bool at_line_start() const { return text_.isEmpty() || text_.back() == u'\n'; }

    void add_pending_blank()
    {
        if (blank_pending_ && !at_line_start())
            text_ += u' ';
        blank_pending_ = false;
    }

    QString text_;
    bool blank_pending_ = false;
    int preformatted_ = 0;
};

struct Tag
{
    QStringView name;
    bool closes = false;
    QStringView attributes;
};

// The value of the attribute `href`, entities still in it.
QStringView href_of(QStringView attributes)
{
    qsizetype at = 0;
    const auto skip = [&](auto is_wanted) {
        while (at < attributes.size() && is_wanted(attributes[at]))
            ++at;
    };
    while (at < attributes.size()) {
        skip([](QChar c) { return is_space(c) || c == u'/'; });
        const qsizetype name_begin = at;
        skip([](QChar c) { return !is_space(c) && c != u'=' && c != u'/'; });
        const QStringView name = attributes.sliced(name_begin, at - name_begin);
        skip(is_space);
        if (at >= attributes.size() || attributes[at] != u'=')
            continue;
        ++at;
        skip(is_space);
        const bool is_quoted =
            at < attributes.size() && (attributes[at] == u'"' || attributes[at] == u'\'');
        const QChar quote = is_quoted ? attributes[at++] : QChar();
        const qsizetype begin = at;
        skip([=](QChar c) { return is_quoted ? c != quote : !is_space(c); });
        if (is_one_of(name, {u"href"}))
            return attributes.sliced(begin, at - begin);
        at += is_quoted ? 1 : 0;
    }
    return {};
}

// The address of a mailto: link (RFC 6068); empty for other links and for what is longer than any
// address, which would also be sought in the link's text for minutes.
QString mailto_address(QStringView attributes)
{
    constexpr qsizetype longest = 1'000;
    const QString target = decode_entities(href_of(attributes)).trimmed();
    const QLatin1String scheme("mailto:");
    if (!target.startsWith(scheme, Qt::CaseInsensitive))
        return {};
    const qsizetype query = target.indexOf(u'?');
    const QString encoded =
        target.sliced(scheme.size(), (query < 0 ? target.size() : query) - scheme.size());
    if (encoded.size() > longest)
        return {};
    return QString::fromUtf8(QByteArray::fromPercentEncoding(encoded.toUtf8())).trimmed();
}

class HtmlReader
{
public:
    explicit HtmlReader(QStringView html) : html_(html), text_(html.size()) {}

    QString read()
    {
        while (at_ < html_.size()) {
            if (html_[at_] == u'<')
                markup();
            else if (html_[at_] == u'&')
                entity();
            else
                text_.add(html_[at_++]);
        }
        end_link();
        return text_.take();
    }

private:
    void entity()
    {
        const HtmlEntity entity = html_entity(html_.sliced(at_));
        text_.add(entity.length > 0 ? entity.text : QStringLiteral("&"));
        at_ += std::max<qsizetype>(1, entity.length);
    }

    void markup()
    {
        const QStringView rest = html_.sliced(at_);
        const QChar second = rest.size() > 1 ? rest[1] : QChar();
        if (rest.startsWith(u"<!--") && skip_comment())
            return;
        const bool is_tag = is_letter(second) || second == u'!' || second == u'?' ||
                            (second == u'/' && rest.size() > 2 && is_letter(rest[2]));
        const qsizetype end = is_tag ? tag_end() : -1;
        if (end < 0) {
            text_.add(html_[at_++]);
            return;
        }
        const QStringView inside = html_.sliced(at_ + 1, end - at_ - 1);
        at_ = end + 1;
        apply(parse(inside));
    }

    bool skip_comment()
    {
        const qsizetype end = comments_close_ ? html_.indexOf(u"-->", at_ + 2) : -1;
        comments_close_ = end >= 0;
        if (comments_close_)
            at_ = end + 3;
        return comments_close_;
    }

    // The ">" of the tag at the cursor. Quoted values may hold one; but when that reading runs to
    // the document's end, quotes are not trusted from there on, which also keeps this one pass.
    qsizetype tag_end()
    {
        if (quotes_trusted_) {
            const qsizetype end = quoted_tag_end();
            quotes_trusted_ = end >= 0;
            if (end >= 0)
                return end;
        }
        const qsizetype end = tags_close_ ? html_.indexOf(u'>', at_) : -1;
        tags_close_ = end >= 0;
        return end;
    }

    qsizetype quoted_tag_end() const
    {
        QChar quote;
        QChar last;
        for (qsizetype at = at_ + 1; at < html_.size(); ++at) {
            const QChar c = html_[at];
            if (!quote.isNull())
                quote = c == quote ? QChar() : quote;
            else if (c == u'>')
                return at;
            else if ((c == u'"' || c == u'\'') && last == u'=')
                quote = c;
            last = is_space(c) ? last : c;
        }
        return -1;
    }

    static Tag parse(QStringView inside)
    {
        Tag tag;
        tag.closes = inside.startsWith(u'/');
        if (tag.closes)
            inside = inside.sliced(1);
        const auto *end = std::ranges::find_if(
            inside, [](QChar c) { return is_space(c) || c == u'/' || c == u'>'; });
        tag.name = inside.first(end - inside.begin());
        tag.attributes = inside.sliced(tag.name.size());
        return tag;
    }

    void apply(const Tag &tag)
    {
        if (is_one_of(tag.name, {u"script", u"style"}) && !tag.closes)
            skip_raw(tag.name);
        else if (is_one_of(tag.name, {u"br"}))
            text_.line_break();
        else if (is_one_of(tag.name, {u"td", u"th"}))
            text_.blank();
        else if (is_one_of(tag.name, {u"a"}))
            link(tag);
        else if (is_block(tag.name))
            block(tag);
    }

    void block(const Tag &tag)
    {
        text_.end_line();
        if (is_one_of(tag.name, {u"pre"}))
            text_.preformatted(!tag.closes);
    }

    // Drops a script's or style sheet's content; one that is never closed is shown, not lost.
    void skip_raw(QStringView name)
    {
        bool &closes = name.size() == 6 ? scripts_close_ : styles_close_;
        const QString end_tag = QStringLiteral("</") + name.toString();
        const qsizetype end = closes ? html_.indexOf(end_tag, at_, Qt::CaseInsensitive) : -1;
        closes = end >= 0;
        if (closes)
            at_ = end;
    }

    void link(const Tag &tag)
    {
        end_link();
        if (tag.closes)
            return;
        link_address_ = mailto_address(tag.attributes);
        link_begin_ = text_.size();
    }

    void end_link()
    {
        if (link_address_.isEmpty())
            return;
        if (!text_.since(link_begin_).contains(link_address_, Qt::CaseInsensitive)) {
            text_.blank();
            text_.add(u'<' + link_address_ + u'>');
        }
        link_address_.clear();
    }

    QStringView html_;
    qsizetype at_ = 0;
    ReadableText text_;
    bool quotes_trusted_ = true;
    bool tags_close_ = true;
    bool comments_close_ = true;
    bool scripts_close_ = true;
    bool styles_close_ = true;
    QString link_address_;
    qsizetype link_begin_ = 0;
};
} // namespace

QString html_to_text(const QString &html)
{
    return HtmlReader(html).read();
}
