#pragma once

#include "mail/inbox.h"
#include "mail/server_connection.h"

#include <functional>
#include <optional>

struct RawMessage;

/// What the inboxes of all servers share: a line that the server drops is opened again and the
/// reading goes on, as long as each new line brings a message. Failures are RuntimeError 32000 with
/// the server, the step and the server's words; after one the inbox fails in the same way until the
/// next fetch.
class ServerInbox : public Inbox
{
public:
    /// @param credentials  is asked before each signing on: before the line is open, for servers do
    /// not wait while a person types.
    ServerInbox(MailServer server, std::function<Credentials()> credentials,
                NetworkConditions conditions);

    void fetch() final;
    MessageFields read(int index) final;

    /// Bytes received so far, for measurements.
    qint64 received() const;

protected:
    /// Opens a line and signs on.
    virtual void open_session(const Credentials &credentials) = 0;
    /// Finds the messages over the open line.
    virtual void list() = 0;
    /// Forgets the messages found before.
    virtual void forget() = 0;
    /// Makes the messages found before the ones of the line that was opened anew.
    virtual void take_up() = 0;
    /// Whether a message can be found again over another line.
    virtual bool can_be_found_again(std::size_t index) const = 0;
    /// @throws LineLost, MessageGone, MessageRefused, RuntimeError; after the last one the line is
    /// of no more use.
    virtual RawMessage read_raw(std::size_t index) = 0;
    /// Says good-bye, which never fails, and closes the line.
    /// @param waits  whether for the server's answer.
    /// @return the bytes that were received over it.
    virtual qint64 close_session(bool waits) = 0;
    /// The line that is open; null when none is.
    virtual const ServerConnection *line() const = 0;

    /// For the destructors of the inboxes.
    void sign_off();

    const MailServer &server() const { return server_; }
    const NetworkConditions &conditions() const { return conditions_; }

private:
    void open();
    void open_and_list();
    void resume();
    RawMessage read_over_lost_lines(std::size_t index);
    void give_up(const RuntimeError &error);

    MailServer server_;
    std::function<Credentials()> credentials_;
    NetworkConditions conditions_;
    bool may_resume_ = true;
    std::optional<RuntimeError> failure_;
    qint64 received_before_ = 0; // on earlier lines
};
