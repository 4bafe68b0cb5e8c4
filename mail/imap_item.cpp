#include "mail/imap_item.h"

#include <algorithm>
#include <utility>

namespace
{
// Up to this size asking for the structure costs more than what it saves.
constexpr qint64 largest_whole = 4'096;
constexpr qint64 whole_limit = 32'768; // for a server that tells a wrong size
constexpr qint64 usual_outline = 2'048;
constexpr qint64 header_limit = qint64(1024) * 1024;
constexpr qint64 beginning_limit = qint64(1024) * 1024;
constexpr qint64 part_limit =
    qint64(32) * 1024 * 1024; // as much as is read of a local message's text
// All parts of a message, so that an answer stays far below what is taken of one.
constexpr qint64 parts_limit = 2 * part_limit;

// Servers need to take no longer command than 8,000 bytes (RFC 2683 3.2.1.5); in front of the
// sections stand up to 250 numbers of messages, 2,750 bytes.
constexpr qsizetype longest_request = 4'000;
// The sections of a report of a thousand parts. Only who nests them has longer ones.
constexpr qsizetype longest_requests = 40'000;

QByteArray up_to(qint64 limit)
{
    return "<0." + QByteArray::number(limit) + '>';
}

const QByteArray whole_request = "BODY.PEEK[]" + up_to(whole_limit);
const QByteArray beginning_request = "BODY.PEEK[]" + up_to(beginning_limit);
const QByteArray long_beginning_request = "BODY.PEEK[]" + up_to(part_limit);
const QByteArray outline_request =
    "BODYSTRUCTURE BODY.PEEK[HEADER.FIELDS (FROM SENDER SUBJECT DATE X-FAILED-RECIPIENTS "
    "CONTENT-TYPE CONTENT-TRANSFER-ENCODING CONTENT-DISPOSITION)]" +
    up_to(header_limit);

QByteArray request_for(const ImapOutline &outline, const QByteArray &section)
{
    const bool is_cut = outline.size_of(section) > part_limit;
    return "BODY.PEEK[" + section + ']' + (is_cut ? up_to(part_limit) : QByteArray());
}

QByteArrayList requests_for(const ImapOutline &outline)
{
    QByteArrayList requests;
    for (const QByteArray &section : outline.sections()) {
        const QByteArray request = request_for(outline, section);
        if (requests.isEmpty() || requests.last().size() + request.size() >= longest_request)
            requests += request;
        else
            requests.last() += ' ' + request;
    }
    return requests;
}

qint64 size_of_parts(const ImapOutline &outline)
{
    qint64 bytes = 0;
    for (const QByteArray &section : outline.sections())
        bytes += std::min(outline.size_of(section), part_limit);
    return bytes;
}
} // namespace

ImapItem::ImapItem(const ImapEntry &entry)
    : entry_(entry),
      want_(entry.size <= largest_whole ? Want::Whole : Want::Outline)
{
}

QByteArrayList ImapItem::requests() const
{
    switch (want_) {
    case Want::Whole:
        return {whole_request};
    case Want::Outline:
        return {outline_request};
    case Want::Parts:
        return requests_for(*outline_);
    case Want::Beginning:
        return {beginning_request};
    case Want::LongBeginning:
        return {long_beginning_request};
    case Want::Nothing:
        break;
    }
    return {};
}

qint64 ImapItem::size_of_answer() const
{
    if (want_ == Want::Whole)
        return entry_.size;
    if (want_ == Want::Outline)
        return usual_outline;
    return want_ == Want::Parts ? size_of_parts(*outline_) : std::min(entry_.size, limit());
}

void ImapItem::begin_asking()
{
    is_asked_ = true;
    has_answer_ = false;
    is_unreadable_ = false;
}

// Another program's change of a flag comes as a FETCH too: it has nothing of what was asked for.
qint64 ImapItem::take(ImapFetch fetch)
{
    is_unreadable_ = is_unreadable_ || fetch.is_cut;
    if (fetch.structure && want_ == Want::Outline) {
        structure_ = std::move(fetch.structure);
        structure_held_ = fetch.structure_size;
        has_answer_ = true;
    }
    qint64 left = 0;
    for (auto &[section, bytes] : fetch.sections) {
        if (needs(section))
            take_section(section, std::move(bytes));
        else
            left += bytes.size();
    }
    return left;
}

bool ImapItem::needs(const QByteArray &section) const
{
    if (!is_asked_for(section))
        return false;
    if (want_ == Want::Parts)
        return !contents_.contains(section);
    return want_ == Want::Outline ? !has_header_ : !has_answer_;
}

void ImapItem::take_section(const QByteArray &section, QByteArray bytes)
{
    is_cut_ = bytes.size() >= limit();
    if (bytes.size() > limit())
        bytes = bytes.first(limit());
    has_answer_ = true;
    if (want_ != Want::Parts) {
        has_header_ = want_ == Want::Outline;
        bytes_ = std::move(bytes);
    } else if (contents_held_ + bytes.size() <= parts_limit) {
        contents_held_ += bytes.size();
        contents_.insert(section, std::move(bytes));
    }
}

// Servers spell the names of header fields in their own ways.
bool ImapItem::is_asked_for(const QByteArray &section) const
{
    if (want_ == Want::Parts)
        return outline_->sections().contains(section);
    return want_ == Want::Outline ? section.startsWith("HEADER.FIELDS") : section.isEmpty();
}

qint64 ImapItem::limit() const
{
    switch (want_) {
    case Want::Whole:
        return whole_limit;
    case Want::Outline:
        return header_limit;
    case Want::Parts:
    case Want::LongBeginning:
        return part_limit;
    case Want::Beginning:
    case Want::Nothing:
        break;
    }
    return beginning_limit;
}

qint64 ImapItem::held() const
{
    return bytes_.size() + structure_held_ + (outline_ ? outline_->held() : 0) + contents_held_;
}

// An answer that cannot be read may look like none; it need not even tell which message it is of.
void ImapItem::settle(const QString &refusal)
{
    is_asked_ = false;
    if (has_answer_) {
        settle_answer();
    } else if (!refusal.isEmpty() && !refusal.contains(QStringLiteral("[EXPUNGEISSUED]"))) {
        settle_refusal(refusal);
    } else if (want_ == Want::Outline || want_ == Want::Parts) {
        want_beginning();
    } else {
        want_ = Want::Nothing;
        is_gone_ = !is_unreadable_;
        refusal_ = is_gone_ ? QString() : QStringLiteral("the server's answer cannot be read");
    }
}

void ImapItem::settle_refusal(const QString &refusal)
{
    if (!is_on_demand_) {
        is_on_demand_ = true; // another message of the batch may be at fault
    } else if (want_ == Want::Outline || want_ == Want::Parts) {
        want_beginning();
    } else {
        want_ = Want::Nothing;
        refusal_ = refusal;
    }
}

void ImapItem::settle_answer()
{
    const Want wanted = std::exchange(want_, Want::Nothing);
    if (wanted == Want::Whole && is_cut_)
        want_beginning();
    else if (wanted == Want::Outline)
        settle_outline();
    else if (wanted == Want::Beginning)
        settle_beginning();
    else if (wanted == Want::Parts && !has_all_parts())
        want_beginning();
}

// Many sections go in several commands, a few thousand bytes: when somebody reads the message, for
// otherwise each of hundreds of messages could make as many.
void ImapItem::settle_outline()
{
    if (structure_ && has_header_ && !is_cut_)
        outline_ = ImapOutline::read(*structure_, bytes_);
    structure_.reset();
    structure_held_ = 0;
    const QByteArrayList requests = outline_ ? requests_for(*outline_) : QByteArrayList();
    if (!outline_ || requests.join().size() > longest_requests ||
        size_of_parts(*outline_) > parts_limit)
        want_beginning();
    else if (!requests.isEmpty())
        want_ = Want::Parts;
    is_on_demand_ = is_on_demand_ || requests.size() > 1;
}

// Without the end of its header nobody knows whom a message is from.
void ImapItem::settle_beginning()
{
    const bool has_whole_header = bytes_.contains("\n\r\n") || bytes_.contains("\n\n");
    if (!is_cut_ || has_whole_header)
        return;
    want_beginning();
    want_ = Want::LongBeginning;
    is_on_demand_ = true;
}

void ImapItem::want_beginning()
{
    outline_.reset();
    contents_.clear();
    contents_held_ = 0;
    bytes_.clear();
    want_ = Want::Beginning;
}

bool ImapItem::has_all_parts() const
{
    return std::ranges::all_of(outline_->sections(), [this](const QByteArray &section) {
        return contents_.contains(section);
    });
}

qint64 ImapItem::left_out_of_parts() const
{
    qint64 bytes = 0;
    for (const QByteArray &section : outline_->sections()) {
        const qint64 size = contents_.value(section).size();
        if (size >= part_limit)
            bytes += std::max<qint64>(0, outline_->size_of(section) - size);
    }
    return bytes;
}

RawMessage ImapItem::take_message()
{
    if (outline_)
        return {outline_->message(
                    [this](const QByteArray &section) { return contents_.value(section); }),
                entry_.arrived, left_out_of_parts()};
    const qint64 left_out = std::max<qint64>(1, entry_.size - bytes_.size());
    return {std::move(bytes_), entry_.arrived, is_cut_ ? left_out : 0};
}
