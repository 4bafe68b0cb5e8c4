#pragma once

#include <QWidget>

#include <memory>

class DataConnection;
class EventHandlers;
class QListWidget;
class QProgressBar;

namespace Ui
{
class SendMailTab;
}

/// The tab "Send Mail": one message, the address box, and the list that addresses are picked from.
class SendMailTab : public QWidget
{
    Q_OBJECT

public:
    explicit SendMailTab(QWidget *parent = nullptr);
    ~SendMailTab() override;

    void wire(EventHandlers &handlers, DataConnection &Data2);

    QListWidget &List1() const;
    QProgressBar &ProgressBar3() const;

private:
    void disable_what_has_no_command();
    void Command26_Click(DataConnection &Data2);

    std::unique_ptr<Ui::SendMailTab> ui_;
};
