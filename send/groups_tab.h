#pragma once

#include <QWidget>

#include <memory>

class EventHandlers;
class GroupCommands;
class Prompts;
class QComboBox;
class QLineEdit;
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

    /// What is given must outlive the tab.
    void wire(EventHandlers &handlers, const GroupCommands &groups, Prompts &prompts);

    QComboBox &Combo2() const;
    QLineEdit &Text4() const;
    QLineEdit &Text30() const;
    TextBox &RichTextBox1() const;
    QProgressBar &ProgressBar2() const;

private:
    std::unique_ptr<Ui::GroupsTab> ui_;
};
