#pragma once

#include "mail/mail_profile.h"
#include "mail/service_records.h"

#include <QObject>

#include <memory>

class EventHandlers;
class ProfileForm;
class Prompts;

/// Proposes the servers of the address in the form of a mail profile: those of a well-known
/// provider, else those that the name service names. It answers later, while the window goes on;
/// what a person has changed by then stays.
class ServerFinder : public QObject
{
    Q_OBJECT

public:
    using Say = std::function<void(const QString &text)>;

    /// `say` shows a text in place of the one before. All of it outlives the finder.
    ServerFinder(ProfileForm &form, Prompts &prompts, ServiceResolver resolver, Say say);
    ~ServerFinder() override;

    void wire(EventHandlers &handlers);

    /// What the name service has been asked and not yet answered is of no more interest; the
    /// address that the form shows is not asked about by itself any more.
    void drop();

Q_SIGNALS:
    void answered();

private:
    void sender_address_Change();
    void find_servers_Click();

    bool propose_known();
    void ask(bool is_attended);
    void take_answer();
    void propose(const ServerProposal &found);
    bool agrees_to(const QStringList &foreign);
    bool is_form_as_asked() const;
    QStringList typed_passwords() const;

    ProfileForm &form_;
    Prompts &prompts_;
    ServiceResolver resolver_;
    Say say_;
    std::unique_ptr<QObject> question_; // while an answer is waited for
    MailProfile asked_for_;             // as the form showed it
    QStringList asked_passwords_;
    bool is_attended_ = false; // a person pressed the button
    std::vector<ServiceRecord> records_;
};
