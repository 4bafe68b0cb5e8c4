#pragma once

#include <QString>

#include <exception>

/// The customary numbers of the failures that a person may meet in a report.
namespace error_number
{
inline constexpr int invalid_call = 5;
inline constexpr int overflow = 6;
inline constexpr int out_of_memory = 7;
inline constexpr int subscript_out_of_range = 9;
inline constexpr int type_mismatch = 13;
inline constexpr int internal_error = 51;
inline constexpr int bad_file_name_or_number = 52;
inline constexpr int file_not_found = 53;
inline constexpr int device_io_error = 57;
inline constexpr int disk_full = 61;
inline constexpr int permission_denied = 70;
inline constexpr int path_file_access = 75;
inline constexpr int path_not_found = 76;
inline constexpr int object_not_set = 91;
inline constexpr int invalid_pattern = 93;
inline constexpr int object_required = 424;
inline constexpr int printer_error = 482;
inline constexpr int update_without_edit = 3020;
inline constexpr int no_current_record = 3021;
inline constexpr int could_not_find_file = 3024;
inline constexpr int cannot_update = 3027;
inline constexpr int too_few_parameters = 3061;
inline constexpr int syntax_error = 3075;
inline constexpr int table_not_found = 3078;
inline constexpr int record_deleted = 3167;
inline constexpr int item_not_found = 3265;
inline constexpr int unrecognised_database = 3343;
inline constexpr int mail_failure = 32000;
inline constexpr int sending_cancelled = 32001;
} // namespace error_number

/// The one exception of the program: whatever fails (file, database, mail store, arithmetic) throws
/// it. The description says what failed: the path, the statement, the server's answer.
class RuntimeError : public std::exception
{
public:
    RuntimeError(int number, const QString &description);

    int number() const { return number_; }
    const QString &description() const { return description_; }

    /// The report that a person sees: "Run-time error 'N':", a blank line, the description.
    QString report() const;

    /// The report as UTF-8, for logs and test output.
    const char *what() const noexcept override { return what_.constData(); }

private:
    int number_;
    QString description_;
    QByteArray what_;
};

/// A count where a 16-bit signed number is expected.
/// @throws RuntimeError 6 above 32,767.
int as_integer16(qint64 count);

/// Runs `step` and skips what it throws: for runs that ignore errors, which name each step they may
/// skip. Memory that runs out in a step is such an error, too.
/// @return whether the step ran to its end.
template <typename Step>
bool attempt(Step &&step)
{
    try {
        step();
        return true;
    } catch (const std::exception &) {
        return false;
    }
}
