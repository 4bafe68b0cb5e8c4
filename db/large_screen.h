#pragma once

#include <QWidget>

class RecordSetModel;

/// The master list in a window of its own, for a maximised look. Escape closes it; a closed window
/// is gone.
class LargeScreen : public QWidget
{
    Q_OBJECT

public:
    LargeScreen(RecordSetModel &master, QWidget *main_window);

protected:
    void keyPressEvent(QKeyEvent *event) override;
};
