#pragma once

#include <QByteArrayView>
#include <QString>

/// One correspondent of an address field.
struct Mailbox
{
    QString address; ///< "ann@example.org"; empty when the field gives none
    QString name;    ///< decoded, one line
};

/// The first mailbox of an unfolded From or Sender value (RFC 5322 3.4), read tolerantly: the old
/// "address (Name)" form, routes, groups, doubled angle brackets, commas in unquoted names and
/// unclosed quotes, comments and brackets all give what a person would read there. Costs one pass,
/// whatever the value holds.
Mailbox first_mailbox(QByteArrayView value);
