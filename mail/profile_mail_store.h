#pragma once

#include "mail/inbox.h"
#include "mail/mail_accounts.h"
#include "mail/mail_store.h"
#include "mail/profile_inbox.h"
#include "mail/send_message.h"

#include <QScopeGuard>
#include <QString>

#include <map>
#include <memory>
#include <optional>

/// The mail store over a user's mail profiles. The empty profile is the local inbox and the
/// sendmail program of this machine.
///
/// What the profile lacks for the session is asked for and holds for that session only; without an
/// answer the operation throws RuntimeError 32000 that tells what was missing (MailAccounts). All
/// failures of use (no session, no current message …) are RuntimeError 32000 too, an index out of
/// range is 9.
class ProfileMailStore : public MailStore
{
public:
    /// @param accounts     outlives the store.
    /// @param send_dialog  may be null: nobody is there to be shown a message; else it outlives the
    /// store.
    ProfileMailStore(MailAccounts &accounts, InboxOpener open_inbox,
                     SendDialog *send_dialog = nullptr, SendingConditions sending = {})
        : session_(*this),
          messages_(*this),
          accounts_(accounts),
          open_inbox_(std::move(open_inbox)),
          send_dialog_(send_dialog),
          sending_(std::move(sending))
    {
    }

    MailSession &session() override { return session_; }
    MessageSet &messages() override { return messages_; }
    bool is_busy() const override { return operations_ > 0; }

    /// Runs an operation that may wait, the store's own or one beside it, during which the store is
    /// busy.
    template <typename Operation>
    void run(Operation &&operation)
    {
        ++operations_;
        const auto done = qScopeGuard([this] { --operations_; });
        operation();
    }

private:
    class Session : public MailSession
    {
    public:
        explicit Session(ProfileMailStore &store) : store_(store) {}

        void set_UserName(const QString &profile) override { user_name_ = profile; }
        QString UserName() const override { return user_name_; }
        /// With false the next sign-on is one to send: the profile must be complete for that, and
        /// the inbox is looked for when it is fetched. Holds for one session.
        void set_DownLoadMail(bool download) override { download_mail_ = download; }
        /// A session that is still open is closed first. Finds what the session needs: the profile,
        /// the inbox of this machine, the password of a server. Servers themselves are signed on to
        /// by Fetch and Send.
        void SignOn() override;
        int SessionID() const override { return handle_; }
        /// Closing a session that is not open is nothing.
        void SignOff() override;

    private:
        ProfileMailStore &store_;
        QString user_name_;
        bool download_mail_ = true;
        int handle_ = 0;
        int last_handle_ = 0;
    };

    class Messages : public MessageSet
    {
    public:
        explicit Messages(ProfileMailStore &store) : store_(store) {}

        void set_SessionID(int handle) override;
        /// A server that refuses the password has the person asked for another one.
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
        /// Hands the new message over; afterwards there is none any more, whatever came of it. A
        /// server that refuses the password has the person asked for another one.
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

        ProfileMailStore &store_;
        bool is_bound_ = false;
        int count_ = 0;
        std::optional<MessageFields> current_;
        std::optional<ComposeBuffer> draft_; // the compose buffer, when it is the current message
    };

    void open(MailUse use);
    void close();
    const MailProfile &profile_for(MailUse use);
    Inbox &inbox();
    void need_password(MailUse use);
    void fetch_inbox();
    SendingAccount sending_account();

    Session session_;
    Messages messages_;
    MailAccounts &accounts_;
    InboxOpener open_inbox_;
    SendDialog *send_dialog_;
    SendingConditions sending_;
    // While a session is open: the profile found for each use, and the inbox once it is looked for.
    std::map<MailUse, MailProfile> profiles_;
    std::unique_ptr<Inbox> inbox_;
    int operations_ = 0; // that are going on
};
