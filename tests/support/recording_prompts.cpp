#include "tests/support/recording_prompts.h"

#include <gtest/gtest.h>

RecordingPrompts::~RecordingPrompts()
{
    EXPECT_TRUE(answers_.empty()) << answers_.size() << " answers were never asked for";
    EXPECT_TRUE(texts_.empty()) << texts_.size() << " typed answers were never asked for";
}

void RecordingPrompts::will_answer(std::initializer_list<bool> answers)
{
    answers_.insert(answers_.end(), answers);
}

bool RecordingPrompts::next_answer(const QString &question)
{
    if (answers_.empty()) {
        ADD_FAILURE() << "no answer to: " << question.toStdString();
        return false;
    }
    const bool answer = answers_.front();
    answers_.pop_front();
    return answer;
}

QString RecordingPrompts::next_text(const QString &question)
{
    if (texts_.empty()) {
        ADD_FAILURE() << "no answer to: " << question.toStdString();
        return {};
    }
    const QString text = texts_.front();
    texts_.pop_front();
    return text;
}

void RecordingPrompts::write_down(const QString &box)
{
    journal_.append(box);
    if (after_each_)
        after_each_();
}

void RecordingPrompts::notice(const QString &text, NoticeIcon icon)
{
    const char *kind = icon == NoticeIcon::Information   ? "information: "
                       : icon == NoticeIcon::Exclamation ? "exclamation: "
                                                         : "notice: ";
    write_down(QLatin1String(kind) + text);
}

bool RecordingPrompts::yes_no(const QString &question)
{
    write_down("yes or no: " + question);
    return next_answer(question);
}

bool RecordingPrompts::ok_cancel(const QString &question)
{
    write_down("OK or cancel: " + question);
    return next_answer(question);
}

QString RecordingPrompts::open_file(const FileChoice &choice)
{
    write_down("open file: " + choice.filter + " in " + choice.folder);
    return next_text(choice.filter);
}

QString RecordingPrompts::save_file(const FileChoice &choice)
{
    write_down("save file: " + choice.filter + " in " + choice.folder);
    return next_text(choice.filter);
}

QString RecordingPrompts::input(const QString &question)
{
    write_down("input: " + question);
    return next_text(question);
}

void RecordingPrompts::run_time_error(const QString &report)
{
    write_down("run-time error: " + report);
}
