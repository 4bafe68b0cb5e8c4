// The manipulator's own table: imported into, shown, emptied, exported.
#include "tests/textedit/manipulator_window.h"

#include <QApplication>
#include <QClipboard>
#include <QFile>
#include <QTableView>
#include <QTest>

namespace
{
const QString patience =
    "Importing large lists can take some time and it may seem that the program has crashed when in "
    "fact it has not. Please allow processes to complete. As an estimate, consider that importing "
    "1,000 entries may take upto five minutes and therefore importing 10,000 entries may take upto "
    "fifty minutes.";
const QString choose_a_file =
    "You will now be asked to choose a file from which to import email addresses. This file must "
    "be in the correct format else an error will occur.";
const QString import_failed =
    "An error occurred. Most probably the file being imported was not in the correct format. "
    "Please ensure the file is in CSV format containing only email addresses. You can use the "
    "Ostrix text manipulator to make a CSV file of the correct format. To use the Ostrix text "
    "manipulator goto File>Make A Text File Into a CSV File For Import";

class ImportTable : public ManipulatorWindow
{
protected:
    void expect_import_of(const QString &file)
    {
        boxes.expect_notice(patience);
        boxes.expect_notice(choose_a_file);
        boxes.expect_open_file(file, "All files (*.*)");
    }
    void import(const QByteArray &text)
    {
        write_file("C:\\Ostrix\\list.txt", text);
        manipulator();
        expect_import_of("list.txt");
        pick("ImportToClean");
    }
    void expect_export_to(const QString &path)
    {
        boxes.expect_save_file(path, "All Files (*.txt)");
    }
    void add(const QStringList &emails)
    {
        for (const QString &email : emails)
            run_sql("insert into import(email) values (?)", {email});
    }
    bool import_window_is_open() { return window().findChild<QWidget *>("frmIMport") != nullptr; }
};

TEST_F(ImportTable, DeleteAllAsksFirst)
{
    add({"a@x", "b@x"});
    add_master({"m@x"});
    EXPECT_EQ(table().size(), 2);
    boxes.expect_ok_cancel(delete_all, false);
    press("Command6");
    EXPECT_EQ(table().size(), 2);
    EXPECT_EQ(rows("import").size(), 2);
    boxes.expect_ok_cancel(delete_all, true);
    press("Command6");
    EXPECT_EQ(table(), QStringList());
    EXPECT_EQ(rows("import"), QStringList());
    EXPECT_EQ(rows("master", "email"), QStringList{"m@x"});
}

TEST_F(ImportTable, DeleteAllWithoutTheTableEndsTheProgram)
{
    expect_end(
        [this] {
            manipulator();
            run_sql("drop table import");
            boxes.expect_ok_cancel(delete_all, true);
            boxes.expect_any_notice();
            press("Command6");
        },
        error_number::table_not_found);
}

TEST_F(ImportTable, TakesAFileFromTheLastItemOnWithoutTheLast)
{
    const PleaseWaitWatch please_wait;
    add_master({"m@x"});
    import("a@x\r\nb@x\r\nc@x\r\n");
    EXPECT_EQ(rows("import"), (QStringList{"b@x", "a@x"}));
    EXPECT_EQ(table(), (QStringList{"b@x", "a@x"}));
    EXPECT_EQ(rows("master", "email"), QStringList{"m@x"});
    EXPECT_EQ(please_wait.shown(), 1);
    EXPECT_FALSE(please_wait_is_open());
    EXPECT_FALSE(import_window_is_open());
    EXPECT_EQ(text("progress_text"), "");
}

/// How many rows a grid has whenever it is painted.
class Paintings : public QObject
{
public:
    explicit Paintings(QTableView &grid) : grid_(grid)
    {
        grid.viewport()->installEventFilter(this);
    }
    bool eventFilter(QObject *, QEvent *event) override
    {
        if (event->type() == QEvent::Paint)
            rows.append(grid_.model()->rowCount());
        return false;
    }
    QList<int> rows;

private:
    QTableView &grid_;
};

TEST_F(ImportTable, ShowsItsRowsWhileTheyCome)
{
    manipulator();
    table();
    const Paintings paintings(tool<QTableView>("MSFlexGrid1"));
    import("a@x,b@x,c@x,d@x,e@x");
    EXPECT_TRUE(paintings.rows.contains(1));
    EXPECT_EQ(table().size(), 4);
}

TEST_F(ImportTable, BreaksLinesAtBlanksAndKeepsTheirWords)
{
    import("Ann Smith a@x\nb@x\n");
    EXPECT_EQ(rows("import"), (QStringList{"a@x", "Smith", "Ann"}));
}

TEST_F(ImportTable, OfOneAddressTakesNothing)
{
    import("a@x");
    EXPECT_EQ(rows("import"), QStringList());
    EXPECT_FALSE(please_wait_is_open());
}

TEST_F(ImportTable, CancelledTakesNothing)
{
    manipulator();
    expect_import_of({});
    pick("ImportToClean");
    EXPECT_EQ(rows("import"), QStringList());
    EXPECT_FALSE(import_window_is_open());
}

TEST_F(ImportTable, OfAFileWithoutAddressesSaysSoAndLeavesItsWindows)
{
    write_file("C:\\Ostrix\\list.txt", "nobody\n");
    manipulator();
    expect_import_of("list.txt");
    boxes.expect_notice(import_failed);
    pick("ImportToClean");
    EXPECT_TRUE(import_window_is_open());
    EXPECT_TRUE(please_wait_is_open());
    EXPECT_TRUE(manipulator().isVisible());
}

TEST_F(ImportTable, PassesOverWhatTheTableRefusesOnceAValueIsSet)
{
    run_sql("create unique index once on import(email)");
    import("a@x,b@x,a@x,c@x\n");
    EXPECT_EQ(rows("import"), (QStringList{"a@x", "b@x"}));
    EXPECT_FALSE(please_wait_is_open());
}

TEST_F(ImportTable, WithoutADatabaseSaysTheFileIsWrong)
{
    ASSERT_TRUE(QFile::copy(native_database(), home.file("other.mdb")));
    settings.write("Database", home.file("other.mdb"));
    ASSERT_TRUE(QFile::remove(native_database()));
    boxes.expect_any_notice(NoticeIcon::Exclamation);
    write_file("C:\\Ostrix\\list.txt", "a@x,b@x\n");
    manipulator();
    expect_import_of("list.txt");
    boxes.expect_notice(import_failed);
    pick("ImportToClean");
}

TEST_F(ImportTable, IsExportedOneAddressALine)
{
    add({"b@x", u"ä@x"_qs, "b@x"});
    manipulator();
    expect_export_to(home.file("out.txt"));
    boxes.expect_notice("Finished!");
    pick("ExportClean");
    EXPECT_EQ(content(home.file("out.txt")), "b@x\r\n\xC3\xA4@x\r\nb@x\r\n");
    EXPECT_EQ(tool<DataConnection>("Data1").record_source().text(), "select * from import");
    EXPECT_EQ(table().size(), 3);
}

TEST_F(ImportTable, IsExportedAsItIsNow)
{
    manipulator();
    add({"a@x"});
    EXPECT_EQ(table(), QStringList());
    expect_export_to(home.file("out.txt"));
    boxes.expect_notice("Finished!");
    pick("ExportClean");
    EXPECT_EQ(content(home.file("out.txt")), "a@x\r\n");
    EXPECT_EQ(table(), QStringList{"a@x"});
}

TEST_F(ImportTable, EmptyIsExportedAsAnEmptyFile)
{
    manipulator();
    expect_export_to(home.file("out.txt"));
    boxes.expect_notice("Finished!");
    pick("ExportClean");
    EXPECT_EQ(content(home.file("out.txt")), "");
}

TEST_F(ImportTable, ExportCancelledFailsAtTheFirstRow)
{
    add({"a@x"});
    expect_end(
        [this] {
            manipulator();
            expect_export_to({});
            boxes.expect_any_notice();
            pick("ExportClean");
        },
        error_number::bad_file_name_or_number);
}

TEST_F(ImportTable, ExportCancelledWithoutRowsHasNothingToFailAt)
{
    manipulator();
    expect_export_to({});
    boxes.expect_notice("Finished!");
    pick("ExportClean");
}

TEST_F(ImportTable, IsFilledAgainAfterAnExport)
{
    add({"a@x"});
    manipulator();
    expect_export_to(home.file("out.txt"));
    boxes.expect_notice("Finished!");
    pick("ExportClean");
    import("b@x,c@x\n");
    EXPECT_EQ(rows("import"), (QStringList{"a@x", "b@x"}));
    EXPECT_EQ(table(), (QStringList{"a@x", "b@x"}));
}

/// From a messy text file, through the manipulator, into the master list.
class FromATextFileToTheList : public ImportTable
{
protected:
    void import_into_master(const QString &file)
    {
        window().activateWindow();
        expect_import_of(file);
        choose("Import");
    }

    const QByteArray messy = "Members of the garden club, spring\r\n"
                             "\r\n"
                             "ann@garden.example\n"
                             "Bob (has moved, no address)\n"
                             "bob@garden.example;carl@garden.example\r\n"
                             "  dora@garden.example\r"
                             "-- 4 members --";
};

TEST_F(FromATextFileToTheList, ByKeepingLinesAndSavingThem)
{
    write_file("C:\\Ostrix\\messy.txt", messy);
    enter("Text6", "@");
    remove_lines("messy.txt");
    boxes.expect_save_file(home.file("data/Ostrix/clean.csv"), "All files (*.csv)");
    pick("SaveFile");
    EXPECT_EQ(content("C:\\Ostrix\\clean.csv"), "ann@garden.example\r\n"
                                                "bob@garden.example;carl@garden.example\r\n"
                                                "  dora@garden.example\r\n");
    import_into_master("clean.csv");
    // The blanks before the last address make items of their own, and the last item is not stored.
    EXPECT_EQ(
        rows("master", "email"),
        (QStringList{"", "", "bob@garden.example;carl@garden.example", "ann@garden.example"}));
}

TEST_F(FromATextFileToTheList, ByReshapingItInTheViewBox)
{
    write_file("C:\\Ostrix\\messy.txt", messy);
    enter("Text6", "@");
    remove_lines("messy.txt");
    press("Command5");
    press("Command4");
    EXPECT_EQ(box_text("Text3"), "ann@garden.example\r\n"
                                 "bob@garden.example,carl@garden.example\r\n"
                                 ",,dora@garden.example\r\n");
    // What the view box holds reaches a file by way of the clipboard.
    auto &view_box = tool<QWidget>("Text3");
    QTest::keyClick(&view_box, Qt::Key_A, Qt::ControlModifier);
    QTest::keyClick(&view_box, Qt::Key_C, Qt::ControlModifier);
    write_file("C:\\Ostrix\\clean.csv", QApplication::clipboard()->text().toUtf8() + "end@\n");
    import_into_master("clean.csv");
    EXPECT_EQ(rows("master", "email"), (QStringList{"dora@garden.example", "carl@garden.example",
                                                    "bob@garden.example", "ann@garden.example"}));
}

TEST_F(FromATextFileToTheList, ByWayOfTheImportTable)
{
    import(messy); // by items: "4", "members" and "--" hold no sign, the line's others neither
    EXPECT_EQ(table(), (QStringList{"", "", "bob@garden.example;carl@garden.example",
                                    "ann@garden.example"}));
    expect_export_to(home.file("data/Ostrix/exported.txt"));
    boxes.expect_notice("Finished!");
    pick("ExportClean");
    enter("Text6", "@");
    remove_lines("exported.txt");
    EXPECT_EQ(box_text("Text3"),
              "bob@garden.example;carl@garden.example\r\nann@garden.example\r\n");
    boxes.expect_save_file(home.file("data/Ostrix/clean.txt"), "All files (*.txt)");
    pick("SaveFiletxt");
    boxes.expect_ok_cancel(delete_all, true);
    press("Command6");
    EXPECT_EQ(table(), QStringList());
    import_into_master("clean.txt");
    EXPECT_EQ(rows("master", "email"), QStringList{"bob@garden.example;carl@garden.example"});
    EXPECT_EQ(rows("import"), QStringList());
}
} // namespace
