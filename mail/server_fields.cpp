#include "mail/server_fields.h"

#include "ui_server_fields.h"

ServerFields::ServerFields(QWidget *parent)
    : QWidget(parent),
      ui_(std::make_unique<Ui::ServerFields>())
{
    ui_->setupUi(this);
    connect(ui_->security, &QComboBox::currentIndexChanged, this, &ServerFields::security_changed);
    connect(ui_->sign_in, &QComboBox::currentIndexChanged, this, &ServerFields::show_needed);
    show_server({});
}

ServerFields::~ServerFields() = default;

// The boxes list the kinds in the order of their enumerations.
void ServerFields::show_server(const MailServer &server)
{
    ui_->host->setText(server.host);
    ui_->port->setValue(server.port);
    ui_->security->setCurrentIndex(static_cast<int>(server.security));
    ui_->sign_in->setCurrentIndex(static_cast<int>(server.sign_in));
    ui_->user->setText(server.user);
    ui_->token_command->setText(server.token_command);
    forget_password();
    show_needed();
}

MailServer ServerFields::server() const
{
    MailServer server;
    server.host = ui_->host->text().trimmed();
    server.port = static_cast<quint16>(ui_->port->value());
    server.security = static_cast<LineSecurity>(ui_->security->currentIndex());
    server.sign_in = static_cast<SignInKind>(ui_->sign_in->currentIndex());
    server.user = ui_->user->text().trimmed();
    server.token_command = ui_->token_command->text().trimmed();
    return server;
}

QString ServerFields::typed_password() const
{
    const bool is_asked = server().sign_in == SignInKind::Password;
    return is_asked ? ui_->password->text() : QString();
}

void ServerFields::forget_password()
{
    ui_->password->clear();
}

void ServerFields::show_standard_port(quint16 port)
{
    ui_->port->setSpecialValueText(QStringLiteral("standard (%1)").arg(port));
}

void ServerFields::show_needed()
{
    const SignInKind kind = server().sign_in;
    ui_->rows->setRowVisible(ui_->user, kind != SignInKind::None);
    ui_->rows->setRowVisible(ui_->password, kind == SignInKind::Password);
    ui_->rows->setRowVisible(ui_->token_command, kind == SignInKind::Token);
}
