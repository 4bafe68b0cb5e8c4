#include "db/change_counter.h"

#include <sqlite3.h>

namespace
{
constexpr int index_part = 32768;     // bytes that are mapped at a time
constexpr int place_of_the_count = 2; // in numbers of four bytes

sqlite3_file *file_of(sqlite3 *database)
{
    sqlite3_file *file = nullptr;
    if (sqlite3_file_control(database, "main", SQLITE_FCNTL_FILE_POINTER, &file) != SQLITE_OK)
        return nullptr;
    const bool shares_memory =
        file != nullptr && file->pMethods != nullptr && file->pMethods->iVersion >= 2;
    return shares_memory ? file : nullptr;
}
} // namespace

std::uint32_t transactions_counted(sqlite3 *database)
{
    sqlite3_file *file = file_of(database);
    void volatile *index = nullptr; // SQLite's own mapping
    if (file == nullptr || file->pMethods->xShmMap(file, 0, index_part, 0, &index) != SQLITE_OK ||
        index == nullptr)
        return 0;
    return static_cast<const volatile std::uint32_t *>(index)[place_of_the_count];
}
