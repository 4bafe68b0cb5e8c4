#pragma once

#include "mail/mail_profile.h"

#include <QWidget>

#include <memory>

namespace Ui
{
class ServerFields;
}

/// The fields of one mail server; only those show that the chosen way to sign on needs.
class ServerFields : public QWidget
{
    Q_OBJECT

public:
    explicit ServerFields(QWidget *parent = nullptr);
    ~ServerFields() override;

    void show_server(const MailServer &server);
    MailServer server() const;

    /// What was typed as password since the server was shown; empty for nothing.
    QString typed_password() const;
    void forget_password();

    /// The port that the box shows instead of 0.
    void show_standard_port(quint16 port);

Q_SIGNALS:
    void security_changed();

private:
    void show_needed();

    std::unique_ptr<Ui::ServerFields> ui_;
};
