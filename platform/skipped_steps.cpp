#include "platform/skipped_steps.h"

namespace
{
constexpr qsizetype listed_reasons = 20; // a failing step may name another file or row each time
constexpr qsizetype longest_reason = 300;
} // namespace

void SkippedSteps::add(const QString &whole_reason)
{
    const QString reason = whole_reason.left(longest_reason);
    ++count_;
    const auto known = times_.find(reason);
    if (known != times_.end()) {
        ++known.value();
    } else if (reasons_.size() < listed_reasons) {
        reasons_.append(reason);
        times_.insert(reason, 1);
    }
}

QString SkippedSteps::list() const
{
    QStringList lines;
    qint64 told = 0;
    for (const QString &reason : reasons_) {
        const qint64 times = times_.value(reason);
        told += times;
        lines.append(times == 1 ? reason : QStringLiteral("%1 (%2 times)").arg(reason).arg(times));
    }
    if (told < count_)
        lines.append(QStringLiteral("and %1 more").arg(count_ - told));
    return lines.join(QLatin1Char('\n'));
}
