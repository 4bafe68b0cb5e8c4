#pragma once

#include "mail/mail_accounts.h"
#include "mail/profile_inbox.h"
#include "mail/profile_trial.h"
#include "mail/service_records.h"

#include <functional>

/// What the window of the mail profiles works with. The accounts, and the store
/// behind `run`, outlive it.
struct ProfileDesk
{
    MailAccounts &accounts;
    InboxOpener open_inbox;
    WayOutTrial try_way_out;
    ServiceResolver find_services;
    /// Runs an operation that may wait for servers while the windows paint: nothing else that needs
    /// the mail store may begin then.
    std::function<void(const std::function<void()> &operation)> run =
        [](const std::function<void()> &operation) { operation(); };
};
