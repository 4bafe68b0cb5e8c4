#pragma once

#include "mail/retrieval_run.h"
#include "tests/mail/purge_room.h"
#include "tests/support/mail_store_double.h"

/// A purge room with an inbox and the retrieval that reads it. The journal tells what it did.
class Retrieval : public PurgeRoom
{
protected:
    /// What is asked of the store for each message.
    const QStringList reading_of_a_message = {"MsgOrigAddress", "MsgSubject", "MsgDateReceived",
                                              "MsgOrigDisplayName", "MsgNoteText"};

    Retrieval()
    {
        store.on_any_call = [this](const QString &operation) {
            journal.append(operation);
            if (on_operation)
                on_operation(operation);
        };
    }

    void run_without_questions()
    {
        settings.write("WarningMessages", "1");
        prompts.will_answer({false, false});
        run.Command2_Click();
    }

    QStringList master() { return column("master", "email"); }
    QStringList work_table() { return column("system", "email"); }

    MailStoreDouble store;
    std::function<void(const QString &)> on_operation;
    RetrievalRun run{{desk, store, [this](int tab) { journal.append(QString("tab %1").arg(tab)); },
                      [this] { journal.append("timer stopped"); }, [this] { ++finished; }}};
    int finished = 0;
};
