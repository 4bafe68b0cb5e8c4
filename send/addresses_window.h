#pragma once

#include <QDialog>

/// The window "Addresses": the whole text of the address box, for reading long lists.
class AddressesWindow : public QDialog
{
    Q_OBJECT

public:
    AddressesWindow(const QString &addresses, QWidget *parent);
};
