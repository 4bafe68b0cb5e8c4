#include "transfer/import_window.h"

#include "platform/event_handlers.h"
#include "platform/prompts.h"
#include "platform/text_file.h"
#include "ui_import_window.h"

#include <QMainWindow>

namespace
{
constexpr qsizetype most_shown = 20'000; // characters
const QString line_end = QStringLiteral("\r\n");

QString beginning(const QString &text)
{
    if (text.size() <= most_shown)
        return text;
    return text.left(text[most_shown].isLowSurrogate() ? most_shown - 1 : most_shown);
}

} // namespace

ImportWindow::ImportWindow(EventHandlers &handlers, Prompts &prompts)
    : handlers_(handlers),
      prompts_(prompts)
{
}

ImportWindow::~ImportWindow()
{
    unload();
}

void ImportWindow::show_text(const QString &text)
{
    if (window_.isNull())
        make_window();
    forget();
    show_beginning(text);
    window_->show();
}

void ImportWindow::show_items(const ImportItems &items)
{
    show_text(items.text());
    items_ = items;
}

void ImportWindow::make_window()
{
    auto *window = new QMainWindow(parent_);
    window->setAttribute(Qt::WA_DeleteOnClose);
    Ui::ImportWindow ui;
    ui.setupUi(window);
    handlers_.on_triggered(ui.SaveAs, [this] { SaveAs_Click(); });
    window_ = window;
    Text1 = ui.Text1;
    shown_part_ = ui.shown_part;
}

void ImportWindow::unload()
{
    delete window_.data();
    forget();
}

void ImportWindow::forget()
{
    items_ = ImportItems();
    last_appended_ = none_appended;
    characters_ = 0;
}

QString ImportWindow::text() const
{
    QString text = items_.text();
    for_each_appended([&text](const QString &line) { text += line; });
    return text;
}

void ImportWindow::for_each_appended(const std::function<void(const QString &line)> &visit) const
{
    for (qsizetype number = items_.highest() - 1; number >= last_appended_; --number)
        visit(items_.at(number) + line_end);
}

void ImportWindow::append_item(qsizetype number)
{
    // Another import's items may be shown by now.
    if (!is_shown() || number > items_.highest())
        return;
    last_appended_ = number;
    if (characters_ > most_shown)
        return;
    const QString line = items_.at(number) + line_end;
    characters_ += line.size();
    if (characters_ <= most_shown)
        Text1->append_text(line);
    else
        show_beginning(text());
}

void ImportWindow::show_beginning(const QString &text)
{
    characters_ = text.size();
    Text1->set_text(beginning(text));
    shown_part_->setVisible(characters_ > most_shown);
}

void ImportWindow::SaveAs_Click() const
{
    const QString path = prompts_.save_file({QStringLiteral("Text files (*.*)|*.*"), {}});
    if (path.isEmpty())
        return;
    TextFileWriter file(path);
    file.write(items_.text());
    for_each_appended([&file](const QString &line) { file.write(line); });
    file.write(line_end);
    file.commit();
}
