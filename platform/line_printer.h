#pragma once

#include <QPrinter>
#include <QString>
#include <QStringList>

#include <functional>
#include <memory>
#include <utility>

/// Where a print job goes; tests give a file.
using PrinterMaker = std::function<std::unique_ptr<QPrinter>()>;

/// The desktop's default printer. @throws RuntimeError 482 when there is none.
std::unique_ptr<QPrinter> default_printer();

/// A print job of text lines, one below the other, on as many pages as they need. The lines are
/// collected first: a job that goes without print() has printed nothing.
class LinePrinter
{
public:
    explicit LinePrinter(std::unique_ptr<QPrinter> printer) : printer_(std::move(printer)) {}

    /// Adds one line, printed as one_line() has it. What is wider than the page goes on in the next
    /// row.
    void add_line(const QString &text);

    /// Prints all lines; `told` hears how many are done, and of how many.
    /// @throws RuntimeError 482 when the printer does not take them.
    void print(const std::function<void(qint64 done, qint64 total)> &told = {});

private:
    std::unique_ptr<QPrinter> printer_;
    QStringList lines_;
};
