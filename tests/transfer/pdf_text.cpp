#include "tests/transfer/pdf_text.h"

#include <QProcess>
#include <gtest/gtest.h>

PrinterMaker pdf_printer(const QString &file)
{
    return [file] {
        auto printer = std::make_unique<QPrinter>(QPrinter::HighResolution);
        printer->setOutputFormat(QPrinter::PdfFormat);
        printer->setOutputFileName(file);
        return printer;
    };
}

QList<QStringList> pdf_pages(const QString &file)
{
    QProcess reader;
    reader.start("pdftotext", {"-layout", "-enc", "UTF-8", file, "-"});
    EXPECT_TRUE(reader.waitForFinished()) << reader.errorString().toStdString();
    EXPECT_EQ(reader.exitCode(), 0) << reader.readAllStandardError().toStdString();
    QList<QStringList> pages;
    const QStringList texts = QString::fromUtf8(reader.readAllStandardOutput()).split('\f');
    for (const QString &page : texts) {
        if (!page.isEmpty())
            pages.append(page.split('\n', Qt::SkipEmptyParts));
    }
    return pages;
}
