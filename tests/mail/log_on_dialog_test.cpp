#include "mail/local_inbox.h"
#include "mail/log_on_dialog.h"
#include "platform/drive_path.h"
#include "tests/mail/dialog_hand.h"
#include "tests/mail/mail_texts.h"
#include "tests/support/private_home.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QRadioButton>
#include <gtest/gtest.h>

namespace
{
/// Without profiles: the inbox is what can be answered.
std::optional<QString> choose_inbox(LogOnDialog &log_on, const QString &reason = "x")
{
    const auto answer = log_on.choose_account({reason, {}, true});
    return answer ? std::optional(answer->inbox_path) : std::nullopt;
}

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
    EXPECT_EQ(choose_inbox(log_on, "Because <b>so</b>."), home.file("mbox"));
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
    EXPECT_EQ(choose_inbox(log_on), std::nullopt);
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
    const auto chosen = choose_inbox(log_on);
    ASSERT_TRUE(chosen && hand.has_acted());
    EXPECT_NO_THROW(open_inbox(*chosen)->fetch());
    EXPECT_THROW(open_inbox("D:\\mail\\mbox"), RuntimeError);
}

TEST(LogOnDialogWindow, EscapeAnswersNothing)
{
    QtLogOnDialog log_on([] { return true; });
    DialogHand hand([](QDialog &dialog) { QTest::keyClick(&dialog, Qt::Key_Escape); });
    EXPECT_EQ(choose_inbox(log_on), std::nullopt);
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
    EXPECT_EQ(choose_inbox(log_on), std::nullopt);
}

TEST(LogOnDialogWindow, OffersTheProfiles)
{
    QtLogOnDialog log_on([] { return true; });
    DialogHand hand([](QDialog &dialog) {
        EXPECT_TRUE(button(dialog, QDialogButtonBox::Ok).isEnabled());
        EXPECT_FALSE(dialog.findChild<QPushButton *>("edit_profiles")->isVisible());
        QTest::keyClick(dialog.focusWidget(), Qt::Key_Down);
        QTest::mouseClick(&button(dialog, QDialogButtonBox::Ok), Qt::LeftButton);
    });
    const auto answer = log_on.choose_account({"x", {"Work", "<b>Club"}, true});
    ASSERT_TRUE(answer && hand.has_acted());
    EXPECT_EQ(answer->profile, "<b>Club");
    EXPECT_EQ(answer->inbox_path, "");
}

TEST(LogOnDialogWindow, ATypedPathIsMeantInsteadOfAProfile)
{
    const PrivateHome home;
    put_file(home.file("mbox"), "");
    QtLogOnDialog log_on([] { return true; });
    DialogHand hand([&](QDialog &dialog) {
        QTest::keyClicks(dialog.findChild<QLineEdit *>("path"), home.file("mbox"));
        QTest::mouseClick(&button(dialog, QDialogButtonBox::Ok), Qt::LeftButton);
    });
    const auto answer = log_on.choose_account({"x", {"Work"}, true});
    ASSERT_TRUE(answer && hand.has_acted());
    EXPECT_EQ(answer->profile, "");
    EXPECT_EQ(answer->inbox_path, home.file("mbox"));
}

TEST(LogOnDialogWindow, TakesAProfileAloneToSend)
{
    QtLogOnDialog log_on([] { return true; });
    DialogHand hand([](QDialog &dialog) {
        EXPECT_FALSE(dialog.findChild<QLineEdit *>("path")->isVisible());
        EXPECT_FALSE(dialog.findChild<QRadioButton *>("use_inbox")->isVisible());
        EXPECT_FALSE(button(dialog, QDialogButtonBox::Ok).isEnabled());
        dialog.reject();
    });
    EXPECT_EQ(log_on.choose_account({"x", {}, false}), std::nullopt);
    EXPECT_TRUE(hand.has_acted());
}

TEST(LogOnDialogWindow, AProfileCanBeMadeThereAndThen)
{
    QtLogOnDialog log_on([] { return true; });
    log_on.set_profile_editor([] { return QStringList{"New"}; });
    DialogHand hand([](QDialog &dialog) {
        auto *use_profile = dialog.findChild<QRadioButton *>("use_profile");
        EXPECT_FALSE(use_profile->isEnabled());
        QTest::mouseClick(dialog.findChild<QPushButton *>("edit_profiles"), Qt::LeftButton);
        EXPECT_TRUE(use_profile->isEnabled());
        use_profile->click();
        QTest::mouseClick(&button(dialog, QDialogButtonBox::Ok), Qt::LeftButton);
    });
    const auto answer = log_on.choose_account({"x", {}, true});
    ASSERT_TRUE(answer && hand.has_acted());
    EXPECT_EQ(answer->profile, "New");
}

TEST(PasswordDialogWindow, SaysWhyAndGivesThePassword)
{
    QtLogOnDialog log_on([] { return true; });
    DialogHand hand([](QDialog &dialog) {
        EXPECT_EQ(dialog.objectName(), "PasswordDialog");
        EXPECT_EQ(dialog.findChild<QLabel *>("reason")->text(), "Because <i>so</i>.");
        EXPECT_EQ(dialog.findChild<QLabel *>("reason")->textFormat(), Qt::PlainText);
        EXPECT_EQ(dialog.findChild<QLabel *>("password_label")->text(),
                  "Password of ann on example.org:");
        auto *password = dialog.findChild<QLineEdit *>("password");
        EXPECT_EQ(password->echoMode(), QLineEdit::Password);
        EXPECT_FALSE(button(dialog, QDialogButtonBox::Ok).isEnabled());
        QTest::keyClicks(password, " s3cret ");
        QTest::mouseClick(dialog.findChild<QCheckBox *>("remember"), Qt::LeftButton, {},
                          QPoint(8, 8));
        EXPECT_FALSE(dialog.findChild<QLabel *>("not_remembered")->isVisible());
        QTest::keyClick(password, Qt::Key_Return);
    });
    const auto answer = log_on.ask_password({"Because <i>so</i>.", "ann on example.org", true});
    ASSERT_TRUE(answer && hand.has_acted());
    EXPECT_EQ(answer->password, " s3cret ");
    EXPECT_TRUE(answer->remember);
}

TEST(PasswordDialogWindow, OffersNoKeychainThatDoesNotAnswer)
{
    QtLogOnDialog log_on([] { return true; });
    DialogHand hand([](QDialog &dialog) {
        EXPECT_FALSE(dialog.findChild<QCheckBox *>("remember")->isVisible());
        EXPECT_TRUE(dialog.findChild<QLabel *>("not_remembered")->isVisible());
        QTest::mouseClick(&button(dialog, QDialogButtonBox::Cancel), Qt::LeftButton);
    });
    EXPECT_EQ(log_on.ask_password({"x", "y", false}), std::nullopt);
    EXPECT_TRUE(hand.has_acted());
}

TEST(PasswordDialogWindow, IsNotShownInAnUnattendedRun)
{
    QtLogOnDialog log_on([] { return false; });
    EXPECT_EQ(log_on.ask_password({"x", "y", true}), std::nullopt);
    EXPECT_EQ(QApplication::activeModalWidget(), nullptr);
}

TEST(LogOnDialogWindow, IsNotShownInAnUnattendedRun)
{
    QtLogOnDialog log_on([] { return false; });
    EXPECT_EQ(choose_inbox(log_on), std::nullopt);
    EXPECT_EQ(QApplication::activeModalWidget(), nullptr);
}
} // namespace
