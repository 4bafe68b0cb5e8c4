#include "app/main_window.h"
#include "app/settings_store.h"
#include "mail/user_mail.h"
#include "packaging/sample/sample_round.h"
#include "platform/qt_prompts.h"

#include <QApplication>

#include <cstdlib>
#include <iostream>

// The program as its own main() starts it, with a machine in front of it. HOME and the XDG folders
// must point to the sample.
namespace
{
bool make_round(const QStringList &arguments)
{
    SettingsStore settings;
    QtPrompts prompts;
    UserMail mail(settings_file(SettingsStore::application, QStringLiteral("profiles")));
    MainWindow window(
        {settings, prompts, mail.store(), &QDateTime::currentDateTime, mail.profile_desk()});
    prompts.set_parent(&window);
    SampleRound round(window, arguments[1], arguments[2]);
    window.open();
    return round.run();
}
} // namespace

int main(int argc, char **argv)
{
    QApplication::setStyle(QStringLiteral("Fusion"));
    const QApplication application(argc, argv);
    QApplication::setApplicationName(QStringLiteral("Ostrix"));
    const QStringList arguments = QApplication::arguments();
    if (arguments.size() != 3) {
        std::cerr << "usage: ostrix_round SAMPLE-FOLDER SCREENSHOT-FOLDER\n";
        return 2;
    }
    try {
        return make_round(arguments) ? EXIT_SUCCESS : EXIT_FAILURE;
    } catch (const std::exception &error) {
        std::cerr << error.what() << '\n';
        return EXIT_FAILURE;
    }
}
