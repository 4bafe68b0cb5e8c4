#include "mail/pop3_session.h"

#include "mail/sign_in_refused.h"

#include <algorithm>
#include <utility>

namespace
{
constexpr std::chrono::seconds patience_at_the_end{3};
constexpr quint16 tls_port = 995;
constexpr quint16 plain_port = 110;
constexpr qsizetype longest_piece = qsizetype(64) * 1024;
// A command has 255 bytes at most (RFC 2449 section 4); what is longer is sent when it is asked
// for.
constexpr qsizetype longest_response = 200;

MailServer with_port(MailServer server)
{
    if (server.port == 0)
        server.port = server.security == LineSecurity::Tls ? tls_port : plain_port;
    return server;
}

bool is_accepted(const QByteArray &answer)
{
    return answer.startsWith("+OK");
}

// What stands behind "+OK" or "-ERR".
QString words_of(const QByteArray &answer)
{
    const qsizetype blank = answer.indexOf(' ');
    return QString::fromUtf8(blank < 0 ? answer : answer.sliced(blank + 1));
}
} // namespace

Pop3Session::Pop3Session(const MailServer &server, const NetworkConditions &conditions)
    : server_(with_port(server)),
      connection_(server_, conditions),
      most_lines_(conditions.bounds.most_named_lines)
{
}

void Pop3Session::sign_on(const Credentials &credentials)
{
    connection_.hide(credentials.secret.toUtf8());
    connection_.open();
    connection_.begin(QStringLiteral("connecting"), ServerConnection::StepLength::Short);
    const QByteArray greeting = connection_.read_line();
    if (!is_accepted(greeting))
        connection_.fail(connection_.step(), greeting.startsWith("-ERR")
                                                 ? words_of(greeting)
                                                 : QStringLiteral("this is no POP3 server"));
    if (server_.security == LineSecurity::StartTls)
        start_tls();
    authenticate(credentials);
    read_capabilities();
}

void Pop3Session::read_capabilities()
{
    capabilities_.clear();
    send("CAPA");
    names_capabilities_ = !read_status(); // an old server knows none
    if (names_capabilities_)
        read_lines([this](const QByteArray &line) { capabilities_ += line.trimmed().toUpper(); });
}

bool Pop3Session::can(const QByteArray &capability) const
{
    return std::ranges::any_of(capabilities_, [&](const QByteArray &line) {
        return line.split(' ').first() == capability;
    });
}

QByteArrayList Pop3Session::mechanisms() const
{
    for (const QByteArray &line : capabilities_) {
        if (line.startsWith("SASL "))
            return line.sliced(5).split(' ');
    }
    return {};
}

void Pop3Session::start_tls()
{
    connection_.begin(QStringLiteral("encrypting the line"), ServerConnection::StepLength::Short);
    read_capabilities();
    if (!can("STLS"))
        connection_.fail(connection_.step(),
                         QStringLiteral("the server does not offer to encrypt it (STLS)"));
    run("STLS");
    connection_.start_tls();
}

void Pop3Session::authenticate(const Credentials &credentials)
{
    connection_.begin(QStringLiteral("logging in"), ServerConnection::StepLength::Short);
    require_safe_secret(connection_, credentials);
    read_capabilities();
    SignOnTalk talk(connection_, mechanisms(), credentials);
    if (talk.is_possible())
        authenticate_with(talk);
    else if (credentials.kind == SignInKind::Password)
        log_in(credentials);
    else
        fail_without_way(connection_, mechanisms());
}

void Pop3Session::authenticate_with(SignOnTalk &talk)
{
    send("AUTH " + talk.opening(true, longest_response));
    QByteArray line = connection_.read_line();
    while (line.startsWith("+ ") || line == "+") {
        send(talk.answer(line.sliced(1)));
        line = connection_.read_line();
    }
    if (!is_accepted(line))
        fail_sign_on(connection_, words_of(line));
    talk.require_proof();
}

void Pop3Session::log_in(const Credentials &credentials)
{
    const QByteArray user = credentials.user.toUtf8();
    const QByteArray password = credentials.secret.toUtf8();
    const auto is_control = [](char c) { return static_cast<unsigned char>(c) < ' ' || c == 127; };
    if (std::ranges::any_of(user + password, is_control))
        connection_.fail(connection_.step(), QStringLiteral("the user name or the password holds a "
                                                            "character that cannot be sent"));
    run("USER " + user);
    send("PASS " + password);
    if (const auto refusal = read_status())
        fail_sign_on(connection_, *refusal);
}

void Pop3Session::send(const QByteArray &command)
{
    connection_.write(command + "\r\n");
}

std::optional<QString> Pop3Session::read_status()
{
    const QByteArray answer = connection_.read_line();
    return is_accepted(answer) ? std::nullopt : std::optional(words_of(answer));
}

void Pop3Session::run(const QByteArray &command)
{
    send(command);
    if (const auto refusal = read_status())
        connection_.fail(connection_.step(), *refusal);
}

Pop3Text Pop3Session::read_text(qint64 limit, qint64 most_left_out)
{
    Pop3Text text;
    bool is_new_line = true;
    while (true) {
        QByteArray piece = connection_.read_piece_of_line(longest_piece);
        if (is_new_line && piece.startsWith('.')) {
            if (piece == ".\r\n" || piece == ".\n")
                return text;
            piece.remove(0, 1);
        }
        is_new_line = piece.endsWith('\n');
        const qsizetype kept = std::min<qint64>(piece.size(), limit - text.bytes.size());
        text.bytes.append(piece.constData(), kept);
        text.bytes_left_out += piece.size() - kept;
        if (text.bytes_left_out > most_left_out)
            connection_.fail(connection_.step(), QStringLiteral("the server's text does not end"));
    }
}

void Pop3Session::read_lines(const std::function<void(const QByteArray &line)> &on_line)
{
    for (int lines = 0; lines < most_lines_; ++lines) {
        const QByteArray line = connection_.read_line();
        if (line == ".")
            return;
        on_line(line.startsWith('.') ? line.sliced(1) : line);
    }
    connection_.fail(connection_.step(), QStringLiteral("the server never comes to an end"));
}

void Pop3Session::quit(bool waits)
{
    connection_.hurry(patience_at_the_end);
    attempt([&] {
        send("QUIT");
        if (waits)
            read_status();
    });
    connection_.close();
}
