#pragma once

#include "mail/server_connection.h"
#include "mail/smtp_reply.h"

#include <QHash>

#include <functional>
#include <optional>
#include <vector>

/// A command, or a message's content, and what takes its answer.
struct SmtpStep
{
    QByteArray bytes; // with CR LF at the end
    std::function<void(const SmtpReply &)> take;
    int patience = 1; // times the usual one, for the answer
};

/// A line to a server that takes mail (RFC 5321): open, encrypted as its settings say, signed on
/// to. Every failure is RuntimeError 32000 with the server, the step and the server's words.
class SmtpSession
{
public:
    /// @param credentials  asked only when the line may carry them.
    SmtpSession(MailServer server, const std::function<Credentials()> &credentials,
                const NetworkConditions &conditions);

    /// Whether the server offers an extension ("PIPELINING").
    bool offers(const QByteArray &extension) const { return extensions_.contains(extension); }
    /// The largest message that the server takes (RFC 1870); nothing when it does not say.
    std::optional<qint64> largest_message() const;

    /// Names what is done from now on, for failures.
    void begin(const QString &step) { line_.begin(step); }
    /// Sends a command, without its CR LF, and gives its answer.
    SmtpReply command(const QByteArray &command);
    /// Sends the steps in their order, all at once where the server takes that (RFC 2920), and has
    /// each one's answer taken.
    void go_through(const std::vector<SmtpStep> &steps);
    /// Takes leave. Never fails.
    void quit();
    /// An answer for a person: "550 5.1.1 no such user"; nothing of it when it repeats a secret.
    QString words_of(const SmtpReply &reply) const;
    [[noreturn]] void fail(const SmtpReply &reply) const { fail(words_of(reply)); }
    [[noreturn]] void fail(const QString &words) const { line_.fail(line_.step(), words); }

private:
    void greet();
    void encrypt();
    void sign_on(const std::function<Credentials()> &credentials);
    void sign_on_with(const Credentials &credentials);
    QList<QByteArray> offered_mechanisms() const;

    MailServer server_;
    std::chrono::milliseconds patience_;
    ServerConnection line_;
    QHash<QByteArray, QByteArray> extensions_; // and their parameters, in capitals
};
