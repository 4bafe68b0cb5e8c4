#pragma once

#include "tests/support/print_qt.h"

#include <QString>
#include <QTemporaryDir>

/// A home folder of the test's own: HOME and the XDG folders point into it, MAIL is unset, and
/// there are no printers. Gone at the end.
class PrivateHome
{
public:
    PrivateHome();

    QString path() const { return folder_.path(); }
    /// A path inside, as "name/below".
    QString file(const QString &name) const { return folder_.filePath(name); }

private:
    QTemporaryDir folder_;
};
