#pragma once

#include "mail/inbox.h"
#include "mail/log_on.h"
#include "mail/mail_store.h"
#include "mail/send_message.h"

#include <QString>

#include <memory>
#include <optional>

/// The mail store over a mailbox of this machine: a Maildir folder or an mbox file.
///
/// The empty profile is the user's local inbox (local_inbox()). When there is none, or the profile
/// is unknown, SignOn asks the log-on dialog for an inbox, which holds for that session only;
/// without an answer it throws RuntimeError 32000 that tells what was missing. All failures of use
/// (no session, no current message …) are RuntimeError 32000 too, an index out of range is 9.
class LocalMailStore : public MailStore
{
public:
    /// @param dialog, send_dialog  may be null: nobody is there to ask; else they outlive the
    /// store.
    explicit LocalMailStore(LogOnDialog *dialog = nullptr, SendDialog *send_dialog = nullptr,
                            SendingConditions sending = {})
        : session_(*this),
          messages_(*this),
          dialog_(dialog),
          send_dialog_(send_dialog),
          sending_(std::move(sending))
    {
    }

    MailSession &session() override { return session_; }
    MessageSet &messages() override { return messages_; }

private:
    class Session : public MailSession
    {
    public:
        explicit Session(LocalMailStore &store) : store_(store) {}

        void set_UserName(const QString &profile) override { user_name_ = profile; }
        QString UserName() const override { return user_name_; }
        /// With false the next session is one to send: it needs no inbox, which is then looked for
        /// when it is fetched.
        void set_DownLoadMail(bool download) override { download_mail_ = download; }
        /// A session that is still open is closed first.
        void SignOn() override;
        int SessionID() const override { return handle_; }
        /// Closing a session that is not open is nothing.
        void SignOff() override;

    private:
        LocalMailStore &store_;
        QString user_name_;
        bool download_mail_ = true;
        int handle_ = 0;
        int last_handle_ = 0;
    };

    class Messages : public MessageSet
    {
    public:
        explicit Messages(LocalMailStore &store) : store_(store) {}

        void set_SessionID(int handle) override;
        void Fetch() override;
        /// 0 until the inbox is fetched.
        int MsgCount() const override { return count_; }
        /// -1 starts an empty new message, which stays through set_SessionID.
        void set_MsgIndex(int index) override;

        QString MsgOrigAddress() const override { return current().address; }
        QString MsgSubject() const override { return current().subject; }
        QString MsgDateReceived() const override { return current().date; }
        QString MsgOrigDisplayName() const override { return current().name; }
        QString MsgNoteText() const override { return current().text; }

        void set_RecipIndex(int index) override;
        void set_RecipType(int type) override;
        void set_RecipAddress(const QString &address) override;
        void ResolveName() override;
        void set_MsgSubject(const QString &subject) override;
        void set_MsgNoteText(const QString &text) override;
        void set_AttachmentPathName(const QString &path) override;
        /// Hands the new message over; afterwards there is none any more, whatever came of it.
        /// @throws RuntimeError as send_message() does.
        void Send(bool show_dialog) override;
        /// Nothing: the compose buffer needs no copy.
        void Copy() override {}

        /// Forgets the session and what was read in it.
        void unbind();

    private:
        void require_binding() const;
        Inbox &bound_inbox();
        ComposeBuffer &draft();
        const MessageFields &current() const;

        LocalMailStore &store_;
        bool is_bound_ = false;
        int count_ = 0;
        std::optional<MessageFields> current_;
        std::optional<ComposeBuffer> draft_; // the compose buffer, when it is the current message
    };

    std::unique_ptr<Inbox> find_inbox(const QString &profile) const;
    static SendingAccount account();

    Session session_;
    Messages messages_;
    LogOnDialog *dialog_;
    SendDialog *send_dialog_;
    SendingConditions sending_;
    std::unique_ptr<Inbox> inbox_; // while a session is open
};
