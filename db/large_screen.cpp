#include "db/large_screen.h"

#include "db/grid_columns.h"
#include "db/record_set_model.h"
#include "platform/twips.h"

#include <QHeaderView>
#include <QKeyEvent>
#include <QTableView>
#include <QVBoxLayout>

LargeScreen::LargeScreen(RecordSetModel &master, QWidget *main_window)
    : QWidget(main_window, Qt::Window)
{
    setObjectName(QStringLiteral("LargeScreen"));
    setWindowTitle(QStringLiteral("Ostrix - Master Table"));
    setAttribute(Qt::WA_DeleteOnClose);
    auto *grid = new QTableView(this);
    grid->setAccessibleName(QStringLiteral("Master list"));
    set_up_grid(*grid, master);
    set_column_widths(*grid, {2 * master_list_widths()[0], 2 * master_list_widths()[1]});
    grid->horizontalHeader()->setStretchLastSection(true);
    auto *layout = new QVBoxLayout(this);
    layout->addWidget(grid);
}

void LargeScreen::keyPressEvent(QKeyEvent *event)
{
    if (event->key() == Qt::Key_Escape)
        close();
    else
        QWidget::keyPressEvent(event);
}
