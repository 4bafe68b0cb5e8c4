#pragma once

#include "platform/long_text_box.h"
#include "platform/words.h"
#include "tests/support/turn_journal.h"
#include "tests/transfer/transfer_room.h"
#include "transfer/address_import.h"
#include "transfer/import_items.h"

#include <QAction>
#include <QApplication>
#include <QDir>
#include <QScrollBar>
#include <QTest>
#include <QTextBlock>
#include <QTimer>

#include <functional>
#include <new>
#include <sys/stat.h>

inline const QString patience =
    "notice: Importing large lists can take some time and it may seem that the program has crashed "
    "when in fact it has not. Please allow processes to complete. As an estimate, consider that "
    "importing 1,000 entries may take upto five minutes and therefore importing 10,000 entries may "
    "take upto fifty minutes.";
inline const QString choose =
    "notice: You will now be asked to choose a file from which to import email addresses. This "
    "file must be in the correct format else an error will occur.";
inline const QString dialog = "open file: All files (*.*)|*.* in c:\\Ostrix\\";
inline const QString failure =
    "notice: An error occurred. Most probably the file being imported was not in the correct "
    "format. Please ensure the file is in CSV format containing only email addresses. You can use "
    "the Ostrix text manipulator to make a CSV file of the correct format. To use the Ostrix text "
    "manipulator goto File>Make A Text File Into a CSV File For Import";
inline const QStringList all_well = {patience, choose, dialog};
inline const QStringList failed = all_well + QStringList{failure};

class Importing : public TransferRoom
{
protected:
    const QString file = home.file("list.csv");

    void import_file(const QString &path)
    {
        prompts.will_answer(path);
        import_addresses({Data2, prompts, please_wait, window, *this});
    }
    void import_text(const QByteArray &text)
    {
        write_file(file, text);
        import_file(file);
    }
    QStringList stored(const QString &table = "master")
    {
        show(Data1, table);
        return walk(Data1, "email");
    }
    /// Whether both windows are there, as after a failure, or neither.
    std::pair<bool, bool> open_windows() const
    {
        return {window.is_shown(), please_wait.is_shown()};
    }
    static constexpr auto both = std::pair(true, true);
    static constexpr auto neither = std::pair(false, false);

    /// Runs in the turn of the event loop that an import gives once its window is there.
    void when_window_shows(std::function<void()> action)
    {
        action_ = std::move(action);
        qApp->installEventFilter(this_filter_.get());
    }
    QWidget *import_window() const { return parent.findChild<QWidget *>("frmIMport"); }
    LongTextBox &box() const { return *import_window()->findChild<LongTextBox *>("Text1"); }

    /// The line on the screen that ends before the empty one behind the text's last line break, or
    /// the last characters of a text without one, once a person has scrolled there.
    QString seen_at_the_end() const
    {
        QApplication::processEvents();
        QTest::keyClick(&box(), Qt::Key_End, Qt::ControlModifier);
        QApplication::processEvents();
        QTextBlock last = box().cursorForPosition(box().viewport()->rect().bottomRight()).block();
        return last.text().isEmpty() ? last.previous().text() : last.text().right(40);
    }

private:
    class Filter : public QObject
    {
    public:
        explicit Filter(std::function<void()> &action) : action_(action) {}
        bool eventFilter(QObject *watched, QEvent *event) override
        {
            if (event->type() == QEvent::Show && watched->objectName() == "frmIMport")
                QTimer::singleShot(0, [this] {
                    if (const auto action = std::exchange(action_, nullptr))
                        action();
                });
            return false;
        }

    private:
        std::function<void()> &action_;
    };
    std::function<void()> action_;
    std::unique_ptr<Filter> this_filter_ = std::make_unique<Filter>(action_);
};
