#pragma once

#include "tests/mail/servers/stub_server.h"

#include <functional>

/// What a server answers to a command; null: what one by the book does. "close" and "stall" are no
/// answers.
using SmtpAnswer = std::function<QByteArray(const QByteArray &command)>;

/// A server by the book but for what `answer` says.
StubServer::Script by_the_book(SmtpAnswer answer,
                               const QByteArray &extensions = "250-PIPELINING\r\n");

/// What such a server says on one line.
void serve(StubLine &line, const SmtpAnswer &answer, const QByteArray &extensions);

/// Waits until the server has heard its lines to their ends, which may be after the client has
/// left.
void wait_for_end_of(const StubServer &server);

/// The verbs that the server has heard, to the end of its lines.
QList<QByteArray> commands(const StubServer &server);
int count_of(const StubServer &server, const QByteArray &verb);
