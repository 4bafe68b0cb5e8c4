#pragma once

#include "db/data_connection.h"
#include "db/record_set_model.h"
#include "platform/event_handlers.h"
#include "transfer/import_window.h"

#include <QMainWindow>

#include <memory>

class DatabaseEngine;
class PleaseWait;
class ProgressReport;
class Prompts;
class QAction;
class QPushButton;

namespace Ui
{
class TextManipulator;
}

/// What the text manipulator works with. Everything in it outlives the window.
struct ManipulatorDesk
{
    DatabaseEngine &engine;
    Prompts &prompts;
    PleaseWait &please_wait;
    ProgressReport &progress;
    EventHandlers &handlers;
    EventHandlers::Handler help; // what F1 does
};

/// The window "Text Manipulator": reshapes the text of its view box (text_transforms.h), and keeps
/// a table of its own, `import`, that files can be imported into and exported from. The table lies
/// in "C:\Ostrix\Ostrix.mdb", wherever the program's database is.
///
/// A closed window is gone with its texts. It does not close while one of its commands runs.
class TextManipulator : public QMainWindow
{
    Q_OBJECT

public:
    TextManipulator(const ManipulatorDesk &desk, QWidget *main_window);
    ~TextManipulator() override;

    /// Shows the window with the table's rows. A database that cannot be opened is told in a box;
    /// the window opens all the same.
    void open();

    /// Brings the window, which is open, to the front.
    void bring_to_front();

    /// Lets the grid show the rows that have come, without a turn of the event loop.
    void paint_grid();

protected:
    void closeEvent(QCloseEvent *event) override;

private:
    using Command = void (TextManipulator::*)();

    void wire();
    void on_click(QPushButton *button, Command command);
    void on_triggered(QAction *entry, Command command);
    EventHandlers::Handler running(Command command);
    template <typename Steps>
    void end_quietly_on_failure(Steps &&steps);

    void GetFile_Click();
    void SaveFile_Click();
    void SaveFiletxt_Click();
    void ImportToClean_Click();
    void ExportClean_Click();
    void Command1_Click();
    void Command2_Click();
    void Command3_Click();
    void Command4_Click();
    void Command5_Click();
    void Command6_Click();

    void save_text(const QString &filter);
    void put_items_on_lines();
    void keep_lines_of_a_file();

    ManipulatorDesk desk_;
    std::unique_ptr<Ui::TextManipulator> ui_;
    DataConnection Data1;
    RecordSetModel rows_{Data1};
    ImportWindow import_window_;
    int commands_running_ = 0;
};
