#include "mail/sendmail_way_out.h"

#include "mail/envelopes.h"
#include "mail/program_run.h"
#include "mail/recipient.h"
#include "platform/drive_path.h"
#include "platform/runtime_error.h"

#include <QFileInfo>
#include <QStandardPaths>

#include <sysexits.h>
#include <utility>

namespace
{
// A program that delivers by itself says nothing until its server has taken the message in, for
// which RFC 5321 (4.5.3.2.6) gives ten minutes: ten times the usual patience.
constexpr int patience_as_a_server = 10;

QString in_path(const QString &name, const QStringList &folders)
{
    const QString found = QStandardPaths::findExecutable(name);
    // Without folders it would look in PATH once more.
    if (!found.isEmpty() || folders.isEmpty())
        return found;
    return QStandardPaths::findExecutable(name, folders);
}

QString at_path(const QString &path)
{
    QString place;
    attempt([&] { place = native_path(path); });
    const QFileInfo info(place);
    return info.isFile() && info.isExecutable() ? info.absoluteFilePath() : QString();
}

bool is_path(const QString &named)
{
    return named.contains(u'/') || named.contains(u'\\');
}

// Other codes tell of a failure that may have come after the message had been passed on.
Fate fate_of_exit(int code)
{
    switch (code) {
    case EX_OK:
        return Fate::Accepted;
    case EX_TEMPFAIL:
        return Fate::NotNow;
    case EX_USAGE:
    case EX_DATAERR:
    case EX_NOINPUT:
    case EX_NOUSER:
    case EX_NOHOST:
    case EX_UNAVAILABLE:
    case EX_CANTCREAT:
    case EX_NOPERM:
    case EX_CONFIG:
        return Fate::Refused;
    default:
        return Fate::Unknown;
    }
}

RecipientFate fate_of(const ProgramEnd &end)
{
    const QString words = harmless_text(end.words);
    const auto telling = [&words](Fate fate, const QString &what) {
        return RecipientFate{
            {}, fate, words.isEmpty() ? what : what + QStringLiteral(": ") + words};
    };
    switch (end.kind) {
    case ProgramEnd::Kind::NotStarted:
        return telling(Fate::NotTried, QStringLiteral("the program did not start"));
    case ProgramEnd::Kind::Crashed:
        return telling(Fate::Unknown, QStringLiteral("the program crashed"));
    case ProgramEnd::Kind::TimedOut:
        return telling(Fate::Unknown, QStringLiteral("the program hung and was ended"));
    case ProgramEnd::Kind::InputLeft:
        return telling(Fate::Unknown, QStringLiteral("the program did not read the whole message"));
    case ProgramEnd::Kind::Exited:
        break;
    }
    const Fate fate = fate_of_exit(end.exit_code);
    return fate == Fate::Accepted
               ? RecipientFate{{}, fate, {}}
               : telling(fate, QStringLiteral("exit code %1").arg(end.exit_code));
}
} // namespace

QString find_sendmail(const QString &named, const QStringList &folders)
{
    const QString wanted = named.isEmpty() ? QStringLiteral("sendmail") : named;
    QString found = is_path(wanted) ? at_path(wanted) : in_path(wanted, folders);
    if (found.isEmpty())
        throw RuntimeError(
            error_number::mail_failure,
            QStringLiteral(
                "There is no program \"%1\" on this machine to send mail with. Install a mail "
                "server, or set up a mail profile that sends through one.")
                .arg(harmless_text(wanted)));
    return found;
}

SendmailWayOut::SendmailWayOut(QString program, NetworkConditions conditions)
    : program_(std::move(program)),
      conditions_(std::move(conditions))
{
}

QString SendmailWayOut::name() const
{
    return QStringLiteral("the program %1").arg(program_);
}

std::vector<RecipientFate> SendmailWayOut::hand_over(const QString &sender,
                                                     const QStringList &recipients,
                                                     const QByteArray &message)
{
    const QByteArray input = QByteArray(message).replace("\r\n", "\n");
    const RecipientFate not_tried{
        {}, Fate::NotTried, QStringLiteral("the program hung before it was their turn")};
    std::vector<RecipientFate> fates(static_cast<std::size_t>(recipients.size()));
    bool has_hung = false; // it would again, at the cost of another wait
    for (const Envelope &envelope : envelopes_for(recipients)) {
        QStringList arguments = {QStringLiteral("-i"), QStringLiteral("-f"), sender,
                                 QStringLiteral("--")};
        for (const qsizetype place : envelope)
            arguments += recipients[place];
        RecipientFate fate = not_tried;
        if (!has_hung) {
            const ProgramEnd end =
                run_program(program_, arguments, input, patience_as_a_server * conditions_.patience,
                            conditions_.turn);
            has_hung = end.kind == ProgramEnd::Kind::TimedOut;
            fate = fate_of(end);
        }
        for (const qsizetype place : envelope) {
            fate.recipient = recipients[place];
            fates[static_cast<std::size_t>(place)] = fate;
        }
    }
    return fates;
}
