#pragma once

#include "mail/inbox.h"
#include "mail/mail_profile.h"
#include "mail/server_connection.h"

#include <functional>
#include <memory>

/// Opens a profile's inbox. One on a server is signed on to by its fetch, which asks the function
/// for the credentials, again for each new line.
using InboxOpener =
    std::function<std::unique_ptr<Inbox>(const MailProfile &, std::function<Credentials()>)>;

/// The one place that chooses among the kinds of inbox.
/// @throws RuntimeError 32000 from the opener when this machine's inbox is not there.
InboxOpener inbox_opener(NetworkConditions conditions);
