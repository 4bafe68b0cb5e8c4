#include "app/tab_strip.h"

#include "app/about_tab.h"
#include "app/properties_tab.h"
#include "db/master_tab.h"
#include "mail/new_email_tab.h"
#include "platform/runtime_error.h"
#include "schedule/schedule_tab.h"
#include "send/groups_tab.h"
#include "send/send_mail_tab.h"

TabStrip::TabStrip(RecordSetModel &work_table, RecordSetModel &master, const PropertiesNeeds &needs,
                   QWidget *parent)
    : QTabWidget(parent),
      tabs_{*new MasterTab(master, this),      *new SendMailTab(this), *new GroupsTab(this),
            *new PropertiesTab(needs, this),   *new ScheduleTab(this), *new AboutTab(this),
            *new NewEmailTab(work_table, this)}
{
    setObjectName(QStringLiteral("SSTab1"));
    setDocumentMode(true);
    addTab(&tabs_.master, QStringLiteral("View Master Table"));
    addTab(&tabs_.send_mail, QStringLiteral("Send Mail"));
    addTab(&tabs_.groups, QStringLiteral("Create Group"));
    addTab(&tabs_.properties, QStringLiteral("Set Properties /  Log"));
    addTab(&tabs_.schedule, QStringLiteral("Schedule"));
    addTab(&tabs_.about, QStringLiteral("About Ostrix"));
    addTab(&tabs_.new_email, QStringLiteral("New Email (System Table)"));
}

SharedControls TabStrip::shared_controls() const
{
    return {
        .Text1 = tabs_.master.Text1(),
        .Text2 = tabs_.master.Text2(),
        .Text7 = tabs_.master.Text7(),
        .Text16 = tabs_.master.Text16(),
        .Text23 = tabs_.master.Text23(),
        .Text12 = tabs_.send_mail.Text12(),
        .Text17 = tabs_.properties.Text17(),
        .Text25 = tabs_.properties.Text25(),
        .Text27 = tabs_.properties.Text27(),
        .Text29 = tabs_.properties.Text29(),
        .RichTextBox1 = tabs_.groups.RichTextBox1(),
        .Text31 = tabs_.about.Text31(),
        .Text32 = tabs_.about.Text32(),
        .Text33 = tabs_.about.Text33(),
        .Text34 = tabs_.about.Text34(),
        .Text35 = tabs_.about.Text35(),
        .RichTextBox2 = tabs_.about.RichTextBox2(),
        .ProgressBar1 = tabs_.new_email.ProgressBar1(),
        .ProgressBar2 = tabs_.groups.ProgressBar2(),
        .ProgressBar3 = tabs_.send_mail.ProgressBar3(),
        .MSFlexGrid1 = tabs_.new_email.MSFlexGrid1(),
        .MSFlexGrid5 = tabs_.master.MSFlexGrid5(),
    };
}

void TabStrip::show_tab(int number)
{
    switch (number) {
    case tab_number::first:
        setCurrentWidget(&tabs_.master);
        return;
    case tab_number::new_email:
        setCurrentWidget(&tabs_.new_email);
        return;
    default:
        throw RuntimeError(error_number::invalid_call,
                           QStringLiteral("There is no tab with the number %1").arg(number));
    }
}
