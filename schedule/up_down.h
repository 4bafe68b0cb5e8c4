#pragma once

#include <QSpinBox>

/// A spinner without a number of its own: two arrows that stand beside the text box which shows the
/// value.
class UpDown : public QSpinBox
{
    Q_OBJECT

public:
    explicit UpDown(QWidget *parent = nullptr);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;
};
