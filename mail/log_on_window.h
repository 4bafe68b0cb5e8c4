#pragma once

#include "mail/log_on.h"
#include "mail/log_on_dialog.h"

#include <QDialog>

namespace Ui
{
class LogOnDialog;
}

/// Asks what to sign on with (its objectName is "LogOnDialog"). OK can be pressed once a profile is
/// chosen or the path holds an inbox.
class LogOnWindow : public QDialog
{
    Q_OBJECT

public:
    LogOnWindow(const AccountQuestion &question, QtLogOnDialog::ProfileEditor edit_profiles,
                QWidget *parent);
    ~LogOnWindow() override;

    AccountAnswer answer() const;

private:
    void wire();
    void offer(const QStringList &profiles);
    void judge();
    void browse_folder();
    void browse_file();
    void take(const QString &path);

    std::unique_ptr<Ui::LogOnDialog> ui_;
    QtLogOnDialog::ProfileEditor edit_profiles_;
};
