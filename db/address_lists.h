#pragma once

class DataConnection;
class PleaseWait;
class QProgressBar;

/// The commands over both lists that other commands press.
class AddressLists
{
public:
    AddressLists(DataConnection &Data1, DataConnection &Data2, PleaseWait &please_wait,
                 QProgressBar &ProgressBar1);

    /// Copies every row of the work table into the master list, duplicates included.
    void Command11_Click();

    /// "Refresh" of the master list: shows the whole of it again.
    void Command20_Click();

    /// "Refresh" of the work table: shows the whole of it again.
    void Command28_Click();

private:
    DataConnection &Data1;
    DataConnection &Data2;
    PleaseWait &please_wait_;
    QProgressBar &ProgressBar1;
};
