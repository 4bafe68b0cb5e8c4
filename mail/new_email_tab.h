#pragma once

#include <QWidget>

#include <memory>

class EventHandlers;
class DataConnection;
class Prompts;
class RecordSetModel;
class QProgressBar;
class QTableView;

class RetrievalRun;
struct ListDesk;

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

    /// `run` is what "Get Emails" starts.
    void wire(EventHandlers &handlers, const ListDesk &desk, RetrievalRun &run);

    QTableView &MSFlexGrid1() const;
    QProgressBar &ProgressBar1() const;

private:
    void Command25_Click(DataConnection &Data1, Prompts &prompts);
    static void Command45_Click(DataConnection &Data1, Prompts &prompts);

    std::unique_ptr<Ui::NewEmailTab> ui_;
};
