#include "platform/skipped_steps.h"

#include <algorithm>

namespace
{
constexpr qsizetype listed_reasons = 20;
constexpr qsizetype kept_reasons = 1000; // a failing step may name another file or row each time
} // namespace

void SkippedSteps::add(const QString &reason)
{
    ++count_;
    const auto known = times_.find(reason);
    if (known != times_.end()) {
        ++known.value();
    } else if (reasons_.size() < kept_reasons) {
        reasons_.append(reason);
        times_.insert(reason, 1);
    }
}

QString SkippedSteps::list() const
{
    QStringList lines;
    qint64 told = 0;
    for (const QString &reason : reasons_.first(std::min(listed_reasons, reasons_.size()))) {
        const qint64 times = times_.value(reason);
        told += times;
        lines.append(times == 1 ? reason : QStringLiteral("%1 (%2 times)").arg(reason).arg(times));
    }
    if (told < count_)
        lines.append(QStringLiteral("and %1 more").arg(count_ - told));
    return lines.join(QLatin1Char('\n'));
}
