#pragma once

#include <QWidget>

#include <memory>

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

    void wire(EventHandlers &handlers);

    QListWidget &List1() const;
    QProgressBar &ProgressBar3() const;

private:
    void disable_what_has_no_command();

    std::unique_ptr<Ui::SendMailTab> ui_;
};
