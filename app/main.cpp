#include "app/main_window.h"
#include "app/settings_store.h"
#include "mail/log_on_dialog.h"
#include "mail/send_dialog.h"
#include "mail/user_mail.h"
#include "platform/qt_prompts.h"

#include <QApplication>
#include <QIcon>

namespace
{
/// The windows paint while a server keeps the program waiting.
NetworkConditions patient_network()
{
    NetworkConditions conditions;
    conditions.turn = [] { QApplication::processEvents(QEventLoop::ExcludeUserInputEvents); };
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
    UserMail mail(settings_file(SettingsStore::application, QStringLiteral("profiles")),
                  {&log_on, &send_dialog}, patient_network());
    MainWindow window(
        {settings, prompts, mail.store(), &QDateTime::currentDateTime, mail.profile_desk()});
    attended_window = &window;
    prompts.set_parent(&window);
    log_on.set_parent(&window);
    send_dialog.set_parent(&window);
    log_on.set_profile_editor([&] {
        window.MailProfiles_Click();
        return mail.accounts().sound_profiles();
    });
    window.open();
    return QApplication::exec();
}
