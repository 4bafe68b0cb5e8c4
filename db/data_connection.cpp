#include "db/data_connection.h"

#include "db/database_engine.h"
#include "db/dialect.h"
#include "db/open_query.h"
#include "db/row_purge.h"
#include "platform/runtime_error.h"

DataConnection::DataConnection(DatabaseEngine &engine)
    : engine_(engine),
      record_set_([this] { Q_EMIT record_changed(); }, [this] { Q_EMIT rows_changed(); })
{
}

DataConnection::~DataConnection()
{
    record_set_.show(nullptr);
    reader_.reset(); // readers go before the file's last share: the writer then empties its log
    use(nullptr);
}

void DataConnection::set_database_name(const QString &path)
{
    database_name_ = path;
}

const QString &DataConnection::database_name() const
{
    return database_name_;
}

void DataConnection::set_record_source(const Statement &source)
{
    source_ = source;
}

const Statement &DataConnection::record_source() const
{
    return source_;
}

void DataConnection::refresh()
{
    source_.check_values();
    if (file_ != nullptr)
        file_->notice_other_writers();
    if (!has_record_set() || open_name_ != database_name_ || shown_source_ != source_.text())
        open_anew();
    record_set_.restart();
    Q_EMIT rows_changed();
}

// Everything new is there before anything old goes: a failure leaves the old record set.
void DataConnection::open_anew()
{
    const bool same_file = file_ != nullptr && open_name_ == database_name_;
    auto file = same_file ? file_ : engine_.open(database_name_);
    auto reader = file == file_ ? reader_ : std::make_shared<ReadConnection>(*file);
    auto query = std::make_unique<OpenQuery>(file, reader, source_);
    record_set_.show(std::move(query));
    reader_ = std::move(reader);
    use(std::move(file));
    open_name_ = database_name_;
    shown_source_ = source_.text();
}

void DataConnection::use(std::shared_ptr<DatabaseFile> file)
{
    if (file_ != nullptr)
        file_->remove_reader(this);
    file_ = std::move(file);
    if (file_ != nullptr)
        file_->add_reader(this);
}

DatabaseFile &DataConnection::open_file() const
{
    if (file_ == nullptr)
        throw RuntimeError(error_number::object_not_set,
                           QStringLiteral("Object variable not set: no database is open."));
    return *file_;
}

void DataConnection::close_record_set()
{
    record_set_.show(nullptr);
    Q_EMIT rows_changed();
}

std::int64_t DataConnection::execute(const Statement &statement)
{
    DatabaseFile &file = open_file();
    const ActionStatement action = parse_action(statement);
    static constexpr auto kind_of = [](Action made) {
        return made == Action::Insert   ? Write::Insert
               : made == Action::Delete ? Write::Delete
                                        : Write::Update;
    };
    const auto bind = [&action](PreparedStatement &prepared) {
        int parameter = 0;
        for (const QString &literal : action.sql.literals)
            prepared.bind(++parameter, literal);
    };
    return file.write(file.table(action.table), kind_of(action.action), action.sql.text, bind,
                      statement.text());
}

void DataConnection::delete_containing(std::span<const TableColumn> targets,
                                       const QStringList &values)
{
    purge_rows(open_file(), targets, values);
}

RecordSet &DataConnection::record_set()
{
    if (!has_record_set())
        throw RuntimeError(error_number::object_not_set,
                           QStringLiteral("Object variable not set: no record set is open."));
    return record_set_;
}

bool DataConnection::has_record_set() const
{
    return record_set_.query() != nullptr;
}

void DataConnection::before_write()
{
    if (has_record_set())
        record_set_.query()->before_write();
}

void DataConnection::before_change(const QString &table)
{
    if (has_record_set())
        record_set_.query()->before_change(table);
}

void DataConnection::before_close()
{
    record_set_.show(nullptr);
    reader_.reset();
    use(nullptr);
}
