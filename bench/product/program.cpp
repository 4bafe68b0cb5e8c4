#include "bench/product/program.h"

#include <QAbstractButton>
#include <QAction>
#include <QDateTime>

#include <stdexcept>
#include <string>

Program::Style::Style()
{
    QApplication::setStyle(QStringLiteral("Fusion"));
}

Program::Program(int &argc, char **argv)
    : application_(argc, argv),
      mail_(settings_file(SettingsStore::application, QStringLiteral("profiles"))),
      window_(
          {settings_, prompts_, mail_.store(), &QDateTime::currentDateTime, mail_.profile_desk()})
{
    QApplication::setApplicationName(QStringLiteral("Ostrix"));
    window_.open();
    QApplication::processEvents();
}

void Program::press(const char *name)
{
    auto *button = window_.findChild<QAbstractButton *>(QLatin1String(name));
    auto *entry = window_.findChild<QAction *>(QLatin1String(name));
    if (button != nullptr && button->isEnabled())
        button->click();
    else if (entry != nullptr && entry->isEnabled())
        entry->trigger();
    else
        throw std::runtime_error(std::string("Cannot press ") + name);
    QApplication::processEvents();
}

int Program::close()
{
    return window_.close() && !prompts_.was_told_something() ? 0 : 1;
}
