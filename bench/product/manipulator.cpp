// The text manipulator with 50 MB in its view box: how long each command takes until it is painted,
// the longest time that the window did not answer meanwhile, and the processor's time. Texts of
// several shapes, made here; they lie in the home that HOME and the XDG folders name.
#include "app/main_window.h"
#include "app/settings_store.h"
#include "mail/user_mail.h"
#include "platform/long_text_box.h"

#include <QAbstractButton>
#include <QAbstractEventDispatcher>
#include <QAction>
#include <QApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QKeyEvent>
#include <QLineEdit>
#include <QScrollBar>

#include <algorithm>
#include <cstdio>
#include <ctime>
#include <exception>
#include <stdexcept>
#include <string>
#include <sys/resource.h>

namespace
{
constexpr qsizetype characters = 50'000'000;

/// Agrees to everything and chooses one file.
class ChoosingPrompts : public Prompts
{
public:
    QString file;

    void notice(const QString &, NoticeIcon) override {}
    bool yes_no(const QString &) override { return true; }
    bool ok_cancel(const QString &) override { return true; }
    QString open_file(const FileChoice &) override { return file; }
    QString save_file(const FileChoice &) override { return file + QStringLiteral(".saved"); }
    QString current_folder() const override { return {}; }
    QString input(const QString &) override { return {}; }
    void run_time_error(const QString &report) override
    {
        std::fprintf(stderr, "%s\n", qPrintable(report));
    }
};

/// Tells how long the event loop went without a turn.
class TurnWatch
{
public:
    TurnWatch()
    {
        auto *loop = QAbstractEventDispatcher::instance();
        const auto turn = [this] { note(); };
        QObject::connect(loop, &QAbstractEventDispatcher::awake, turn);
        QObject::connect(loop, &QAbstractEventDispatcher::aboutToBlock, turn);
        clock_.start();
    }

    void restart()
    {
        longest_ = 0;
        clock_.restart();
    }
    qint64 longest()
    {
        note();
        return longest_;
    }

private:
    void note() { longest_ = std::max(longest_, clock_.restart()); }

    QElapsedTimer clock_;
    qint64 longest_ = 0; // milliseconds
};

template <typename Control>
Control &control(const QObject &in, const char *name)
{
    auto *found = in.findChild<Control *>(QLatin1String(name));
    if (found == nullptr)
        throw std::runtime_error(std::string("There is no ") + name);
    return *found;
}

void press(LongTextBox &box, int key, Qt::KeyboardModifiers modifiers, const QString &typed = {})
{
    QKeyEvent event(QEvent::KeyPress, key, modifiers, typed);
    QApplication::sendEvent(&box, &event);
}

class Measurement
{
public:
    Measurement(MainWindow &window, ChoosingPrompts &prompts)
        : prompts_(prompts),
          manipulator_(open(window)),
          view_box_(control<LongTextBox>(manipulator_, "Text3"))
    {
        control<QLineEdit>(manipulator_, "Text1").setText(QStringLiteral("@"));
        control<QLineEdit>(manipulator_, "Text2").setText(QStringLiteral(" at "));
        control<QLineEdit>(manipulator_, "Text6").setText(QStringLiteral("@"));
    }

    void run(const char *shape, const QByteArray &text)
    {
        shape_ = shape;
        QFile file(prompts_.file);
        if (!file.open(QIODevice::WriteOnly) || file.write(text) != text.size())
            throw std::runtime_error("Cannot write the text");
        file.close();
        choose("GetFile");
        time("scroll to the middle", [this] { drag(0.5); });
        time("scroll to the end", [this] { drag(1); });
        time("type at the end", [this] {
            press(view_box_, Qt::Key_End, Qt::ControlModifier);
            press(view_box_, Qt::Key_Comma, {}, QStringLiteral(","));
        });
        time("type once more",
             [this] { press(view_box_, Qt::Key_Comma, {}, QStringLiteral(",")); });
        time("copy all", [this] {
            press(view_box_, Qt::Key_A, Qt::ControlModifier);
            press(view_box_, Qt::Key_C, Qt::ControlModifier);
        });
        const QString whole = QString::fromLatin1(text);
        for (const char *button : {"Command1", "Command4", "Command5", "Command2", "Command3"}) {
            view_box_.set_text(whole);
            click(button);
        }
        choose("SaveFile");
        rusage usage{};
        getrusage(RUSAGE_SELF, &usage);
        std::printf("peak memory so far: %ld MB\n", usage.ru_maxrss / 1024);
    }

private:
    static QWidget &open(MainWindow &window)
    {
        control<QAction>(window, "ManipulateText").trigger();
        return control<QWidget>(window, "TextManipulator");
    }

    template <typename Work>
    void time(const char *what, const Work &work)
    {
        QElapsedTimer clock;
        turns_.restart();
        clock.start();
        const std::clock_t processor = std::clock();
        work();
        for (int turn = 0; turn < 5; ++turn)
            QApplication::processEvents();
        const qint64 taken = clock.elapsed();
        std::printf("| %s | %s | %lld ms | %lld ms | %ld ms |\n", shape_, what,
                    static_cast<long long>(taken), static_cast<long long>(turns_.longest()),
                    (std::clock() - processor) * 1000 / CLOCKS_PER_SEC);
    }

    void click(const char *button)
    {
        auto &found = control<QAbstractButton>(manipulator_, button);
        time(qPrintable(found.text()), [&found] { found.click(); });
    }
    void choose(const char *entry)
    {
        auto &found = control<QAction>(manipulator_, entry);
        time(qPrintable(found.text()), [&found] { found.trigger(); });
    }

    void drag(double part)
    {
        const auto bars = view_box_.findChildren<QScrollBar *>(Qt::FindDirectChildrenOnly);
        for (QScrollBar *bar : bars) {
            if (bar->isVisible())
                bar->setSliderPosition(static_cast<int>(part * bar->maximum()));
        }
    }

    ChoosingPrompts &prompts_;
    QWidget &manipulator_;
    LongTextBox &view_box_;
    TurnWatch turns_;
    const char *shape_ = "";
};

QByteArray addresses(const QByteArray &joiner)
{
    QByteArray text;
    text.reserve(characters + 100);
    for (int i = 0; text.size() < characters; ++i)
        text += "reader" + QByteArray::number(i) + "@example.org" + joiner;
    return text;
}
} // namespace

int main(int argc, char **argv)
try {
    QApplication::setStyle(QStringLiteral("Fusion"));
    const QApplication application(argc, argv);
    QApplication::setApplicationName(QStringLiteral("Ostrix"));
    SettingsStore settings;
    ChoosingPrompts prompts;
    UserMail mail(settings_file(SettingsStore::application, QStringLiteral("profiles")));
    MainWindow window(
        {settings, prompts, mail.store(), &QDateTime::currentDateTime, mail.profile_desk()});
    window.open();
    prompts.file = qEnvironmentVariable("HOME") + QStringLiteral("/text");
    Measurement measurement(window, prompts);
    measurement.run("an address a line", addresses("\r\n"));
    measurement.run("addresses in one line", addresses(", "));
    measurement.run("semicolons in one line", addresses(";"));
    measurement.run("one word", QByteArray(characters, 'x'));
    measurement.run("nothing but commas", QByteArray(characters, ','));
    measurement.run("nothing but blanks", QByteArray(characters, ' '));
    measurement.run("nothing but line breaks", QByteArray(characters, '\n'));
    measurement.run("nothing but signs", QByteArray(characters, '@'));
    measurement.run("one letter with accents", "a" + QByteArray("\xCC\x81").repeated(characters));
    return 0;
} catch (const std::exception &error) {
    std::fprintf(stderr, "%s\n", error.what());
    return 1;
}
