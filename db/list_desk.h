#pragma once

class AddressLists;
class DataConnection;
class Prompts;

/// What the commands over the two lists work with. Everything in it outlives the commands.
struct ListDesk
{
    DataConnection &Data1; // the work table
    DataConnection &Data2; // the master list
    AddressLists &lists;
    Prompts &prompts;
};

/// The question before a whole table is emptied.
inline constexpr char delete_all_question[] = "Are you sure you want to delete ALL records?";
