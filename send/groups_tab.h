#pragma once

#include <QWidget>

#include <memory>

class EventHandlers;
class QProgressBar;
class TextBox;

namespace Ui
{
class GroupsTab;
}

/// The tab "Create Group": named groups of addresses, and the box that address lists are built in.
class GroupsTab : public QWidget
{
    Q_OBJECT

public:
    explicit GroupsTab(QWidget *parent = nullptr);
    ~GroupsTab() override;

    void wire(EventHandlers &handlers);

    TextBox &RichTextBox1() const;
    QProgressBar &ProgressBar2() const;

private:
    void disable_what_has_no_command();

    std::unique_ptr<Ui::GroupsTab> ui_;
};
