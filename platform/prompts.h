#pragma once

#include <QString>

/// The icon beside a notice.
enum class NoticeIcon { None, Information, Exclamation };

/// A file choice: `filter` as "label (*.EXT)|*.EXT", empty for every file; `folder` may be in drive
/// notation, empty for where the dialog was last.
struct FileChoice
{
    QString filter;
    QString folder;
};

/// Everything that stops the program to ask or tell a person something. Boxes are modal, titled
/// "Ostrix", and show their text as plain text, never as markup.
class Prompts
{
public:
    virtual ~Prompts() = default;

    /// A text too long for a box is cut there and stands whole among its details.
    virtual void notice(const QString &text, NoticeIcon icon = NoticeIcon::None) = 0;

    /// A question with the question icon. @return whether the answer was Yes (or OK).
    virtual bool yes_no(const QString &question) = 0;
    virtual bool ok_cancel(const QString &question) = 0;

    /// @return the chosen file's full path; empty when the dialog was cancelled.
    virtual QString open_file(const FileChoice &choice) = 0;
    virtual QString save_file(const FileChoice &choice) = 0;

    /// The folder that a file without one is in: where a file was last chosen, "c:\Ostrix\" before
    /// that.
    virtual QString current_folder() const = 0;

    /// A typed answer; empty when cancelled.
    virtual QString input(const QString &question) = 0;

    /// The critical box of a run-time error.
    virtual void run_time_error(const QString &report) = 0;
};
