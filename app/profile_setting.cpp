#include "app/profile_setting.h"

#include "app/setting_change.h"
#include "app/settings_store.h"
#include "mail/mail_store.h"
#include "platform/prompts.h"

#include <QLineEdit>

namespace
{
const QString key = QStringLiteral("Profile");
}

ProfileSetting::ProfileSetting(QLineEdit &box, SettingsStore &settings, MailSession &session,
                               Prompts &prompts)
    : Text3(box),
      settings_(settings),
      session_(session),
      prompts_(prompts)
{
}

void ProfileSetting::cmdGet_Click() const
{
    Text3.setText(settings_.read(key));
}

void ProfileSetting::Command4_Click()
{
    if (!prompts_.ok_cancel(QStringLiteral(
            "This will allow you to login with a Profile name for Exchange / Internet Mail and "
            "other Mail Services. Do you wish to proceed?"))) {
        Text3.clear();
        return;
    }
    if (Text3.text().isEmpty()) {
        prompts_.notice(QStringLiteral("Please write your Profile name in the text box."));
        return;
    }
    switch (setting_change(settings_.read(key), Text3.text())) {
    case SettingChange::First:
        store();
        prompts_.notice(QStringLiteral("Your Profile name has been added and stored!"));
        break;
    case SettingChange::Different:
        if (!prompts_.ok_cancel(
                QStringLiteral("Are you sure you want to change your Profile name?")))
            return;
        store();
        prompts_.notice(QStringLiteral("Your Profile name has been changed to ") +
                        settings_.read(key));
        break;
    case SettingChange::None:
        // The same words as for the database's path, as people know them.
        prompts_.notice(QStringLiteral("This path location is already set"));
        break;
    }
}

void ProfileSetting::store()
{
    settings_.write(key, Text3.text());
    session_.set_UserName(settings_.read(key, QStringLiteral("0")));
}

void ProfileSetting::cmdDel1_Click()
{
    if (!prompts_.ok_cancel(
            QStringLiteral("Sometime a Profile is not needed. Are you sure you want to delete your "
                           "Profile?")))
        return;
    attempt([this] { settings_.remove(key); }); // an absent profile is as good as a deleted one
    prompts_.notice(QStringLiteral("Your Profile has been deleted"));
}
