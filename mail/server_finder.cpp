#include "mail/server_finder.h"

#include "mail/known_providers.h"
#include "mail/profile_form.h"
#include "platform/event_handlers.h"
#include "platform/prompts.h"

#include <QPushButton>

ServerFinder::ServerFinder(ProfileForm &form, Prompts &prompts, ServiceResolver resolver, Say say)
    : form_(form),
      prompts_(prompts),
      resolver_(std::move(resolver)),
      say_(std::move(say))
{
}

ServerFinder::~ServerFinder() = default;

void ServerFinder::wire(EventHandlers &handlers)
{
    handlers.on(&form_, &ProfileForm::address_given, [this] { sender_address_Change(); });
    handlers.on_click(&form_.find_servers_button(), [this] { find_servers_Click(); });
    handlers.on(this, &ServerFinder::answered, [this] { take_answer(); });
}

void ServerFinder::drop()
{
    if (question_ != nullptr)
        say_({});
    question_.reset();
    form_.take_address();
}

// Only where nothing would be overwritten.
void ServerFinder::sender_address_Change()
{
    const QString address = form_.profile().sender_address;
    if (!mail_domain(address).isEmpty() && form_.names_no_place() && !propose_known())
        ask(false);
}

void ServerFinder::find_servers_Click()
{
    if (mail_domain(form_.profile().sender_address).isEmpty())
        say_(QStringLiteral("Type your e-mail address first."));
    else if (!propose_known())
        ask(true);
}

bool ServerFinder::propose_known()
{
    const auto known = known_servers(form_.profile().sender_address);
    if (!known)
        return false;
    drop();
    form_.take(*known);
    say_(QStringLiteral("These are the servers of a provider that the program knows. ") +
         known->note);
    return true;
}

void ServerFinder::ask(bool is_attended)
{
    is_attended_ = is_attended;
    asked_for_ = form_.profile();
    asked_passwords_ = typed_passwords();
    const QString domain = mail_domain(asked_for_.sender_address);
    say_(QStringLiteral("Asking the name service for the mail servers of %1 …").arg(domain));
    question_ = std::make_unique<QObject>();
    resolver_(service_names(domain), *question_, [this](const std::vector<ServiceRecord> &records) {
        records_ = records;
        Q_EMIT answered();
    });
}

void ServerFinder::take_answer()
{
    question_.reset();
    if (is_form_as_asked())
        propose(servers_from(records_, asked_for_.sender_address));
    else
        say_(QStringLiteral("What was typed meanwhile stays. Find Servers asks again."));
}

// Names may be typed while the answer is on its way.
bool ServerFinder::is_form_as_asked() const
{
    MailProfile now = form_.profile();
    now.name = asked_for_.name;
    now.sender_name = asked_for_.sender_name;
    return now == asked_for_ && typed_passwords() == asked_passwords_;
}

QStringList ServerFinder::typed_passwords() const
{
    return {form_.typed_password(MailUse::Reading), form_.typed_password(MailUse::Sending)};
}

void ServerFinder::propose(const ServerProposal &found)
{
    const QString address = asked_for_.sender_address;
    const QString domain = mail_domain(address);
    const QStringList foreign = foreign_hosts(found, address);
    // No box comes up beneath the hands of a person who has gone on typing.
    const bool waits = is_attended_ && form_.profile() == asked_for_;
    if (found.is_empty() && !is_attended_) {
        say_(QStringLiteral("The name service names no mail servers of %1. Find Servers proposes "
                            "the usual names.")
                 .arg(domain));
    } else if (found.is_empty()) {
        form_.take(guessed_servers(address));
        say_(QStringLiteral("The name service names no mail servers of %1. These are the usual "
                            "names, a guess: Test says whether they are right.")
                 .arg(domain));
    } else if (!foreign.isEmpty() && !waits) {
        say_(QStringLiteral("The name service names servers outside %1: %2. Find Servers asks "
                            "whether to use them.")
                 .arg(domain, foreign.join(QStringLiteral(", "))));
    } else if (agrees_to(foreign)) {
        form_.take(found);
        say_(QStringLiteral("These are the servers that the name service names for %1.")
                 .arg(domain));
    } else {
        say_({});
    }
}

bool ServerFinder::agrees_to(const QStringList &foreign)
{
    return foreign.isEmpty() ||
           prompts_.yes_no(QStringLiteral("The name service names servers outside %1:\n\n%2\n\n"
                                          "They would be given your user name and password. Do "
                                          "you want to use them?")
                               .arg(mail_domain(asked_for_.sender_address), foreign.join(u'\n')));
}
