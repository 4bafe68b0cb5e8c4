#pragma once

#include <QString>

/// What a run takes from one message; a field that the message lacks is empty.
struct MessageFields
{
    QString address; ///< of the first sender, undecorated: "ann@example.org"
    QString subject; ///< one line
    QString date;    ///< date_time_text(), local time
    QString name;    ///< of the first sender, one line
    QString text;    ///< lines ended by CR LF
};
