#pragma once

#include <QByteArray>
#include <QList>
#include <QString>

#include <atomic>
#include <functional>
#include <mutex>
#include <thread>

class QSslSocket;

/// A server's end of one line, for scripts. A wait ends after five seconds, or when the server is
/// to stop, as if the client had gone.
class StubLine
{
public:
    StubLine(QSslSocket &socket, const std::atomic<bool> &is_to_stop);

    void say(const QByteArray &bytes);
    /// The client's next line without its CR LF; empty once the client has gone.
    QByteArray hear();
    /// Hears a line and says the answer, in which "TAG" stands for the line's first word.
    QByteArray answer(const QByteArray &answer);
    /// Encrypts the line with this certificate; false when the client refuses.
    bool encrypt(const QString &certificate_file, const QString &key_file);
    /// Neither says nor hears anything until the client has gone.
    void stall();
    bool is_encrypted() const;
    bool is_open() const;
    const QList<QByteArray> &heard() const { return heard_; }

private:
    QSslSocket &socket_;
    const std::atomic<bool> &is_to_stop_;
    QList<QByteArray> heard_;
    bool has_heard_ = false;
};

/// A server on a free port of 127.0.0.1 that does as its script says, in a thread of its own, one
/// line after the other; a line is closed when its script ends.
class StubServer
{
public:
    using Script = std::function<void(StubLine &line)>;

    explicit StubServer(Script script);
    ~StubServer();
    StubServer(const StubServer &) = delete;
    StubServer &operator=(const StubServer &) = delete;

    quint16 port() const { return port_; }
    /// All that clients have said so far, a line each, behind "[clear] " or "[tls] ".
    QList<QByteArray> heard() const;
    /// How many lines were opened so far.
    int lines() const { return lines_; }

private:
    void run();
    void serve(QSslSocket &socket);

    Script script_;
    std::atomic<quint16> port_ = 0;
    std::atomic<int> lines_ = 0;
    std::atomic<bool> is_to_stop_ = false;
    mutable std::mutex mutex_;
    QList<QByteArray> heard_;
    std::thread thread_;
};
