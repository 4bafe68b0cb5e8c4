#include "mail/server_inbox.h"

#include "mail/message_reader.h"

#include <utility>

ServerInbox::ServerInbox(MailServer server, std::function<Credentials()> credentials,
                         NetworkConditions conditions)
    : server_(std::move(server)),
      credentials_(std::move(credentials)),
      conditions_(std::move(conditions))
{
}

void ServerInbox::fetch()
{
    sign_off();
    forget();
    failure_.reset();
    may_resume_ = true;
    try {
        open_and_list();
    } catch (const RuntimeError &error) {
        give_up(error);
        throw;
    }
}

void ServerInbox::open()
{
    const Credentials credentials = credentials_();
    open_session(credentials);
}

void ServerInbox::open_and_list()
{
    try {
        open();
        list();
    } catch (const LineLost &) {
        sign_off();
        open();
        list();
    }
}

MessageFields ServerInbox::read(int index)
{
    if (failure_)
        throw *failure_;
    RawMessage message = read_over_lost_lines(static_cast<std::size_t>(index));
    may_resume_ = true;
    return read_message(std::move(message));
}

RawMessage ServerInbox::read_over_lost_lines(std::size_t index)
{
    try {
        return read_raw(index);
    } catch (const LineLost &error) {
        if (!may_resume_ || !can_be_found_again(index)) {
            give_up(error);
            throw;
        }
    } catch (const MessageGone &) {
        throw; // the next one may come
    } catch (const MessageRefused &) {
        throw;
    } catch (const RuntimeError &error) {
        give_up(error);
        throw;
    }
    resume();
    return read_over_lost_lines(index);
}

void ServerInbox::resume()
{
    may_resume_ = false;
    sign_off();
    try {
        open();
        take_up();
    } catch (const RuntimeError &error) {
        give_up(error);
        throw;
    }
}

// The line is of no more use.
void ServerInbox::give_up(const RuntimeError &error)
{
    failure_ = error;
    sign_off();
}

void ServerInbox::sign_off()
{
    if (line() != nullptr)
        received_before_ += close_session(!failure_);
}

qint64 ServerInbox::received() const
{
    return received_before_ + (line() != nullptr ? line()->received() : 0);
}
