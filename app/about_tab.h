#pragma once

#include <QWidget>

#include <memory>

class EventHandlers;
class ParserTryOut;
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

    void wire(EventHandlers &handlers, const ParserTryOut &try_out);

    QLineEdit &Text31() const;
    QLineEdit &Text32() const;
    QLineEdit &Text33() const;
    QLineEdit &Text34() const;
    TextBox &Text35() const;
    TextBox &RichTextBox2() const;

private:
    std::unique_ptr<Ui::AboutTab> ui_;
};
