#include "mail/encoded_words.h"

#include "mail/blank.h"
#include "mail/charset.h"
#include "mail/transfer_decoding.h"

#include <QByteArray>

#include <algorithm>
#include <optional>

namespace
{
struct EncodedWord
{
    QByteArrayView charset;
    bool is_base64 = false;
    QByteArrayView data;
    qsizetype length = 0;
    bool has_end = false;
};

bool is_charset_character(char c)
{
    return c > ' ' && c < 127 && c != '?' && c != '=';
}

bool is_at(QByteArrayView value, qsizetype at, char first, char second)
{
    return at + 1 < value.size() && value[at] == first && value[at + 1] == second;
}

// Fills in the word's data, which begins at `begin`: up to "?=", or, when the next word begins or
// the value ends before that, up to the next blank. Looks no further than the next word, so that a
// header full of beginnings costs one pass.
void find_end(QByteArrayView value, qsizetype begin, EncodedWord &word)
{
    qsizetype at = begin;
    while (at < value.size() && !is_at(value, at, '?', '=')) {
        if (is_at(value, at, '=', '?') && !is_at(value, at + 1, '?', '='))
            break;
        ++at;
    }
    word.has_end = is_at(value, at, '?', '=');
    if (!word.has_end)
        at = std::find_if(value.begin() + begin, value.begin() + at, is_blank) - value.begin();
    word.data = value.sliced(begin, at - begin);
    word.length = at + (word.has_end ? 2 : 0);
}

// The word at the value's first byte: "=?charset?encoding?data?=".
std::optional<EncodedWord> word_at(QByteArrayView value)
{
    constexpr qsizetype longest_charset = 64;
    if (!value.startsWith("=?"))
        return std::nullopt;
    qsizetype at = 2;
    while (at < value.size() && at < longest_charset && is_charset_character(value[at]))
        ++at;
    if (at + 2 >= value.size() || value[at] != '?' || value[at + 2] != '?')
        return std::nullopt;
    const auto encoding = static_cast<char>(value[at + 1] | 0x20);
    if (encoding != 'b' && encoding != 'q')
        return std::nullopt;
    EncodedWord word;
    const QByteArrayView label = value.sliced(2, at - 2);
    const qsizetype language = label.indexOf('*'); // RFC 2231 5: "charset*language"
    word.charset = language < 0 ? label : label.first(language);
    word.is_base64 = encoding == 'b';
    find_end(value, at + 3, word);
    return word;
}

// Collects runs of bytes that share a charset; a run is decoded when the next one begins.
class HeaderText
{
public:
    void add_word(const EncodedWord &word)
    {
        if (!in_word_ || charset_.compare(word.charset, Qt::CaseInsensitive) != 0)
            end_run();
        in_word_ = true;
        charset_ = word.charset;
        run_.append(word.is_base64 ? decode_base64(word.data) : decode_q(word.data));
    }

    void add_plain(QByteArrayView bytes)
    {
        if (in_word_)
            end_run();
        run_.append(bytes.data(), bytes.size());
    }

    bool in_word() const { return in_word_; }

    QString finish()
    {
        end_run();
        return text_;
    }

private:
    void end_run()
    {
        text_ += decode_charset(run_, charset_);
        run_.clear();
        charset_ = {};
        in_word_ = false;
    }

    QString text_;
    QByteArray run_;
    QByteArrayView charset_;
    bool in_word_ = false;
};
} // namespace

qsizetype encoded_word_length(QByteArrayView value)
{
    const auto word = word_at(value);
    return word && word->has_end ? word->length : 0;
}

QString decode_header_text(QByteArrayView value)
{
    HeaderText text;
    qsizetype plain_begin = 0;
    for (qsizetype at = value.indexOf("=?"); at >= 0; at = value.indexOf("=?", at)) {
        const auto word = word_at(value.sliced(at));
        if (!word) {
            at += 2;
            continue;
        }
        const QByteArrayView between = value.sliced(plain_begin, at - plain_begin);
        // Blanks between two words only separate them (RFC 2047 6.2).
        if (!text.in_word() || !std::ranges::all_of(between, is_blank))
            text.add_plain(between);
        text.add_word(*word);
        at += word->length;
        plain_begin = at;
    }
    text.add_plain(value.sliced(plain_begin));
    return text.finish();
}
