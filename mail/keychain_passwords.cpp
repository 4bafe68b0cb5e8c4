#include "mail/keychain_passwords.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QEventLoop>
#include <QTimer>
#include <qt6keychain/keychain.h>

#include <array>
#include <functional>
#include <memory>

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

// Asks the services behind keychains whether they are there; the bus answers for those that are
// not.
// @param on_silence  called when none is, or none that says so in time.
void ask_for_life(std::chrono::milliseconds patience, QObject &asker,
                  const std::function<void()> &on_silence)
{
    static constexpr std::array names = {"org.freedesktop.secrets", "org.kde.kwalletd6",
                                         "org.kde.kwalletd5"};
    const auto silent = std::make_shared<std::size_t>(0);
    for (const char *name : names) {
        QDBusMessage ping = QDBusMessage::createMethodCall(
            QLatin1String(name), QStringLiteral("/"), QStringLiteral("org.freedesktop.DBus.Peer"),
            QStringLiteral("Ping"));
        ping.setAutoStartService(false);
        auto *answer = new QDBusPendingCallWatcher(
            QDBusConnection::sessionBus().asyncCall(ping, static_cast<int>(patience.count())),
            &asker);
        QObject::connect(answer, &QDBusPendingCallWatcher::finished, &asker,
                         [answer, silent, on_silence] {
                             if (answer->isError() && ++*silent == names.size())
                                 on_silence();
                         });
    }
}

// The job deletes itself when it ends; one that is given up does so whenever its service answers.
// A service that is there and does not answer has a person type the keychain's own password.
template <typename Job, typename Done>
void run_job(Job &job, const KeychainPatience &patience, Done done)
{
    QEventLoop loop;
    QObject::connect(&job, &QKeychain::Job::finished, &loop, [&] {
        done(job);
        loop.quit();
    });
    QTimer unanswered;
    QObject::connect(&unanswered, &QTimer::timeout, &loop,
                     [&] { ask_for_life(patience.silence / 2, loop, [&] { loop.quit(); }); });
    unanswered.start(patience.silence / 2);
    QTimer::singleShot(patience.person, &loop, &QEventLoop::quit);
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
