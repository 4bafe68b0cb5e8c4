#include "mail/local_inbox.h"
#include "mail/log_on_dialog.h"
#include "platform/drive_path.h"
#include "tests/mail/dialog_hand.h"
#include "tests/mail/mail_texts.h"
#include "tests/support/private_home.h"

#include <QLabel>
#include <QLineEdit>
#include <gtest/gtest.h>

namespace
{
TEST(LogOnDialogWindow, SaysWhyAndGivesTheChosenInbox)
{
    const PrivateHome home;
    put_file(home.file("mbox"), "");
    QtLogOnDialog log_on([] { return true; });
    DialogHand hand([&](QDialog &dialog) {
        EXPECT_EQ(dialog.objectName(), "LogOnDialog");
        EXPECT_EQ(dialog.findChild<QLabel *>("reason")->text(), "Because <b>so</b>.");
        EXPECT_EQ(dialog.findChild<QLabel *>("reason")->textFormat(), Qt::PlainText);
        QTest::keyClicks(dialog.findChild<QLineEdit *>("path"), home.file("mbox"));
        QTest::mouseClick(&button(dialog, QDialogButtonBox::Ok), Qt::LeftButton);
    });
    EXPECT_EQ(log_on.choose_inbox("Because <b>so</b>."), home.file("mbox"));
    EXPECT_TRUE(hand.has_acted());
}

TEST(LogOnDialogWindow, TakesNoPathWithoutAnInbox)
{
    const PrivateHome home;
    QtLogOnDialog log_on([] { return true; });
    DialogHand hand([&](QDialog &dialog) {
        EXPECT_FALSE(button(dialog, QDialogButtonBox::Ok).isEnabled());
        auto *path = dialog.findChild<QLineEdit *>("path");
        path->setText(home.file("none"));
        EXPECT_FALSE(button(dialog, QDialogButtonBox::Ok).isEnabled());
        EXPECT_EQ(dialog.findChild<QLabel *>("verdict")->text(), "There is no inbox at this path.");
        QTest::keyClick(path, Qt::Key_Return);
        EXPECT_TRUE(dialog.isVisible());
        QTest::mouseClick(&button(dialog, QDialogButtonBox::Cancel), Qt::LeftButton);
    });
    EXPECT_EQ(log_on.choose_inbox("x"), std::nullopt);
    EXPECT_TRUE(hand.has_acted());
}

TEST(LogOnDialogWindow, UnderstandsAPathInDriveNotation)
{
    const PrivateHome home;
    put_file(data_folder() + "/Mail/mbox", "");
    QtLogOnDialog log_on([] { return true; });
    DialogHand hand([&](QDialog &dialog) {
        auto *path = dialog.findChild<QLineEdit *>("path");
        path->setText("D:\\mail\\mbox");
        EXPECT_FALSE(button(dialog, QDialogButtonBox::Ok).isEnabled());
        path->setText("c:\\mail\\MBOX");
        QTest::mouseClick(&button(dialog, QDialogButtonBox::Ok), Qt::LeftButton);
    });
    const auto chosen = log_on.choose_inbox("x");
    ASSERT_TRUE(chosen && hand.has_acted());
    EXPECT_NO_THROW(open_inbox(*chosen)->fetch());
    EXPECT_THROW(open_inbox("D:\\mail\\mbox"), RuntimeError);
}

TEST(LogOnDialogWindow, EscapeAnswersNothing)
{
    QtLogOnDialog log_on([] { return true; });
    DialogHand hand([](QDialog &dialog) { QTest::keyClick(&dialog, Qt::Key_Escape); });
    EXPECT_EQ(log_on.choose_inbox("x"), std::nullopt);
}

TEST(LogOnDialogWindow, TheTabKeyGoesFromThePathThroughTheButtons)
{
    QtLogOnDialog log_on([] { return true; });
    DialogHand hand([](QDialog &dialog) {
        const auto next = [](const QWidget *widget) { return widget->nextInFocusChain(); };
        const QWidget *path = dialog.findChild<QLineEdit *>("path");
        EXPECT_EQ(next(path)->objectName(), "browse_folder");
        EXPECT_EQ(next(next(path))->objectName(), "browse_file");
        dialog.reject();
    });
    EXPECT_EQ(log_on.choose_inbox("x"), std::nullopt);
}

TEST(LogOnDialogWindow, IsNotShownInAnUnattendedRun)
{
    QtLogOnDialog log_on([] { return false; });
    EXPECT_EQ(log_on.choose_inbox("x"), std::nullopt);
    EXPECT_EQ(QApplication::activeModalWidget(), nullptr);
}
} // namespace
