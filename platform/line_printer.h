#pragma once

#include <QPainter>
#include <QPrinter>
#include <QString>

#include <functional>
#include <memory>

/// Where a print job goes; tests give a file.
using PrinterMaker = std::function<std::unique_ptr<QPrinter>()>;

/// The desktop's default printer. @throws RuntimeError 482 when there is none.
std::unique_ptr<QPrinter> default_printer();

/// A print job of text lines, one below the other, on as many pages as they need. A job that goes
/// without finish() is taken back.
class LinePrinter
{
public:
    /// @throws RuntimeError 482 when the printer takes no job.
    explicit LinePrinter(std::unique_ptr<QPrinter> printer);
    ~LinePrinter();

    /// Prints one line. What is wider than the page goes on in the next row; line breaks and
    /// control characters are printed as blanks. @throws RuntimeError 482.
    void print_line(const QString &text);

    /// Hands the job over. @throws RuntimeError 482.
    void finish();

private:
    void print_row(const QString &text);
    double next_row(double height);

    std::unique_ptr<QPrinter> printer_; // outlives its painter
    QPainter painter_;
    double row_height_ = 0;
    double page_height_ = 0;
    double page_width_ = 0;
    double y_ = 0;
    bool finished_ = false;
};
