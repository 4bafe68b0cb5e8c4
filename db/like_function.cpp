#include "db/like_function.h"

#include "db/dialect.h"
#include "db/letter_case.h"
#include "db/like_pattern.h"
#include "db/sqlite_failure.h"

#include <sqlite3.h>

#include <memory>

namespace
{
std::string_view text_of(sqlite3_value *value)
{
    const auto *bytes = reinterpret_cast<const char *>(sqlite3_value_text(value));
    return bytes == nullptr
               ? std::string_view()
               : std::string_view(bytes, static_cast<std::size_t>(sqlite3_value_bytes(value)));
}

void delete_pattern(void *pattern)
{
    const std::unique_ptr<LikePattern> owner(static_cast<LikePattern *>(pattern));
}

// X like Y calls like(Y, X). The pattern is kept with the statement; SQLite may drop it at once, so
// it is asked for again.
const LikePattern *compiled(sqlite3_context *context, sqlite3_value *pattern)
{
    if (const void *kept = sqlite3_get_auxdata(context, 0))
        return static_cast<const LikePattern *>(kept);
    auto made = std::make_unique<LikePattern>(text_of(pattern));
    sqlite3_set_auxdata(context, 0, made.release(), delete_pattern);
    return static_cast<const LikePattern *>(sqlite3_get_auxdata(context, 0));
}

void answer(sqlite3_context *context, sqlite3_value *pattern, std::string_view text)
{
    if (const LikePattern *kept = compiled(context, pattern))
        sqlite3_result_int(context, kept->matches(text) ? 1 : 0);
    else
        sqlite3_result_int(context, LikePattern(text_of(pattern)).matches(text) ? 1 : 0);
}

// No exception may pass through SQLite.
void like(sqlite3_context *context, int, sqlite3_value **arguments)
{
    if (sqlite3_value_type(arguments[0]) == SQLITE_NULL ||
        sqlite3_value_type(arguments[1]) == SQLITE_NULL)
        return;
    try {
        answer(context, arguments[0], text_of(arguments[1]));
    } catch (const RuntimeError &error) {
        const QByteArray words = error.description().toUtf8();
        sqlite3_result_error(context, words.constData(), static_cast<int>(words.size()));
    } catch (const std::bad_alloc &) {
        sqlite3_result_error_nomem(context);
    }
}

// Folded UTF-8 sorts by code points; letter by letter, so that nothing need be stored.
int compare_letters(void *, int left_size, const void *left, int right_size, const void *right)
{
    const std::string_view a(static_cast<const char *>(left), static_cast<std::size_t>(left_size));
    const std::string_view b(static_cast<const char *>(right),
                             static_cast<std::size_t>(right_size));
    std::size_t i = 0;
    std::size_t j = 0;
    while (i < a.size() && j < b.size()) {
        const char32_t x = fold_letter(next_code_point(a, i));
        const char32_t y = fold_letter(next_code_point(b, j));
        if (x != y)
            return x < y ? -1 : 1;
    }
    return (i < a.size() ? 1 : 0) - (j < b.size() ? 1 : 0);
}
} // namespace

void add_dialect_functions(sqlite3 *database)
{
    constexpr int flags = SQLITE_UTF8 | SQLITE_DETERMINISTIC | SQLITE_INNOCUOUS;
    const bool made = sqlite3_create_function_v2(database, "like", 2, flags, nullptr, like, nullptr,
                                                 nullptr, nullptr) == SQLITE_OK &&
                      sqlite3_create_collation_v2(database, letters_collation, SQLITE_UTF8, nullptr,
                                                  compare_letters, nullptr) == SQLITE_OK;
    if (!made)
        throw sqlite_failure(database, QStringLiteral("like"));
}
