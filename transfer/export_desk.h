#pragma once

class DataConnection;
class ProgressReport;
class Prompts;

/// What a command works with that takes addresses out. Everything in it outlives the command.
struct ExportDesk
{
    DataConnection &rows;
    Prompts &prompts;
    ProgressReport &progress;
};
