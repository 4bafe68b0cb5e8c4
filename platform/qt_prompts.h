#pragma once

#include "platform/prompts.h"

#include <QPointer>
#include <QStringList>
#include <QWidget>

/// The "label|pattern" notation as the name filters of a file dialog: the label as written; "*.*"
/// accepts every file, with or without a dot in its name, and letter case does not matter. An empty
/// filter gives no name filters.
struct DialogFilter
{
    QString label;
    QString pattern;
};
DialogFilter dialog_filter(const QString &filter);

/// The prompts as boxes and dialogs over the main window.
class QtPrompts : public Prompts
{
public:
    /// Boxes open over the active window, else over `parent`.
    void set_parent(QWidget *parent) { parent_ = parent; }

    void notice(const QString &text, NoticeIcon icon) override;
    bool yes_no(const QString &question) override;
    bool ok_cancel(const QString &question) override;
    QString open_file(const FileChoice &choice) override;
    QString save_file(const FileChoice &choice) override;
    QString current_folder() const override;
    QString input(const QString &question) override;
    void run_time_error(const QString &report) override;

private:
    QWidget *box_parent() const;
    QString choose_file(const FileChoice &choice, bool for_saving);

    QPointer<QWidget> parent_;
    QString last_folder_;
};
