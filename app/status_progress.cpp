#include "app/status_progress.h"

#include "platform/shown_text.h"

#include <QElapsedTimer>
#include <QLocale>
#include <QStatusBar>

#include <utility>

namespace
{
constexpr qint64 text_interval = 50;   // milliseconds
constexpr qint64 grids_interval = 150; // a grid takes some milliseconds to paint

QString progress_text(const QString &what, qint64 done, qint64 total)
{
    const QLocale english(QLocale::English, QLocale::UnitedStates);
    return QStringLiteral("%1 %2 of %3").arg(what, english.toString(done), english.toString(total));
}
} // namespace

StatusProgress::StatusProgress(QStatusBar &bar, std::function<void()> repaint_grids,
                               Milliseconds now)
    : text_(new QLabel(&bar)),
      schedule_(new QLabel(&bar)),
      repaint_grids_(std::move(repaint_grids)),
      now_(std::move(now))
{
    text_->setObjectName(QStringLiteral("progress_text"));
    text_->setTextFormat(Qt::PlainText);
    text_->setContentsMargins(8, 0, 0, 0);
    // A long note is cut at the window's edge, its tool tip tells it all.
    text_->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    bar.addWidget(text_, 1);
    schedule_->setObjectName(QStringLiteral("schedule_text"));
    schedule_->setTextFormat(Qt::PlainText);
    bar.addPermanentWidget(schedule_);
}

StatusProgress::Milliseconds StatusProgress::steady_milliseconds()
{
    QElapsedTimer timer;
    timer.start();
    return [timer] { return timer.elapsed(); };
}

bool StatusProgress::is_due(Painted &painted, qint64 interval) const
{
    const qint64 now = now_();
    if (painted && now - *painted < interval)
        return false;
    painted = now;
    return true;
}

void StatusProgress::tell(const QString &what, qint64 done, qint64 total)
{
    if (!is_due(text_painted_, text_interval))
        return;
    text_->setText(progress_text(what, done, total));
    text_->setToolTip({});
    text_->repaint();
    if (is_due(grids_painted_, grids_interval))
        repaint_grids_();
}

void StatusProgress::clear()
{
    text_painted_.reset();
    grids_painted_.reset();
    text_->setText(one_line(note_));
    text_->setToolTip(plain_tool_tip(note_));
    text_->repaint();
}

void StatusProgress::note(const QString &text)
{
    note_ = text;
    clear();
}
