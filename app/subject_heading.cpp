#include "app/subject_heading.h"

#include "app/settings_store.h"
#include "platform/prompts.h"

#include <QLineEdit>

SubjectHeading::SubjectHeading(const HeadingTexts &texts, QLineEdit &box, SettingsStore &settings,
                               Prompts &prompts)
    : texts_(texts),
      box_(box),
      settings_(settings),
      prompts_(prompts)
{
}

void SubjectHeading::get() const
{
    box_.setText(settings_.read(texts_.key));
}

void SubjectHeading::apply()
{
    if (!prompts_.yes_no(texts_.apply_question))
        return;
    if (box_.text().isEmpty()) {
        prompts_.notice(QStringLiteral("Please enter a value in the text box"));
        return;
    }
    const QString stored = settings_.read(texts_.key);
    const auto question =
        QStringLiteral("You setting is presently ") + stored + ". Do you want to change this?";
    if (!stored.isEmpty() && !prompts_.yes_no(question))
        return;
    settings_.write(texts_.key, box_.text());
    prompts_.notice(texts_.applied);
}

void SubjectHeading::del()
{
    if (!prompts_.ok_cancel(texts_.delete_question))
        return;
    if (settings_.read(texts_.key).isEmpty())
        return;
    settings_.remove(texts_.key);
    prompts_.notice(QStringLiteral("Your setting has been deleted"));
}
