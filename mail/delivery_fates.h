#pragma once

#include "mail/mail_way_out.h"

/// What a person must know when not everybody got the message: how many did, then everybody who
/// did not, by what became of them and by the way out's words. Empty when all got it.
QString undelivered(const std::vector<RecipientFate> &fates);
