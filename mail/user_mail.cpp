#include "mail/user_mail.h"

#include "mail/service_lookup.h"

UserMail::UserMail(const QString &profile_file, const StoreDialogs &dialogs,
                   NetworkConditions conditions)
    : conditions_(std::move(conditions)),
      accounts_(ProfileFile(profile_file), keychain_, dialogs.log_on,
                {conditions_.patience, conditions_.turn}),
      store_(accounts_, inbox_opener(conditions_), dialogs.send,
             {conditions_, &QDateTime::currentDateTime})
{
}

ProfileDesk UserMail::profile_desk()
{
    return {accounts_, inbox_opener(conditions_), way_out_trial(conditions_), name_service(),
            [this](const std::function<void()> &operation) { store_.run(operation); }};
}
