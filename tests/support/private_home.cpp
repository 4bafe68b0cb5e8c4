#include "tests/support/private_home.h"

#include <QDir>

#include <cstdlib>

PrivateHome::PrivateHome()
{
    if (!folder_.isValid())
        std::abort();
    const auto point = [this](const char *variable, const QString &name) {
        QDir(folder_.path()).mkpath(name);
        qputenv(variable, folder_.filePath(name).toUtf8());
    };
    point("HOME", QStringLiteral("."));
    point("XDG_DATA_HOME", QStringLiteral("data"));
    point("XDG_CONFIG_HOME", QStringLiteral("config"));
    point("XDG_CACHE_HOME", QStringLiteral("cache"));
    qunsetenv("MAIL");
    qputenv("CUPS_SERVER", "/no/such/server"); // nothing is ever printed on a real printer
}
