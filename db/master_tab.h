#pragma once

#include <QPointer>
#include <QWidget>

#include <functional>
#include <memory>

class EventHandlers;
class MasterListCommands;
class RecordSetModel;
class QLineEdit;
class QTableView;

struct ListDesk;

namespace Ui
{
class MasterTab;
}

/// The searches of the master list, which belong to sending.
struct MasterSearches
{
    std::function<void()> Command19_Click; // "Search Email"
    std::function<void()> Command37_Click; // "Search Name"
};

/// The tab "View Master Table": the master list's grid and the commands on it.
class MasterTab : public QWidget
{
    Q_OBJECT

public:
    /// `master` is what the grid shows; it must outlive the tab.
    explicit MasterTab(RecordSetModel &master, QWidget *parent = nullptr);
    ~MasterTab() override;

    void wire(EventHandlers &handlers, const ListDesk &desk, MasterSearches searches);

    QLineEdit &Text1() const;
    QLineEdit &Text2() const;
    QLineEdit &Text7() const;
    QLineEdit &Text16() const;
    QLineEdit &Text23() const;
    QTableView &MSFlexGrid5() const;

private:
    void wire_row_selection(EventHandlers &handlers);
    void cmdLargeScreen_Click();

    std::unique_ptr<Ui::MasterTab> ui_;
    std::unique_ptr<MasterListCommands> commands_;
    RecordSetModel &master_;
    QPointer<QWidget> large_screen_;
};
