#pragma once

#include <QString>

class MailSession;
class Prompts;
class QLineEdit;
class SettingsStore;

/// The mail logon profile: its box and its three buttons.
class ProfileSetting
{
public:
    ProfileSetting(QLineEdit &Text3, SettingsStore &settings, MailSession &session,
                   Prompts &prompts);

    void cmdGet_Click() const;
    /// Stores the box's text as the profile, after asking, and tells the mail session.
    void Command4_Click();
    void cmdDel1_Click();

private:
    void store();

    QLineEdit &Text3;
    SettingsStore &settings_;
    MailSession &session_;
    Prompts &prompts_;
};
