#pragma once

#include <QLineEdit>
#include <QObject>
#include <QPointer>
#include <QString>

class DataConnection;

/// Binds a line to a field of a connection's current record: it always shows that record's field,
/// empty without a record or a field of that name. The widget follows at the next turn of the event
/// loop.
class BoundLine : public QObject
{
    Q_OBJECT

public:
    /// `connection` must outlive this; the line may go before it.
    BoundLine(QLineEdit &line, DataConnection &connection, QString field);

    /// The field of the current record, empty without one.
    /// @throws RuntimeError as RecordSet::field().
    QString text() const;

private:
    QString shown() const;
    void follow_later();

    QPointer<QLineEdit> line_;
    DataConnection &connection_;
    QString field_;
    bool follows_later_ = false;
};
