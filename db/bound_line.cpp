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
    QString text;
    if (connection_.has_record_set())
        attempt([&] {
            RecordSet &set = connection_.record_set();
            if (!set.eof())
                text = set.field(field_);
        });
    return text;
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
                line_->setText(text());
        },
        Qt::QueuedConnection);
}
