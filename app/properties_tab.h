#pragma once

#include "app/database_location.h"
#include "app/log_file.h"
#include "app/profile_setting.h"
#include "app/subject_heading.h"

#include <QWidget>

#include <array>
#include <memory>

class DataConnection;
class EventHandlers;
class LogReplay;
class LogWriter;
class MailSession;
class PurgeCycles;
class QLineEdit;
class QPushButton;
class TextBox;

namespace Ui
{
class PropertiesTab;
}

/// What the tab's commands work with.
struct PropertiesNeeds
{
    SettingsStore &settings;
    Prompts &prompts;
    MailSession &session;
    DataConnection &Data1;
};

/// The tab "Set Properties /  Log": the settings with their Get, Apply and Del, and the log.
class PropertiesTab : public QWidget
{
    Q_OBJECT

public:
    explicit PropertiesTab(const PropertiesNeeds &needs, QWidget *parent = nullptr);
    ~PropertiesTab() override;

    /// `log_writer` writes this tab's log box. All must outlive the tab.
    void wire(EventHandlers &handlers, LogWriter &log_writer, const PurgeCycles &purges,
              const LogReplay &replay);

    QLineEdit &Text17() const;
    QLineEdit &Text25() const;
    TextBox &Text27() const;
    QLineEdit &Text29() const;

private:
    /// A subject heading with the buttons that stand beside its box.
    struct HeadingRow
    {
        SubjectHeading heading;
        QPushButton *get;
        QPushButton *apply;
        QPushButton *del;
    };
    std::array<HeadingRow, 4> heading_rows(const PropertiesNeeds &needs) const;
    void wire_headings(EventHandlers &handlers);

    std::unique_ptr<Ui::PropertiesTab> ui_;
    std::array<HeadingRow, 4> headings_;
    ProfileSetting profile_;
    DatabaseLocation database_location_;
    LogFile log_file_;
};
