#include "transfer/import_window.h"

#include "platform/event_handlers.h"
#include "platform/prompts.h"
#include "platform/text_file.h"
#include "ui_import_window.h"

#include <QMainWindow>

namespace
{
constexpr qsizetype most_shown = 20'000; // characters

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

void ImportWindow::show()
{
    if (window_.isNull())
        make_window();
    window_->show();
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
    show_beginning();
}

void ImportWindow::unload()
{
    delete window_.data();
    text_.clear();
    appended_.clear();
    appended_characters_ = 0;
}

QString ImportWindow::text() const
{
    return text_ + QString::fromUtf8(appended_);
}

void ImportWindow::set_text(const QString &text)
{
    text_ = text;
    appended_.clear();
    appended_characters_ = 0;
    if (is_shown())
        show_beginning();
}

void ImportWindow::append_text(const QString &text)
{
    if (!is_shown())
        return;
    const bool was_whole = text_.size() + appended_characters_ <= most_shown;
    appended_ += text.toUtf8();
    appended_characters_ += text.size();
    const qsizetype characters = text_.size() + appended_characters_;
    if (characters <= most_shown)
        Text1->append_text(text);
    else if (was_whole)
        show_beginning();
}

void ImportWindow::show_beginning()
{
    const qsizetype characters = text_.size() + appended_characters_;
    Text1->set_text(beginning(text_.size() < most_shown ? text() : text_));
    shown_part_->setVisible(characters > most_shown);
}

void ImportWindow::SaveAs_Click() const
{
    const QString path = prompts_.save_file({QStringLiteral("Text files (*.*)|*.*"), {}});
    if (path.isEmpty())
        return;
    TextFileWriter file(path);
    file.write(text_);
    file.write_utf8(appended_ + "\r\n");
    file.commit();
}
