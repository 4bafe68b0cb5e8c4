#include "mail/typed_heading_purge.h"

#include "app/shared_controls.h"
#include "db/data_connection.h"
#include "platform/prompts.h"
#include "platform/words.h"

#include <QLineEdit>

void TypedHeadingPurge::Command27_Click() const
{
    const QString heading = desk_.controls.Text2.text();
    if (heading.isEmpty()) {
        desk_.prompts.notice(QStringLiteral("Please enter a subject heading in the text box"),
                             NoticeIcon::None);
        return;
    }
    while (delete_by_first_match(heading)) {
    }
    desk_.Data1.set_record_source("select * from email");
    desk_.Data1.refresh();
}

/// @return whether another pass may find more: false when no subject matches or nothing was
/// deleted.
bool TypedHeadingPurge::delete_by_first_match(const QString &heading) const
{
    DataConnection &Data1 = desk_.Data1;
    Data1.set_record_source(
        Statement("select * FROM email where subject like  '*", heading, "*' "));
    Data1.refresh();
    if (Data1.record_set().record_count() == 0)
        return false;
    Data1.set_record_source(
        Statement("select text FROM email where subject like  '*", heading, "*' "));
    Data1.refresh();
    const QString blank = QStringLiteral(" ");
    QString text = with_cr_lf(Data1.record_set().field(QStringLiteral("text")));
    const QString words = keep_addresses(text.replace(QStringLiteral("\r\n"), blank), blank, blank);
    desk_.controls.Text1.setText(words);
    if (words.isEmpty())
        return false;
    return Data1.execute(Statement("delete * from email where email like '*", words, "*'")) > 0;
}
