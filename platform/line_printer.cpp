#include "platform/line_printer.h"

#include "platform/runtime_error.h"
#include "platform/shown_text.h"

#include <QPainter>
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

qsizetype piece_end(const QString &text, qsizetype start)
{
    const qsizetype end = start + most_characters;
    if (end >= text.size())
        return text.size();
    return text[end].isLowSurrogate() ? end - 1 : end;
}

/// The pages of one job, row by row.
class Pages
{
public:
    explicit Pages(QPrinter &printer);

    void print_row(const QString &text);
    void hand_over();

private:
    double next_row(double height);

    QPrinter &printer_;
    QPainter painter_;
    double row_height_ = 0;
    double page_height_ = 0;
    double page_width_ = 0;
    double y_ = 0;
};

Pages::Pages(QPrinter &printer) : printer_(printer)
{
    printer_.setDocName(QStringLiteral("Ostrix"));
    if (!painter_.begin(&printer_))
        fail(QStringLiteral("'%1' takes no job").arg(printer_.printerName()));
    QFont font = painter_.font();
    font.setPointSize(point_size);
    painter_.setFont(font);
    row_height_ = painter_.fontMetrics().lineSpacing();
    const QRectF page = printer_.pageRect(QPrinter::DevicePixel);
    page_height_ = page.height();
    page_width_ = page.width();
}

void Pages::print_row(const QString &text)
{
    QTextLayout layout(text, painter_.font(), &printer_);
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
double Pages::next_row(double height)
{
    if (y_ + height > page_height_) {
        if (!printer_.newPage())
            fail(QStringLiteral("'%1' takes no further page").arg(printer_.printerName()));
        y_ = 0;
    }
    return std::exchange(y_, y_ + height);
}

void Pages::hand_over()
{
    if (!painter_.end() || printer_.printerState() == QPrinter::Error)
        fail(QStringLiteral("the job did not reach '%1'").arg(printer_.printerName()));
}

void print_line(Pages &pages, const QString &line)
{
    qsizetype start = 0;
    do {
        const qsizetype end = piece_end(line, start);
        pages.print_row(line.mid(start, end - start));
        start = end;
    } while (start < line.size());
}
} // namespace

std::unique_ptr<QPrinter> default_printer()
{
    const QPrinterInfo printer = QPrinterInfo::defaultPrinter();
    if (printer.isNull())
        fail(QStringLiteral("there is no default printer"));
    return std::make_unique<QPrinter>(printer, QPrinter::HighResolution);
}

void LinePrinter::add_line(const QString &text)
{
    lines_.append(one_line(text));
}

void LinePrinter::print(const std::function<void(qint64 done, qint64 total)> &told)
{
    Pages pages(*printer_);
    qint64 done = 0;
    for (const QString &line : std::as_const(lines_)) {
        print_line(pages, line);
        if (told)
            told(++done, lines_.size());
    }
    pages.hand_over();
}
