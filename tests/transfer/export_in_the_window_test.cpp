#include "tests/support/program_window.h"
#include "tests/transfer/pdf_text.h"

#include <QApplication>
#include <QDir>
#include <QFileDialog>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace
{
using testing::ExitedWithCode;
using testing::HasSubstr;

class TransferEntry : public ProgramWindow
{
protected:
    /// Chooses the entry. @return what the status bar says when the last of its boxes comes.
    QString progress_at_the_last_box(const QString &entry, int box_count)
    {
        QString progress = "no box";
        std::function<void()> at_the_box = [&] {
            if (--box_count > 0)
                boxes.before_next_answer(at_the_box);
            else
                progress = text("progress_text");
        };
        boxes.before_next_answer(at_the_box);
        choose(entry);
        return progress;
    }
};

class ExportCommand : public TransferEntry
{
protected:
    const QString file = home.file("list.csv");

    void expect_export_to(const QString &path)
    {
        boxes.expect_notice(
            "If you want to export to a CSV file then give the file name a *.csv extension. "
            "Alternatively, if you want to export to a text file, give the file name a *.txt "
            "extension");
        boxes.expect_save_file(path, "All Files (*.*)");
    }
};

TEST_F(ExportCommand, WritesTheListAndShowsIt)
{
    window();
    add_master({"a@x.org", "b@x.org"});
    expect_export_to(file);
    boxes.expect_notice("Finished!");
    EXPECT_EQ(progress_at_the_last_box("Export", 3), "");
    EXPECT_EQ(content(file), "a@x.org\r\nb@x.org\r\n");
    EXPECT_EQ(grid("MSFlexGrid5"), (QStringList{"a@x.org|", "b@x.org|"}));
    EXPECT_EQ(window().master_list().record_source().text(), "select * from master");
    EXPECT_EQ(text("progress_text"), "");
}

TEST_F(ExportCommand, LooksInTheDataFolderFirst)
{
    expect_export_to({});
    boxes.expect_notice("Finished!");
    QString folder;
    boxes.before_next_answer([&] {
        boxes.before_next_answer([&] {
            folder =
                qobject_cast<QFileDialog *>(QApplication::activeModalWidget())->directory().path();
        });
    });
    choose("Export");
    EXPECT_EQ(folder, home.file("data/Ostrix"));
}

TEST_F(ExportCommand, CancelledEndsTheProgramAtTheFirstRow)
{
    add_master({"a@x.org"});
    const auto cancel = [this] {
        expect_export_to({});
        boxes.expect_any_notice();
        choose("Export");
    };
    EXPECT_EXIT(cancel(), ExitedWithCode(1), HasSubstr("Run-time error '52':"));
}

TEST_F(ExportCommand, CancelledWithAnEmptyListIsFinished)
{
    expect_export_to({});
    boxes.expect_notice("Finished!");
    choose("Export");
}

TEST_F(ExportCommand, ToAMissingFolderEndsTheProgram)
{
    const auto fail = [this] {
        expect_export_to(home.file("none/list.csv"));
        boxes.expect_any_notice();
        choose("Export");
    };
    EXPECT_EXIT(fail(), ExitedWithCode(1), HasSubstr("Run-time error '76':"));
}

TEST_F(ExportCommand, SaveGridWritesWhatTheGridShows)
{
    add_master({"b@x.org", "a@x.org"});
    click("Command20");
    boxes.expect_ok_cancel(
        "This will sort data in ascending order. Click CANCEL to sort in descending order?", true);
    click("Command33");
    boxes.expect_save_file(home.file("grid.csv"), "Comma Seperated Values files (*.CSV)");
    choose("SaveGrid");
    EXPECT_EQ(content(home.file("grid.csv")), "email,name\r\na@x.org,\r\nb@x.org,\r\n");
}

class PrintCommand : public TransferEntry
{
protected:
    void add_rows_to_print() const
    {
        run_sql("insert into email(email, subject) values ('b@x.org', 'one'), ('a@x.org', 'two')");
    }
};

TEST_F(PrintCommand, PrintsTheAddressesOfTheMessageTable)
{
    const QString file = home.file("out.pdf");
    printer = pdf_printer(file);
    add_master({"not@printed.org"});
    add_rows_to_print();
    boxes.expect_notice("Finished!");
    EXPECT_EQ(progress_at_the_last_box("PrintAddresses", 1), "");
    EXPECT_EQ(pdf_pages(file), (QList<QStringList>{{"b@x.org", "a@x.org"}}));
    EXPECT_EQ(window().master_list().record_source().text(), "select * from email");
    EXPECT_EQ(grid("MSFlexGrid5").size(), 2);
}

TEST_F(PrintCommand, OfAnEmptyTableNeedsNoPrinter)
{
    boxes.expect_notice("Finished!");
    choose("PrintAddresses");
}

TEST_F(PrintCommand, WithoutADefaultPrinterEndsTheProgram)
{
    add_rows_to_print();
    const auto print = [this] {
        boxes.expect_any_notice();
        choose("PrintAddresses");
    };
    EXPECT_EXIT(print(), ExitedWithCode(1),
                HasSubstr("Run-time error '482':\n\nPrinter error: there is no default printer"));
}
} // namespace
