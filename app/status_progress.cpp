#include "app/status_progress.h"

#include <QElapsedTimer>
#include <QLabel>
#include <QLocale>
#include <QStatusBar>

#include <utility>

namespace
{
constexpr qint64 paint_interval = 50; // milliseconds

QString progress_text(const QString &what, qint64 done, qint64 total)
{
    const QLocale english(QLocale::English, QLocale::UnitedStates);
    return QStringLiteral("%1 %2 of %3").arg(what, english.toString(done), english.toString(total));
}
} // namespace

StatusProgress::StatusProgress(QStatusBar &bar, std::function<void()> repaint_grids,
                               Milliseconds now)
    : text_(new QLabel(&bar)),
      repaint_grids_(std::move(repaint_grids)),
      now_(std::move(now))
{
    text_->setObjectName(QStringLiteral("progress_text"));
    text_->setTextFormat(Qt::PlainText);
    text_->setContentsMargins(8, 0, 0, 0);
    bar.addWidget(text_, 1);
}

StatusProgress::Milliseconds StatusProgress::steady_milliseconds()
{
    QElapsedTimer timer;
    timer.start();
    return [timer] { return timer.elapsed(); };
}

bool StatusProgress::is_due()
{
    const qint64 now = now_();
    if (painted_ && now - *painted_ < paint_interval)
        return false;
    painted_ = now;
    return true;
}

void StatusProgress::tell(const QString &what, qint64 done, qint64 total)
{
    if (!is_due())
        return;
    text_->setText(progress_text(what, done, total));
    text_->repaint();
    repaint_grids_();
}

void StatusProgress::clear()
{
    painted_.reset();
    text_->clear();
    text_->repaint();
}
