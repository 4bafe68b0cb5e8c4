#include "db/record_set_model.h"
#include "tests/db/test_database.h"

#include <QAbstractItemModelTester>
#include <QCoreApplication>
#include <QEvent>
#include <QSignalSpy>
#include <QTableView>

namespace
{
class PaintCount : public QObject
{
public:
    int count = 0;

protected:
    bool eventFilter(QObject *watched, QEvent *event) override
    {
        count += event->type() == QEvent::Paint ? 1 : 0;
        return QObject::eventFilter(watched, event);
    }
};

class Grid : public DatabaseTest
{
protected:
    Grid() { set_up_grid(view, model); }

    QVariant at(int row, int column, int role = Qt::DisplayRole) const
    {
        return model.data(model.index(row, column), role);
    }

    RecordSetModel model{Data1};
    QTableView view;
    QAbstractItemModelTester tester{&model, QAbstractItemModelTester::FailureReportingMode::Fatal};
};

TEST_F(Grid, IsEmptyBeforeTheFirstRefresh)
{
    EXPECT_EQ(model.rowCount(), 0);
    EXPECT_EQ(model.columnCount(), 0);
}

TEST_F(Grid, ShowsTheRecordSetAtTheNextTurnOfTheEventLoop)
{
    insert_master({"a", "b"});
    QSignalSpy resets(&model, &QAbstractItemModel::modelReset);
    show(Data1, "master");
    Data1.refresh();
    Data1.refresh();
    EXPECT_EQ(model.rowCount(), 0);
    QCoreApplication::processEvents();
    EXPECT_EQ(resets.count(), 1);
    EXPECT_EQ(model.rowCount(), 2);
    EXPECT_EQ(at(1, 0), "b");
    EXPECT_EQ(model.headerData(0, Qt::Horizontal, Qt::DisplayRole), "email");
    EXPECT_EQ(model.headerData(1, Qt::Vertical, Qt::DisplayRole), 2);
}

TEST_F(Grid, FollowsAtOnceWhenFlushed)
{
    insert_master({"a"});
    show(Data1, "master");
    QSignalSpy resets(&model, &QAbstractItemModel::modelReset);
    model.flush();
    EXPECT_EQ(model.rowCount(), 1);
    QCoreApplication::processEvents();
    EXPECT_EQ(resets.count(), 1);
}

TEST_F(Grid, IsPaintedAtOnceOnlyWhereItsRowsHaveChanged)
{
    PaintCount paintings;
    view.viewport()->installEventFilter(&paintings);
    show(Data1, "master");
    model.paint_now(view); // nobody can see it
    EXPECT_EQ(model.columnCount(), 0);
    view.resize(400, 300);
    view.show();
    QCoreApplication::processEvents();
    const auto paintings_after = [&](const char *email) {
        insert_master({email});
        Data1.refresh();
        paintings.count = 0;
        model.paint_now(view);
        return paintings.count;
    };
    EXPECT_EQ(paintings_after("a"), 1);
    EXPECT_EQ(model.rowCount(), 1);
    EXPECT_EQ(paintings_after("b"), 1);
    for (int row = 2; row < 50; ++row)
        paintings_after("c");
    EXPECT_EQ(paintings_after("below the last row that is seen"), 0);
    EXPECT_EQ(model.rowCount(), 51);
    Data1.execute("update master set email = 'new' where email like '*a*'");
    EXPECT_EQ(paintings_after("d"), 1);
    EXPECT_EQ(at(0, 0), "new");
}

TEST_F(Grid, ShowsOneLineAndAnEscapedToolTip)
{
    insert_master({QString::fromUtf8("<b>x</b>\r\n\t\u202Ey") + QChar(0), QString(5000, 'z')});
    show(Data1, "master");
    model.flush();
    EXPECT_EQ(at(0, 0), "<b>x</b>    y ");
    EXPECT_EQ(at(1, 0).toString().size(), 300);
    EXPECT_EQ(at(0, 0, Qt::ToolTipRole),
              "<p style=\"white-space: pre-wrap\">&lt;b&gt;x&lt;/b&gt; \n  y </p>");
    EXPECT_EQ(at(1, 0, Qt::ToolTipRole).toString().count('z'), 2000);
    EXPECT_FALSE(at(0, 0, Qt::EditRole).isValid());
}

TEST_F(Grid, IsEmptyWhenTheFileHasGone)
{
    insert_master({"a"});
    show(Data1, "master");
    model.flush();
    engine.close_all();
    EXPECT_EQ(at(0, 0), "");
    model.flush();
    EXPECT_EQ(model.rowCount(), 0);
}

TEST_F(Grid, ShowsNoMoreRowsThanTheNewRecordSetHas)
{
    insert_master({"a", "b"});
    show(Data1, "master");
    model.flush();
    show(Data1, "system");
    EXPECT_EQ(at(1, 0), ""); // the grid has not followed yet
}

TEST_F(Grid, SortsTheRecordSetByCodeOnly)
{
    insert_master({"b", "a"});
    show(Data1, "master");
    model.flush();
    model.sort(0, Qt::AscendingOrder);
    EXPECT_EQ(at(0, 0), "a");
    EXPECT_EQ(Data1.record_set().field("email"), "a");
    EXPECT_FALSE(view.isSortingEnabled());
    EXPECT_EQ(view.selectionMode(), QAbstractItemView::SingleSelection);
    EXPECT_EQ(view.selectionBehavior(), QAbstractItemView::SelectRows);
}
} // namespace
