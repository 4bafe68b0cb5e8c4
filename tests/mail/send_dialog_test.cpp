#include "mail/send_dialog.h"
#include "tests/mail/dialog_hand.h"
#include "tests/support/print_qt.h"

#include <QElapsedTimer>
#include <QLabel>
#include <QLineEdit>
#include <QListView>
#include <QPlainTextEdit>
#include <gtest/gtest.h>

namespace
{
OutgoingMessage message()
{
    OutgoingMessage message;
    message.sender = {"me@here.example", "Me"};
    message.to = {"ann@example.org"};
    message.blind_copies = {"bob@example.org", "cid@example.org"};
    message.subject = "Hello";
    message.text = "First\r\nSecond\r\n";
    return message;
}

QString label(QDialog &dialog, const char *name)
{
    auto *found = dialog.findChild<QLabel *>(QLatin1String(name));
    EXPECT_EQ(found->textFormat(), Qt::PlainText) << name;
    return found->text();
}

QStringList blind_copies(QDialog &dialog)
{
    const QAbstractItemModel &model = *dialog.findChild<QListView *>("blind_copies")->model();
    QStringList shown;
    for (int row = 0; row < model.rowCount(); ++row)
        shown += model.index(row, 0).data().toString();
    return shown;
}

void press(QDialog &dialog, QDialogButtonBox::StandardButton which)
{
    QTest::mouseClick(&button(dialog, which), Qt::LeftButton);
}

class SendDialogWindow : public testing::Test
{
protected:
    SendAnswer review(const OutgoingMessage &shown, const std::function<void(QDialog &)> &action)
    {
        DialogHand hand(action);
        const SendAnswer answer = dialog.review(shown, "the mail server mail.example.org");
        EXPECT_TRUE(hand.has_acted());
        return answer;
    }

    QtSendDialog dialog{[] { return true; }};
};

TEST_F(SendDialogWindow, ShowsTheWholeMessage)
{
    OutgoingMessage shown = message();
    shown.attachment = Attachment{"C:\\Ostrix\\list.csv", "list.csv", QByteArray(123'456, 'x')};
    const SendAnswer answer = review(shown, [](QDialog &window) {
        EXPECT_EQ(window.objectName(), "SendDialog");
        EXPECT_EQ(label(window, "from"), "Me <me@here.example>");
        EXPECT_EQ(label(window, "to"), "ann@example.org");
        EXPECT_EQ(window.findChild<QLabel *>("blind_copies_label")->text(), "&Blind copies (2):");
        EXPECT_EQ(blind_copies(window), (QStringList{"bob@example.org", "cid@example.org"}));
        EXPECT_EQ(window.findChild<QLineEdit *>("subject")->text(), "Hello");
        EXPECT_EQ(window.findChild<QPlainTextEdit *>("text")->toPlainText(), "First\nSecond\n");
        EXPECT_EQ(label(window, "attachment"), "list.csv (123.5 kB), from C:\\Ostrix\\list.csv");
        EXPECT_EQ(label(window, "way_out"), "the mail server mail.example.org");
        EXPECT_EQ(button(window, QDialogButtonBox::Ok).text(), "&Send");
        press(window, QDialogButtonBox::Ok);
    });
    EXPECT_EQ(answer, SendAnswer::Send);
}

TEST_F(SendDialogWindow, IsCancelledByItsButtonAndByEscape)
{
    EXPECT_EQ(review(message(), [](QDialog &window) { press(window, QDialogButtonBox::Cancel); }),
              SendAnswer::Cancel);
    EXPECT_EQ(review(message(), [](QDialog &window) { QTest::keyClick(&window, Qt::Key_Escape); }),
              SendAnswer::Cancel);
}

TEST_F(SendDialogWindow, IsSentByReturn)
{
    EXPECT_EQ(review(message(), [](QDialog &window) { QTest::keyClick(&window, Qt::Key_Return); }),
              SendAnswer::Send);
}

TEST_F(SendDialogWindow, LeavesOutWhatIsNotThere)
{
    OutgoingMessage shown = message();
    shown.blind_copies.clear();
    review(shown, [](QDialog &window) {
        EXPECT_FALSE(window.findChild<QListView *>("blind_copies")->isVisible());
        EXPECT_FALSE(window.findChild<QLabel *>("blind_copies_label")->isVisible());
        EXPECT_EQ(label(window, "attachment"), "none");
        window.reject();
    });
    shown = message();
    shown.to.clear();
    review(shown, [](QDialog &window) {
        EXPECT_EQ(label(window, "to"), "nobody to be seen");
        window.reject();
    });
}

TEST_F(SendDialogWindow, ShowsMarkupAsText)
{
    OutgoingMessage shown = message();
    shown.sender.name = "<b>Me</b>";
    shown.subject = "<h1>x</h1>\r\ny";
    shown.text = "<img src='file:///etc/passwd'>";
    shown.attachment = Attachment{"/x/<i>a</i>\n.txt", "<i>a</i>\n.txt", "xy"};
    review(shown, [](QDialog &window) {
        EXPECT_EQ(label(window, "from"), "<b>Me</b> <me@here.example>");
        EXPECT_EQ(window.findChild<QLineEdit *>("subject")->text(), "<h1>x</h1>  y");
        EXPECT_EQ(window.findChild<QPlainTextEdit *>("text")->toPlainText(),
                  "<img src='file:///etc/passwd'>");
        EXPECT_EQ(label(window, "attachment"),
                  "<i>a</i>\\n.txt (2 bytes), from /x/<i>a</i>\\n.txt");
        window.reject();
    });
}

TEST_F(SendDialogWindow, StaysNarrowAroundLongWords)
{
    OutgoingMessage shown = message();
    shown.to = {QString(60, 'a') + "@" + QString("example.").repeated(23) + "org"};
    shown.attachment = Attachment{"/" + QString(280, 'x'), QString(250, 'x'), "xy"};
    review(shown, [](QDialog &window) {
        EXPECT_LT(window.width(), 800);
        window.reject();
    });
}

TEST_F(SendDialogWindow, ChangesNothing)
{
    review(message(), [](QDialog &window) {
        auto *text = window.findChild<QPlainTextEdit *>("text");
        QTest::keyClicks(text, "typed");
        EXPECT_EQ(text->toPlainText(), "First\nSecond\n");
        EXPECT_TRUE(window.findChild<QLineEdit *>("subject")->isReadOnly());
        auto *list = window.findChild<QListView *>("blind_copies");
        EXPECT_EQ(list->editTriggers(), QAbstractItemView::NoEditTriggers);
        window.reject();
    });
}

TEST_F(SendDialogWindow, OpensAtOnceForThousands)
{
    OutgoingMessage shown = message();
    for (int i = 0; i < 30'000; ++i)
        shown.blind_copies += QString("n%1@example.org").arg(i);
    QElapsedTimer time;
    time.start();
    review(shown, [](QDialog &window) {
        EXPECT_EQ(window.findChild<QLabel *>("blind_copies_label")->text(),
                  "&Blind copies (30,002):");
        window.grab();
        window.reject();
    });
    EXPECT_LT(time.elapsed(), 3'000);
}

TEST_F(SendDialogWindow, IsWalkedThroughByTheTabKey)
{
    review(message(), [](QDialog &window) {
        const auto next = [](const QWidget *widget) { return widget->nextInFocusChain(); };
        const QWidget *copies = window.findChild<QListView *>("blind_copies");
        const QWidget *subject = window.findChild<QLineEdit *>("subject");
        const QWidget *text = window.findChild<QPlainTextEdit *>("text");
        EXPECT_TRUE(window.findChild<QPlainTextEdit *>("text")->tabChangesFocus());
        QList<const QWidget *> order;
        for (const QWidget *at = next(copies); at != copies; at = next(at)) {
            if (at == subject || at == text)
                order += at;
        }
        EXPECT_EQ(order, (QList<const QWidget *>{subject, text}));
        window.reject();
    });
}

TEST(UnattendedSendDialog, IsNotShown)
{
    QtSendDialog dialog([] { return false; });
    EXPECT_EQ(dialog.review(message(), "x"), SendAnswer::Nobody);
}
} // namespace
