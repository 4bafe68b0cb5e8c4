#include "app/main_window.h"
#include "app/settings_store.h"
#include "mail/local_mail_store.h"
#include "mail/log_on_dialog.h"
#include "mail/send_dialog.h"
#include "platform/qt_prompts.h"

#include <QApplication>
#include <QIcon>

namespace
{
SendingConditions sending_conditions()
{
    SendingConditions conditions;
    conditions.network.turn = [] {
        QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
    };
    return conditions;
}
} // namespace

int main(int argc, char **argv)
{
    QApplication::setStyle(QStringLiteral("Fusion"));
    const QApplication application(argc, argv);
    QApplication::setApplicationName(QStringLiteral("Ostrix"));
    QApplication::setDesktopFileName(QStringLiteral("ostrix"));
    QApplication::setWindowIcon(QIcon(QStringLiteral(":/icons/ostrix.png")));

    SettingsStore settings;
    QtPrompts prompts;
    const MainWindow *attended_window = nullptr;
    QtLogOnDialog log_on([&] { return attended_window->is_attended(); });
    QtSendDialog send_dialog([&] { return attended_window->is_attended(); });
    LocalMailStore mail(&log_on, &send_dialog, sending_conditions());
    MainWindow window({settings, prompts, mail, &QDateTime::currentDateTime});
    attended_window = &window;
    prompts.set_parent(&window);
    log_on.set_parent(&window);
    send_dialog.set_parent(&window);
    window.open();
    return QApplication::exec();
}
