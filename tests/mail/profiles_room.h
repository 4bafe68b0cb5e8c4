#pragma once

#include "mail/sign_in_refused.h"
#include "tests/mail/mail_texts.h"
#include "tests/support/program_window.h"

#include <QAction>
#include <QComboBox>
#include <QDialog>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QSpinBox>
#include <QTest>

/// The open window, as a person uses it. A field of a server is named "inbox_server/host".
class ProfilesWindow
{
public:
    explicit ProfilesWindow(QDialog &dialog) : dialog_(dialog)
    {
        dialog.activateWindow(); // only in an active window does a field notice that it is left
        EXPECT_TRUE(QTest::qWaitFor([&] { return QApplication::activeWindow() == &dialog; }));
    }

    template <typename Control>
    Control &control(const QString &name) const
    {
        QWidget *within = &dialog_;
        const QStringList path = name.split('/');
        for (const QString &part : path.mid(0, path.size() - 1))
            within = within->findChild<QWidget *>(part);
        auto *found = within->findChild<Control *>(path.last());
        if (found == nullptr)
            throw std::runtime_error("there is no control " + name.toStdString());
        return *found;
    }
    void click(const QString &name) const
    {
        auto &button = control<QPushButton>(name);
        ASSERT_TRUE(button.isEnabled() && button.isVisible()) << name.toStdString();
        QTest::mouseClick(&button, Qt::LeftButton);
    }
    void type(const QString &name, const QString &typed) const
    {
        auto &line = control<QLineEdit>(name);
        ASSERT_TRUE(line.isVisible()) << name.toStdString();
        line.setFocus();
        QTest::keyClick(&line, Qt::Key_A, Qt::ControlModifier);
        QTest::keyClick(&line, Qt::Key_Delete);
        QTest::keyClicks(&line, typed);
    }
    /// Leaves the field, as the Tab key does.
    void leave(const QString &name) const
    {
        QTest::keyClick(&control<QLineEdit>(name), Qt::Key_Tab);
    }
    void choose(const QString &name, const QString &item) const
    {
        auto &box = control<QComboBox>(name);
        ASSERT_GE(box.findText(item), 0) << item.toStdString();
        box.setFocus();
        QTest::keyClick(&box, Qt::Key_Home);
        for (int i = 0; i < box.findText(item); ++i)
            QTest::keyClick(&box, Qt::Key_Down);
    }
    void select(int row) const
    {
        auto &list = control<QListWidget>("profiles");
        const QRect place = list.visualItemRect(list.item(row));
        QTest::mouseClick(list.viewport(), Qt::LeftButton, {}, place.center());
    }
    QString text(const QString &name) const { return control<QLineEdit>(name).text(); }
    QString chosen(const QString &name) const { return control<QComboBox>(name).currentText(); }
    QString result() const { return control<QLabel>("result").text(); }
    bool is_shown(const QString &name) const { return control<QWidget>(name).isVisible(); }
    QStringList names() const
    {
        QStringList names;
        const auto &list = control<QListWidget>("profiles");
        for (int row = 0; row < list.count(); ++row)
            names += list.item(row)->text();
        return names;
    }
    void close() const { click("close_window"); }
    QDialog &dialog() const { return dialog_; }

private:
    QDialog &dialog_;
};

/// An inbox that takes one password.
class GuardedInbox : public Inbox
{
public:
    explicit GuardedInbox(std::function<Credentials()> credentials)
        : credentials_(std::move(credentials))
    {
    }
    void fetch() override
    {
        if (credentials_().secret != "right")
            throw SignInRefused(32000, "imap.example.org: logging in: <b>no</b>");
    }
    int count() const override { return 1234; }
    MessageFields read(int) override { return {}; }

private:
    std::function<Credentials()> credentials_;
};

class MailProfiles : public ProgramWindow
{
protected:
    MailProfiles()
    {
        qputenv("USER", "no-such-user-here");
        profile_desk.open_inbox = [](const MailProfile &profile,
                                     std::function<Credentials()> credentials) {
            return server_for(profile, MailUse::Reading) == nullptr
                       ? inbox_opener({})(profile, credentials)
                       : std::make_unique<GuardedInbox>(credentials);
        };
        profile_desk.try_way_out = [](const MailProfile &profile,
                                      const std::function<Credentials()> &credentials) {
            return profile.outgoing_server.host + " took " + credentials().user;
        };
    }
    void open(std::function<void(ProfilesWindow)> use)
    {
        boxes.expect_dialog("Mail Profiles",
                            [use](QDialog &dialog) { use(ProfilesWindow(dialog)); });
        choose("MailProfiles");
    }
    static MailProfile stored(const QString &name)
    {
        MailProfile profile;
        profile.name = name;
        profile.sender_address = "ann@example.org";
        profile.inbox = InboxKind::Imap;
        profile.inbox_server.host = "imap.example.org";
        profile.inbox_server.user = "ann";
        profile.outgoing = OutgoingKind::Smtp;
        profile.outgoing_server.host = "smtp.example.org";
        profile.outgoing_server.user = "ann";
        return profile;
    }
    /// The name service answers with this host, when answer() is called.
    void name_service_answers(const QString &host)
    {
        profile_desk.find_services = [this, host](const QStringList &names, QObject &asker,
                                                  const ServicesFound &found) {
            asked += names;
            asker_ = &asker;
            answer_ = [host, found] {
                found({{"_imaps._tcp.example.org", host, 993},
                       {"_submissions._tcp.example.org", host, 465}});
            };
        };
    }
    void answer()
    {
        if (asker_)
            answer_();
    }
    QStringList asked;
    const QString question_about_changes =
        "The mail profile '%1' has changes that are not saved. Save them?";

private:
    QPointer<QObject> asker_;
    std::function<void()> answer_;
};
