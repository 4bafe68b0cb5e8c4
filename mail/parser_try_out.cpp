#include "mail/parser_try_out.h"

#include "app/shared_controls.h"
#include "db/data_connection.h"
#include "platform/prompts.h"
#include "platform/runtime_error.h"
#include "platform/text_box.h"
#include "platform/words.h"

#include <QLineEdit>

namespace
{
constexpr int shown_length = 99;
}

ParserTryOut::ParserTryOut(DataConnection &master_list, const SharedControls &controls,
                           Prompts &prompts)
    : Data2(master_list),
      controls_(controls),
      prompts_(prompts)
{
}

void ParserTryOut::Command31_Click() const
{
    const QString text = controls_.RichTextBox2.text();
    if (text.isEmpty())
        return;
    const QString line_break = QStringLiteral("\r\n");
    const QString lines = QString(text).replace(QLatin1Char(' '), line_break);
    controls_.RichTextBox2.set_text(lines);
    const QString before = lines.section(QLatin1Char('@'), 0, 0);
    const QString behind = lines.section(QLatin1Char('@'), 1, 1);
    controls_.Text31.setText(before.left(shown_length));
    controls_.Text33.setText(before.split(line_break).constLast());
    controls_.Text34.setText(behind.split(line_break).constFirst().right(shown_length));
}

void ParserTryOut::Command32_Click() const
{
    attempt([this] { delete_words(); });
}

void ParserTryOut::delete_words() const
{
    const QStringList words = split_text(controls_.Text35.text(), QStringLiteral(" "));
    for (const QString &word : words) {
        if (word.isEmpty())
            return;
        controls_.Text31.setText(word);
        prompts_.notice(word, NoticeIcon::None);
        Data2.execute(Statement("delete * from email2 where email like '*", word, "*' "));
    }
}
