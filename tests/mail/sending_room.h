#pragma once

#include "mail/profile_mail_store.h"
#include "tests/mail/mail_texts.h"
#include "tests/support/password_fakes.h"
#include "tests/support/private_home.h"

#include <QFile>
#include <gtest/gtest.h>

/// Notes down what it is shown and answers as it was told to.
class ScriptedSendDialog : public SendDialog
{
public:
    SendAnswer answer = SendAnswer::Send;
    QList<OutgoingMessage> shown;
    QStringList ways_out;

    SendAnswer review(const OutgoingMessage &message, const QString &way_out) override
    {
        shown += message;
        ways_out += way_out;
        return answer;
    }
};

/// A home without an inbox, and a mail program first in PATH that notes down what it is given.
class Sending : public testing::Test
{
protected:
    Sending()
    {
        qputenv("PATH", QFile::encodeName(home.file("bin")) + ":/usr/bin:/bin");
        qputenv("USER", "no-such-user-here");
        set_program("exit 0");
    }

    void set_program(const QByteArray &rest) const
    {
        const QString path = home.file("bin/sendmail");
        put_file(path, "#!/bin/sh\ncd '" + QFile::encodeName(home.path()) +
                           "'\nprintf '%s\\n' \"$@\" >>args\ncat >>input\n" + rest + "\n");
        QFile(path).setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    }
    QByteArray noted(const QString &name) const
    {
        QFile file(home.file(name));
        return file.open(QIODevice::ReadOnly) ? file.readAll() : "(none)";
    }
    bool is_sent() const { return QFile::exists(home.file("input")); }

    // The order of the sending panel.
    void send(const QStringList &recipients, bool show_dialog = false,
              const QString &attachment = {})
    {
        MailSession &session = store.session();
        session.set_DownLoadMail(false);
        session.SignOn();
        MessageSet &messages = store.messages();
        messages.set_MsgIndex(-1);
        messages.set_SessionID(session.SessionID());
        for (int i = 0; i < recipients.size(); ++i) {
            messages.set_RecipIndex(i);
            messages.set_RecipType(i == 0 ? 1 : 3);
            messages.set_RecipAddress(recipients[i]);
            messages.ResolveName();
        }
        messages.set_MsgSubject("Hello");
        messages.set_MsgNoteText("Dear all\r\n");
        if (!attachment.isEmpty())
            messages.set_AttachmentPathName(attachment);
        messages.Send(show_dialog);
        session.SignOff();
        messages.Copy();
    }
    template <typename Action>
    QString failure(Action action)
    {
        try {
            action();
        } catch (const RuntimeError &error) {
            return QString::number(error.number()) + ' ' + error.description();
        }
        return "none";
    }

    PrivateHome home;
    ScriptedLogOn log_on;
    ScriptedSendDialog dialog;
    FakeKeychain keychain;
    MailAccounts accounts{ProfileFile(home.file("profiles.ini")), keychain, &log_on};
    ProfileMailStore store{accounts, inbox_opener({}), &dialog};
};
