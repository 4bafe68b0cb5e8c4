#pragma once

#include <QWidget>

#include <memory>

class EventHandlers;
class QLineEdit;
class TextBox;

namespace Ui
{
class AboutTab;
}

/// The tab "About Ostrix": name and version, and the scratch fields of the address parser.
class AboutTab : public QWidget
{
    Q_OBJECT

public:
    explicit AboutTab(QWidget *parent = nullptr);
    ~AboutTab() override;

    void wire(EventHandlers &handlers);

    QLineEdit &Text31() const;
    QLineEdit &Text32() const;
    QLineEdit &Text33() const;
    QLineEdit &Text34() const;
    TextBox &Text35() const;
    TextBox &RichTextBox2() const;

private:
    void disable_what_has_no_command();

    std::unique_ptr<Ui::AboutTab> ui_;
};
