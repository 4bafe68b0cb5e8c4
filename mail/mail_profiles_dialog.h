#pragma once

#include "mail/profile_desk.h"
#include "mail/server_finder.h"

#include <QDialog>

#include <memory>
#include <optional>

class EventHandlers;
class Prompts;

namespace Ui
{
class MailProfilesDialog;
}

/// The window "Mail Profiles": the list of the profiles on the left, the chosen one's fields on the
/// right. What was changed and not saved is asked about before it is left.
class MailProfilesDialog : public QDialog
{
    Q_OBJECT

public:
    MailProfilesDialog(ProfileDesk desk, Prompts &prompts, QWidget *parent);
    ~MailProfilesDialog() override;

    void wire(EventHandlers &handlers);

    /// Shows the profiles as they stand in the file; returns when the window is closed.
    void run();

    void reject() override;

private:
    void profiles_Change();
    void new_profile_Click();
    void delete_profile_Click();
    void test_profile_Click();
    void save_profile_Click();

    void load();
    void list_profiles();
    void select(int row);
    void start_new();
    void show_stored(const StoredProfile &stored);
    void say(const QString &text);
    bool is_changed() const;
    bool may_leave();
    bool save();
    QString keep_passwords(const MailProfile &profile);
    Credentials credentials(MailUse use);

    ProfileDesk desk_;
    Prompts &prompts_;
    std::unique_ptr<Ui::MailProfilesDialog> ui_;
    ServerFinder finder_;
    StoredProfiles all_;
    std::optional<MailProfile> chosen_; // as it stands in the file; nothing for a new one
    MailProfile shown_;                 // as the form showed it first
};
