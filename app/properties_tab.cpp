#include "app/properties_tab.h"

#include "app/log_writer.h"
#include "mail/log_replay.h"
#include "mail/purge_cycles.h"
#include "platform/event_handlers.h"
#include "ui_properties_tab.h"

namespace
{
std::unique_ptr<Ui::PropertiesTab> laid_out(QWidget *tab)
{
    auto ui = std::make_unique<Ui::PropertiesTab>();
    ui->setupUi(tab);
    return ui;
}
} // namespace

PropertiesTab::PropertiesTab(const PropertiesNeeds &needs, QWidget *parent)
    : QWidget(parent),
      ui_(laid_out(this)),
      headings_(heading_rows(needs)),
      profile_(*ui_->Text3, needs.settings, needs.session, needs.prompts),
      database_location_(*ui_->Text25, needs.settings, needs.Data1, needs.prompts),
      log_file_(*ui_->Text17, *ui_->Text27, needs.settings, needs.prompts)
{
}

PropertiesTab::~PropertiesTab() = default;

std::array<PropertiesTab::HeadingRow, 4>
PropertiesTab::heading_rows(const PropertiesNeeds &needs) const
{
    const auto row = [&](const HeadingTexts &texts, QLineEdit *box, QPushButton *get,
                         QPushButton *apply, QPushButton *del) {
        return HeadingRow{{texts, *box, needs.settings, needs.prompts}, get, apply, del};
    };
    using namespace heading_texts;
    return {row(unwanted, ui_->Text10, ui_->Command7, ui_->cmdApply, ui_->Command9),
            row(returned, ui_->Text9, ui_->Command5, ui_->Command8, ui_->Command6),
            row(returned1, ui_->Text28, ui_->Command52, ui_->Command56, ui_->Command54),
            row(returned2, ui_->Text29, ui_->Command53, ui_->Command57, ui_->Command55)};
}

void PropertiesTab::wire(EventHandlers &handlers, LogWriter &log_writer, const PurgeCycles &purges,
                         const LogReplay &replay)
{
    wire_headings(handlers);
    const auto on_click = [&](QPushButton *button, EventHandlers::Handler handler) {
        handlers.on_click(button, std::move(handler));
    };
    on_click(ui_->cmdGet, [this] { profile_.cmdGet_Click(); });                 // "Get"
    on_click(ui_->Command4, [this] { profile_.Command4_Click(); });             // "Apply / Change"
    on_click(ui_->cmdDel1, [this] { profile_.cmdDel1_Click(); });               // "Del"
    on_click(ui_->cmdGet2, [this] { database_location_.cmdGet2_Click(); });     // "Get"
    on_click(ui_->Command35, [this] { database_location_.Command35_Click(); }); // "Apply / Change"
    on_click(ui_->Command1, [&log_writer] { log_writer.Command1_Click(); });    // "Log"
    on_click(ui_->Command38, [this] { log_file_.Command38_Click(); });          // "View Log"
    on_click(ui_->Command39, [this] { log_file_.Command39_Click(); });          // "Clear Log"
    on_click(ui_->Command40, [this] { log_file_.Command40_Click(); });          // "Set Log Path"
    on_click(ui_->cmdFilterit, [&purges] { purges.cmdFilterit_Click(); });      // "Filter"
    on_click(ui_->Command58, [&purges] { purges.Command58_Click(); });          // "Filter1"
    on_click(ui_->Command59, [&purges] { purges.Command59_Click(); });          // "Filter2"
    on_click(ui_->cmdDel, [&purges] { purges.cmdDel_Click(); });                // "Delete"
    on_click(ui_->Command10, [&replay] { replay.Command10_Click(); }); // "Read log and …"
}

void PropertiesTab::wire_headings(EventHandlers &handlers)
{
    for (HeadingRow &row : headings_) {
        SubjectHeading &heading = row.heading;
        handlers.on_click(row.get, [&heading] { heading.get(); });     // "Get"
        handlers.on_click(row.apply, [&heading] { heading.apply(); }); // "Apply"
        handlers.on_click(row.del, [&heading] { heading.del(); });     // "Del"
    }
}

QLineEdit &PropertiesTab::Text17() const
{
    return *ui_->Text17;
}

QLineEdit &PropertiesTab::Text25() const
{
    return *ui_->Text25;
}

TextBox &PropertiesTab::Text27() const
{
    return *ui_->Text27;
}

QLineEdit &PropertiesTab::Text29() const
{
    return *ui_->Text29;
}
