#pragma once

#include <QString>

#include <vector>

struct SqlToken
{
    enum class Kind { Word, BracketedName, Text, Number, Symbol };
    Kind kind;
    QString text; // without brackets or quotes

    /// Whether it is this keyword or symbol, given in small letters.
    bool is(const char *word) const;
    bool is_name() const { return kind == Kind::Word || kind == Kind::BracketedName; }
    bool is_comparison() const;
};

/// Splits a statement into tokens; semicolons and blanks at its end are left out.
/// @throws RuntimeError 3075 for a quote or bracket without its partner, a character that no
/// statement has, and text after a semicolon.
std::vector<SqlToken> sql_tokens(const QString &statement);
