#pragma once

#include <QMessageBox>
#include <QObject>
#include <QString>
#include <QStringList>

/// Agrees to every box that the program opens, by a click on its Yes or OK button, and keeps what
/// it said. A box that reports a failure, or a dialog of another kind, is noted as a fault.
class BoxClicker : public QObject
{
    Q_OBJECT

public:
    BoxClicker();
    ~BoxClicker() override;

    /// The texts of the boxes since the last call, in order.
    QStringList take_texts();
    const QStringList &faults() const { return faults_; }

Q_SIGNALS:
    /// A box stands open and painted, and is answered next.
    void box_is_open(QMessageBox *box);
    /// A window that does not wait for an answer has been shown.
    void window_is_open(QWidget *window);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void meet(QWidget &window);
    void agree(QMessageBox &box);

    QStringList texts_;
    QStringList faults_;
};
