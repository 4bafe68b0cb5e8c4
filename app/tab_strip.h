#pragma once

#include "app/shared_controls.h"

#include <QTabWidget>

class AboutTab;
class GroupsTab;
class MasterTab;
class NewEmailTab;
class PropertiesTab;
class RecordSetModel;
class ScheduleTab;
class SendMailTab;
struct PropertiesNeeds;

/// The seven tabs. The strip owns them.
struct Tabs
{
    MasterTab &master;
    SendMailTab &send_mail;
    GroupsTab &groups;
    PropertiesTab &properties;
    ScheduleTab &schedule;
    AboutTab &about;
    NewEmailTab &new_email;
};

/// The numbers by which commands call tabs: identities, not positions.
namespace tab_number
{
inline constexpr int first = 0;
inline constexpr int new_email = 11;
} // namespace tab_number

/// The tab strip `SSTab1`.
class TabStrip : public QTabWidget
{
    Q_OBJECT

public:
    /// `work_table` and `master` are what the two grids show.
    TabStrip(RecordSetModel &work_table, RecordSetModel &master, const PropertiesNeeds &needs,
             QWidget *parent = nullptr);

    const Tabs &tabs() const { return tabs_; }
    SharedControls shared_controls() const;

    /// Makes the tab with this number the current one. @throws RuntimeError 5 for no tab's number.
    void show_tab(int number);

private:
    Tabs tabs_;
};
