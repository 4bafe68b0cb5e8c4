#include "mail/imap_window.h"

#include <algorithm>
#include <map>
#include <utility>

namespace
{
constexpr std::size_t most_batches = 8;
constexpr std::size_t most_in_batch = 250;
constexpr qint64 most_bytes = qint64(4) * 1024 * 1024;
// Up to this size asking for the structure costs more than what it saves.
constexpr qint64 largest_whole = 4'096;
constexpr qint64 whole_limit = 32'768; // for a server that tells a wrong size
constexpr qint64 usual_outline = 2'048;
constexpr qint64 header_limit = qint64(1024) * 1024;
// Of a message whose structure cannot be used.
constexpr qint64 beginning_limit = qint64(1024) * 1024;
constexpr qint64 part_limit =
    qint64(32) * 1024 * 1024; // as much as is read of a local message's text

QByteArray up_to(qint64 limit)
{
    return "<0." + QByteArray::number(limit) + '>';
}

const QByteArray whole_request = "BODY.PEEK[]" + up_to(whole_limit);
const QByteArray beginning_request = "BODY.PEEK[]" + up_to(beginning_limit);
const QByteArray outline_request =
    "BODYSTRUCTURE BODY.PEEK[HEADER.FIELDS (FROM SENDER SUBJECT DATE X-FAILED-RECIPIENTS "
    "CONTENT-TYPE CONTENT-TRANSFER-ENCODING CONTENT-DISPOSITION)]" +
    up_to(header_limit);
} // namespace

ImapWindow::ImapWindow(ImapSession &session, const std::vector<ImapEntry> &entries,
                       qint64 most_held)
    : session_(session),
      entries_(entries),
      most_held_(most_held)
{
}

std::optional<RawMessage> ImapWindow::read(std::size_t index)
{
    go_to(index);
    while (batches_.size() < most_batches && next_ < entries_.size())
        begin_batch();
    Batch &batch = batches_.front();
    Item &item = batch.items.at(index - batch.items.front().index);
    while (item.is_asked || item.want != Want::Nothing) {
        if (batch.pending == 0)
            ask(batch, &item);
        advance();
    }
    Item done = std::exchange(item, new_item(index));
    held_ -= done.held;
    item.on_demand = true;
    if (!done.refusal.isEmpty())
        session_.connection().fail_as<MessageRefused>(
            QStringLiteral("reading message %1").arg(index + 1), done.refusal);
    return done.is_gone ? std::nullopt : std::optional(raw(std::move(done)));
}

// Makes the batch with the message the first one, or the next one to begin.
void ImapWindow::go_to(std::size_t index)
{
    const bool is_near =
        !batches_.empty() && index >= batches_.front().items.front().index && index <= next_;
    while (!batches_.empty() && !(is_near && index <= batches_.front().items.back().index))
        drop_first_batch();
    if (batches_.empty())
        next_ = index;
}

void ImapWindow::drop_first_batch()
{
    for (Item &item : batches_.front().items)
        item.on_demand = true; // nobody needs what would come next
    while (batches_.front().pending > 0)
        advance();
    for (const Item &item : batches_.front().items)
        held_ -= item.held;
    batches_.pop_front();
}

ImapWindow::Item ImapWindow::new_item(std::size_t index) const
{
    Item item;
    item.index = index;
    item.want = entries_[index].size <= largest_whole ? Want::Whole : Want::Outline;
    return item;
}

void ImapWindow::begin_batch()
{
    Batch &batch = batches_.emplace_back();
    for (; next_ < entries_.size() && batch.items.size() < most_in_batch; ++next_)
        batch.items.push_back(new_item(next_));
    ask(batch);
}

// Asks for what the batch's messages want next, as much as may be held at once; the rest is asked
// for when it is its turn. With `demanded`, beginning there, and for that one in any case, alone if
// others would make it fail.
void ImapWindow::ask(Batch &batch, const Item *demanded)
{
    std::map<QByteArray, std::vector<quint32>> requests;
    qint64 bytes = demanded == nullptr ? held_by(batch) : 0;
    for (Item &item : batch.items) {
        const bool is_demanded = &item == demanded;
        if (item.want == Want::Nothing || (item.on_demand && !is_demanded) ||
            (demanded != nullptr && item.index < demanded->index))
            continue;
        const qint64 size = size_of_answer(item);
        if (bytes > 0 && bytes + size > most_bytes)
            break;
        bytes += size;
        item.is_asked = true;
        item.has_answer = false;
        requests[request_for(item)].push_back(entry_of(item).uid);
        if (is_demanded && item.on_demand)
            break;
    }
    batch.refusal.clear();
    for (const auto &[request, uids] : requests) {
        const QByteArray command = "UID FETCH " + imap_set(uids) + " (UID " + request + ')';
        pending_.insert(session_.send(command), &batch);
        ++batch.pending;
    }
}

// What has come and was not read yet.
qint64 ImapWindow::held_by(const Batch &batch)
{
    qint64 bytes = 0;
    for (const Item &item : batch.items) {
        bytes += item.bytes.size();
        for (const QByteArray &content : item.contents)
            bytes += content.size();
    }
    return bytes;
}

QByteArray ImapWindow::request_for(const Item &item)
{
    if (item.want == Want::Whole)
        return whole_request;
    if (item.want == Want::Outline)
        return outline_request;
    if (item.want == Want::Beginning)
        return beginning_request;
    QByteArrayList parts;
    for (const QByteArray &section : item.outline->sections()) {
        const bool is_cut = item.outline->size_of(section) > part_limit;
        parts += "BODY.PEEK[" + section + ']' + (is_cut ? up_to(part_limit) : QByteArray());
    }
    return parts.join(' ');
}

qint64 ImapWindow::size_of_answer(const Item &item) const
{
    if (item.want == Want::Whole)
        return entry_of(item).size;
    if (item.want == Want::Outline)
        return usual_outline;
    if (item.want == Want::Beginning)
        return std::min(entry_of(item).size, beginning_limit);
    qint64 bytes = 0;
    for (const QByteArray &section : item.outline->sections())
        bytes += std::min(item.outline->size_of(section), part_limit);
    return bytes;
}

// Reads up to the end of some command. The server may answer several at a time, in any order.
void ImapWindow::advance()
{
    const ImapSession::End end = session_.read_to_an_end([this](ImapResponse response) {
        if (response.keyword() == "FETCH")
            take(read_fetch(std::move(response)));
    });
    Batch *const batch = pending_.take(end.tag);
    if (batch == nullptr)
        session_.connection().fail(session_.connection().step(),
                                   QStringLiteral("the server answers what it was not asked"));
    if (end.refusal)
        batch->refusal = *end.refusal;
    if (--batch->pending == 0)
        settle(*batch);
}

void ImapWindow::take(ImapFetch fetch)
{
    const auto uid = [this](const Item &item) { return entry_of(item).uid; };
    for (Batch &batch : batches_) {
        if (fetch.uid > uid(batch.items.back()))
            continue;
        const auto found = std::ranges::lower_bound(batch.items, fetch.uid, {}, uid);
        if (uid(*found) == fetch.uid && found->is_asked)
            take(*found, std::move(fetch));
        return;
    }
}

// Another program's change of a flag comes as a FETCH too: it has nothing of what was asked for.
void ImapWindow::take(Item &item, ImapFetch fetch)
{
    // What cannot be read is asked for in another way.
    item.has_answer = item.has_answer ||
                      (fetch.is_cut && (item.want == Want::Outline || item.want == Want::Parts));
    qint64 taken = 0;
    if (fetch.structure && item.want == Want::Outline) {
        item.structure = std::move(fetch.structure);
        item.has_answer = true;
        taken += fetch.structure_size;
    }
    for (auto &[section, bytes] : fetch.sections) {
        if (!is_asked_for(item, section))
            continue;
        if (bytes.size() > limit_of(item))
            bytes = bytes.first(limit_of(item));
        taken += bytes.size();
        if (item.want == Want::Parts)
            item.contents.insert(section, bytes);
        else
            item.bytes = std::move(bytes);
        item.has_answer = true;
    }
    item.held += taken;
    held_ += taken;
    if (held_ > most_held_)
        session_.connection().fail(session_.connection().step(),
                                   QStringLiteral("the server sends more than it was asked for"));
}

// Servers spell the names of header fields in their own ways.
bool ImapWindow::is_asked_for(const Item &item, const QByteArray &section)
{
    if (item.want == Want::Parts)
        return item.outline->sections().contains(section);
    return item.want == Want::Outline ? section.startsWith("HEADER.FIELDS") : section.isEmpty();
}

qint64 ImapWindow::limit_of(const Item &item)
{
    switch (item.want) {
    case Want::Whole:
        return whole_limit;
    case Want::Outline:
        return header_limit;
    case Want::Parts:
        return part_limit;
    case Want::Beginning:
    case Want::Nothing:
        break;
    }
    return beginning_limit;
}

void ImapWindow::settle(Batch &batch)
{
    for (Item &item : batch.items) {
        if (item.is_asked)
            settle(item, batch.refusal);
    }
    ask(batch);
}

void ImapWindow::settle(Item &item, const QString &refusal)
{
    item.is_asked = false;
    if (item.has_answer) {
        settle_answer(item);
    } else if (refusal.isEmpty() || refusal.contains(QStringLiteral("[EXPUNGEISSUED]"))) {
        item.want = Want::Nothing;
        item.is_gone = true;
    } else if (!item.on_demand) {
        item.on_demand = true; // another message of the batch may be at fault
    } else if (item.want == Want::Outline || item.want == Want::Parts) {
        item.outline.reset();
        item.want = Want::Beginning; // which asks for nothing unusual
    } else {
        item.want = Want::Nothing;
        item.refusal = refusal;
    }
}

void ImapWindow::settle_answer(Item &item)
{
    const Want wanted = std::exchange(item.want, Want::Nothing);
    if (wanted == Want::Whole && item.bytes.size() >= whole_limit)
        item.want = Want::Beginning;
    if (wanted == Want::Outline) {
        if (item.structure && item.bytes.size() < header_limit)
            item.outline = ImapOutline::read(*item.structure, item.bytes);
        item.structure.reset();
        if (!item.outline)
            item.want = Want::Beginning;
        else if (!item.outline->sections().isEmpty())
            item.want = Want::Parts;
    }
    const auto is_there = [&](const QByteArray &section) {
        return item.contents.contains(section);
    };
    if (wanted == Want::Parts && !std::ranges::all_of(item.outline->sections(), is_there)) {
        item.outline.reset();
        item.want = Want::Beginning;
    }
}

RawMessage ImapWindow::raw(Item item) const
{
    const ImapEntry &entry = entry_of(item);
    if (item.outline)
        return {item.outline->message(
                    [&item](const QByteArray &section) { return item.contents.value(section); }),
                entry.arrived, 0};
    const bool is_cut = item.bytes.size() >= beginning_limit;
    const qint64 left_out = std::max<qint64>(1, entry.size - item.bytes.size());
    return {std::move(item.bytes), entry.arrived, is_cut ? left_out : 0};
}
