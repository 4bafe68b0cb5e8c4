#include "mail/mail_profiles_dialog.h"

#include "platform/controls.h"
#include "platform/event_handlers.h"
#include "platform/prompts.h"
#include "ui_mail_profiles_dialog.h"

#include <QSignalBlocker>

namespace
{
const QString first_steps =
    QStringLiteral("Type a name for the profile and your e-mail address: its servers are proposed. "
                   "Test signs on and says what it found.");

QString entry_text(const StoredProfile &stored)
{
    const QString name =
        stored.profile.name.isEmpty() ? QStringLiteral("(no name)") : stored.profile.name;
    return stored.is_sound() ? name : name + QStringLiteral(" (damaged)");
}

std::unique_ptr<Ui::MailProfilesDialog> made_ui(QDialog &dialog)
{
    auto ui = std::make_unique<Ui::MailProfilesDialog>();
    ui->setupUi(&dialog);
    return ui;
}

QString incomplete_note(const MailProfile &profile)
{
    QString note;
    const QString reading = missing_in(profile, MailUse::Reading);
    const QString sending = missing_in(profile, MailUse::Sending);
    if (!reading.isEmpty())
        note += QStringLiteral(" It cannot read yet: %1.").arg(reading);
    if (!sending.isEmpty())
        note += QStringLiteral(" It cannot send yet: %1.").arg(sending);
    return note;
}
} // namespace

MailProfilesDialog::MailProfilesDialog(ProfileDesk desk, Prompts &prompts, QWidget *parent)
    : QDialog(parent),
      desk_(std::move(desk)),
      prompts_(prompts),
      ui_(made_ui(*this)),
      finder_(*ui_->form, prompts, desk_.find_services, [this](const QString &text) { say(text); })
{
    ui_->save_profile->setDefault(true);
    make_primary(*ui_->save_profile);
    resize(780, 700);
}

MailProfilesDialog::~MailProfilesDialog() = default;

void MailProfilesDialog::wire(EventHandlers &handlers)
{
    handlers.on(ui_->profiles, &QListWidget::currentRowChanged, [this] { profiles_Change(); });
    handlers.on_click(ui_->new_profile, [this] { new_profile_Click(); });
    handlers.on_click(ui_->delete_profile, [this] { delete_profile_Click(); });
    handlers.on_click(ui_->test_profile, [this] { test_profile_Click(); });
    handlers.on_click(ui_->save_profile, [this] { save_profile_Click(); });
    handlers.on_click(ui_->close_window, [this] { reject(); });
    finder_.wire(handlers);
}

void MailProfilesDialog::run()
{
    QString trouble;
    try {
        load();
    } catch (const RuntimeError &error) {
        trouble = error.description();
    }
    if (all_.profiles.empty())
        start_new();
    else
        select(0);
    if (!all_.damages.isEmpty())
        trouble = QStringLiteral("In the file of the mail profiles: %1.")
                      .arg(all_.damages.join(QStringLiteral("; ")));
    if (!trouble.isEmpty())
        say(trouble);
    exec();
}

void MailProfilesDialog::reject()
{
    finder_.drop();
    if (may_leave())
        QDialog::reject();
}

void MailProfilesDialog::load()
{
    all_ = {};
    list_profiles();
    all_ = desk_.accounts.profiles().load();
    list_profiles();
}

void MailProfilesDialog::list_profiles()
{
    const QSignalBlocker quiet(ui_->profiles);
    ui_->profiles->clear();
    for (const StoredProfile &stored : all_.profiles)
        ui_->profiles->addItem(entry_text(stored));
}

void MailProfilesDialog::select(int row)
{
    const QSignalBlocker quiet(ui_->profiles);
    ui_->profiles->setCurrentRow(row);
    show_stored(all_.profiles[static_cast<std::size_t>(row)]);
}

void MailProfilesDialog::show_stored(const StoredProfile &stored)
{
    chosen_ = stored.profile;
    ui_->form->show_profile(stored.profile);
    shown_ = ui_->form->profile();
    ui_->delete_profile->setEnabled(true);
    say(stored.is_sound() ? QString()
                          : QStringLiteral("This profile is damaged: %1. Saving it writes what is "
                                           "shown here.")
                                .arg(stored.damages.join(QStringLiteral("; "))));
}

void MailProfilesDialog::start_new()
{
    {
        const QSignalBlocker quiet(ui_->profiles);
        ui_->profiles->setCurrentRow(-1);
    }
    chosen_.reset();
    ui_->form->show_profile({});
    shown_ = ui_->form->profile();
    ui_->delete_profile->setEnabled(false);
    ui_->form->focus_name();
    say(first_steps);
}

void MailProfilesDialog::say(const QString &text)
{
    ui_->result->setText(text);
    ui_->result->setVisible(!text.isEmpty());
}

bool MailProfilesDialog::is_changed() const
{
    return ui_->form->profile() != shown_ ||
           !ui_->form->typed_password(MailUse::Reading).isEmpty() ||
           !ui_->form->typed_password(MailUse::Sending).isEmpty();
}

bool MailProfilesDialog::may_leave()
{
    if (!is_changed())
        return true;
    const bool wants_it = prompts_.yes_no(
        QStringLiteral("The mail profile '%1' has changes that are not saved. Save them?")
            .arg(ui_->form->profile().name));
    return !wants_it || save();
}

void MailProfilesDialog::profiles_Change()
{
    finder_.drop();
    const int row = ui_->profiles->currentRow();
    if (row < 0)
        return;
    const MailProfile wanted = all_.profiles[static_cast<std::size_t>(row)].profile;
    const auto row_of = [this](const MailProfile &profile) {
        for (std::size_t i = 0; i < all_.profiles.size(); ++i) {
            if (all_.profiles[i].profile == profile)
                return static_cast<int>(i);
        }
        return -1;
    };
    if (!may_leave()) {
        const QSignalBlocker quiet(ui_->profiles);
        ui_->profiles->setCurrentRow(chosen_ ? row_of(*chosen_) : -1);
    } else if (const int now = row_of(wanted); now >= 0) {
        select(now);
    } else { // saving read the file anew
        start_new();
        say(QStringLiteral("The mail profile '%1' is no longer in the file as it was read.")
                .arg(wanted.name));
    }
}

void MailProfilesDialog::new_profile_Click()
{
    finder_.drop();
    if (may_leave())
        start_new();
}

void MailProfilesDialog::delete_profile_Click()
{
    finder_.drop();
    if (!chosen_ || !prompts_.ok_cancel(QStringLiteral("Are you sure you want to delete the mail "
                                                       "profile '%1' and its passwords?")
                                            .arg(chosen_->name)))
        return;
    bool all_gone = false;
    try {
        desk_.accounts.profiles().remove(*chosen_);
        all_gone = desk_.accounts.passwords().remove_all(*chosen_);
        load();
    } catch (const RuntimeError &error) {
        say(error.description());
        return;
    }
    start_new();
    say(all_gone ? QStringLiteral("Deleted.")
                 : QStringLiteral("Deleted. No keychain of the desktop answered: a password that "
                                  "it holds for the profile stays there."));
}

void MailProfilesDialog::test_profile_Click()
{
    finder_.drop();
    say(QStringLiteral("Signing on …"));
    ui_->result->repaint();
    TrialReport report;
    desk_.run([&] {
        report = try_profile(ui_->form->profile(), desk_.open_inbox, desk_.try_way_out,
                             [this](MailUse use) { return credentials(use); });
    });
    say(report.text);
}

// What is typed counts; else what is known for this server under the name that the profile has had
// so far.
Credentials MailProfilesDialog::credentials(MailUse use)
{
    MailProfile profile = ui_->form->profile();
    const QString typed = ui_->form->typed_password(use);
    if (!typed.isEmpty())
        return {SignInKind::Password, server_for(profile, use)->user, typed};
    if (chosen_)
        profile.name = chosen_->name;
    return desk_.accounts.credentials(profile, use);
}

void MailProfilesDialog::save_profile_Click()
{
    finder_.drop();
    save();
}

bool MailProfilesDialog::save()
{
    const MailProfile profile = ui_->form->profile();
    QString note;
    try {
        desk_.accounts.profiles().save(profile, chosen_);
        note = keep_passwords(profile);
        load();
    } catch (const RuntimeError &error) {
        say(error.description());
        return false;
    }
    for (int row = 0; row < static_cast<int>(all_.profiles.size()); ++row) {
        if (all_.profiles[static_cast<std::size_t>(row)].profile == profile)
            select(row);
    }
    say(QStringLiteral("Saved.") + incomplete_note(profile) + note);
    return true;
}

/// @return what a person should know of it, with a blank before; empty for nothing.
QString MailProfilesDialog::keep_passwords(const MailProfile &profile)
{
    SessionPasswords &passwords = desk_.accounts.passwords();
    const bool all_came_along = passwords.take_along(chosen_.value_or(profile), profile);
    bool all_kept = true;
    for (const MailUse use : {MailUse::Reading, MailUse::Sending}) {
        const QString typed = ui_->form->typed_password(use);
        if (!typed.isEmpty())
            all_kept = passwords.keep(password_key(profile, use), typed) && all_kept;
    }
    if (!all_kept)
        return QStringLiteral(
            " No keychain of the desktop answered: the password is kept until the program ends.");
    return all_came_along ? QString()
                          : QStringLiteral(" No keychain of the desktop answered: a password that "
                                           "it holds for the profile as it was stays there.");
}
