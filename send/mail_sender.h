#pragma once

class MailStore;
class ProgressReport;
class Prompts;
class QCheckBox;
class QLineEdit;
class QString;
class SettingsStore;
class TextBox;

/// The controls that a message is written in.
struct MessageControls
{
    TextBox &Text12;
    QLineEdit &Text13;
    TextBox &Text14;
    QLineEdit &Text15;
    QCheckBox &Check9;
};

/// Sends the message of the tab "Send Mail" to every address in the address box: the first one is
/// its visible recipient, the others get blind copies.
class MailSender
{
public:
    MailSender(MailStore &store, const SettingsStore &settings, Prompts &prompts,
               const MessageControls &controls, ProgressReport &progress);

    /// "Send Mail". That the message has gone is told in the status bar alone.
    /// @throws RuntimeError of the mail store; 6 for more than 32,767 recipients.
    void Command13_Click() const;

private:
    void send(const QString &addresses) const;
    void sign_on() const;
    int add_recipients(const QString &addresses) const;
    void send_message(int recipients) const;

    MailStore &store_;
    const SettingsStore &settings_;
    Prompts &prompts_;
    MessageControls controls_;
    ProgressReport &progress_;
};
