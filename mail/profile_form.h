#pragma once

#include "mail/profile_rules.h"
#include "mail/server_proposal.h"

#include <QWidget>

#include <memory>

class QPushButton;

namespace Ui
{
class ProfileForm;
}

/// The fields of a mail profile; only those show that the chosen inbox and way out need.
class ProfileForm : public QWidget
{
    Q_OBJECT

public:
    explicit ProfileForm(QWidget *parent = nullptr);
    ~ProfileForm() override;

    void show_profile(const MailProfile &profile);
    MailProfile profile() const;

    /// What was typed as password for this use since the profile was shown; empty for nothing.
    QString typed_password(MailUse use) const;
    void forget_passwords();

    /// Whether nothing was said yet of where mail lies and goes, so that a proposal overwrites
    /// nothing.
    bool names_no_place() const;
    /// Fills in the servers that are proposed. The inbox becomes IMAP, or POP3 where only that is
    /// proposed; one that is POP3 already stays so.
    void take(const ServerProposal &proposal);

    void focus_name();
    QPushButton &find_servers_button();

    /// The address as it stands was given: leaving its field tells nothing more.
    void take_address();

Q_SIGNALS:
    /// Another address was typed to its end.
    void address_given();

private:
    void wire();
    void show_needed();
    void tell_address();
    void show_proposed_inbox();
    void browse_inbox();
    void browse_program();
    InboxKind inbox_kind() const;

    std::unique_ptr<Ui::ProfileForm> ui_;
    QString given_address_;
    ServerProposal proposal_;
};
