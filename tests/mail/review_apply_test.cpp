// "Apply" in the window "Filter".
#include "tests/mail/review_room.h"

#include <QDir>
#include <gtest/gtest.h>

namespace
{
TEST_F(ReviewForm, ApplyGivesAllColumnsButTheEighthTheirWidthsAgain)
{
    run("alter table email add column eighth text");
    auto &grid = part<QTableView>("MSFlexGrid1");
    shown();
    for (int column = 0; column < 8; ++column)
        grid.setColumnWidth(column, 40);
    press("Command1");
    shown();
    const QList<int> widths = {167, 200, 233, 333, 167, 167, 167, 40};
    for (int column = 0; column < 8; ++column)
        EXPECT_EQ(grid.columnWidth(column), widths[column]) << column;
}

TEST_F(ReviewForm, ApplyDeletesEveryRowThatContainsTheAddress)
{
    settings.write("Filter", "Returned");
    add("daemon@isp.org", "Mail RETURNED to sender", "no user gone@x.org here");
    add("gone@x.org", "Hello");
    add("was.GONE@X.ORG.uk", "Hello");
    add("kept@x.org", "Hello");
    EXPECT_EQ(apply(), QStringList{"kept@x.org"});
    EXPECT_EQ(shown(), QStringList{"kept@x.org"});
    EXPECT_EQ(form().data().record_source().text(), "select * from email");
    EXPECT_EQ(part<QLineEdit>("Text1").text(), "Returned");
    EXPECT_EQ(part<TextBox>("Text2").text(), "gone@x.org");
}

TEST_F(ReviewForm, ApplyTurnsBracketsIntoLetters)
{
    settings.write("Filter", "Returned");
    add("daemon@isp.org", "Returned", "user [gone@x.org] unknown");
    add("gone@x.org", "Hello");
    add("xgone@x.orgx", "Hello");
    EXPECT_EQ(apply(), QStringList{"gone@x.org"});
}

TEST_F(ReviewForm, ApplyTakesAllAddressesOfAMessageAsOnePattern)
{
    settings.write("Filter", "Returned");
    add("daemon@isp.org", "Returned", "a@x.org\r\nand b@x.org");
    add("a@x.org", "Hello");
    add("b@x.org", "Hello");
    add("a@x.org b@x.org", "Hello");
    EXPECT_EQ(apply(), (QStringList{"a@x.org", "b@x.org"}));
}

TEST_F(ReviewForm, ApplyDeletesByEachMessageInTurn)
{
    settings.write("Filter", "Returned");
    add("daemon@isp.org", "Returned", "a@x.org");
    add("daemon@isp.org", "Returned too", "b@x.org");
    add("a@x.org", "Hello");
    add("b@x.org", "Hello");
    EXPECT_EQ(apply(), QStringList());
    EXPECT_EQ(part<TextBox>("Text2").text(), "b@x.org");
}

TEST_F(ReviewForm, ApplyReadsAMessageThatAnEarlierOneHasDeleted)
{
    settings.write("Filter", "Returned");
    add("daemon@isp.org", "Returned", "second@isp.org");
    add("second@isp.org", "Returned", "a@x.org");
    add("a@x.org", "Hello");
    EXPECT_EQ(apply(), QStringList());
}

TEST_F(ReviewForm, ApplyOfAMessageWithoutAnAddressDeletesTheMessageAlone)
{
    settings.write("Filter", "Returned");
    add("daemon@isp.org", "Returned", "nobody");
    add("ann@x.org", "Hello");
    EXPECT_EQ(apply(), QStringList{"ann@x.org"});
    EXPECT_EQ(part<TextBox>("Text2").text(), "");
}

TEST_F(ReviewForm, ApplyWithoutAMatchDeletesNothing)
{
    settings.write("Filter", "Returned");
    add("ann@x.org", "Hello", "ann@x.org");
    EXPECT_EQ(apply(), QStringList{"ann@x.org"});
    EXPECT_EQ(shown(), QStringList{"ann@x.org"});
    EXPECT_EQ(part<QLineEdit>("Text1").text(), "Returned");
}

TEST_F(ReviewForm, ApplyWithoutAHeadingExaminesEveryRowAndDeletesByZero)
{
    add("daemon@isp.org", "Anything", "gone@x.org");
    add("gone@x.org", "Hello");
    add("ten@x.org", "10 reasons");
    run("insert into email(email, text) values ('null@x.org', 'null@x.org')"); // has no subject
    EXPECT_EQ(apply(), (QStringList{"daemon@isp.org", "null@x.org"}));
    EXPECT_EQ(part<QLineEdit>("Text1").text(), "0");
}

TEST_F(ReviewForm, ApplyWithAnEmptyHeadingStoredDoesTheSame)
{
    settings.write("Filter", "");
    add("daemon@isp.org", "Anything", "gone@x.org");
    add("gone@x.org", "Hello");
    add("ten@x.org", "10 reasons");
    EXPECT_EQ(apply(), QStringList{"daemon@isp.org"});
    EXPECT_EQ(part<QLineEdit>("Text1").text(), "0");
}

TEST_F(ReviewForm, ApplySelectsByTheTrimmedHeadingAndDeletesByTheWholeOne)
{
    settings.write("Filter", "  Returned ");
    add("daemon@isp.org", "Returned", "gone@x.org");
    add("other@isp.org", "Was   Returned to you", "nobody");
    add("gone@x.org", "Hello");
    EXPECT_EQ(apply(), QStringList{"daemon@isp.org"});
    EXPECT_EQ(part<QLineEdit>("Text1").text(), "  Returned ");
}

TEST_F(ReviewForm, ApplyReadsTheFirstHeadingOnly)
{
    settings.write("Filter", "Nothing like it");
    settings.write("Filter1", "Returned");
    settings.write("Filter2", "Returned");
    add("daemon@isp.org", "Returned", "gone@x.org");
    EXPECT_EQ(apply(), QStringList{"daemon@isp.org"});
}

TEST_F(ReviewForm, ApplyTouchesNeitherTheListNorTheLogs)
{
    settings.write("Filter", "Returned");
    add("daemon@isp.org", "Returned", "gone@x.org");
    add_master({"gone@x.org"});
    add_system("gone@x.org", "Returned", "gone@x.org");
    run_sql("insert into email(email) values ('gone@x.org')");
    apply();
    EXPECT_EQ(rows("master", "email"), QStringList{"gone@x.org"});
    EXPECT_EQ(rows("system", "email"), QStringList{"gone@x.org"});
    EXPECT_EQ(rows("email", "email"), QStringList{"gone@x.org"});
    EXPECT_EQ(content("c:\\Ostrix\\log.log"), "(none)");
    EXPECT_EQ(content("c:\\Ostrix\\system.log"), "(none)");
    EXPECT_EQ(text("progress_text"), "");
}

TEST_F(ReviewForm, ApplyWithAQuoteInTheHeadingDeletesNothing)
{
    settings.write("Filter", "can't deliver");
    add("daemon@isp.org", "can't deliver", "gone@x.org");
    add("gone@x.org", "Hello");
    EXPECT_EQ(apply(), (QStringList{"daemon@isp.org", "gone@x.org"}));
    EXPECT_EQ(shown().size(), 2);
}

TEST_F(ReviewForm, ApplyPassesOverAnAddressWithAQuote)
{
    settings.write("Filter", "Returned");
    add("daemon@isp.org", "Returned", "o'brien@x.org");
    add("daemon@isp.org", "Returned", "gone@x.org");
    add("o'brien@x.org", "Hello");
    add("gone@x.org", "Hello");
    EXPECT_EQ(apply(), QStringList{"o'brien@x.org"});
}

TEST_F(ReviewForm, ApplyGoesOnWithoutTheColumnOfTheText)
{
    settings.write("Filter", "Returned");
    run("alter table email drop column text");
    run("insert into email(email, subject) values ('daemon@isp.org', 'Returned'), ('a@x.org', "
        "'Hello')");
    EXPECT_EQ(apply(), QStringList{"a@x.org"});
}

TEST_F(ReviewForm, ApplyGoesOnWithoutTheTable)
{
    form();
    run("alter table email rename to other");
    press("Command1");
    EXPECT_TRUE(form().isVisible());
}

TEST_F(ReviewForm, ApplyWhoseDeletesAreAllRefusedComesToItsEnd)
{
    settings.write("Filter", " Returned ");
    add("daemon@isp.org", "Was Returned to you", "gone@x.org");
    add("gone@x.org", "Hello");
    form();
    SQLite::Database other(native_path(review_database).toStdString(), SQLite::OPEN_READWRITE);
    other.exec("begin immediate"); // nobody else may write now
    press("Command1");
    other.exec("rollback");
    EXPECT_EQ(emails(), (QStringList{"daemon@isp.org", "gone@x.org"}));
    EXPECT_EQ(shown().size(), 2);
    EXPECT_EQ(part<TextBox>("Text2").text(), "gone@x.org");
    EXPECT_EQ(part<QLineEdit>("Text1").text(), " Returned ");
    EXPECT_EQ(form().data().record_source().text(), "select * from email");
}

TEST_F(ReviewForm, ApplyGoesOnWithoutSettings)
{
    add("ann@x.org", "Hello");
    form();
    const QString file = settings_file(SettingsStore::application, SettingsStore::section);
    ASSERT_TRUE(QFile::remove(file));
    ASSERT_TRUE(QDir().mkpath(file)); // a folder in its place
    press("Command1");
    EXPECT_EQ(part<QLineEdit>("Text1").text(), "");
    EXPECT_EQ(form().data().record_source().text(), "select * from email");
}

TEST_F(ReviewForm, ApplyTakesAHeadingThatIsAnOpenBracketForAPatternThatFails)
{
    settings.write("Filter", "[");
    add("daemon@isp.org", "a [b", "gone@x.org");
    add("gone@x.org", "Hello");
    EXPECT_EQ(apply().size(), 2);
    EXPECT_TRUE(form().isVisible());
}

TEST_F(ReviewForm, ApplyTakesAMessageWithoutATextForOneWithoutAnAddress)
{
    settings.write("Filter", "Returned");
    add("daemon@isp.org", "Returned", "gone@x.org");
    run("insert into email(email, subject, text) values ('null@isp.org', 'Returned', null)");
    add("gone@x.org", "Hello");
    add("kept@x.org", "Hello");
    EXPECT_EQ(apply(), QStringList{"kept@x.org"});
    EXPECT_EQ(part<TextBox>("Text2").text(), "");
}

TEST_F(ReviewForm, ApplyOfMoreMessagesThanSixteenBitsCountDoesNothing)
{
    settings.write("Filter", "Returned");
    run("with recursive n(i) as (select 1 union all select i + 1 from n where i < 32768) "
        "insert into email(email, subject, text) select 'r' || i || '@x.org', 'Returned', "
        "'r1@x.org' from n");
    EXPECT_EQ(apply().size(), 32'768);
}

TEST_F(ReviewForm, ApplyOfAsManyMessagesAsSixteenBitsCountTakesAll)
{
    settings.write("Filter", "Returned");
    run("with recursive n(i) as (select 1 union all select i + 1 from n where i < 32767) "
        "insert into email(email, subject, text) select 'r' || i || '@x.org', 'Returned', "
        "case when i = 32767 then 'gone@x.org' else 'nobody' end from n");
    add("gone@x.org", "Hello");
    add("kept@x.org", "Hello");
    EXPECT_EQ(apply(), QStringList{"kept@x.org"});
    EXPECT_EQ(part<TextBox>("Text2").text(), "gone@x.org");
}

TEST_F(ReviewForm, ShowsAllAddressesOfALongMessage)
{
    settings.write("Filter", "Returned");
    QString text;
    for (int i = 0; i < 20'000; ++i)
        text += QString("reader%1@example.org\r\n").arg(i);
    add("daemon@isp.org", "Returned", text);
    apply();
    auto &box = part<LongTextBox>("Text2");
    EXPECT_TRUE(box.text() == text.chopped(2).replace("\r\n", " "));
    EXPECT_TRUE(box.isReadOnly());
    QTest::keyClick(&box, Qt::Key_End, Qt::ControlModifier);
    QApplication::processEvents();
    EXPECT_TRUE(box.toPlainText().endsWith(" reader19999@example.org"));
}

TEST_F(ReviewForm, ApplyWithoutTheColumnOfTheTextGoesOnWithTheAddressesShown)
{
    settings.write("Filter", "Returned");
    add("daemon@isp.org", "Returned", "gone@x.org");
    EXPECT_EQ(apply(), QStringList());
    run("alter table email drop column text");
    run("insert into email(email, subject) values ('daemon@isp.org', 'Returned'), ('gone@x.org', "
        "'Hello'), ('a@x.org', 'Hello')");
    EXPECT_EQ(apply(), QStringList{"a@x.org"});
    EXPECT_EQ(part<TextBox>("Text2").text(), "gone@x.org");
}

TEST_F(ReviewForm, ApplyShowsTheTrimmedHeadingWhileItWalksAndTheWholeOneAfterwards)
{
    settings.write("Filter", "  Returned ");
    add("daemon@isp.org", "Returned", "gone@x.org");
    QStringList seen;
    QObject::connect(&part<QLineEdit>("Text1"), &QLineEdit::textChanged, &form(),
                     [&seen](const QString &text) { seen.append(text); });
    apply();
    EXPECT_EQ(seen, (QStringList{"  Returned ", "Returned", "  Returned "}));
}
} // namespace
