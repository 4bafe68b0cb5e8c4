// A Qt Widgets window with a menu, a tool bar, a small table and a status bar, and nothing behind
// them: what any window of this kind costs.
#include <QApplication>
#include <QMainWindow>
#include <QMenuBar>
#include <QStatusBar>
#include <QTableWidget>
#include <QToolBar>

namespace
{
constexpr int rows = 50;
constexpr int columns = 3;

QTableWidget *small_table(QWidget *parent)
{
    auto *table = new QTableWidget(rows, columns, parent);
    for (int row = 0; row < rows; ++row) {
        for (int column = 0; column < columns; ++column)
            table->setItem(
                row, column,
                new QTableWidgetItem(QStringLiteral("cell %1").arg(row * columns + column)));
    }
    return table;
}
} // namespace

int main(int argc, char **argv)
{
    const QApplication application(argc, argv);
    QMainWindow window;
    window.menuBar()->addMenu(QStringLiteral("File"))->addAction(QStringLiteral("Quit"));
    window.addToolBar(QStringLiteral("Tools"))->addAction(QStringLiteral("Refresh"));
    window.setCentralWidget(small_table(&window));
    window.statusBar()->showMessage(QStringLiteral("Ready"));
    window.resize(1000, 700);
    window.show();
    return QApplication::exec();
}
