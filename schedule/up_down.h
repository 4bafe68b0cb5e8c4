#pragma once

#include <QSpinBox>

class QLineEdit;

/// A spinner without a number of its own: two arrows that stand beside the text box which shows the
/// value.
class UpDown : public QSpinBox
{
    Q_OBJECT

public:
    explicit UpDown(QWidget *parent = nullptr);

    /// The box that shows the value. A number typed there is where the arrows go on from; taking it
    /// over is no change of the spinner.
    void set_buddy(QLineEdit &box);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;
};
