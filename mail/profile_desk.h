#pragma once

#include "mail/mail_accounts.h"
#include "mail/profile_inbox.h"
#include "mail/profile_trial.h"
#include "mail/service_records.h"

/// What the window of the mail profiles works with. The accounts outlive it.
struct ProfileDesk
{
    MailAccounts &accounts;
    InboxOpener open_inbox;
    WayOutTrial try_way_out;
    ServiceResolver find_services;
};
