#include "mail/review_window.h"

#include "app/settings_store.h"
#include "mail/review_words.h"
#include "platform/controls.h"
#include "platform/event_handlers.h"
#include "platform/progress_report.h"
#include "platform/prompts.h"
#include "platform/runtime_error.h"
#include "platform/twips.h"
#include "platform/words.h"
#include "ui_review_window.h"

#include <QShortcut>

namespace
{
const QString heading_key = QStringLiteral("Filter");
const QString no_heading = QStringLiteral("0");

QList<int> widths_at_opening()
{
    return {2500, 3000, 3500, 5000, 2500, 2500, 2500, 2500};
}

// The last column keeps what it has.
QList<int> widths_after_apply()
{
    return widths_at_opening().first(7);
}
} // namespace

ReviewWindow::ReviewWindow(const ReviewDesk &desk, QWidget *main_window)
    : QWidget(main_window, Qt::Window),
      desk_(desk),
      Data1(desk.engine),
      ui_(std::make_unique<Ui::ReviewWindow>())
{
    setAttribute(Qt::WA_DeleteOnClose);
    ui_->setupUi(this);
    Data1.setParent(this);
    Data1.setObjectName(QStringLiteral("Data1"));
    // Not the configured database: this window keeps to its own file when the user moves the list.
    Data1.set_database_name(QStringLiteral("C:\\Velmoradrane.mdb"));
    Data1.set_record_source("email");
    set_up_grid(*ui_->MSFlexGrid1, rows_);
    ui_->MSFlexGrid1->setSelectionBehavior(QAbstractItemView::SelectItems);
    set_column_widths(*ui_->MSFlexGrid1, widths_at_opening());
    // A heading above the grid rather than a box to type into.
    ui_->RichTextBox1->viewport()->setAutoFillBackground(false);
    make_primary(*ui_->Command1);
    wire();
}

ReviewWindow::~ReviewWindow() = default;

void ReviewWindow::wire()
{
    EventHandlers &handlers = desk_.handlers;
    handlers.on_click(ui_->Command1, [this] { Command1_Click(); });   // "Apply"
    handlers.on_click(ui_->cmdLarge2, [this] { cmdLarge2_Click(); }); // "View Large Screen"
    QTableView *grid = ui_->MSFlexGrid1;
    handlers.on(grid, &QTableView::doubleClicked, [this] { MSFlexGrid1_DblClick(); });
    for (const auto key : {Qt::Key_Return, Qt::Key_Enter}) {
        auto *pressed = new QShortcut(key, grid, nullptr, nullptr, Qt::WidgetShortcut);
        pressed->setAutoRepeat(false);
        handlers.on(pressed, &QShortcut::activated, [this] { MSFlexGrid1_DblClick(); });
    }
    // Current first: not every desktop sends the press of the mouse before it asks for the menu.
    connect(grid, &QTableView::customContextMenuRequested, grid,
            [grid](const QPoint &place) { grid->setCurrentIndex(grid->indexAt(place)); });
    handlers.on(grid, &QTableView::customContextMenuRequested,
                [this] { MSFlexGrid1_RightClick(); });
}

void ReviewWindow::open()
{
    show();
    try {
        Data1.refresh();
    } catch (const RuntimeError &error) {
        desk_.prompts.notice(error.description(), NoticeIcon::Exclamation);
    }
}

// "Apply": every step that fails is passed over.
void ReviewWindow::Command1_Click()
{
    attempt([this] { ui_->Text1->setText(desk_.settings.read(heading_key)); });
    ui_->Text1->setText(trim_blanks(ui_->Text1->text()));
    const int messages = select_messages();
    if (messages > 0) {
        delete_addresses_of_messages(messages);
        delete_by_heading();
    }
    show_whole_table();
}

/// @return how many messages there are. None when they cannot be read anew: the rows of the set
/// before were never asked for.
int ReviewWindow::select_messages()
{
    int messages = 0;
    attempt([&] {
        Data1.set_record_source(
            Statement("select * from email where subject like '*", ui_->Text1->text(), "*' "));
        Data1.refresh();
        messages = as_integer16(Data1.record_set().record_count());
    });
    return messages;
}

void ReviewWindow::delete_addresses_of_messages(int count)
{
    attempt([this] { Data1.record_set().move_first(); });
    QString words = ui_->Text2->text(); // stays when a message cannot be read
    for (int done = 1; done <= count; ++done) {
        attempt([&] { words = review_words(Data1.record_set().field(QStringLiteral("Text"))); });
        ui_->Text2->set_text(words);
        if (!words.isEmpty()) {
            attempt([&] {
                Data1.execute(Statement("delete * from email where email like '*", words, "*' "));
            });
        }
        if (done < count)
            attempt([this] { Data1.record_set().move_next(); });
        desk_.progress.tell(QStringLiteral("Message"), done, count);
    }
    desk_.progress.clear();
}

void ReviewWindow::delete_by_heading()
{
    attempt([this] {
        Data1.set_record_source("select * from email");
        Data1.refresh();
    });
    attempt([this] {
        // Read again, and not trimmed; an empty heading is none, too.
        const QString heading = desk_.settings.read(heading_key, no_heading);
        ui_->Text1->setText(heading.isEmpty() ? no_heading : heading);
    });
    attempt([this] {
        Data1.execute(
            Statement("delete * from email where subject like '*", ui_->Text1->text(), "*' "));
    });
}

void ReviewWindow::show_whole_table()
{
    attempt([this] {
        Data1.set_record_source("select * from email");
        Data1.refresh();
    });
    set_column_widths(*ui_->MSFlexGrid1, widths_after_apply());
}

// "View Large Screen": there is no window that it could show.
void ReviewWindow::cmdLarge2_Click() const
{
    throw RuntimeError(error_number::object_required,
                       QStringLiteral("Object required: there is no large screen to show."));
}

void ReviewWindow::MSFlexGrid1_DblClick()
{
    if (const auto text = current_cell())
        desk_.prompts.notice(*text);
}

void ReviewWindow::MSFlexGrid1_RightClick()
{
    const auto text = current_cell();
    if (!text)
        return;
    const QString x = QStringLiteral("x");
    desk_.prompts.notice(QString(*text).replace(QStringLiteral("["), x));
    desk_.prompts.notice(QString(*text).replace(QStringLiteral("]"), x));
}

/// The field that the grid's current cell shows, whole; nothing without a current cell.
std::optional<QString> ReviewWindow::current_cell()
{
    const QModelIndex cell = ui_->MSFlexGrid1->currentIndex();
    if (!cell.isValid())
        return std::nullopt;
    RecordSet &rows = Data1.record_set();
    rows.move_to(cell.row());
    return rows.field(rows.columns().at(cell.column()));
}
