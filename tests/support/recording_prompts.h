#pragma once

#include "platform/prompts.h"

#include <QStringList>

#include <deque>
#include <functional>
#include <utility>

/// Prompts that write each box's kind and exact text into a journal that other doubles share, and
/// answer from a queue. A question without an answer fails the test and counts as Cancel; so does
/// an answer left over.
class RecordingPrompts : public Prompts
{
public:
    explicit RecordingPrompts(QStringList &journal) : journal_(journal) {}
    ~RecordingPrompts() override;

    /// The answers to the next questions, in order.
    void will_answer(std::initializer_list<bool> answers);
    void will_answer(const QString &typed_or_chosen) { texts_.push_back(typed_or_chosen); }

    /// Runs after each box, when it is in the journal.
    void after_each_box(std::function<void()> action) { after_each_ = std::move(action); }

    void notice(const QString &text, NoticeIcon icon) override;
    bool yes_no(const QString &question) override;
    bool ok_cancel(const QString &question) override;
    QString open_file(const FileChoice &choice) override;
    QString save_file(const FileChoice &choice) override;
    QString current_folder() const override { return QStringLiteral("c:\\Ostrix\\"); }
    QString input(const QString &question) override;
    void run_time_error(const QString &report) override;

private:
    void write_down(const QString &box);
    bool next_answer(const QString &question);
    QString next_text(const QString &question);

    QStringList &journal_;
    std::function<void()> after_each_;
    std::deque<bool> answers_;
    std::deque<QString> texts_;
};
