#pragma once

#include <QString>

#include <cstddef>

/// A statement of the database's dialect, made of fixed text and values joined as they are. Fixed
/// text can only be a literal, values can only be QStrings, so that a value never passes for a part
/// of the statement:
///     Statement("select * from system where email like '*", Text26.text(), "*' ")
class Statement
{
public:
    Statement() = default;

    template <std::size_t N>
    Statement(const char (&fixed)[N])
        : text_(QString::fromUtf8(fixed)) // NOLINT: a literal is a statement
    {
    }

    template <std::size_t N, typename... Rest>
    Statement(const char (&fixed)[N], const QString &value, const Rest &...rest)
        : Statement(Statement(rest...).after(fixed, value))
    {
    }

    /// A record source that a person named: a table, or a select as typed.
    static Statement typed(const QString &source);

    const QString &text() const { return text_; }

    /// @throws RuntimeError 3075, with the statement's text, when a value holds a single quote:
    /// such a value breaks its statement, also where two quotes would balance.
    void check_values() const;

private:
    Statement after(const char *fixed, const QString &value) const;

    QString text_;
    bool broken_ = false;
};
