#include "transfer/address_import.h"

#include "app/please_wait.h"
#include "db/data_connection.h"
#include "platform/progress_report.h"
#include "platform/prompts.h"
#include "platform/runtime_error.h"
#include "platform/text_file.h"
#include "transfer/import_items.h"
#include "transfer/import_window.h"

#include <QCoreApplication>
#include <QScopeGuard>

#include <exception>

namespace
{
const QString patience = QStringLiteral(
    "Importing large lists can take some time and it may seem that the program has crashed when in "
    "fact it has not. Please allow processes to complete. As an estimate, consider that importing "
    "1,000 entries may take upto five minutes and therefore importing 10,000 entries may take upto "
    "fifty minutes.");
const QString choose = QStringLiteral(
    "You will now be asked to choose a file from which to import email addresses. This file must "
    "be in the correct format else an error will occur.");
const QString failed = QStringLiteral(
    "An error occurred. Most probably the file being imported was not in the correct format. "
    "Please ensure the file is in CSV format containing only email addresses. You can use the "
    "Ostrix text manipulator to make a CSV file of the correct format. To use the Ostrix text "
    "manipulator goto File>Make A Text File Into a CSV File For Import");

ImportItems read_items(const ImportDesk &desk, const QString &path)
{
    return import_items(read_text_file(path),
                        [&desk](const QString &text) { desk.window.show_text(text); });
}

void store_items(const ImportDesk &desk, const ImportItems &items)
{
    bool a_value_is_set = false;
    const auto step = [&a_value_is_set](const auto &action) {
        try {
            action();
        } catch (const std::exception &) { // memory may run out, too
            if (!a_value_is_set)
                throw;
        }
    };
    // Without items this starts below the end and fails at the first number, which none has.
    for (qsizetype i = items.highest() - 1; i != -1; --i) {
        QString item;
        step([&] { item = items.at(i); });
        step([&] { desk.window.append_item(items, i); });
        step([&] { desk.rows.record_set().add_new(); });
        step([&] {
            desk.rows.record_set().set_field(QStringLiteral("email"), item);
            a_value_is_set = true;
        });
        step([&] { desk.rows.record_set().update(); });
        step([&] { desk.rows.refresh(); });
        desk.progress.tell(QStringLiteral("Address"), items.highest() - i, items.highest());
    }
}

/// @return false when no file was chosen.
bool import_chosen_file(const ImportDesk &desk)
{
    desk.prompts.notice(patience);
    desk.prompts.notice(choose);
    const QString path = desk.prompts.open_file(
        {QStringLiteral("All files (*.*)|*.*"), QStringLiteral("c:\\Ostrix\\")});
    if (path.isEmpty())
        return false;
    const ImportItems items = read_items(desk, path);
    QCoreApplication::processEvents();
    desk.please_wait.show();
    QCoreApplication::processEvents();
    const auto told = qScopeGuard([&desk] { desk.progress.clear(); });
    store_items(desk, items);
    return true;
}
} // namespace

void import_addresses(const ImportDesk &desk)
{
    try {
        if (!import_chosen_file(desk))
            return;
    } catch (const std::exception &) { // memory may run out, too
        desk.prompts.notice(failed);
        return;
    }
    desk.window.unload();
    desk.please_wait.unload();
}
