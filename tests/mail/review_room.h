#pragma once

#include "db/schema.h"
#include "mail/review_window.h"
#include "platform/drive_path.h"
#include "platform/long_text_box.h"
#include "tests/support/program_window.h"

#include <QApplication>
#include <QLineEdit>
#include <QPushButton>
#include <QTableView>
#include <QTest>
#include <SQLiteCpp/SQLiteCpp.h>

inline const QString review_database = "C:\\Velmoradrane.mdb";

/// The window "Filter", opened from the menu "Tools" when first asked for, on a database file that
/// a test fills.
class ReviewForm : public ProgramWindow
{
protected:
    ReviewForm() { create_database(review_database); }

    static void run(const QString &sql)
    {
        SQLite::Database file(native_path(review_database).toStdString(), SQLite::OPEN_READWRITE,
                              5000);
        file.exec(sql.toStdString());
    }
    static void add(const QString &email, const QString &subject, const QString &text = {})
    {
        SQLite::Database file(native_path(review_database).toStdString(), SQLite::OPEN_READWRITE,
                              5000);
        SQLite::Statement insert(file, "insert into email(email, subject, text) values(?, ?, ?)");
        insert.bind(1, email.toStdString());
        insert.bind(2, subject.toStdString());
        insert.bind(3, text.toStdString());
        insert.exec();
    }
    static QStringList emails()
    {
        SQLite::Database file(native_path(review_database).toStdString(), SQLite::OPEN_READONLY);
        SQLite::Statement query(file, "select email from email order by rowid");
        QStringList found;
        while (query.executeStep())
            found.append(QString::fromStdString(query.getColumn(0).getString()));
        return found;
    }

    ReviewWindow &form()
    {
        auto *found = window().findChild<ReviewWindow *>("FilterFrm");
        if (found == nullptr) {
            choose("ReviewFilter");
            found = window().findChild<ReviewWindow *>("FilterFrm");
        }
        return *found;
    }
    template <typename Control>
    Control &part(const QString &name)
    {
        return *form().findChild<Control *>(name);
    }
    void press(const QString &button)
    {
        QTest::mouseClick(&part<QPushButton>(button), Qt::LeftButton);
    }
    QStringList apply()
    {
        press("Command1");
        return emails();
    }
    QStringList shown()
    {
        const auto &model = *part<QTableView>("MSFlexGrid1").model();
        QApplication::processEvents();
        QStringList cells;
        for (int row = 0; row < model.rowCount(); ++row)
            cells.append(model.index(row, 0).data().toString());
        return cells;
    }
    void right_click(const QPoint &place)
    {
        QWidget *cells = part<QTableView>("MSFlexGrid1").viewport();
        QContextMenuEvent event(QContextMenuEvent::Mouse, place, cells->mapToGlobal(place));
        QApplication::sendEvent(cells, &event);
    }
    void press_in_grid(Qt::Key key, Qt::KeyboardModifiers modifiers = {})
    {
        auto &grid = part<QTableView>("MSFlexGrid1");
        form().activateWindow(); // a box may have been answered before
        QApplication::processEvents();
        grid.setFocus();
        QTest::keyClick(&grid, key, modifiers);
    }
    QPoint place_of(int row, int column)
    {
        auto &grid = part<QTableView>("MSFlexGrid1");
        QApplication::processEvents();
        return grid.visualRect(grid.model()->index(row, column)).center();
    }
};
