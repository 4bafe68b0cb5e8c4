#pragma once

#include "app/shared_controls.h"

#include <QString>

#include <functional>

class DataConnection;
class SettingsStore;

/// What start-up sets.
struct StartUp
{
    SettingsStore &settings;
    DataConnection &Data1;
    DataConnection &Data2;
    SharedControls controls;
    std::function<void()> show_first_tab;
};

/// Writes the default settings that are missing, shows them, points both connections at the
/// database, shows the first tab and sets the grids' column widths. Reads no other setting and
/// opens nothing.
/// @throws RuntimeError when the settings cannot be read or written.
void start_up(const StartUp &window);
