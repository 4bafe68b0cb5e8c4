// A message from the tab "Send Mail" to a mail program: the real store in the real window.
#include "mail/profile_mail_store.h"
#include "mail/send_dialog.h"
#include "tests/mail/mail_texts.h"
#include "tests/support/program_window.h"

#include <QDialogButtonBox>
#include <QFile>
#include <QLabel>
#include <QListView>
#include <QPushButton>
#include <QTest>

namespace
{
class MessageInTheWindow : public ProgramWindow
{
protected:
    MessageInTheWindow() { qputenv("PATH", OSTRIX_SAMPLE "/bin:/usr/bin:/bin"); }
    ~MessageInTheWindow() override { send_dialog.set_parent(nullptr); }

    MailStore &mail_store() override { return store; }

    void write_message(const QString &addresses)
    {
        set_text("Text12", addresses);
        set_text("Text13", "Spring");
        set_text("Text14", "Dear all\r\n.\r\nBye");
    }
    QByteArray sent(const QString &name) const { return content(home.file("Outbox/" + name)); }
    // Answers the send dialog once it has been looked at.
    void expect_send_dialog(QDialogButtonBox::StandardButton answer)
    {
        boxes.expect_dialog("Send this message?", [answer](QDialog &dialog) {
            EXPECT_EQ(dialog.findChild<QLabel *>("to")->text(), "ann@example.org");
            EXPECT_EQ(dialog.findChild<QListView *>("blind_copies")->model()->rowCount(), 1);
            EXPECT_EQ(QGuiApplication::overrideCursor()->shape(), Qt::ArrowCursor);
            QTest::mouseClick(dialog.findChild<QDialogButtonBox *>()->button(answer),
                              Qt::LeftButton);
        });
    }

    QtSendDialog send_dialog{[this] { return window().is_attended(); }};
    ProfileMailStore store{accounts, inbox_opener({}), &send_dialog};
};

TEST_F(MessageInTheWindow, ReachesTheOutboxOfTheSample)
{
    write_file(home.file("list.csv"), "a,b\r\n");
    write_message("ann@example.org; bob@example.org; ");
    set_text("Text15", home.file("list.csv"));
    click("Command13");
    EXPECT_EQ(sent("1.recipients.txt"), "ann@example.org\nbob@example.org\n");
    const QByteArray message = sent("1.eml");
    EXPECT_TRUE(message.contains("\nTo: ann@example.org\n")) << message.constData();
    EXPECT_FALSE(message.contains("bob@example.org"));
    EXPECT_TRUE(message.contains("\n\nDear all\n.\nBye\n")) << message.constData();
    EXPECT_TRUE(message.contains("filename=list.csv"));
    EXPECT_EQ(boxes.shown(), QStringList()); // nothing asked, nothing told
}

TEST_F(MessageInTheWindow, IsShownFirstWhenTheMailClientIsAskedFor)
{
    write_message("ann@example.org; bob@example.org");
    click("Check9");
    expect_send_dialog(QDialogButtonBox::Ok);
    click("Command13");
    EXPECT_EQ(sent("1.recipients.txt"), "ann@example.org\nbob@example.org\n");
}

TEST_F(MessageInTheWindow, OfAListFileWithATrailingLineBreakIsSent)
{
    write_message(" ann@example.org; bob@example.org\r\n");
    click("Command13");
    EXPECT_EQ(sent("1.recipients.txt"), "ann@example.org\nbob@example.org\n");
}

using MessageInTheWindowDeath = MessageInTheWindow;

TEST_F(MessageInTheWindowDeath, EndsTheProgramWhenItIsCancelled)
{
    const QString report =
        "Run-time error '32001':\n\nThe message was cancelled by the user. Nothing was sent.";
    EXPECT_EXIT(
        {
            write_message("ann@example.org; bob@example.org");
            click("Check9");
            expect_send_dialog(QDialogButtonBox::Cancel);
            boxes.expect_run_time_error(report);
            click("Command13");
        },
        testing::ExitedWithCode(1), "cancelled by the user");
    EXPECT_EQ(sent("1.eml"), "(none)");
}

TEST_F(MessageInTheWindowDeath, EndsTheProgramForARecipientThatIsNone)
{
    const QString report =
        "Run-time error '32000':\n\nThe recipient \"nobody\" cannot be used: it is not "
        "an e-mail address. Nothing was sent.";
    EXPECT_EXIT(
        {
            write_message("ann@example.org; nobody");
            boxes.expect_run_time_error(report);
            click("Command13");
        },
        testing::ExitedWithCode(1), "nobody");
    EXPECT_EQ(sent("1.eml"), "(none)");
}

TEST_F(MessageInTheWindowDeath, EndsTheProgramForAnAttachmentThatIsNotThere)
{
    EXPECT_EXIT(
        {
            write_message("ann@example.org");
            set_text("Text15", "C:\\Ostrix\\none.txt");
            boxes.expect_run_time_error(
                "Run-time error '32000':\n\nThe attachment \"C:\\Ostrix\\none.txt\" "
                "is not there. Nothing was sent.");
            click("Command13");
        },
        testing::ExitedWithCode(1), "is not there");
    EXPECT_EQ(sent("1.eml"), "(none)");
}
} // namespace
