#include "send/address_file.h"

#include "platform/prompts.h"
#include "platform/text_box.h"
#include "platform/text_file.h"
#include "platform/words.h"

QString with_address_lines(const QString &box_text, const QStringList &lines)
{
    QString text = box_text;
    for (const QString &line : lines)
        text += line + QStringLiteral("\r\n");
    return keep_addresses(text, QStringLiteral(";"), QStringLiteral("; "));
}

void load_address_file(Prompts &prompts, const QString &folder, TextBox &box)
{
    const QString path = prompts.open_file({QLatin1String(text_file_filter), folder});
    if (path.isEmpty())
        return;
    box.set_text(with_address_lines(box.text(), read_lines(path)));
}
