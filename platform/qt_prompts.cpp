#include "platform/qt_prompts.h"

#include "platform/drive_path.h"
#include "platform/long_text_box.h"

#include <QApplication>
#include <QFileDialog>
#include <QFileInfo>
#include <QInputDialog>
#include <QLayout>
#include <QMessageBox>
#include <QTextEdit>

#include <algorithm>

namespace
{
const QString title = QStringLiteral("Ostrix");

// A box is as large as its text, and a report or a group may name thousands of addresses: what a
// screen cannot hold stands behind the box's "Show Details…".
QString short_enough(const QString &text)
{
    constexpr qsizetype most_lines = 20;
    constexpr qsizetype most_characters = 1'000;
    const QStringList lines = text.split(u'\n');
    if (lines.size() <= most_lines && text.size() <= most_characters)
        return text;
    return lines.first(std::min(lines.size(), most_lines)).join(u'\n').left(most_characters) +
           QStringLiteral(
               " …\n\nThis is only the beginning. Press \"Show Details...\" for all of it.");
}

// The box's own details are laid out whole and broken at words: minutes for a megabyte of them.
void set_details(QMessageBox &box, const QString &text)
{
    box.setDetailedText(text.left(1));
    auto *plain = box.findChild<QTextEdit *>();
    if (plain == nullptr || plain->parentWidget()->layout() == nullptr) {
        box.setDetailedText(text);
        return;
    }
    auto *details = new LongTextBox(plain->parentWidget());
    details->setObjectName(QStringLiteral("details"));
    details->setReadOnly(true);
    details->setTabChangesFocus(true);
    details->setMinimumHeight(160);
    details->set_text(text);
    delete plain->parentWidget()->layout()->replaceWidget(plain, details);
    plain->hide(); // the box asks it now and then
}

QMessageBox::StandardButton show_box(QWidget *parent, QMessageBox::Icon icon, const QString &text,
                                     QMessageBox::StandardButtons buttons)
{
    const QString shown = short_enough(text);
    QMessageBox box(icon, title, shown, buttons, parent);
    box.setTextFormat(Qt::PlainText);
    if (shown != text)
        set_details(box, text);
    return static_cast<QMessageBox::StandardButton>(box.exec());
}

QMessageBox::Icon box_icon(NoticeIcon icon)
{
    switch (icon) {
    case NoticeIcon::Information:
        return QMessageBox::Information;
    case NoticeIcon::Exclamation:
        return QMessageBox::Warning;
    case NoticeIcon::None:
        break;
    }
    return QMessageBox::NoIcon;
}
} // namespace

DialogFilter dialog_filter(const QString &filter)
{
    const qsizetype bar = filter.indexOf(QLatin1Char('|'));
    if (bar < 0)
        return {};
    QString pattern = filter.mid(bar + 1);
    if (pattern == QLatin1String("*.*"))
        pattern = QStringLiteral("*");
    return {filter.left(bar), pattern};
}

QWidget *QtPrompts::box_parent() const
{
    QWidget *active = QApplication::activeWindow();
    const bool passing =
        active == nullptr || active->windowFlags().testFlag(Qt::WindowDoesNotAcceptFocus);
    return passing ? parent_.data() : active;
}

void QtPrompts::notice(const QString &text, NoticeIcon icon)
{
    show_box(box_parent(), box_icon(icon), text, QMessageBox::Ok);
}

bool QtPrompts::yes_no(const QString &question)
{
    return show_box(box_parent(), QMessageBox::Question, question,
                    QMessageBox::Yes | QMessageBox::No) == QMessageBox::Yes;
}

bool QtPrompts::ok_cancel(const QString &question)
{
    return show_box(box_parent(), QMessageBox::Question, question,
                    QMessageBox::Ok | QMessageBox::Cancel) == QMessageBox::Ok;
}

QString QtPrompts::choose_file(const FileChoice &choice, bool for_saving)
{
    QFileDialog dialog(box_parent(), title);
    dialog.setAcceptMode(for_saving ? QFileDialog::AcceptSave : QFileDialog::AcceptOpen);
    dialog.setFileMode(for_saving ? QFileDialog::AnyFile : QFileDialog::ExistingFile);
    // The dialog takes its pattern from the last brackets and leaves them out when it shows the
    // label.
    const DialogFilter filter = dialog_filter(choice.filter);
    if (!filter.label.isEmpty()) {
        dialog.setOption(QFileDialog::HideNameFilterDetails);
        dialog.setNameFilter(QStringLiteral("%1 (%2)").arg(filter.label, filter.pattern));
    }
    const QString folder = choice.folder.isEmpty() ? last_folder_ : native_path(choice.folder);
    if (!folder.isEmpty())
        dialog.setDirectory(folder);
    if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty())
        return {};
    QString chosen = dialog.selectedFiles().constFirst();
    last_folder_ = QFileInfo(chosen).path();
    return chosen;
}

QString QtPrompts::open_file(const FileChoice &choice)
{
    return choose_file(choice, false);
}

QString QtPrompts::save_file(const FileChoice &choice)
{
    return choose_file(choice, true);
}

QString QtPrompts::current_folder() const
{
    return last_folder_.isEmpty() ? QStringLiteral("c:\\Ostrix\\") : last_folder_;
}

QString QtPrompts::input(const QString &question)
{
    return QInputDialog::getText(box_parent(), title, question);
}

void QtPrompts::run_time_error(const QString &report)
{
    show_box(box_parent(), QMessageBox::Critical, report, QMessageBox::Ok);
}
