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

void RecordingPrompts::notice(const QString &text, NoticeIcon icon)
{
    const char *kind = icon == NoticeIcon::Information   ? "information: "
                       : icon == NoticeIcon::Exclamation ? "exclamation: "
                                                         : "notice: ";
    journal_.append(QLatin1String(kind) + text);
}

bool RecordingPrompts::yes_no(const QString &question)
{
    journal_.append("yes or no: " + question);
    return next_answer(question);
}

bool RecordingPrompts::ok_cancel(const QString &question)
{
    journal_.append("OK or cancel: " + question);
    return next_answer(question);
}

QString RecordingPrompts::open_file(const FileChoice &choice)
{
    journal_.append("open file: " + choice.filter + " in " + choice.folder);
    return next_text(choice.filter);
}

QString RecordingPrompts::save_file(const FileChoice &choice)
{
    journal_.append("save file: " + choice.filter + " in " + choice.folder);
    return next_text(choice.filter);
}

QString RecordingPrompts::input(const QString &question)
{
    journal_.append("input: " + question);
    return next_text(question);
}

void RecordingPrompts::run_time_error(const QString &report)
{
    journal_.append("run-time error: " + report);
}
