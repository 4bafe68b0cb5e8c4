#pragma once

class AddressLists;
class DataConnection;
class LogWriter;
class PleaseWait;
class ProgressReport;
class Prompts;
class SettingsStore;
struct SharedControls;

/// What the purges work on: the two lists, the settings, the log box and its writer, and the ways
/// to a person. Everything in it outlives the purges.
struct PurgeDesk
{
    DataConnection &Data1; // the work table
    DataConnection &Data2; // the master list
    const SharedControls &controls;
    SettingsStore &settings;
    Prompts &prompts;
    PleaseWait &please_wait;
    ProgressReport &progress;
    AddressLists &lists;
    LogWriter &log;
};
