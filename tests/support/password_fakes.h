#pragma once

#include "mail/log_on.h"
#include "mail/password_store.h"

#include <QStringList>

#include <deque>
#include <map>

/// A keychain of the test's own, which may have gone away.
class FakeKeychain : public PasswordStore
{
public:
    bool answers = true;
    int reads = 0;
    std::map<QString, QString> entries; // "work inbox ann on mail.example.org" → password

    static QString entry(const PasswordKey &key)
    {
        return key.profile.toCaseFolded() +
               (key.use == MailUse::Reading ? QStringLiteral(" inbox ")
                                            : QStringLiteral(" sending ")) +
               key.account;
    }

    StoredPassword read(const PasswordKey &key) override
    {
        ++reads;
        if (!answers)
            return {};
        const auto found = entries.find(entry(key));
        return found == entries.end() ? StoredPassword{StoreAnswer::Absent, {}}
                                      : StoredPassword{StoreAnswer::Done, found->second};
    }
    StoreAnswer write(const PasswordKey &key, const QString &password) override
    {
        if (!answers)
            return StoreAnswer::NoStore;
        entries[entry(key)] = password;
        return StoreAnswer::Done;
    }
    StoreAnswer remove(const PasswordKey &key) override
    {
        if (!answers)
            return StoreAnswer::NoStore;
        return entries.erase(entry(key)) > 0 ? StoreAnswer::Done : StoreAnswer::Absent;
    }
};

/// A log-on dialog that writes down what it is asked and gives the answers put in, then none.
class ScriptedLogOn : public LogOnDialog
{
public:
    std::deque<AccountAnswer> accounts;
    std::deque<PasswordAnswer> passwords;
    QStringList reasons;
    AccountQuestion last_account;
    PasswordQuestion last_password;

    std::optional<AccountAnswer> choose_account(const AccountQuestion &question) override
    {
        reasons += question.reason;
        last_account = question;
        return next(accounts);
    }
    std::optional<PasswordAnswer> ask_password(const PasswordQuestion &question) override
    {
        reasons += question.reason;
        last_password = question;
        return next(passwords);
    }

private:
    template <typename Answer>
    static std::optional<Answer> next(std::deque<Answer> &answers)
    {
        if (answers.empty())
            return std::nullopt;
        const Answer answer = answers.front();
        answers.pop_front();
        return answer;
    }
};
