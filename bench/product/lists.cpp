// Lists of the master list: the time from asking for one until its first screen is painted in the
// real window's grid and the number of its rows is known. Starting the program is not part of it.
#include "bench/product/program.h"

#include <QAbstractItemModel>
#include <QElapsedTimer>
#include <QEvent>
#include <QTableView>

#include <exception>
#include <fstream>
#include <iostream>
#include <map>
#include <stdexcept>
#include <string>

namespace
{
/// Sees that a grid has been painted after its model got new rows. Made just before the refresh.
class PaintWatch : public QObject
{
public:
    explicit PaintWatch(QTableView &grid)
    {
        grid.viewport()->installEventFilter(this);
        connect(grid.model(), &QAbstractItemModel::modelReset, this, [this] { has_rows_ = true; });
    }

    /// Returns when the grid shows the rows of the refresh that has been made.
    void wait() const
    {
        while (!painted_)
            QApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }

protected:
    bool eventFilter(QObject *watched, QEvent *event) override
    {
        painted_ = painted_ || (has_rows_ && event->type() == QEvent::Paint);
        return QObject::eventFilter(watched, event);
    }

private:
    bool has_rows_ = false;
    bool painted_ = false;
};

Statement source(const std::string &query, const QString &needle)
{
    if (query == "count")
        return "select * from master";
    if (query == "distinct")
        return " select distinct email from master where email not like    ''    ";
    if (query == "search-few" || query == "search-many")
        return {"select * from master where email like '*", needle, "*' "};
    throw std::runtime_error("No such query: " + query);
}

struct Shown
{
    double seconds;
    qint64 rows;
};

Shown show(MainWindow &window, const Statement &statement)
{
    PaintWatch watch(window.controls().MSFlexGrid5);
    DataConnection &list = window.master_list();
    QElapsedTimer clock;
    clock.start();
    list.set_record_source(statement);
    list.refresh();
    watch.wait();
    const qint64 rows = list.record_set().record_count();
    return {static_cast<double>(clock.nsecsElapsed()) / 1e9, rows};
}
} // namespace

int main(int argc, char **argv)
try {
    if (argc != 4) {
        std::cerr << "usage: bench_lists REPORT count|distinct|search-few|search-many NEEDLE\n";
        return 2;
    }
    Program program(argc, argv);
    const Shown shown = show(program.window(), source(argv[2], QString::fromUtf8(argv[3])));
    std::cout << shown.rows << '\n';
    std::ofstream report(argv[1]);
    report << "{\"seconds\": " << shown.seconds << "}\n";
    report.close();
    return report.good() ? program.close() : 1;
} catch (const std::exception &error) {
    std::cerr << error.what() << '\n';
    return 1;
}
