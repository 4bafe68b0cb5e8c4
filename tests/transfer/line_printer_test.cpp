#include "platform/line_printer.h"
#include "platform/runtime_error.h"
#include "tests/db/test_database.h"
#include "tests/transfer/pdf_text.h"

#include <QFile>
#include <gtest/gtest.h>

namespace
{
class PrintedLines : public testing::Test
{
protected:
    QList<QStringList> print(const QStringList &lines) const
    {
        LinePrinter job(pdf_printer(file)());
        for (const QString &line : lines)
            job.add_line(line);
        job.print();
        return pdf_pages(file);
    }

    const PrivateHome home;
    const QString file = home.file("out.pdf");
};

TEST_F(PrintedLines, StandOneBelowTheOther)
{
    EXPECT_EQ(print({"ann@example.org", "bob@example.org"}),
              (QList<QStringList>{{"ann@example.org", "bob@example.org"}}));
}

TEST_F(PrintedLines, GoOnOverThePages)
{
    QStringList lines;
    for (int i = 1; i <= 150; ++i)
        lines.append(QString("reader%1@example.org").arg(i));
    const auto pages = print(lines);
    EXPECT_GT(pages.size(), 1);
    QStringList read;
    for (const QStringList &page : pages)
        read += page;
    EXPECT_EQ(read, lines);
}

TEST_F(PrintedLines, ThatAreTooWideGoOnInTheNextRow)
{
    const QString wide = QString("a").repeated(5000) + "@example.org";
    const auto pages = print({wide});
    ASSERT_EQ(pages.size(), 1);
    EXPECT_GT(pages[0].size(), 1);
    EXPECT_EQ(pages[0].join(QString()).remove(' '), wide);
}

TEST_F(PrintedLines, AreOneLineEach)
{
    const auto pages = print({QStringLiteral("a@x\r\nb@x\tc\u2029d\u202Ee"), "", "e@x"});
    ASSERT_EQ(pages.size(), 1);
    ASSERT_EQ(pages[0].size(), 2);
    EXPECT_EQ(pages[0][0].simplified(), "a@x b@x c d e");
    EXPECT_EQ(pages[0][1], "e@x");
}

TEST_F(PrintedLines, NeedAPrinter)
{
    EXPECT_EQ(number_of([] { LinePrinter job(default_printer()); }), error_number::printer_error);
    const auto nowhere = pdf_printer("/no/such/folder/out.pdf");
    LinePrinter job(nowhere());
    EXPECT_EQ(number_of([&] { job.print(); }), error_number::printer_error);
}

TEST_F(PrintedLines, OfAJobThatIsGivenUpAreNone)
{
    {
        LinePrinter job(pdf_printer(file)());
        for (int i = 0; i < 1'000; ++i) // some pages
            job.add_line("reader@example.org");
    }
    EXPECT_FALSE(QFile::exists(file));
}

TEST_F(PrintedLines, AreToldAsTheyArePrinted)
{
    LinePrinter job(pdf_printer(file)());
    for (const char *line : {"a@x", "", "c@x"})
        job.add_line(line);
    QStringList told;
    job.print([&told](qint64 done, qint64 total) {
        told.append(QString("%1 of %2").arg(done).arg(total));
    });
    EXPECT_EQ(told, (QStringList{"1 of 3", "2 of 3", "3 of 3"}));
}
} // namespace
