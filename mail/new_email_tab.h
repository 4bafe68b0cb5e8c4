#pragma once

#include <QWidget>

#include <memory>

class EventHandlers;
class RecordSetModel;
class QProgressBar;
class QTableView;

namespace Ui
{
class NewEmailTab;
}

/// The tab "New Email (System Table)": the work table's grid, the retrieval and the search.
class NewEmailTab : public QWidget
{
    Q_OBJECT

public:
    /// `work_table` is what the grid shows; it must outlive the tab.
    explicit NewEmailTab(RecordSetModel &work_table, QWidget *parent = nullptr);
    ~NewEmailTab() override;

    void wire(EventHandlers &handlers);

    QTableView &MSFlexGrid1() const;
    QProgressBar &ProgressBar1() const;

private:
    void disable_what_has_no_command();

    std::unique_ptr<Ui::NewEmailTab> ui_;
};
