#include "app/main_window.h"
#include "app/settings_store.h"
#include "mail/local_mail_store.h"
#include "platform/qt_prompts.h"

#include <QApplication>
#include <QIcon>

int main(int argc, char **argv)
{
    QApplication::setStyle(QStringLiteral("Fusion"));
    const QApplication application(argc, argv);
    QApplication::setApplicationName(QStringLiteral("Ostrix"));
    QApplication::setDesktopFileName(QStringLiteral("ostrix"));
    QApplication::setWindowIcon(QIcon(QStringLiteral(":/icons/ostrix.png")));

    SettingsStore settings;
    QtPrompts prompts;
    LocalMailStore mail;
    MainWindow window({settings, prompts, mail, &QDateTime::currentDateTime});
    prompts.set_parent(&window);
    window.open();
    return QApplication::exec();
}
