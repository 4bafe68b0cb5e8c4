#include "mail/keychain_passwords.h"

#include <QEventLoop>
#include <QTimer>
#include <qt6keychain/keychain.h>

namespace
{
const QString service = QStringLiteral("Ostrix");

// The name differs for every key, and says in the keychain's own window what it is.
QString entry_name(const PasswordKey &key)
{
    const QString use =
        key.use == MailUse::Reading ? QStringLiteral("inbox") : QStringLiteral("sending");
    return QStringLiteral("%1 (%2: %3)").arg(key.profile.toCaseFolded(), use, key.account);
}

StoreAnswer answer_of(const QKeychain::Job &job)
{
    switch (job.error()) {
    case QKeychain::NoError:
        return StoreAnswer::Done;
    case QKeychain::EntryNotFound:
        return StoreAnswer::Absent;
    default:
        // Without a session bus the library answers OtherError: no error can be told from a
        // keychain that is not there.
        return StoreAnswer::NoStore;
    }
}

// The job deletes itself when it ends; one that is given up does so whenever its service answers.
template <typename Job, typename Done>
void run_job(Job &job, std::chrono::milliseconds patience, Done done)
{
    QEventLoop loop;
    QObject::connect(&job, &QKeychain::Job::finished, &loop, [&] {
        done(job);
        loop.quit();
    });
    QTimer::singleShot(patience, &loop, &QEventLoop::quit);
    job.setInsecureFallback(false);
    job.start();
    loop.exec(QEventLoop::ExcludeUserInputEvents);
}

template <typename Job>
Job &make_job(const PasswordKey &key)
{
    auto *job = new Job(service);
    job->setAutoDelete(true);
    job->setKey(entry_name(key));
    return *job;
}
} // namespace

StoredPassword KeychainPasswords::read(const PasswordKey &key)
{
    StoredPassword found;
    run_job(make_job<QKeychain::ReadPasswordJob>(key), patience_,
            [&](const QKeychain::ReadPasswordJob &job) {
                found.answer = answer_of(job);
                if (found.answer == StoreAnswer::Done)
                    found.password = job.textData();
            });
    return found;
}

StoreAnswer KeychainPasswords::write(const PasswordKey &key, const QString &password)
{
    auto &job = make_job<QKeychain::WritePasswordJob>(key);
    job.setTextData(password);
    StoreAnswer answer = StoreAnswer::NoStore;
    run_job(job, patience_, [&](const QKeychain::Job &ended) { answer = answer_of(ended); });
    return answer;
}

StoreAnswer KeychainPasswords::remove(const PasswordKey &key)
{
    StoreAnswer answer = StoreAnswer::NoStore;
    run_job(make_job<QKeychain::DeletePasswordJob>(key), patience_,
            [&](const QKeychain::Job &ended) { answer = answer_of(ended); });
    return answer;
}
