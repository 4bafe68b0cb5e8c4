#include "db/like_pattern.h"

#include "db/letter_case.h"
#include "platform/runtime_error.h"

#include <QString>

#include <algorithm>
#include <cstring>

namespace
{
constexpr std::size_t nowhere = std::string_view::npos;

// Above this the search by skipping, which is quadratic at its worst, gives way to memmem().
constexpr std::size_t short_text = 512;

std::size_t find_literal(std::string_view text, std::string_view literal, std::size_t from)
{
    if (literal.empty())
        return from;
    const void *found =
        memmem(text.data() + from, text.size() - from, literal.data(), literal.size());
    return found == nullptr
               ? nowhere
               : static_cast<std::size_t>(static_cast<const char *>(found) - text.data());
}

[[noreturn]] void fail(std::string_view pattern)
{
    constexpr std::size_t shown = 200;
    const std::string_view start = pattern.substr(0, shown);
    throw RuntimeError(error_number::invalid_pattern,
                       QStringLiteral("Invalid pattern string: '") +
                           QString::fromUtf8(start.data(), static_cast<qsizetype>(start.size())) +
                           QStringLiteral("'"));
}

void step_back(std::string_view text, std::size_t &position)
{
    do
        --position;
    while (position > 0 && (static_cast<unsigned char>(text[position]) & 0xC0U) == 0x80);
}

/// The position `characters` before the end of well-formed text; `nowhere` when it has fewer.
std::size_t before_end(std::string_view text, std::size_t characters)
{
    std::size_t position = text.size();
    for (; characters > 0; --characters) {
        if (position == 0)
            return nowhere;
        step_back(text, position);
    }
    return position;
}
} // namespace

bool LikePattern::CharacterList::accepts(char32_t folded) const
{
    const bool listed = std::any_of(ranges.begin(), ranges.end(), [folded](const auto &range) {
        return range.first <= folded && folded <= range.second;
    });
    return listed != negated;
}

LikePattern::LikePattern(std::string_view pattern) : segments_(1)
{
    for (std::size_t position = 0; position < pattern.size();) {
        const char32_t letter = next_code_point(pattern, position);
        Segment &segment = segments_.back();
        if (letter == '*')
            segments_.emplace_back();
        else if (letter == '[')
            add_list(pattern, position);
        else if (letter == '?' || letter == '#')
            segment.pieces.push_back({letter == '?' ? Kind::AnyCharacter : Kind::Digit, {}, {}});
        else
            add_letter(letter);
        if (letter == '?' || letter == '#')
            ++segment.characters;
    }
    for (const Segment &segment : segments_)
        characters_ += segment.characters;
    prepare_plain_search();
}

void LikePattern::add_letter(char32_t letter)
{
    Segment &segment = segments_.back();
    if (segment.pieces.empty() || segment.pieces.back().kind != Kind::Literal)
        segment.pieces.push_back({Kind::Literal, {}, {}});
    append_utf8(fold_letter(letter), segment.pieces.back().literal);
    ++segment.characters;
}

void LikePattern::add_list(std::string_view pattern, std::size_t &position)
{
    const std::size_t end = pattern.find(']', position);
    if (end == nowhere)
        fail(pattern);
    std::string_view text = pattern.substr(position, end - position);
    position = end + 1;
    if (text.empty())
        return;
    CharacterList list;
    if (text.size() > 1 && text.front() == '!') {
        list.negated = true;
        text.remove_prefix(1);
    }
    for (std::size_t i = 0; i < text.size();) {
        const char32_t first = fold_letter(next_code_point(text, i));
        char32_t last = first;
        if (i + 1 < text.size() && text[i] == '-') {
            ++i;
            last = fold_letter(next_code_point(text, i));
        }
        if (last < first)
            fail(pattern);
        list.ranges.emplace_back(first, last);
    }
    segments_.back().pieces.push_back({Kind::List, {}, std::move(list)});
    ++segments_.back().characters;
}

void LikePattern::prepare_plain_search()
{
    if (segments_.size() != 3 || !segments_[0].pieces.empty() || !segments_[2].pieces.empty() ||
        segments_[1].pieces.size() != 1 || segments_[1].pieces[0].kind != Kind::Literal ||
        !is_ascii(segments_[1].pieces[0].literal))
        return;
    plain_ = true;
    plain_literal_ = segments_[1].pieces[0].literal;
    letters_beyond_ascii_ = plain_literal_.find_first_of("ks") != nowhere;
    const auto length = static_cast<std::uint32_t>(plain_literal_.size());
    skip_.fill(length);
    for (std::uint32_t i = 0; i + 1 < length; ++i)
        skip_[static_cast<unsigned char>(plain_literal_[i])] = length - 1 - i;
    for (std::size_t capital = 'A'; capital <= 'Z'; ++capital)
        skip_[capital] = skip_[ascii_fold[capital]];
}

// A character is one to four bytes.
bool LikePattern::can_match_length(std::size_t bytes) const
{
    return bytes >= characters_ && (segments_.size() > 1 || bytes <= characters_ * 4);
}

bool LikePattern::matches(std::string_view text) const
{
    if (!can_match_length(text.size()))
        return false;
    if (plain_ && text.size() <= short_text) {
        if (search_plainly(text))
            return true;
        if (!letters_beyond_ascii_ || is_ascii(text))
            return false;
    }
    fold_text(text, folded_);
    return plain_ ? find_literal(folded_, plain_literal_, 0) != nowhere : match_segments(folded_);
}

bool LikePattern::search_plainly(std::string_view text) const
{
    const std::size_t length = plain_literal_.size();
    const auto *const bytes = reinterpret_cast<const unsigned char *>(text.data());
    const auto *const wanted = reinterpret_cast<const unsigned char *>(plain_literal_.data());
    for (std::size_t end = length; end <= text.size(); end += skip_[bytes[end - 1]]) {
        std::size_t i = length;
        while (i > 0 && ascii_fold[bytes[end - length + i - 1]] == wanted[i - 1])
            --i;
        if (i == 0)
            return true;
    }
    return false;
}

namespace
{
/// Matches one segment's pieces in folded text.
template <typename Pieces>
class Matcher
{
public:
    Matcher(std::string_view text, const Pieces &pieces) : text_(text), pieces_(pieces) {}

    /// The end of the match that starts at `position`, `nowhere` when there is none.
    std::size_t match_at(std::size_t position) const
    {
        for (const auto &piece : pieces_) {
            if (!match_piece(piece, position))
                return nowhere;
        }
        return position;
    }

    /// The end of the first match at or after `position`.
    std::size_t search(std::size_t position) const
    {
        while (position <= text_.size()) {
            position = candidate(position);
            if (position == nowhere)
                return nowhere;
            if (const std::size_t end = match_at(position); end != nowhere)
                return end;
            if (position == text_.size())
                return nowhere;
            next_code_point(text_, position);
        }
        return nowhere;
    }

private:
    using Piece = typename Pieces::value_type;
    using Kind = decltype(Piece::kind);

    std::size_t candidate(std::size_t position) const
    {
        const bool starts_literal = !pieces_.empty() && pieces_.front().kind == Kind::Literal;
        return starts_literal ? find_literal(text_, pieces_.front().literal, position) : position;
    }

    bool match_piece(const Piece &piece, std::size_t &position) const
    {
        if (piece.kind == Kind::Literal) {
            const bool same = text_.substr(position, piece.literal.size()) == piece.literal;
            position += piece.literal.size();
            return same;
        }
        if (position >= text_.size())
            return false;
        const char32_t letter = next_code_point(text_, position);
        if (piece.kind == Kind::Digit)
            return letter >= '0' && letter <= '9';
        return piece.kind == Kind::AnyCharacter || piece.list.accepts(letter);
    }

    std::string_view text_;
    const Pieces &pieces_;
};
} // namespace

// Between the first and the last segment, which stand at the ends, each segment takes its leftmost
// place: what lies behind it then has the most room.
bool LikePattern::match_segments(std::string_view folded) const
{
    std::size_t position = Matcher(folded, segments_.front().pieces).match_at(0);
    if (position == nowhere || segments_.size() == 1)
        return position == folded.size();
    for (std::size_t i = 1; i + 1 < segments_.size(); ++i) {
        position = Matcher(folded, segments_[i].pieces).search(position);
        if (position == nowhere)
            return false;
    }
    const std::size_t last = before_end(folded, segments_.back().characters);
    return last != nowhere && last >= position &&
           Matcher(folded, segments_.back().pieces).match_at(last) == folded.size();
}
