#include "tests/support/program_window.h"

#include "db/schema.h"
#include "platform/drive_path.h"
#include "platform/text_box.h"

#include <QAbstractItemModel>
#include <QApplication>
#include <QCheckBox>
#include <QDir>
#include <QFile>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QTabWidget>
#include <QTableView>
#include <QTest>
#include <SQLiteCpp/SQLiteCpp.h>

#include <stdexcept>

namespace
{
/// The menu that holds an entry, and the entry.
struct FoundEntry
{
    QMenu *menu;
    QAction *entry;
};

FoundEntry find_entry(const QMenuBar &bar, const QString &name)
{
    const auto titles = bar.actions();
    for (const QAction *title : titles) {
        const auto entries = title->menu()->actions();
        for (QAction *entry : entries) {
            if (entry->objectName() == name)
                return {title->menu(), entry};
        }
    }
    throw std::runtime_error("there is no menu entry " + name.toStdString());
}

SQLite::Database open_file(const QString &path)
{
    return {native_path(path).toStdString(), SQLite::OPEN_READWRITE, 5000};
}

QString joined_row(const SQLite::Statement &row)
{
    QStringList fields;
    for (int column = 0; column < row.getColumnCount(); ++column)
        fields.append(QString::fromStdString(row.getColumn(column).getString()));
    return fields.join(QLatin1Char('|'));
}
} // namespace

ProgramWindow::ProgramWindow()
{
    // The folder and the database are there, as after any first start.
    QDir().mkpath(native_path(QStringLiteral("C:\\Ostrix")));
    create_database(database);
    settings.write(QStringLiteral("Database"), database);
}

ProgramWindow::~ProgramWindow()
{
    prompts_.set_parent(nullptr);
}

MainWindow &ProgramWindow::window()
{
    if (window_ == nullptr) {
        window_ = std::make_unique<MainWindow>(Services{settings, prompts_, mail_store(),
                                                        [this] { return now; }, profile_desk,
                                                        [this] { return printer(); }});
        prompts_.set_parent(window_.get());
        window_->open();
        QApplication::processEvents();
    }
    return *window_;
}

void ProgramWindow::close_window()
{
    window().close();
    window_.reset();
}

QWidget &ProgramWindow::find(const QString &name)
{
    return control<QWidget>(name);
}

void ProgramWindow::bring_to_front(const QWidget &widget)
{
    auto &strip = control<QTabWidget>(QStringLiteral("SSTab1"));
    for (int i = 0; i < strip.count(); ++i) {
        if (strip.widget(i)->isAncestorOf(&widget))
            strip.setCurrentIndex(i);
    }
}

void ProgramWindow::click(const QString &name)
{
    auto &button = control<QAbstractButton>(name);
    ASSERT_TRUE(button.isEnabled()) << name.toStdString() << " is disabled";
    bring_to_front(button);
    if (!button.isVisible()) {
        button.click();
        return;
    }
    // A check box takes a click on its box, not on the empty room beside its caption.
    const bool is_check_box = qobject_cast<QCheckBox *>(&button) != nullptr;
    const QPoint place = is_check_box ? QPoint(8, button.height() / 2) : button.rect().center();
    QTest::mouseClick(&button, Qt::LeftButton, {}, place);
}

void ProgramWindow::double_click(const QString &name)
{
    QWidget &widget = find(name);
    bring_to_front(widget);
    auto *scrolled = qobject_cast<QAbstractScrollArea *>(&widget);
    QTest::mouseDClick(scrolled != nullptr ? scrolled->viewport() : &widget, Qt::LeftButton);
}

void ProgramWindow::choose(const QString &name)
{
    const auto [menu, entry] = find_entry(*window().menuBar(), name);
    ASSERT_TRUE(entry->isEnabled()) << name.toStdString() << " is disabled";
    menu->popup(window().mapToGlobal(QPoint(0, 0)));
    QTest::mouseClick(menu, Qt::LeftButton, {}, menu->actionGeometry(entry).center());
}

void ProgramWindow::type(const QString &name, const QString &typed)
{
    QWidget &box = find(name);
    bring_to_front(box);
    QTest::mouseClick(&box, Qt::LeftButton);
    box.setFocus();
    QTest::keyClick(&box, Qt::Key_A, Qt::ControlModifier);
    QTest::keyClick(&box, Qt::Key_Delete);
    QTest::keyClicks(&box, typed);
}

QString ProgramWindow::text(const QString &name)
{
    QWidget &widget = find(name);
    if (const auto *box = qobject_cast<const TextBox *>(&widget))
        return box->text();
    return widget.property("text").toString();
}

void ProgramWindow::set_text(const QString &name, const QString &new_text)
{
    QWidget &widget = find(name);
    if (auto *box = qobject_cast<TextBox *>(&widget))
        box->set_text(new_text);
    else
        control<QLineEdit>(name).setText(new_text);
}

QString ProgramWindow::caption_of_current_tab()
{
    const auto &strip = control<QTabWidget>(QStringLiteral("SSTab1"));
    return strip.tabText(strip.currentIndex());
}

QStringList ProgramWindow::rows(const QString &table, const QString &columns) const
{
    SQLite::Database file = open_file(database);
    SQLite::Statement query(
        file,
        QStringLiteral("select %1 from \"%2\" order by rowid").arg(columns, table).toStdString());
    QStringList found;
    while (query.executeStep())
        found.append(joined_row(query));
    return found;
}

void ProgramWindow::run_sql(const QString &statement, const QStringList &values) const
{
    SQLite::Database file = open_file(database);
    SQLite::Statement query(file, statement.toStdString());
    for (int i = 0; i < values.size(); ++i)
        query.bind(i + 1, values[i].toStdString());
    query.exec();
}

void ProgramWindow::add_master(const QStringList &emails) const
{
    for (const QString &email : emails)
        run_sql(QStringLiteral("insert into master(email) values(?)"), {email});
}

void ProgramWindow::add_system(const QString &email, const QString &subject,
                               const QString &text) const
{
    run_sql(QStringLiteral("insert into system(email, subject, text) values(?, ?, ?)"),
            {email, subject, text});
}

QStringList ProgramWindow::grid(const QString &name)
{
    auto &view = control<QTableView>(name);
    QApplication::processEvents();
    const QAbstractItemModel &model = *view.model();
    QStringList shown;
    for (int row = 0; row < model.rowCount(); ++row) {
        QStringList cells;
        for (int column = 0; column < model.columnCount(); ++column)
            cells.append(model.index(row, column).data().toString());
        shown.append(cells.join(QLatin1Char('|')));
    }
    return shown;
}

QByteArray ProgramWindow::content(const QString &path)
{
    QFile file(native_path(path));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("(none)");
}

void ProgramWindow::write_file(const QString &path, const QByteArray &content)
{
    QFile file(native_path(path));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly | QIODevice::Truncate)) << path.toStdString();
    ASSERT_EQ(file.write(content), content.size());
}
