#pragma once

#include "app/please_wait.h"
#include "platform/event_handlers.h"
#include "platform/progress_report.h"
#include "tests/db/test_database.h"
#include "tests/support/recording_prompts.h"
#include "transfer/import_window.h"

#include <QWidget>

/// What imports and exports work on, without the main window: a real connection to a real database
/// file in a private home, and prompts and progress that write down what they are told.
class TransferRoom : public DatabaseTest, protected ProgressReport
{
protected:
    TransferRoom();

    static void write_file(const QString &path, const QByteArray &content);
    static QByteArray content(const QString &path);

    QStringList journal;
    QStringList told; // progress, and where it was cleared
    RecordingPrompts prompts{journal};
    EventHandlers handlers{prompts, [] {}};
    QWidget parent;
    PleaseWait please_wait;
    ImportWindow window{handlers, prompts};

private:
    void tell(const QString &what, qint64 done, qint64 total) override;
    void clear() override { told.append("clear"); }
    void note(const QString &text) override { told.append("note " + text); }
};
