#include "packaging/sample/box_clicker.h"

#include <QAbstractButton>
#include <QApplication>
#include <QDialog>
#include <QEvent>
#include <QPointer>
#include <QTest>
#include <QTimer>

#include <utility>

BoxClicker::BoxClicker()
{
    qApp->setAttribute(Qt::AA_DontUseNativeDialogs);
    qApp->installEventFilter(this);
}

BoxClicker::~BoxClicker()
{
    qApp->removeEventFilter(this);
}

QStringList BoxClicker::take_texts()
{
    return std::exchange(texts_, {});
}

bool BoxClicker::eventFilter(QObject *watched, QEvent *event)
{
    auto *window = event->type() == QEvent::Show ? qobject_cast<QWidget *>(watched) : nullptr;
    if (window != nullptr && window->isWindow())
        QTimer::singleShot(0, this, [this, shown = QPointer<QWidget>(window)] {
            if (shown)
                meet(*shown);
        });
    return QObject::eventFilter(watched, event);
}

void BoxClicker::meet(QWidget &window)
{
    auto *dialog = qobject_cast<QDialog *>(&window);
    if (dialog == nullptr || !dialog->isModal()) {
        Q_EMIT window_is_open(&window);
    } else if (auto *box = qobject_cast<QMessageBox *>(dialog)) {
        agree(*box);
    } else {
        faults_.append(QStringLiteral("a dialog that the round does not know: ") +
                       dialog->windowTitle());
        dialog->reject();
    }
}

void BoxClicker::agree(QMessageBox &box)
{
    texts_.append(box.text());
    if (box.icon() == QMessageBox::Critical)
        faults_.append(box.text());
    if (QTest::qWaitForWindowExposed(&box))
        Q_EMIT box_is_open(&box);
    const bool asks = (box.standardButtons() & QMessageBox::Yes) != 0;
    QTest::mouseClick(box.button(asks ? QMessageBox::Yes : QMessageBox::Ok), Qt::LeftButton);
}
