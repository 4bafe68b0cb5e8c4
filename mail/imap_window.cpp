#include "mail/imap_window.h"

#include <algorithm>
#include <utility>

namespace
{
constexpr std::size_t most_batches = 8;
constexpr std::size_t most_in_batch = 250;
constexpr qint64 most_bytes = qint64(4) * 1024 * 1024;
// Of commands. They are written before the answers to others are read: what does not find room on
// the line would wait for a server that waits for its own answers to be read.
constexpr qsizetype most_bytes_said = qsizetype(16) * 1024;
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
    read_ = index;
    while (batches_.size() < most_batches && next_ < entries_.size())
        begin_batch();
    Batch &batch = batches_.front();
    ImapItem &item = batch.items.at(index - batch.first);
    while (item.is_asked() || item.wants_more()) {
        if (batch.pending == 0)
            ask(batch, &item);
        advance();
    }
    ImapItem done = std::exchange(item, ImapItem(entries_[index]));
    held_ -= done.held();
    item.leave_to_demand();
    if (!done.refusal().isEmpty())
        session_.connection().fail_as<MessageRefused>(
            QStringLiteral("reading message %1").arg(index + 1), done.refusal());
    return done.is_gone() ? std::nullopt : std::optional(done.take_message());
}

// Makes the batch with the message the first one, or the next one to begin.
void ImapWindow::go_to(std::size_t index)
{
    const bool is_near = !batches_.empty() && index >= batches_.front().first && index <= next_;
    while (!batches_.empty() && !(is_near && index < batches_.front().end()))
        drop_first_batch();
    if (batches_.empty())
        next_ = index;
}

void ImapWindow::drop_first_batch()
{
    for (ImapItem &item : batches_.front().items)
        item.leave_to_demand(); // nobody needs what would come next
    while (batches_.front().pending > 0)
        advance();
    held_ -= held_by(batches_.front());
    batches_.pop_front();
}

void ImapWindow::begin_batch()
{
    Batch &batch = batches_.emplace_back();
    batch.first = next_;
    for (; next_ < entries_.size() && batch.items.size() < most_in_batch; ++next_)
        batch.items.emplace_back(entries_[next_]);
    ask(batch);
}

// Asks for what the batch's messages want next, as much as may be held at once; the rest is asked
// for when it is its turn. With `demanded`, beginning there, and for that one in any case, alone if
// others would make it fail.
void ImapWindow::ask(Batch &batch, const ImapItem *demanded)
{
    batch.refusal.clear();
    for (const auto &[request, uids] : requests_of(batch, demanded)) {
        const QByteArray command = "UID FETCH " + imap_set(uids) + " (UID " + request + ')';
        pending_.insert(session_.send(command), &batch);
        ++batch.pending;
    }
}

ImapWindow::Requests ImapWindow::requests_of(Batch &batch, const ImapItem *demanded) const
{
    Requests requests;
    qint64 bytes = demanded == nullptr ? held_by(batch) : 0;
    qsizetype said = 0;
    const std::ptrdiff_t begin = demanded == nullptr ? 0 : demanded - batch.items.data();
    for (auto i = static_cast<std::size_t>(begin); i < batch.items.size(); ++i) {
        ImapItem &item = batch.items[i];
        const bool is_demanded = &item == demanded;
        if (!item.wants_more() || (item.is_on_demand() && !is_demanded))
            continue;
        const qint64 size = item.size_of_answer();
        qsizetype length = 0;
        const QByteArrayList wanted = item.requests();
        for (const QByteArray &request : wanted)
            length += requests.contains(request) ? 0 : request.size();
        const bool is_first = requests.empty() && bytes == 0;
        if (!is_first && (bytes + size > most_bytes || said + length > most_bytes_said))
            break;
        bytes += size;
        said += length;
        item.begin_asking();
        for (const QByteArray &request : wanted)
            requests[request].push_back(entries_[batch.first + i].uid);
        if (is_demanded && item.is_on_demand())
            break;
    }
    return requests;
}

// What has come and was not read yet.
qint64 ImapWindow::held_by(const Batch &batch)
{
    qint64 bytes = 0;
    for (const ImapItem &item : batch.items)
        bytes += item.held();
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
    for (Batch &batch : batches_) {
        if (fetch.uid > entries_[batch.end() - 1].uid)
            continue;
        const auto begin = entries_.begin() + static_cast<std::ptrdiff_t>(batch.first);
        const auto end = entries_.begin() + static_cast<std::ptrdiff_t>(batch.end());
        const auto found = std::ranges::lower_bound(begin, end, fetch.uid, {}, &ImapEntry::uid);
        ImapItem &item = batch.items[static_cast<std::size_t>(found - begin)];
        if (found->uid != fetch.uid || !item.is_asked())
            return;
        held_ -= item.held();
        unasked_ += item.take(std::move(fetch));
        held_ += item.held();
        keep_within_bounds(item, static_cast<std::size_t>(found - entries_.begin()));
        if (unasked_ > most_held_)
            session_.connection().fail(
                session_.connection().step(),
                QStringLiteral("the server sends more than it was asked for"));
        return;
    }
}

// Messages can be made so that a few of each hundred take it all, and so can answers.
void ImapWindow::keep_within_bounds(ImapItem &item, std::size_t index)
{
    const Batch &front = batches_.front();
    const bool is_at_work = read_ >= front.first && read_ < front.end();
    const qint64 of_read = is_at_work ? front.items[read_ - front.first].held() : 0;
    if (held_ - of_read <= most_held_ || index == read_)
        return;
    held_ -= item.held();
    item = ImapItem(entries_[index]);
    item.leave_to_demand();
}

void ImapWindow::settle(Batch &batch)
{
    for (ImapItem &item : batch.items) {
        if (!item.is_asked())
            continue;
        held_ -= item.held();
        item.settle(batch.refusal);
        held_ += item.held();
        session_.connection().give_turn();
    }
    ask(batch);
}
