#pragma once

#include "db/list_desk.h"

class QLineEdit;
class QPushButton;
class QTableView;

/// The controls that the commands on the master list read and write.
struct MasterListControls
{
    QLineEdit &Text1;
    QLineEdit &Text2;
    QLineEdit &Text7;
    QPushButton &cmdADD;
    QTableView &MSFlexGrid5;
};

/// The commands of the tab "View Master Table" that change, sort and count the master list.
class MasterListCommands
{
public:
    MasterListCommands(const ListDesk &desk, const MasterListControls &controls);

    /// "Add": stores the typed address, unchecked. A failure ends it quietly.
    void cmdADD_Click() const;

    /// "Change": every row whose address contains the text of Text2 gets the text of Text7, with
    /// one blank before and after it, as its address.
    /// @throws RuntimeError 3075 for a quote in either text, or what the database says.
    void Command21_Click() const;

    /// "Delete A Record": deletes the row that is selected in the grid. A failure ends it quietly.
    void Command43_Click() const;

    /// "Delete All Records".
    void Command42_Click() const;

    /// "Sort": puts the grid's rows in order by the selected column, the first one without a
    /// selection.
    void Command33_Click() const;

    /// "Count": tells how many rows the last refresh found.
    void Command36_Click() const;

    /// A row has been selected in the grid: its record becomes the current one, and its cells are
    /// put into Text7 and Text2, an empty text for a cell that is not there.
    void MSFlexGrid5_SelChange() const;

private:
    void add_typed_address() const;
    void delete_selected_row() const;
    void move_to_selected_row() const;

    ListDesk desk_;
    MasterListControls controls_;
};
