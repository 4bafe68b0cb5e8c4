#include "send/address_search.h"

#include "db/data_connection.h"
#include "platform/prompts.h"
#include "send/address_list.h"

#include <QLineEdit>
#include <QListWidget>

void AddressSearch::Command19_Click() const
{
    search(Statement("select * from master where email like '*", desk_.Text23.text(), "*' "));
}

void AddressSearch::Command37_Click() const
{
    search(Statement("select * from master where name like '*", desk_.Text16.text(), "*' "));
}

void AddressSearch::search(const Statement &source) const
{
    show(source);
    if (desk_.Data2.record_set().record_count() == 0)
        return;
    if (!is_agreed(QStringLiteral("Do you want to email to this list?"), source))
        return;
    desk_.Data2.record_set().move_first();
    if (!is_agreed(QStringLiteral("Do you want to add to the list? Press cancel if you want to "
                                  "email to just this list?"),
                   source))
        desk_.List1.clear();
    append_addresses(desk_.List1, desk_.Data2, desk_.progress);
}

void AddressSearch::show(const Statement &source) const
{
    desk_.Data2.set_record_source(source);
    desk_.Data2.refresh();
}

// A scheduled run that comes while the question stands shows the whole list: mail goes to what was
// found.
bool AddressSearch::is_agreed(const QString &question, const Statement &source) const
{
    const bool agreed = desk_.prompts.ok_cancel(question);
    if (agreed && desk_.Data2.record_source().text() != source.text())
        show(source);
    return agreed;
}
