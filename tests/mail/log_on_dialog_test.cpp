#include "mail/local_inbox.h"
#include "mail/log_on_dialog.h"
#include "platform/drive_path.h"
#include "tests/mail/mail_texts.h"
#include "tests/support/private_home.h"

#include <QApplication>
#include <QDialog>
#include <QDialogButtonBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>
#include <QTimer>
#include <gtest/gtest.h>

namespace
{
// Does something to the open dialog, once it is there, and closes it if that did not.
class DialogHand : public QObject
{
public:
    explicit DialogHand(std::function<void(QDialog &)> action) : action_(std::move(action))
    {
        QTimer::singleShot(0, this, [this] { act(); });
    }
    bool has_acted() const { return has_acted_; }

private:
    void act()
    {
        auto *dialog = qobject_cast<QDialog *>(QApplication::activeModalWidget());
        ASSERT_NE(dialog, nullptr);
        has_acted_ = true;
        action_(*dialog);
        if (dialog->isVisible()) {
            ADD_FAILURE() << "the dialog stayed open";
            dialog->reject();
        }
    }

    std::function<void(QDialog &)> action_;
    bool has_acted_ = false;
};

QPushButton &button(QDialog &dialog, QDialogButtonBox::StandardButton which)
{
    return *dialog.findChild<QDialogButtonBox *>()->button(which);
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
