#include "textedit/text_manipulator.h"

#include "app/please_wait.h"
#include "platform/prompts.h"
#include "platform/text_file.h"
#include "platform/twips.h"
#include "platform/words.h"
#include "textedit/text_transforms.h"
#include "transfer/address_export.h"
#include "transfer/address_import.h"
#include "ui_text_manipulator.h"

#include <QCloseEvent>
#include <QCoreApplication>
#include <QScopeGuard>
#include <QShortcut>

namespace
{
const QString start_folder = QStringLiteral("c:\\Ostrix\\");

const QString large_files = QStringLiteral(
    "This program may not be able to import very large files or may seem to hang momentarily "
    "whilst importing large files");

const QString put_into_format = QStringLiteral(
    "This command will put the contents of the view box into the correct file format for import. "
    "See the help file (Press F1)section 3.1. Please ensure that the last line has a comma after "
    "it else the program won't see it.");

const QString only_from_a_file = QStringLiteral(
    "This function will remove all lines that do not contain the character in the box to the left "
    "of this command. This function can only be performed from a file. You will be asked to choose "
    "a file. If you want to perform this function with the contents of the view box then save the "
    "contents to a file using the File>Save File As Text command.");

const QString some_character = QStringLiteral(
    "Some character that all lines in the list should contain must be inserted in the character "
    "box. For example, in an email list all lines would have a @ character.");
} // namespace

TextManipulator::TextManipulator(const ManipulatorDesk &desk, QWidget *main_window)
    : QMainWindow(main_window, Qt::Window),
      desk_(desk),
      ui_(std::make_unique<Ui::TextManipulator>()),
      Data1(desk.engine),
      import_window_(desk.handlers, desk.prompts)
{
    setAttribute(Qt::WA_DeleteOnClose);
    ui_->setupUi(this);
    resize(960, 680);
    import_window_.set_parent(this);
    Data1.setParent(this);
    Data1.setObjectName(QStringLiteral("Data1"));
    Data1.set_database_name(QStringLiteral("C:\\Ostrix\\Ostrix.mdb"));
    Data1.set_record_source("import");
    set_up_grid(*ui_->MSFlexGrid1, rows_);
    set_column_widths(*ui_->MSFlexGrid1, {3500});
    wire();
}

TextManipulator::~TextManipulator() = default;

void TextManipulator::wire()
{
    using Self = TextManipulator;
    on_triggered(ui_->GetFile, &Self::GetFile_Click);             // "Get File For View"
    on_triggered(ui_->SaveFile, &Self::SaveFile_Click);           // "Save File As CSV"
    on_triggered(ui_->SaveFiletxt, &Self::SaveFiletxt_Click);     // "Save File as Text"
    on_triggered(ui_->ImportToClean, &Self::ImportToClean_Click); // "Import A File To Clean"
    on_triggered(ui_->ExportClean, &Self::ExportClean_Click);     // "Export A File After Clean"
    on_click(ui_->Command1, &Self::Command1_Click);               // "Replace"
    on_click(ui_->Command2, &Self::Command2_Click);               // "Replace "," with NEXT LINE"
    on_click(ui_->Command3, &Self::Command3_Click); // "Remove  lines that do not contain"
    on_click(ui_->Command4, &Self::Command4_Click); // "Replace space with ",""
    on_click(ui_->Command5, &Self::Command5_Click); // "Replace ";" with ",""
    on_click(ui_->Command6, &Self::Command6_Click); // "Delete All"
    desk_.handlers.on(new QShortcut(QKeySequence::HelpContents, this), &QShortcut::activated,
                      desk_.help);
}

void TextManipulator::on_click(QPushButton *button, Command command)
{
    desk_.handlers.on_click(button, running(command));
}

void TextManipulator::on_triggered(QAction *entry, Command command)
{
    desk_.handlers.on_triggered(entry, running(command));
}

EventHandlers::Handler TextManipulator::running(Command command)
{
    return [this, command] {
        ++commands_running_;
        const auto done = qScopeGuard([this] { --commands_running_; });
        (this->*command)();
    };
}

void TextManipulator::open()
{
    show();
    try {
        Data1.refresh();
    } catch (const RuntimeError &error) {
        desk_.prompts.notice(error.description(), NoticeIcon::Exclamation);
    }
}

void TextManipulator::bring_to_front()
{
    setWindowState(windowState() & ~Qt::WindowMinimized);
    raise();
    activateWindow();
}

void TextManipulator::paint_grid()
{
    rows_.paint_now(*ui_->MSFlexGrid1);
}

// A command gives the event loop turns: the window must still be there when it goes on.
void TextManipulator::closeEvent(QCloseEvent *event)
{
    event->setAccepted(commands_running_ == 0);
}

template <typename Steps>
void TextManipulator::end_quietly_on_failure(Steps &&steps)
{
    try {
        steps();
    } catch (const std::exception &) { // memory may run out, too
        desk_.please_wait.unload();
    }
}

void TextManipulator::GetFile_Click()
{
    desk_.prompts.notice(large_files);
    QCoreApplication::processEvents();
    const QString path =
        desk_.prompts.open_file({QStringLiteral("All files (*.*)|*.*"), start_folder});
    if (path.isEmpty()) {
        desk_.please_wait.unload();
        return;
    }
    OpenTextFile file(path);
    QCoreApplication::processEvents();
    desk_.please_wait.show();
    QCoreApplication::processEvents();
    ui_->Text3->set_text(with_ended_lines(file.read()));
    desk_.please_wait.unload();
}

void TextManipulator::SaveFile_Click()
{
    save_text(QStringLiteral("All files (*.csv)|*.csv"));
}

void TextManipulator::SaveFiletxt_Click()
{
    save_text(QStringLiteral("All files (*.txt)|*.txt"));
}

// Not the view box: what the last "Remove  lines that do not contain" has kept.
void TextManipulator::save_text(const QString &filter)
{
    const QString path = desk_.prompts.save_file({filter, {}});
    write_text_file(path, ui_->RichTextBox1->text());
}

void TextManipulator::ImportToClean_Click()
{
    import_addresses({Data1, desk_.prompts, desk_.please_wait, import_window_, desk_.progress});
}

void TextManipulator::ExportClean_Click()
{
    export_addresses({Data1, desk_.prompts, desk_.progress},
                     QStringLiteral("All Files (*.txt)|*.txt"), "select * from import");
}

void TextManipulator::Command1_Click()
{
    // A line break that was pasted into a box is one of the view box's, too.
    ui_->Text3->set_text(with_replaced(ui_->Text3->text(), with_cr_lf(ui_->Text1->text()),
                                       with_cr_lf(ui_->Text2->text())));
}

void TextManipulator::Command2_Click()
{
    end_quietly_on_failure([this] { put_items_on_lines(); });
}

void TextManipulator::put_items_on_lines()
{
    if (!desk_.prompts.ok_cancel(put_into_format))
        return;
    QCoreApplication::processEvents();
    ui_->Text4->set_text(items_from_the_last(ui_->Text3->text()));
    ui_->Text3->share_text(*ui_->Text4);
    desk_.please_wait.unload();
}

void TextManipulator::Command3_Click()
{
    end_quietly_on_failure([this] { keep_lines_of_a_file(); });
}

void TextManipulator::keep_lines_of_a_file()
{
    desk_.prompts.notice(only_from_a_file, NoticeIcon::Information);
    if (ui_->Text6->text().isEmpty()) {
        desk_.prompts.notice(some_character);
        return;
    }
    QCoreApplication::processEvents();
    // A cancelled dialog is an empty name, which does not open.
    OpenTextFile file(
        desk_.prompts.open_file({QStringLiteral("Text files (*.*)|*.*"), start_folder}));
    desk_.please_wait.show();
    ui_->Text4->set_text({});
    QCoreApplication::processEvents();
    const KeptLines kept = lines_that_contain(file.read(), ui_->Text6->text());
    ui_->Text5->set_text(kept.last);
    ui_->Text4->set_text(kept.text);
    ui_->Text3->share_text(*ui_->Text4);
    ui_->RichTextBox1->share_text(*ui_->Text4);
    desk_.please_wait.unload();
    desk_.prompts.notice(QStringLiteral("finished!"));
    desk_.please_wait.unload();
}

void TextManipulator::Command4_Click()
{
    ui_->Text3->set_text(with_commas_for_blanks(ui_->Text3->text()));
}

void TextManipulator::Command5_Click()
{
    ui_->Text3->set_text(with_commas_for_semicolons(ui_->Text3->text()));
}

void TextManipulator::Command6_Click()
{
    if (!desk_.prompts.ok_cancel(QStringLiteral("Are you sure you want to delete all records?")))
        return;
    Data1.execute("delete * from import");
    Data1.refresh();
}
