#pragma once

#include <QPointer>
#include <QWidget>

#include <memory>

class DataConnection;
class EventHandlers;
class GroupCommands;
class MailSender;
class MailStore;
class ProgressReport;
class Prompts;
class QListWidget;
class QProgressBar;
class SettingsStore;
class TextBox;

namespace Ui
{
class SendMailTab;
}

/// What sending works with. Everything in it outlives the tab.
struct SendDesk
{
    DataConnection &Data2; // the master list
    MailStore &store;
    const SettingsStore &settings;
    Prompts &prompts;
    ProgressReport &progress;
};

/// The tab "Send Mail": one message, the address box, and the list that addresses are picked from.
class SendMailTab : public QWidget
{
    Q_OBJECT

public:
    explicit SendMailTab(QWidget *parent = nullptr);
    ~SendMailTab() override;

    void wire(EventHandlers &handlers, const SendDesk &desk, const GroupCommands &groups);

    TextBox &Text12() const;
    QListWidget &List1() const;
    QProgressBar &ProgressBar3() const;

private:
    void wire_message(EventHandlers &handlers);
    void wire_addresses(EventHandlers &handlers);

    void Command13_Click();
    void Command14_Click();
    void Command26_Click();
    void Command46_Click();
    void Command47_Click();
    void cmdAttachment_Click();
    void Check14_Click();
    void List1_Click();
    void List1_DblClick();
    void Text12_DblClick();

    std::unique_ptr<Ui::SendMailTab> ui_;
    std::unique_ptr<SendDesk> desk_;
    std::unique_ptr<MailSender> sender_;
    QPointer<QWidget> addresses_;
};
