#pragma once

#include <QByteArray>
#include <QString>

struct MessageFields;

/// A message of a header (its lines without the empty line) and a body, with LF line ends.
QByteArray mail(const QByteArray &header, const QByteArray &body = "body\n");

/// read_message() of whole bytes that arrived at no known time.
MessageFields fields_of(const QByteArray &message);

/// Writes a file, its folders made; a failure to do so ends the test program.
void put_file(const QString &path, const QByteArray &bytes);
