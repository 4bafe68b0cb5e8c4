#pragma once

#include "mail/profile_desk.h"
#include "platform/date_time_text.h"
#include "platform/line_printer.h"

class MailStore;
class Prompts;
class SettingsStore;

/// What the window stands on but does not own; tests put doubles in. All must outlive the window.
struct Services
{
    SettingsStore &settings;
    Prompts &prompts;
    MailStore &mail;
    Clock clock;
    ProfileDesk profiles;
    PrinterMaker printer = default_printer;
};
