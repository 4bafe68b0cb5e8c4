#pragma once

#include "mail/mail_profile.h"
#include "platform/runtime_error.h"

#include <QByteArray>
#include <QDeadlineTimer>
#include <QList>
#include <QSslCertificate>
#include <QString>

#include <chrono>
#include <functional>
#include <memory>

class QHostAddress;
class QSslConfiguration;
class QSslSocket;

/// What is taken of a server that sends on and on. Those that keep to what they say stay far below.
struct AnswerBounds
{
    qint64 most_held = qint64(256) * 1024 * 1024;       // bytes of messages that were not read yet
    qint64 most_passed_over = qint64(64) * 1024 * 1024; // of a text beyond those
    int most_lines = 10'000'000;                        // of a list of numbers
    int most_named_lines = 1'000'000;                   // of a list whose lines are kept
};

/// Whether a line between these two ends does not leave this machine.
bool is_this_machine(const QHostAddress &peer, const QHostAddress &local);

/// What all network work shares.
struct NetworkConditions
{
    /// The longest silence of a server that any one step bears.
    std::chrono::milliseconds patience = std::chrono::seconds(60);
    /// Gives the windows a turn to paint while a step waits, several times a second; takes no
    /// input.
    std::function<void()> turn = [] {};
    /// Certificates that are trusted in place of the system's own (tests); none: those.
    QList<QSslCertificate> authorities;
    AnswerBounds bounds = {};
    /// Which lines carry secrets unencrypted (tests: none).
    std::function<bool(const QHostAddress &peer, const QHostAddress &local)> stays_here =
        is_this_machine;
};

/// The line broke or the server closed it: a new line may do better.
class LineLost : public RuntimeError
{
public:
    using RuntimeError::RuntimeError;
};

/// The server did not answer in time.
class ServerSilent : public RuntimeError
{
public:
    using RuntimeError::RuntimeError;
};

/// A line to a mail server, over TCP and TLS 1.2 or later. The certificate chain and the host name
/// are always verified. Blocks its caller; every wait ends after the conditions' patience: a line,
/// or 16 KiB of it or of bytes, must have come by then. All waits for the answer to what was
/// written, of however many lines, end after ten times as long, or begin anew with 256 KiB; in a
/// short step, all of its waits end by then, or after 1 MiB. Every
/// failure is RuntimeError 32000 that names the server, the step and the reason; LineLost when an
/// open line broke, ServerSilent when a wait was too long.
class ServerConnection
{
public:
    /// @param server  its host, its security, and its port, which must not be 0 here.
    ServerConnection(MailServer server, NetworkConditions conditions);
    ~ServerConnection();
    ServerConnection(const ServerConnection &) = delete;
    ServerConnection &operator=(const ServerConnection &) = delete;

    /// From now on each step bears a silence of this length; another answer is waited for.
    void set_patience(std::chrono::milliseconds patience);
    /// Whether a step's end depends on how much there is (reading messages) or not (logging in).
    enum class StepLength { Short, Any };

    /// Names what is done from now on ("logging in"): the step in failures of the line itself.
    void begin(const QString &step, StepLength length = StepLength::Any);
    const QString &step() const { return step_; }

    /// Opens the line; with LineSecurity::Tls it is encrypted when this returns.
    void open();
    /// Encrypts the open line after the server's go-ahead to STARTTLS. What the server has sent
    /// beyond that go-ahead is an attack or a fault: it fails.
    void start_tls();
    bool is_encrypted() const;
    /// Whether a password may be sent: the line is encrypted, or the server is this machine.
    bool may_carry_secrets() const;

    /// Returns when nearly all bytes have gone to the system.
    void write(const QByteArray &bytes);
    /// The next line without its CR LF (or LF). @throws also when it is longer than `limit` bytes.
    QByteArray read_line(qsizetype limit = qsizetype(64) * 1024);
    /// The next line with its LF, or, when it is longer, its next `limit` bytes.
    QByteArray read_piece_of_line(qsizetype limit);
    /// Exactly `count` bytes.
    QByteArray read_bytes(qsizetype count);
    /// From now on no wait is longer than this, and what is left to do is a short step.
    void hurry(std::chrono::milliseconds patience);
    /// What was written goes out, as far as the server takes it at once. Never fails.
    void close();

    /// Lets the windows paint when they have not for a while: for long work between two waits.
    void give_turn();

    /// Bytes received so far, for measurements.
    qint64 received() const { return received_; }

    /// From now on a server's words that repeat `secret`, or six characters of it, are not shown in
    /// failures.
    void hide(const QByteArray &secret);

    /// The server's words, or that they are not shown when they repeat a secret. For words that are
    /// told otherwise than by fail(), before they are cut.
    QString without_secrets(const QString &words) const;

    /// Throws the failure of a step ("logging in") with the server's words, control characters
    /// taken out and cut to a readable length; never names a secret.
    [[noreturn]] void fail(const QString &step, const QString &words) const;
    /// The same as another kind of RuntimeError.
    template <typename Error>
    [[noreturn]] void fail_as(const QString &step, const QString &words) const
    {
        throw Error(error_number::mail_failure, described(step, words));
    }
    /// Runs `what`, which knows nothing of lines, and tells its failure as this server's.
    template <typename What>
    auto telling_failure(What &&what) const
    {
        try {
            return what();
        } catch (const RuntimeError &error) {
            fail(step_, error.description());
        }
    }

private:
    /// How long a reading waits: until `end`, or anew once so many bytes have been received.
    struct Patience
    {
        QDeadlineTimer end;
        qint64 goal = 0;
    };

    QString described(const QString &step, const QString &words) const;
    QSslConfiguration tls_configuration() const;
    void encrypt();
    Patience new_patience() const;
    void begin_answer();
    void wait_for_more(Patience &patience);
    void wait_until(const QDeadlineTimer &end, const std::function<bool()> &is_done,
                    const std::function<void(int)> &wait);
    [[noreturn]] void report_lost() const;
    bool pull();
    QByteArray take(qsizetype count);
    qsizetype available() const { return buffer_.size() - at_; }

    MailServer server_;
    NetworkConditions conditions_;
    QString step_ = QStringLiteral("connecting");
    StepLength length_ = StepLength::Short;
    QList<QByteArray> secrets_;
    std::unique_ptr<QSslSocket> socket_;
    QByteArray buffer_; // received and from at_ on not yet read
    qsizetype at_ = 0;
    qint64 received_ = 0;
    qint64 step_end_ = 0; // of a short step: so many bytes received
    std::chrono::milliseconds usual_patience_;
    std::chrono::steady_clock::duration answer_time_{}; // that is left to wait for an answer,
    qint64 answer_goal_ = 0;                            // until so many bytes have been received
    std::chrono::steady_clock::time_point last_turn_;
};
