#include "app/settings_store.h"
#include "db/schema.h"
#include "packaging/sample/sample_list.h"
#include "platform/drive_path.h"
#include "platform/runtime_error.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <SQLiteCpp/SQLiteCpp.h>

#include <cstdlib>
#include <iostream>

// Lays out the sample in an empty home: the inbox, the database with its master list, and the
// subject headings that are set from the start. HOME and the XDG folders must point there already.
namespace
{
const QByteArray date_header = QByteArrayLiteral("\nDate: ");

[[noreturn]] void fail(const QString &what)
{
    throw RuntimeError(error_number::path_file_access, what);
}

QByteArray bytes_of(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        fail(QStringLiteral("Cannot read %1: %2").arg(path, file.errorString()));
    return file.readAll();
}

QDateTime date_of(const QByteArray &message, const QString &path)
{
    const qsizetype start = message.indexOf(date_header) + date_header.size();
    const QByteArray text = message.mid(start, message.indexOf('\n', start) - start);
    QDateTime date = QDateTime::fromString(QString::fromLatin1(text), Qt::RFC2822Date);
    if (!date.isValid())
        fail(QStringLiteral("%1: not a date: %2").arg(path, QString::fromLatin1(text)));
    return date;
}

// The file gets the time at which its message would have arrived.
void deliver(const QString &path, const QDir &inbox)
{
    const QByteArray message = bytes_of(path);
    const QDateTime date = date_of(message, path);
    QFile file(inbox.filePath(QStringLiteral("%1.%2.sample:2,S")
                                  .arg(date.toSecsSinceEpoch())
                                  .arg(QFileInfo(path).completeBaseName())));
    if (!file.open(QIODevice::WriteOnly | QIODevice::NewOnly) ||
        file.write(message) != message.size() || !file.flush() ||
        !file.setFileTime(date, QFileDevice::FileModificationTime))
        fail(QStringLiteral("Cannot write %1: %2").arg(file.fileName(), file.errorString()));
}

void make_folder(const QString &path)
{
    if (!QDir().mkpath(path))
        fail(QStringLiteral("Cannot make the folder %1").arg(path));
}

void make_inbox(const QString &sample, const QString &home)
{
    for (const char *part : {"cur", "new", "tmp"})
        make_folder(home + QStringLiteral("/Maildir/") + QLatin1String(part));
    const QDir mail(sample + QStringLiteral("/mail"));
    for (const QFileInfo &file : mail.entryInfoList({QStringLiteral("*.eml")}, QDir::Files))
        deliver(file.filePath(), QDir(home + QStringLiteral("/Maildir/cur")));
}

void make_database(const QString &sample)
{
    const QString path = native_path(QStringLiteral("C:\\Ostrix\\Ostrix.mdb"));
    if (QFile::exists(path))
        fail(QStringLiteral("There is a database already: %1").arg(path));
    make_folder(QFileInfo(path).path());
    create_database(path);
    SQLite::Database database(QFile::encodeName(path).toStdString(), SQLite::OPEN_READWRITE);
    SQLite::Transaction transaction(database);
    SQLite::Statement insert(database, "insert into master(email, name) values (?, ?)");
    for (const SampleAddress &address : sample_addresses(sample)) {
        insert.bind(1, address.email.toStdString());
        insert.bind(2, address.name.toStdString());
        insert.exec();
        insert.reset();
    }
    transaction.commit();
}

void make_settings()
{
    SettingsStore settings;
    for (const SampleHeading &heading : sample_headings())
        if (heading.from_the_start)
            settings.write(heading.key, heading.text);
}
} // namespace

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.size() != 3) {
        std::cerr << "usage: ostrix_sample SAMPLE-FOLDER EMPTY-HOME\n";
        return 2;
    }
    try {
        make_inbox(arguments[1], arguments[2]);
        make_database(arguments[1]);
        make_settings();
        return EXIT_SUCCESS;
    } catch (const std::exception &error) {
        std::cerr << error.what() << '\n';
        return EXIT_FAILURE;
    }
}
