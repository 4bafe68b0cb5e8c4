// "Send Mail": which operations of the mail store a message takes, in which order.
#include "tests/support/program_window.h"

#include <QApplication>
#include <QCheckBox>
#include <QGuiApplication>
#include <QListWidget>
#include <QPushButton>
#include <QTest>
#include <QTimer>
#include <QWindow>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace
{
class Sending : public ProgramWindow
{
protected:
    static QStringList recipient(int index, const QString &address)
    {
        return {QStringLiteral("set_RecipIndex(%1)").arg(index),
                QStringLiteral("set_RecipType(%1)").arg(index == 0 ? 1 : 3),
                QStringLiteral("set_RecipAddress(%1)").arg(address), "ResolveName"};
    }

    QStringList recipients_sent()
    {
        QStringList addresses;
        for (const QString &call : std::as_const(mail.calls)) {
            if (call.startsWith("set_RecipAddress("))
                addresses.append(call.mid(17).chopped(1));
        }
        return addresses;
    }
};

TEST_F(Sending, TheOrderOfAMessageWithEverything)
{
    settings.write("Profile", "office");
    set_text("Text12", "a@x.org; b@x.org; ");
    set_text("Text13", "Hello");
    set_text("Text14", "First line\r\nsecond");
    set_text("Text15", "/tmp/list.pdf");
    click("Check9");
    click("Command13");
    EXPECT_EQ(mail.calls,
              QStringList({"set_UserName(office)", "set_DownLoadMail(false)", "SignOn", "SessionID",
                           "set_MsgIndex(-1)", "SessionID", "set_SessionID(7)"}) +
                  recipient(0, "a@x.org") + recipient(1, " b@x.org") +
                  QStringList({"set_MsgSubject(Hello)", "set_MsgNoteText(First line\r\nsecond)",
                               "set_AttachmentPathName(/tmp/list.pdf)", "Send(true)", "SignOff",
                               "Copy"}));
    EXPECT_EQ(boxes.shown(), QStringList());
    EXPECT_EQ(text("progress_text"), "The message has been handed over for 2 recipients");
    EXPECT_EQ(QGuiApplication::overrideCursor(), nullptr);
}

TEST_F(Sending, WithoutProfileAttachmentAndDialogThoseAreNotSet)
{
    set_text("Text12", "a@x.org");
    click("Command13");
    EXPECT_EQ(mail.calls, QStringList({"set_DownLoadMail(false)", "SignOn", "SessionID",
                                       "set_MsgIndex(-1)", "SessionID", "set_SessionID(7)"}) +
                              recipient(0, "a@x.org") +
                              QStringList({"set_MsgSubject()", "set_MsgNoteText()", "Send(false)",
                                           "SignOff", "Copy"}));
}

TEST_F(Sending, AnEmptyBoxIsRefused)
{
    boxes.expect_notice(" You must have at least one valid address in the Address Box");
    click("Command13");
    EXPECT_EQ(mail.calls, QStringList());
}

TEST_F(Sending, ABoxOfBlanksOpensNoSession)
{
    set_text("Text12", "   ");
    click("Command13");
    EXPECT_EQ(mail.calls, QStringList{"Copy"});
    EXPECT_EQ(boxes.shown(), QStringList());
}

TEST_F(Sending, EmptyPiecesAndBlanksAreRecipientsAsTheyStand)
{
    set_text("Text12", " a@x.org;;  b@x.org ;c ");
    click("Command13");
    EXPECT_EQ(recipients_sent(), (QStringList{"a@x.org", "", "  b@x.org ", "c"}));
}

TEST_F(Sending, TheHourglassStandsWhileItSends)
{
    Qt::CursorShape shape = Qt::ArrowCursor;
    bool is_enabled = true;
    mail.on_call["Send"] = [&] {
        shape = QGuiApplication::overrideCursor()->shape();
        is_enabled = control<QPushButton>("Command13").isEnabled();
    };
    set_text("Text12", "a@x.org");
    click("Command13");
    EXPECT_EQ(shape, Qt::WaitCursor);
    EXPECT_FALSE(is_enabled); // a second click would send it twice
    QApplication::processEvents();
    EXPECT_TRUE(control<QPushButton>("Command13").isEnabled());
    EXPECT_TRUE(control<QPushButton>("Command13").hasFocus());
}

TEST_F(Sending, AnImpatientSecondClickSendsNothing)
{
    mail.on_call["Send"] = [this] { // as the window system queues it while no input is taken
        const auto &button = control<QPushButton>("Command13");
        QWindow *shown_window = window().windowHandle();
        const QPointF place = button.mapTo(&window(), button.rect().center());
        const QPointF global = button.mapToGlobal(button.rect().center());
        qt_handleMouseEvent(shown_window, place, global, Qt::LeftButton, Qt::LeftButton,
                            QEvent::MouseButtonPress, Qt::NoModifier, 1);
        qt_handleMouseEvent(shown_window, place, global, Qt::NoButton, Qt::LeftButton,
                            QEvent::MouseButtonRelease, Qt::NoModifier, 2);
    };
    set_text("Text12", "a@x.org");
    click("Command13");
    QTest::qWait(50);
    EXPECT_EQ(mail.calls.count("Send(false)"), 1);
    mail.on_call.clear();
    click("Command13"); // a later one does
    EXPECT_EQ(mail.calls.count("Send(false)"), 2);
}

TEST_F(Sending, WaitsForTheSessionWhileOtherControlsCanBeClicked)
{
    mail.session_id = 0;
    int asked = 0;
    mail.on_call["SessionID"] = [&] { ++asked; };
    QTimer::singleShot(30, &window(), [this] {
        click("Check14"); // empties the address box, whose text has been taken
        mail.session_id = 9;
    });
    set_text("Text12", "a@x.org");
    click("Command13");
    EXPECT_GT(asked, 2);
    EXPECT_EQ(recipients_sent(), QStringList{"a@x.org"});
    EXPECT_TRUE(mail.calls.contains("set_SessionID(9)"));
    EXPECT_TRUE(control<QCheckBox>("Check14").isChecked());
}

TEST_F(Sending, TakesManyRecipients)
{
    QStringList addresses;
    for (int i = 0; i < 32767; ++i)
        addresses.append(QStringLiteral("r%1@x.org").arg(i));
    set_text("Text12", addresses.join(';'));
    click("Command13");
    EXPECT_EQ(recipients_sent(), addresses);
    EXPECT_EQ(mail.calls.count("Send(false)"), 1);
}

TEST_F(Sending, OneRecipientMoreThanSixteenBitsCountIsAnOverflow)
{
    const auto send = [this] {
        mail.on_call["Send"] = [] { std::_Exit(3); }; // must not come so far
        set_text("Text12", QString("a;").repeated(32768));
        boxes.expect_any_notice();
        click("Command13");
    };
    EXPECT_EXIT(send(), testing::ExitedWithCode(1), testing::HasSubstr("Run-time error '6'"));
}

class FailingSend : public Sending, public testing::WithParamInterface<const char *>
{
};

TEST_P(FailingSend, EndsTheProgramWithTheReport)
{
    const auto send = [this] {
        mail.fail_at(GetParam());
        set_text("Text12", "a@x.org");
        set_text("Text15", "/tmp/list.pdf");
        boxes.expect_run_time_error("Run-time error '32000':\n\nThe store says no");
        click("Command13");
    };
    EXPECT_EXIT(send(), testing::ExitedWithCode(1), testing::HasSubstr("The store says no"));
}

INSTANTIATE_TEST_SUITE_P(Operations, FailingSend,
                         testing::Values("set_DownLoadMail", "SignOn", "SessionID", "set_MsgIndex",
                                         "set_SessionID", "set_RecipIndex", "set_RecipType",
                                         "set_RecipAddress", "ResolveName", "set_MsgSubject",
                                         "set_MsgNoteText", "set_AttachmentPathName", "Send",
                                         "SignOff", "Copy"));
} // namespace
