#include "db/address_lists.h"

#include "app/please_wait.h"
#include "db/data_connection.h"

#include <QProgressBar>

AddressLists::AddressLists(DataConnection &work_table, DataConnection &master_list,
                           PleaseWait &please_wait, QProgressBar &progress_bar)
    : Data1(work_table),
      Data2(master_list),
      please_wait_(please_wait),
      ProgressBar1(progress_bar)
{
}

void AddressLists::Command11_Click()
{
    please_wait_.show();
    Data2.execute("insert into master(email,name) select email,name from system");
    Data2.refresh();
    please_wait_.unload();
}

void AddressLists::Command20_Click()
{
    Data2.set_record_source("select * from master");
    Data2.refresh();
}

void AddressLists::Command28_Click()
{
    Data1.set_record_source(" select * from system");
    Data1.refresh();
    ProgressBar1.setValue(Data1.record_set().percent_position());
    ProgressBar1.setValue(0);
}
