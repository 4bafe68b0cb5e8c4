#include "app/log_writer.h"

#include "app/activity_log.h"
#include "app/please_wait.h"
#include "platform/text_box.h"

#include <QScopeGuard>

LogWriter::LogWriter(TextBox &log_box, PleaseWait &please_wait, const ActivityLog &log)
    : Text27(log_box),
      please_wait_(please_wait),
      log_(log)
{
}

void LogWriter::Command1_Click()
{
    please_wait_.show();
    const auto done = qScopeGuard([this] { please_wait_.unload(); });
    log_.write_batch(Text27.text());
}
