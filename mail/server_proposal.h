#pragma once

#include "mail/mail_profile.h"

#include <QString>

/// The servers that an address may have. One that is not known has no host.
struct ServerProposal
{
    MailServer imap;
    MailServer pop3;
    MailServer smtp;
    QString note; // what a person should know of them, empty for nothing

    bool is_empty() const
    {
        return imap.host.isEmpty() && pop3.host.isEmpty() && smtp.host.isEmpty();
    }
};

/// The domain of an address in lower case; empty when it has none.
QString mail_domain(const QString &address);
