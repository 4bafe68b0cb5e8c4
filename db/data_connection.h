#pragma once

#include "db/database_file.h"
#include "db/read_connection.h"
#include "db/record_set.h"
#include "db/statement.h"

#include <QObject>
#include <QString>
#include <QStringList>

#include <memory>
#include <span>

class DatabaseEngine;

/// A column that rows are deleted by.
struct TableColumn
{
    QString table;
    QString column;
};

/// A data control: a database file, a record source, and the record set of its last refresh.
class DataConnection : public QObject, private FileReader
{
    Q_OBJECT

public:
    /// `engine` must outlive the connection.
    explicit DataConnection(DatabaseEngine &engine);
    ~DataConnection() override;

    /// The file's path as given (may be in drive notation). It is opened by the next refresh().
    void set_database_name(const QString &path);
    const QString &database_name() const;

    /// A table name or a select; in force from the next refresh() on.
    void set_record_source(const Statement &source);
    const Statement &record_source() const;

    /// Opens the database when its name has changed, checks the record source and takes the state
    /// that the record set shows from now on; rows are read when somebody looks. Moves to the first
    /// row.
    /// @throws RuntimeError 3024, 3343 (the file), 3075, 3061, 3078 (the statement); the record set
    /// that was open before then stays.
    void refresh();

    /// Closes the record set: record_set() throws until the next refresh(), and a grid is empty.
    void close_record_set();

    /// Runs an action statement (delete, insert, update) on the open database. Its effect is in the
    /// file when it returns.
    /// @return how many rows it deleted, inserted or updated.
    /// @throws RuntimeError 91 when no database is open; 3075, 3061, 3078, 93 (the statement), 3027
    /// (the file cannot be written).
    std::int64_t execute(const Statement &statement);

    /// Has exactly the effect of executing, for each of `values` in order and each of `targets` in
    /// order,
    ///     delete * from TABLE where COLUMN like '*VALUE*'
    /// but looks at each row once. Values must be free of wildcards and single quotes.
    /// @throws RuntimeError as execute(), and 5 for a value with a wildcard; nothing is deleted
    /// then.
    void delete_containing(std::span<const TableColumn> targets, const QStringList &values);

    /// @throws RuntimeError 91 before the first successful refresh().
    RecordSet &record_set();
    bool has_record_set() const;

Q_SIGNALS:
    /// The record set is a new one, or its rows stand in a new order.
    void rows_changed();

    /// Another record has become current, or none.
    void record_changed();

private:
    void before_write() override;
    void before_change(const QString &table) override;
    void before_close() override;

    void open_anew();
    void use(std::shared_ptr<DatabaseFile> file);
    DatabaseFile &open_file() const;

    DatabaseEngine &engine_;
    QString database_name_;
    QString open_name_; // the name that the open file was opened by
    Statement source_;
    QString shown_source_; // the text of the record source that the record set shows
    std::shared_ptr<DatabaseFile> file_;
    std::shared_ptr<ReadConnection> reader_;
    RecordSet record_set_;
};
