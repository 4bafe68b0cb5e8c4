#include "mail/sign_on_talk.h"

#include "mail/server_connection.h"
#include "mail/sign_in_refused.h"

#include <utility>

void require_safe_secret(const ServerConnection &line, const Credentials &credentials)
{
    if (credentials.kind == SignInKind::None)
        line.fail(line.step(), QStringLiteral("the server asks for a password"));
    if (!line.may_carry_secrets())
        line.fail(line.step(), QStringLiteral("the line is not encrypted, so no password is sent"));
}

void fail_without_way(const ServerConnection &line, const QList<QByteArray> &offered)
{
    line.fail(line.step(),
              QStringLiteral("the server offers no way to sign on with this; it offers: ") +
                  QString::fromUtf8(offered.join(", ")));
}

SignOnTalk::SignOnTalk(ServerConnection &line, const QList<QByteArray> &offered,
                       const Credentials &credentials)
    : line_(line)
{
    auto exchange = line.telling_failure([&] { return choose_sasl(offered, credentials); });
    if (exchange)
        talk_.emplace(std::move(exchange));
}

QByteArray SignOnTalk::opening(bool takes_initial_response, qsizetype longest)
{
    const QByteArray opening = talk_->opening(takes_initial_response, longest);
    if (const qsizetype blank = opening.indexOf(' '); blank > 0)
        line_.hide(opening.sliced(blank + 1));
    return opening;
}

QByteArray SignOnTalk::answer(const QByteArray &challenge)
{
    QByteArray answer;
    try {
        answer = talk_->answer(challenge);
    } catch (const SignInRefused &refusal) { // the mechanism hears of it before the protocol does
        line_.fail_as<SignInRefused>(line_.step(), refusal.description());
    } catch (const RuntimeError &error) {
        line_.fail(line_.step(), error.description());
    }
    line_.hide(answer);
    return answer;
}

void SignOnTalk::require_proof() const
{
    if (!talk_->is_complete())
        line_.fail(line_.step(),
                   QStringLiteral("the server has not proved that it knows the password"));
}
