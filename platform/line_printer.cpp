#include "platform/line_printer.h"

#include "platform/runtime_error.h"

#include <QPrinterInfo>
#include <QTextLayout>
#include <QTextOption>

#include <algorithm>
#include <utility>

namespace
{
// Laying out takes longer than linear time in the length of a text.
constexpr qsizetype most_characters = 1000;
constexpr int point_size = 10;

[[noreturn]] void fail(const QString &reason)
{
    throw RuntimeError(error_number::printer_error, QStringLiteral("Printer error: ") + reason);
}

QString as_one_line(QString text)
{
    for (QChar &c : text) {
        const bool breaks = c == QChar::LineSeparator || c == QChar::ParagraphSeparator;
        if (breaks || c.category() == QChar::Other_Control)
            c = QLatin1Char(' ');
    }
    return text;
}

qsizetype piece_end(const QString &text, qsizetype start)
{
    const qsizetype end = start + most_characters;
    if (end >= text.size())
        return text.size();
    return text[end].isLowSurrogate() ? end - 1 : end;
}
} // namespace

std::unique_ptr<QPrinter> default_printer()
{
    const QPrinterInfo printer = QPrinterInfo::defaultPrinter();
    if (printer.isNull())
        fail(QStringLiteral("there is no default printer"));
    return std::make_unique<QPrinter>(printer, QPrinter::HighResolution);
}

LinePrinter::LinePrinter(std::unique_ptr<QPrinter> printer) : printer_(std::move(printer))
{
    printer_->setDocName(QStringLiteral("Ostrix"));
    if (!painter_.begin(printer_.get()))
        fail(QStringLiteral("'%1' takes no job").arg(printer_->printerName()));
    QFont font = painter_.font();
    font.setPointSize(point_size);
    painter_.setFont(font);
    row_height_ = painter_.fontMetrics().lineSpacing();
    const QRectF page = printer_->pageRect(QPrinter::DevicePixel);
    page_height_ = page.height();
    page_width_ = page.width();
}

LinePrinter::~LinePrinter()
{
    if (finished_)
        return;
    printer_->abort();
    painter_.end();
}

void LinePrinter::print_line(const QString &text)
{
    const QString line = as_one_line(text);
    qsizetype start = 0;
    do {
        const qsizetype end = piece_end(line, start);
        print_row(line.mid(start, end - start));
        start = end;
    } while (start < line.size());
}

void LinePrinter::print_row(const QString &text)
{
    QTextLayout layout(text, painter_.font(), printer_.get());
    QTextOption option;
    option.setWrapMode(QTextOption::WrapAnywhere);
    layout.setTextOption(option);
    layout.beginLayout();
    for (QTextLine line = layout.createLine(); line.isValid(); line = layout.createLine()) {
        line.setLineWidth(page_width_);
        line.setPosition({0, 0});
        line.draw(&painter_, {0, next_row(std::max(row_height_, line.height()))});
    }
    layout.endLayout();
}

/// @return where on the page the next row begins.
double LinePrinter::next_row(double height)
{
    if (y_ + height > page_height_) {
        if (!printer_->newPage())
            fail(QStringLiteral("'%1' takes no further page").arg(printer_->printerName()));
        y_ = 0;
    }
    return std::exchange(y_, y_ + height);
}

void LinePrinter::finish()
{
    if (!painter_.end() || printer_->printerState() == QPrinter::Error)
        fail(QStringLiteral("the job did not reach '%1'").arg(printer_->printerName()));
    finished_ = true;
}
