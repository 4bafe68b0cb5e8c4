#pragma once

#include "mail/profile_inbox.h"
#include "mail/profile_rules.h"

#include <functional>

/// Tries a profile's way out without sending anything. @return what was found, as a sentence.
/// @throws RuntimeError 32000 with what failed.
using WayOutTrial = std::function<QString(const MailProfile &, std::function<Credentials()>)>;

/// The trial for every kind of way out.
WayOutTrial way_out_trial(NetworkConditions conditions);

struct TrialReport
{
    QString text; // a line for reading, a line for sending
    bool all_well = false;
};

/// Reads and sends, as far as that can be tried: signs on, counts the messages, asks the way out.
/// Nothing is changed and nothing sent. Says what it found or exactly what failed; throws nothing.
TrialReport try_profile(const MailProfile &profile, const InboxOpener &open_inbox,
                        const WayOutTrial &try_way_out,
                        const std::function<Credentials(MailUse)> &credentials);
