#include "transfer/import_window.h"

#include "platform/event_handlers.h"
#include "platform/prompts.h"
#include "platform/text_file.h"
#include "platform/words.h"
#include "transfer/import_text.h"
#include "ui_import_window.h"

#include <QMainWindow>

#include <algorithm>

namespace
{
const QString line_end = QStringLiteral("\r\n");

void write_piece_by_piece(TextFileWriter &file, const LongText &text)
{
    constexpr qsizetype most = 1 << 20; // characters: the file's bytes need not lie in memory too
    for (qsizetype start = 0; start < text.size();) {
        QString piece = text.stretch(start, std::min(most, text.size() - start));
        if (piece.size() > 1 && piece.back().isHighSurrogate())
            piece.chop(1); // the next piece has both halves
        start += piece.size();
        file.write(with_cr_lf(piece));
    }
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
    text_ = std::make_shared<ImportText>(text);
    Text1->show_text(text_);
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
}

void ImportWindow::unload()
{
    delete window_.data();
    text_.reset();
}

void ImportWindow::append_item(const ImportItems &items, qsizetype number)
{
    if (!is_shown())
        return;
    text_->append_item(items, number);
    Text1->text_has_grown();
}

void ImportWindow::SaveAs_Click() const
{
    const QString path = prompts_.save_file({QStringLiteral("Text files (*.*)|*.*"), {}});
    if (path.isEmpty())
        return;
    TextFileWriter file(path);
    write_piece_by_piece(file, *text_);
    file.write(line_end);
    file.commit();
}
