#pragma once

#include "mail/mail_profile.h"
#include "mail/mailbox_field.h"

/// Who sends a profile's messages: the profile's name and address, resolved; without an address the
/// user's own local one, "user@host", where the host is the one that this machine names its mail by
/// (/etc/mailname), else its own name.
/// @throws RuntimeError 32000 when the profile's address is none.
Mailbox sender_of(const MailProfile &profile);
