#include "mail/server_connection.h"

#include "mail/tcp_line.h"

#include <QDeadlineTimer>
#include <QHostAddress>
#include <QSet>
#include <QSslConfiguration>
#include <QSslError>
#include <QSslSocket>
#include <QStringList>

#include <algorithm>
#include <unistd.h>
#include <utility>

namespace
{
constexpr int slice = 40;                              // milliseconds
constexpr qsizetype least_progress = 16'384;           // in the time of one patience
constexpr qint64 least_of_an_answer = qint64(262'144); // in the time for one
constexpr qint64 most_of_a_short_step = qint64(1024) * 1024;
constexpr qint64 most_unsent = qint64(64) * 1024;
constexpr int longest_words = 300;
constexpr int patience_for_an_answer = 10; // times that for a line
// What a server sends faster than it is read waits with the server.
constexpr qint64 most_unread = qint64(1024) * 1024;

// Letters that turn the direction of a text or do not show are no better than control characters.
bool is_hidden(QChar c)
{
    const QChar::Category category = c.category();
    return category == QChar::Other_Control || category == QChar::Other_Format ||
           category == QChar::Separator_Line || category == QChar::Separator_Paragraph;
}

QString readable(QString words)
{
    std::ranges::replace_if(words, is_hidden, QChar(u' '));
    words = words.simplified();
    if (words.size() > longest_words)
        words = words.left(longest_words) + QStringLiteral(" …");
    return words;
}

// Servers quote so many characters of a command that they cannot make sense of, some in capitals: a
// piece of a secret is one, too.
bool repeats(const QString &words, const QString &secret)
{
    constexpr qsizetype shortest_piece = 6;
    const QString said = words.toCaseFolded();
    const QString hidden = secret.toCaseFolded();
    if (hidden.size() <= shortest_piece)
        return said.contains(hidden);
    QSet<QStringView> pieces;
    for (qsizetype at = 0; at + shortest_piece <= hidden.size(); ++at)
        pieces.insert(QStringView(hidden).sliced(at, shortest_piece));
    for (qsizetype at = 0; at + shortest_piece <= said.size(); ++at) {
        if (pieces.contains(QStringView(said).sliced(at, shortest_piece)))
            return true;
    }
    return false;
}

QString seconds(std::chrono::milliseconds time)
{
    return QStringLiteral("%1 seconds").arg(static_cast<double>(time.count()) / 1000);
}

QString certificate_faults(const QList<QSslError> &faults)
{
    QStringList words;
    for (const QSslError &fault : faults)
        words += fault.errorString();
    words.removeDuplicates();
    return QStringLiteral("the server's certificate cannot be trusted: ") +
           words.join(QStringLiteral(" / "));
}
} // namespace

bool is_this_machine(const QHostAddress &peer, const QHostAddress &local)
{
    return peer.isLoopback() || (!peer.isNull() && peer.isEqual(local));
}

ServerConnection::ServerConnection(MailServer server, NetworkConditions conditions)
    : server_(std::move(server)),
      conditions_(std::move(conditions)),
      socket_(std::make_unique<QSslSocket>()),
      usual_patience_(conditions_.patience)
{
    begin_answer();
}

ServerConnection::~ServerConnection()
{
    close();
}

void ServerConnection::begin(const QString &step, StepLength length)
{
    step_ = step;
    if (length == StepLength::Short || length_ == StepLength::Short)
        begin_answer();
    length_ = length;
    step_end_ = received_ + most_of_a_short_step;
}

void ServerConnection::open()
{
    begin(QStringLiteral("connecting"), StepLength::Short);
    const TcpLine line =
        open_tcp_line(server_.host, server_.port, conditions_.patience, conditions_.turn);
    if (line.descriptor < 0)
        fail(step_, line.trouble);
    buffer_.clear();
    at_ = 0;
    socket_ = std::make_unique<QSslSocket>();
    if (!socket_->setSocketDescriptor(line.descriptor)) {
        ::close(line.descriptor);
        fail(step_, socket_->errorString());
    }
    socket_->setReadBufferSize(most_unread);
    begin_answer();
    if (server_.security == LineSecurity::Tls)
        encrypt();
}

void ServerConnection::start_tls()
{
    begin(QStringLiteral("encrypting the line"), StepLength::Short);
    pull();
    if (available() > 0)
        fail(step_, QStringLiteral("the server went on in plain text after its go-ahead"));
    encrypt();
}

QSslConfiguration ServerConnection::tls_configuration() const
{
    QSslConfiguration configuration = QSslConfiguration::defaultConfiguration();
    configuration.setProtocol(QSsl::TlsV1_2OrLater);
    configuration.setPeerVerifyMode(QSslSocket::VerifyPeer);
    // Whatever is set here, nothing too, keeps the system's authorities from being looked up.
    if (!conditions_.authorities.isEmpty())
        configuration.setCaCertificates(conditions_.authorities);
    return configuration;
}

void ServerConnection::encrypt()
{
    begin(QStringLiteral("encrypting the line"), StepLength::Short);
    if (!QSslSocket::supportsSsl())
        fail(step_, QStringLiteral("this system has no TLS library"));
    socket_->setSslConfiguration(tls_configuration());
    QString host = server_.host;
    if (host.startsWith(u'[') && host.endsWith(u']'))
        host = host.sliced(1, host.size() - 2);
    socket_->setPeerVerifyName(host);
    socket_->startClientEncryption();
    wait_until(
        QDeadlineTimer(conditions_.patience), [this] { return socket_->isEncrypted(); },
        [this](int time) { socket_->waitForEncrypted(time); });
    begin_answer();
}

bool ServerConnection::is_encrypted() const
{
    return socket_->isEncrypted();
}

bool ServerConnection::may_carry_secrets() const
{
    return is_encrypted() ||
           conditions_.stays_here(socket_->peerAddress(), socket_->localAddress());
}

void ServerConnection::write(const QByteArray &bytes)
{
    if (socket_->state() != QAbstractSocket::ConnectedState)
        report_lost();
    socket_->write(bytes);
    socket_->flush();
    const auto unsent = [this] {
        return socket_->bytesToWrite() + socket_->encryptedBytesToWrite();
    };
    while (unsent() > most_unsent) {
        const qint64 goal = std::max(most_unsent, unsent() - least_progress);
        wait_until(
            QDeadlineTimer(conditions_.patience), [&] { return unsent() <= goal; },
            [this](int time) { socket_->waitForBytesWritten(time); });
    }
    if (length_ == StepLength::Any)
        begin_answer();
}

QByteArray ServerConnection::read_line(qsizetype limit)
{
    QByteArray line = read_piece_of_line(limit + 2);
    if (!line.endsWith('\n'))
        fail(step_, QStringLiteral("the server sent a line of more than %1 bytes").arg(limit));
    line.chop(line.endsWith("\r\n") ? 2 : 1);
    return line;
}

QByteArray ServerConnection::read_piece_of_line(qsizetype limit)
{
    Patience patience = new_patience();
    qsizetype searched = 0;
    while (true) {
        const qsizetype line_feed = buffer_.indexOf('\n', at_ + searched);
        const qsizetype found = line_feed < 0 ? available() : line_feed + 1 - at_;
        if (line_feed >= 0 || found >= limit)
            return take(std::min(found, limit));
        searched = found;
        wait_for_more(patience);
    }
}

QByteArray ServerConnection::read_bytes(qsizetype count)
{
    Patience patience = new_patience();
    while (available() < count)
        wait_for_more(patience);
    return take(count);
}

QByteArray ServerConnection::take(qsizetype count)
{
    QByteArray taken = buffer_.sliced(at_, count);
    at_ += count;
    return taken;
}

// Moves what the socket holds into the buffer. @return whether there was anything.
bool ServerConnection::pull()
{
    socket_->flush(); // also decrypts what had no room before
    const QByteArray fresh = socket_->readAll();
    if (fresh.isEmpty())
        return false;
    buffer_.remove(0, at_);
    at_ = 0;
    buffer_ += fresh;
    received_ += fresh.size();
    return true;
}

ServerConnection::Patience ServerConnection::new_patience() const
{
    return {QDeadlineTimer(conditions_.patience), received_ + least_progress};
}

void ServerConnection::set_patience(std::chrono::milliseconds patience)
{
    conditions_.patience = patience;
    begin_answer();
}

void ServerConnection::begin_answer()
{
    answer_time_ = patience_for_an_answer * usual_patience_;
    answer_goal_ = received_ + least_of_an_answer;
}

// A server that sends a byte now and then does not begin a new time with each, nor one that sends a
// line now and then. Only waiting counts: the caller may have been busy in between.
void ServerConnection::wait_for_more(Patience &patience)
{
    using Clock = std::chrono::steady_clock;
    if (answer_time_ <= Clock::duration::zero())
        fail_as<ServerSilent>(step_, QStringLiteral("the server did not end its answer within ") +
                                         seconds(patience_for_an_answer * usual_patience_));
    if (length_ == StepLength::Short && received_ > step_end_)
        fail(step_, QStringLiteral("the server's answer does not end"));
    const Clock::time_point begin = Clock::now();
    wait_until(
        patience.end, [this] { return pull(); },
        [this](int time) { socket_->waitForReadyRead(time); });
    answer_time_ -= Clock::now() - begin;
    give_turn(); // also while a fast server keeps the reader busy
    if (length_ == StepLength::Any && received_ >= answer_goal_)
        begin_answer();
    if (received_ >= patience.goal)
        patience = new_patience();
}

void ServerConnection::wait_until(const QDeadlineTimer &end, const std::function<bool()> &is_done,
                                  const std::function<void(int)> &wait)
{
    while (!is_done()) {
        if (socket_->state() != QAbstractSocket::ConnectedState)
            report_lost();
        if (end.hasExpired())
            fail_as<ServerSilent>(step_, QStringLiteral("the server did not answer within ") +
                                             seconds(conditions_.patience));
        wait(slice);
        give_turn();
    }
}

void ServerConnection::give_turn()
{
    const auto now = std::chrono::steady_clock::now();
    if (now - last_turn_ < std::chrono::milliseconds(slice))
        return;
    conditions_.turn();
    last_turn_ = std::chrono::steady_clock::now();
}

// Why an open line is open no longer. A certificate that is refused is refused on the next line
// too.
void ServerConnection::report_lost() const
{
    const QList<QSslError> faults = socket_->sslHandshakeErrors();
    if (!faults.isEmpty())
        fail(step_, certificate_faults(faults));
    if (socket_->error() == QAbstractSocket::SslHandshakeFailedError)
        fail(step_, socket_->errorString());
    const bool was_closed = socket_->error() == QAbstractSocket::RemoteHostClosedError ||
                            socket_->error() == QAbstractSocket::UnknownSocketError;
    fail_as<LineLost>(step_, was_closed ? QStringLiteral("the server closed the line")
                                        : socket_->errorString());
}

void ServerConnection::hurry(std::chrono::milliseconds patience)
{
    conditions_.patience = std::min(conditions_.patience, patience);
    usual_patience_ = std::min(usual_patience_, patience);
    begin(step_, StepLength::Short);
}

void ServerConnection::close()
{
    constexpr int last_words = 500; // milliseconds for what was written
    if (socket_->state() != QAbstractSocket::ConnectedState)
        return;
    socket_->flush();
    socket_->disconnectFromHost();
    if (socket_->state() != QAbstractSocket::UnconnectedState)
        socket_->waitForDisconnected(last_words);
    socket_->abort();
}

void ServerConnection::hide(const QByteArray &secret)
{
    if (!secret.isEmpty() && !secrets_.contains(secret))
        secrets_ += secret;
}

void ServerConnection::fail(const QString &step, const QString &words) const
{
    fail_as<RuntimeError>(step, words);
}

QString ServerConnection::without_secrets(const QString &words) const
{
    const bool repeats_secret = std::ranges::any_of(secrets_, [&words](const QByteArray &secret) {
        return repeats(words, QString::fromUtf8(secret));
    });
    return repeats_secret ? QStringLiteral("its answer repeats a secret and is not shown") : words;
}

QString ServerConnection::described(const QString &step, const QString &words) const
{
    return QStringLiteral("The mail server '%1' (port %2), %3: %4")
        .arg(readable(server_.host), QString::number(server_.port), step,
             readable(without_secrets(words)));
}
