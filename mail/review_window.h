#pragma once

#include "db/data_connection.h"
#include "db/record_set_model.h"

#include <QWidget>

#include <memory>
#include <optional>

class DatabaseEngine;
class EventHandlers;
class ProgressReport;
class Prompts;
class SettingsStore;

namespace Ui
{
class ReviewWindow;
}

/// What the review window works with. Everything in it outlives the window.
struct ReviewDesk
{
    DatabaseEngine &engine;
    const SettingsStore &settings;
    Prompts &prompts;
    ProgressReport &progress;
    EventHandlers &handlers;
};

/// The window "Filter": the table `email` of a database file of its own, "C:\Velmoradrane.mdb", and
/// a purge of it that needs no log. A closed window is gone.
class ReviewWindow : public QWidget
{
    Q_OBJECT

public:
    ReviewWindow(const ReviewDesk &desk, QWidget *main_window);
    ~ReviewWindow() override;

    /// Shows the window with the table. A database that cannot be opened is told in a box.
    void open();

    DataConnection &data() { return Data1; }

private:
    void wire();
    void Command1_Click();
    [[noreturn]] void cmdLarge2_Click() const;
    void MSFlexGrid1_DblClick();
    void MSFlexGrid1_RightClick();

    int select_messages();
    void delete_addresses_of_messages(int count);
    void delete_by_heading();
    void show_whole_table();
    std::optional<QString> current_cell();

    ReviewDesk desk_;
    DataConnection Data1;
    RecordSetModel rows_{Data1};
    std::unique_ptr<Ui::ReviewWindow> ui_;
};
