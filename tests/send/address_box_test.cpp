// The controls around the address box.
#include "platform/text_box.h"
#include "tests/support/program_window.h"

#include <QApplication>
#include <QCheckBox>
#include <QDialog>
#include <QElapsedTimer>
#include <QListWidget>
#include <QPushButton>
#include <QSet>
#include <QTabWidget>
#include <QTest>
#include <QTimer>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace
{
const QString text_files = "Text files (*.TXT)";

class AddressBox : public ProgramWindow
{
protected:
    QListWidget &list() { return control<QListWidget>("List1"); }

    QStringList entries()
    {
        QStringList texts;
        for (int i = 0; i < list().count(); ++i)
            texts.append(list().item(i)->text());
        return texts;
    }

    void click_entry(int row)
    {
        control<QTabWidget>("SSTab1").setCurrentIndex(1);
        QTest::mouseClick(list().viewport(), Qt::LeftButton, {}, place_of(row));
    }

    QPoint place_of(int row) { return list().visualItemRect(list().item(row)).center(); }

    QString file(const QByteArray &content)
    {
        const QString path = home.file("addresses.txt");
        write_file(path, content);
        return path;
    }
};

TEST_F(AddressBox, AClickOnTheListReplacesTheBox)
{
    list().addItems({"a@x.org", "b@x.org"});
    set_text("Text12", "old");
    click_entry(1);
    EXPECT_EQ(text("Text12"), "b@x.org");
    click_entry(0);
    EXPECT_EQ(text("Text12"), "a@x.org");
}

TEST_F(AddressBox, WithMultipleRecipientsAClickAppends)
{
    list().addItems({"a@x.org", "b@x.org"});
    click("Check14");
    click_entry(1);
    click_entry(0);
    click_entry(0);
    EXPECT_EQ(text("Text12"), "b@x.org; a@x.org; a@x.org; ");
}

TEST_F(AddressBox, EnterOnTheListIsAClick)
{
    list().addItems({"a@x.org", "b@x.org"});
    click_entry(0);
    list().setFocus();
    QTest::keyClick(&list(), Qt::Key_Down);
    EXPECT_EQ(text("Text12"), "a@x.org");
    QTest::keyClick(&list(), Qt::Key_Return);
    EXPECT_EQ(text("Text12"), "b@x.org");
}

TEST_F(AddressBox, MultipleRecipientsEmptiesTheBoxEitherWay)
{
    for (int i = 0; i < 2; ++i) {
        set_text("Text12", "a@x.org");
        click("Check14");
        EXPECT_EQ(text("Text12"), "");
    }
}

TEST_F(AddressBox, RefreshClearsTheMessageAndAsksForTheList)
{
    for (const bool ok : {false, true}) {
        list().clear();
        list().addItems({"a@x.org"});
        for (const char *name : {"Text12", "Text13", "Text14", "Text15"})
            set_text(name, "something");
        boxes.expect_ok_cancel("Is it OK to clear the list too?", ok);
        click("Command14");
        for (const char *name : {"Text12", "Text13", "Text14", "Text15"})
            EXPECT_EQ(text(name), "") << name;
        EXPECT_EQ(list().count(), ok ? 0 : 1);
    }
}

TEST_F(AddressBox, TheFieldsAreEmptyBeforeTheQuestion)
{
    set_text("Text12", "a@x.org");
    set_text("Text15", "file");
    boxes.expect_ok_cancel("Is it OK to clear the list too?", false);
    boxes.before_next_answer([this] { EXPECT_EQ(text("Text12") + text("Text15"), ""); });
    click("Command14");
}

TEST_F(AddressBox, AttachmentPutsTheChosenPathIntoItsField)
{
    set_text("Text15", "old");
    boxes.expect_open_file(file("x"));
    click("cmdAttachment");
    EXPECT_EQ(text("Text15"), home.file("addresses.txt"));
    boxes.expect_open_file({});
    click("cmdAttachment");
    EXPECT_EQ(text("Text15"), home.file("addresses.txt")); // cancelled: as it was
}

TEST_F(AddressBox, ADoubleClickShowsTheWholeList)
{
    set_text("Text12", "a@x.org; b@x.org");
    double_click("Text12");
    auto *addresses = window().findChild<QDialog *>("frmeMailAddresses");
    ASSERT_NE(addresses, nullptr);
    EXPECT_TRUE(addresses->isVisible());
    EXPECT_FALSE(addresses->isModal());
    EXPECT_EQ(addresses->windowTitle(), "Addresses");
    EXPECT_EQ(addresses->findChild<TextBox *>()->text(), "a@x.org; b@x.org");
    set_text("Text12", "c@x.org");
    double_click("Text12"); // once more: one window, with the box as it is now
    QApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    const auto windows = window().findChildren<QDialog *>("frmeMailAddresses");
    ASSERT_EQ(windows.size(), 1);
    EXPECT_EQ(windows.constFirst()->findChild<TextBox *>()->text(), "c@x.org");
    QTest::keyClick(windows.constFirst(), Qt::Key_Escape);
    QApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_EQ(window().findChild<QDialog *>("frmeMailAddresses"), nullptr);
}

TEST_F(AddressBox, TheWholeListIsJoinedWithNothingAfterTheLast)
{
    set_text("Text12", "old");
    list().addItems({"a@x.org", "b@x.org", "c@x.org"});
    click("Command46");
    EXPECT_EQ(text("Text12"), "a@x.org;b@x.org;c@x.org");
    list().clear();
    click("Command46");
    EXPECT_EQ(text("Text12"), "");
}

TEST_F(AddressBox, GetFileKeepsThePiecesWithAnAtSign)
{
    set_text("Text12", "z@x.org; ");
    boxes.expect_open_file(file("a@x.org; word; b@x.org\r\nmore\r\n"), text_files);
    click("Command34");
    EXPECT_EQ(text("Text12"), "z@x.org;  a@x.org;  b@x.org\r\nmore\r\n");
    boxes.expect_open_file({}, text_files);
    click("Command34");
    EXPECT_EQ(text("Text12"), "z@x.org;  a@x.org;  b@x.org\r\nmore\r\n");
}

TEST_F(AddressBox, AFileOfLinesWithoutSemicolonsIsOnePiece)
{
    boxes.expect_open_file(file("a@x.org\nword\n"), text_files);
    click("Command34");
    EXPECT_EQ(text("Text12"), "a@x.org\r\nword\r\n");
}

TEST_F(AddressBox, ADoubleClickOnTheListLoadsAFile)
{
    list().addItems({"a@x.org"});
    click_entry(0);
    boxes.expect_open_file(file("b@x.org;c@x.org"), text_files);
    QTest::mouseDClick(list().viewport(), Qt::LeftButton, {}, place_of(0));
    EXPECT_EQ(text("Text12"), "a@x.orgb@x.org; c@x.org\r\n");
}

TEST_F(AddressBox, ADoubleClickOnAnEmptyListLoadsAFileToo)
{
    boxes.expect_open_file(file("b@x.org"), text_files);
    double_click("List1");
    EXPECT_EQ(text("Text12"), "b@x.org\r\n");
}

TEST_F(AddressBox, TheListIsWholeWhenAnotherCommandComesInBetween)
{
    run_sql("with recursive n(i) as (select 1 union all select i + 1 from n where i < 60000) "
            "insert into master(email) select 'p' || i || '@x.org' from n");
    QTimer::singleShot(0, &window(), [this] { click("Command20"); }); // the master list's "Refresh"
    click("Command26");
    EXPECT_EQ(list().count(), 60000);
    const QStringList all = entries();
    EXPECT_EQ(QSet<QString>(all.begin(), all.end()).size(), 60000);
}

TEST_F(AddressBox, TheGroupTabsGetFileLoadsIntoItsOwnBox)
{
    boxes.expect_open_file(file("b@x.org;c@x.org;"), text_files);
    click("cmdGetFile");
    EXPECT_EQ(text("RichTextBox1"), "b@x.org; c@x.org");
    EXPECT_EQ(text("Text12"), "");
}

TEST_F(AddressBox, TheOtherGetFileAddsEachLineToTheList)
{
    list().addItem("a@x.org");
    boxes.expect_open_file(file("b@x.org\r\n\r\nno address\r\n"), text_files);
    click("Command47");
    EXPECT_EQ(entries(), (QStringList{"a@x.org", "b@x.org", "", "no address"}));
    boxes.expect_open_file({}, text_files);
    click("Command47");
    EXPECT_EQ(list().count(), 4);
}

TEST_F(AddressBox, AFileThatCannotBeReadEndsTheProgram)
{
    const auto load = [this] {
        boxes.expect_open_file("/proc/self/mem", text_files); // opens, and cannot be read
        boxes.expect_any_notice();
        click("Command47");
    };
    EXPECT_EXIT(load(), testing::ExitedWithCode(1), testing::HasSubstr("Run-time error"));
}

TEST_F(AddressBox, AHundredThousandAddressesAreJoinedAndScrolledQuickly)
{
    QStringList many;
    for (int i = 0; i < 100000; ++i)
        many.append(QStringLiteral("person.number%1@mail.example.org").arg(i));
    control<QTabWidget>("SSTab1").setCurrentIndex(1);
    QElapsedTimer timer;
    timer.start();
    list().addItems(many);
    list().scrollToBottom();
    click("Command46");
    QApplication::processEvents();
    EXPECT_EQ(text("Text12"), many.join(';'));
    EXPECT_LT(timer.elapsed(), 10000); // seconds even on a loaded machine: nothing grows squarely
}
} // namespace
