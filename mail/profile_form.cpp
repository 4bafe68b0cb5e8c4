#include "mail/profile_form.h"

#include "mail/server_fields.h"
#include "ui_profile_form.h"

#include <QFileDialog>

#include <algorithm>

namespace
{
void choose_into(QLineEdit &path, const QString &chosen)
{
    if (chosen.isEmpty())
        return;
    path.setText(chosen);
    path.setFocus();
}
// The form is made of several; its fields shall begin at one place.
void align_labels(QWidget &form)
{
    const auto labels = form.findChildren<QLabel *>();
    int widest = 0;
    for (const QLabel *label : labels)
        widest = std::max(widest, label->sizeHint().width());
    for (QLabel *label : labels)
        label->setMinimumWidth(widest);
}
} // namespace

ProfileForm::ProfileForm(QWidget *parent)
    : QWidget(parent),
      ui_(std::make_unique<Ui::ProfileForm>())
{
    ui_->setupUi(this);
    align_labels(*this);
    wire();
    show_profile({});
}

ProfileForm::~ProfileForm() = default;

void ProfileForm::wire()
{
    connect(ui_->sender_address, &QLineEdit::editingFinished, this, &ProfileForm::tell_address);
    connect(ui_->inbox_kind, &QComboBox::activated, this, &ProfileForm::show_proposed_inbox);
    connect(ui_->inbox_kind, &QComboBox::currentIndexChanged, this, &ProfileForm::show_needed);
    connect(ui_->outgoing_kind, &QComboBox::currentIndexChanged, this, &ProfileForm::show_needed);
    for (ServerFields *fields : {ui_->inbox_server, ui_->outgoing_server})
        connect(fields, &ServerFields::security_changed, this, &ProfileForm::show_needed);
    connect(ui_->browse_inbox, &QPushButton::clicked, this, &ProfileForm::browse_inbox);
    connect(ui_->browse_program, &QPushButton::clicked, this, &ProfileForm::browse_program);
}

void ProfileForm::show_profile(const MailProfile &profile)
{
    const bool is_imap = profile.inbox == InboxKind::Imap;
    proposal_ = {};
    ui_->name->setText(profile.name);
    ui_->sender_name->setText(profile.sender_name);
    ui_->sender_address->setText(profile.sender_address);
    given_address_ = profile.sender_address.trimmed();
    ui_->inbox_kind->setCurrentIndex(static_cast<int>(profile.inbox));
    ui_->inbox_path->setText(is_imap ? QString() : profile.inbox_path);
    ui_->mailbox->setText(is_imap ? profile.inbox_path : QString());
    ui_->inbox_server->show_server(profile.inbox_server);
    ui_->outgoing_kind->setCurrentIndex(static_cast<int>(profile.outgoing));
    ui_->sendmail_program->setText(profile.sendmail_program);
    ui_->outgoing_server->show_server(profile.outgoing_server);
    show_needed();
}

MailProfile ProfileForm::profile() const
{
    MailProfile profile;
    profile.name = ui_->name->text();
    profile.sender_name = ui_->sender_name->text().trimmed();
    profile.sender_address = ui_->sender_address->text().trimmed();
    profile.inbox = inbox_kind();
    profile.inbox_path =
        profile.inbox == InboxKind::Imap ? ui_->mailbox->text() : ui_->inbox_path->text();
    profile.inbox_server = ui_->inbox_server->server();
    profile.outgoing = static_cast<OutgoingKind>(ui_->outgoing_kind->currentIndex());
    profile.sendmail_program = ui_->sendmail_program->text();
    profile.outgoing_server = ui_->outgoing_server->server();
    return profile;
}

// The boxes list the kinds in the order of their enumerations.
InboxKind ProfileForm::inbox_kind() const
{
    return static_cast<InboxKind>(ui_->inbox_kind->currentIndex());
}

QString ProfileForm::typed_password(MailUse use) const
{
    const MailProfile shown = profile();
    if (server_for(shown, use) == nullptr)
        return {};
    return (use == MailUse::Reading ? ui_->inbox_server : ui_->outgoing_server)->typed_password();
}

void ProfileForm::forget_passwords()
{
    ui_->inbox_server->forget_password();
    ui_->outgoing_server->forget_password();
}

// A field's editing also ends when it is passed through.
void ProfileForm::tell_address()
{
    const QString address = profile().sender_address;
    if (address == given_address_)
        return;
    given_address_ = address;
    Q_EMIT address_given();
}

void ProfileForm::take_address()
{
    given_address_ = profile().sender_address;
}

bool ProfileForm::names_no_place() const
{
    const MailProfile shown = profile();
    const MailServer *const inbox = server_for(shown, MailUse::Reading);
    const MailServer *const way_out = server_for(shown, MailUse::Sending);
    return (inbox != nullptr ? inbox->host.isEmpty() : shown.inbox == InboxKind::Local) &&
           (way_out != nullptr ? way_out->host.isEmpty() : shown.sendmail_program.isEmpty());
}

void ProfileForm::take(const ServerProposal &proposal)
{
    proposal_ = proposal;
    const bool has_imap = !proposal.imap.host.isEmpty();
    const bool has_pop3 = !proposal.pop3.host.isEmpty();
    const bool stays_pop3 = inbox_kind() == InboxKind::Pop3 && has_pop3;
    if (has_imap && !stays_pop3)
        ui_->inbox_kind->setCurrentIndex(static_cast<int>(InboxKind::Imap));
    else if (has_pop3)
        ui_->inbox_kind->setCurrentIndex(static_cast<int>(InboxKind::Pop3));
    show_proposed_inbox();
    if (!proposal.smtp.host.isEmpty()) {
        ui_->outgoing_kind->setCurrentIndex(static_cast<int>(OutgoingKind::Smtp));
        ui_->outgoing_server->show_server(proposal.smtp);
    }
}

// Whoever changes the protocol after a proposal wants the server that goes with it.
void ProfileForm::show_proposed_inbox()
{
    const MailServer &proposed = inbox_kind() == InboxKind::Pop3 ? proposal_.pop3 : proposal_.imap;
    const bool is_remote = inbox_kind() == InboxKind::Imap || inbox_kind() == InboxKind::Pop3;
    if (is_remote && !proposed.host.isEmpty())
        ui_->inbox_server->show_server(proposed);
}

void ProfileForm::show_needed()
{
    const MailProfile shown = profile();
    const bool is_local_path = shown.inbox == InboxKind::Maildir || shown.inbox == InboxKind::Mbox;
    const bool has_inbox_server = server_for(shown, MailUse::Reading) != nullptr;
    const bool is_smtp = shown.outgoing == OutgoingKind::Smtp;
    ui_->reading_rows->setRowVisible(ui_->path_row, is_local_path);
    ui_->reading_rows->setRowVisible(ui_->inbox_server, has_inbox_server);
    ui_->reading_rows->setRowVisible(ui_->mailbox, shown.inbox == InboxKind::Imap);
    ui_->sending_rows->setRowVisible(ui_->program_row, !is_smtp);
    ui_->sending_rows->setRowVisible(ui_->outgoing_server, is_smtp);
    ui_->inbox_server->show_standard_port(default_port(shown, MailUse::Reading));
    ui_->outgoing_server->show_standard_port(default_port(shown, MailUse::Sending));
}

void ProfileForm::browse_inbox()
{
    const QString now = ui_->inbox_path->text();
    choose_into(*ui_->inbox_path, inbox_kind() == InboxKind::Maildir
                                      ? QFileDialog::getExistingDirectory(this, {}, now)
                                      : QFileDialog::getOpenFileName(this, {}, now));
}

void ProfileForm::browse_program()
{
    choose_into(*ui_->sendmail_program,
                QFileDialog::getOpenFileName(this, {}, ui_->sendmail_program->text()));
}

void ProfileForm::focus_name()
{
    ui_->name->setFocus();
}

QPushButton &ProfileForm::find_servers_button()
{
    return *ui_->find_servers;
}
