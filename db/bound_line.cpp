#include "db/bound_line.h"

#include "db/data_connection.h"
#include "platform/runtime_error.h"

#include <utility>

BoundLine::BoundLine(QLineEdit &line, DataConnection &connection, QString field)
    : line_(&line),
      connection_(connection),
      field_(std::move(field))
{
    line.setReadOnly(true);
    connect(&connection, &DataConnection::record_changed, this, &BoundLine::follow_later);
}

QString BoundLine::text() const
{
    if (!connection_.has_record_set())
        return {};
    RecordSet &set = connection_.record_set();
    return set.eof() ? QString() : set.field(field_);
}

// A file that fails now fails again in the command that reads it, which can say so.
QString BoundLine::shown() const
{
    QString shown;
    attempt([&] { shown = text(); });
    return shown;
}

// A walk moves often and gives the event loop no turn: what it passes on its way is not painted.
void BoundLine::follow_later()
{
    if (follows_later_)
        return;
    follows_later_ = true;
    QMetaObject::invokeMethod(
        this,
        [this] {
            follows_later_ = false;
            if (!line_.isNull())
                line_->setText(shown());
        },
        Qt::QueuedConnection);
}
