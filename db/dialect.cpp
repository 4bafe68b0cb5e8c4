#include "db/dialect.h"

#include "db/like_pattern.h"
#include "db/sql_failure.h"
#include "db/sql_tokens.h"

#include <algorithm>
#include <array>

namespace
{
using Kind = SqlToken::Kind;
using Tokens = std::vector<SqlToken>;

// What would make a condition more than a condition.
constexpr std::array beyond_a_condition = {"select", "from",   "where", "group",     "having",
                                           "union",  "except", "limit", "intersect", "join"};

/// Reads a statement's tokens from left to right.
class Parser
{
public:
    explicit Parser(const QString &statement)
        : statement_(statement),
          tokens_(sql_tokens(statement))
    {
    }

    bool at_end() const { return next_ == tokens_.size(); }
    bool next_is(const char *word) const { return !at_end() && tokens_[next_].is(word); }
    const SqlToken &take() { return tokens_[next_++]; }

    bool accept(const char *word)
    {
        const bool found = next_is(word);
        next_ += found ? 1U : 0U;
        return found;
    }

    void expect(const char *word)
    {
        if (!accept(word))
            fail(QStringLiteral("'%1' expected").arg(QLatin1String(word)));
    }

    QString name()
    {
        if (at_end() || !tokens_[next_].is_name())
            fail(QStringLiteral("a name expected"));
        return take().text;
    }

    /// All tokens up to the keyword `stop`, or to the end, as SQL.
    SqlText sql_until(const char *stop);
    void check_condition(std::size_t from) const;
    std::size_t position() const { return next_; }

    [[noreturn]] void fail(const QString &reason) const
    {
        throw syntax_failure(statement_, reason);
    }

private:
    void append(SqlText &sql, std::size_t index) const;
    void append_literal(SqlText &sql, std::size_t index) const;
    bool is_at(std::size_t index, bool (SqlToken::*property)() const) const
    {
        return index < tokens_.size() && (tokens_[index].*property)();
    }

    const QString &statement_;
    Tokens tokens_;
    std::size_t next_ = 0;
};

SqlText Parser::sql_until(const char *stop)
{
    SqlText sql;
    for (; !at_end() && !next_is(stop); ++next_)
        append(sql, next_);
    return sql;
}

// Tokens are parted by blanks: two of them never run together into something else, as "--" would.
void Parser::append(SqlText &sql, std::size_t index) const
{
    const SqlToken &token = tokens_[index];
    const bool touches = token.is(".") || (index > 0 && tokens_[index - 1].is("."));
    if (!sql.text.empty() && !touches)
        sql.text += ' ';
    if (token.kind == Kind::Text)
        append_literal(sql, index);
    else if (token.kind == Kind::BracketedName)
        sql.text += quoted_name(token.text);
    else
        sql.text += token.is("&") ? "||" : token.text.toStdString();
}

void Parser::append_literal(SqlText &sql, std::size_t index) const
{
    const QString &literal = tokens_[index].text;
    sql.literals.append(literal);
    sql.text += '?' + std::to_string(sql.literals.size());
    if (index > 0 && tokens_[index - 1].is("like"))
        LikePattern(literal.toStdString()); // throws when it is none
    else if ((index > 0 && is_at(index - 1, &SqlToken::is_comparison)) ||
             is_at(index + 1, &SqlToken::is_comparison))
        sql.text += std::string(" collate ") + letters_collation;
}

void Parser::check_condition(std::size_t from) const
{
    int depth = 0;
    for (std::size_t i = from; i < next_; ++i) {
        depth += tokens_[i].is("(") ? 1 : tokens_[i].is(")") ? -1 : 0;
        const bool refused = std::any_of(beyond_a_condition.begin(), beyond_a_condition.end(),
                                         [&](const char *word) { return tokens_[i].is(word); });
        if (depth < 0 || refused)
            fail(QStringLiteral("'%1' not expected").arg(tokens_[i].text));
    }
    if (depth != 0 || from == next_)
        fail(QStringLiteral("the condition is not complete"));
}

QString column_name(Parser &parser, const QString &table)
{
    QString name = parser.name();
    if (!parser.accept("."))
        return name;
    if (!table.isNull() && name.compare(table, Qt::CaseInsensitive) != 0)
        parser.fail(QStringLiteral("'%1' is not the table read").arg(name));
    return parser.name();
}

QStringList column_list(Parser &parser)
{
    if (parser.accept("*"))
        return {};
    QStringList columns;
    do
        columns.append(column_name(parser, {}));
    while (parser.accept(","));
    return columns;
}

std::vector<OrderTerm> order_terms(Parser &parser, const QString &table)
{
    std::vector<OrderTerm> terms;
    do {
        OrderTerm term{column_name(parser, table)};
        term.descending = parser.accept("desc");
        if (!term.descending)
            parser.accept("asc");
        terms.push_back(term);
    } while (parser.accept(","));
    return terms;
}

SelectStatement parse_select(const QString &text)
{
    Parser parser(text);
    SelectStatement select;
    parser.expect("select");
    select.distinct = parser.accept("distinct");
    select.columns = column_list(parser);
    parser.expect("from");
    select.table = parser.name();
    if (parser.accept("where")) {
        const std::size_t start = parser.position();
        select.where = parser.sql_until("order");
        parser.check_condition(start);
    }
    if (parser.accept("order")) {
        parser.expect("by");
        select.order = order_terms(parser, select.table);
    }
    if (!parser.at_end())
        parser.fail(QStringLiteral("'%1' not expected").arg(parser.take().text));
    return select;
}

bool is_select(const QString &source)
{
    static constexpr qsizetype length = 6;
    return source.startsWith(QLatin1String("select"), Qt::CaseInsensitive) &&
           (source.size() == length ||
            !(source[length].isLetterOrNumber() || source[length] == QLatin1Char('_')));
}

QString without_brackets(const QString &name)
{
    const bool bracketed =
        name.size() > 2 && name.startsWith(QLatin1Char('[')) && name.endsWith(QLatin1Char(']'));
    return bracketed ? name.mid(1, name.size() - 2) : name;
}

/// "insert into TABLE", "delete [*] from TABLE" or "update TABLE", as SQL.
std::string action_head(Parser &parser, ActionStatement &statement)
{
    std::string head = "update ";
    statement.action = Action::Update;
    if (parser.accept("delete")) {
        parser.accept("*");
        parser.expect("from");
        statement.action = Action::Delete;
        head = "delete from ";
    } else if (parser.accept("insert")) {
        parser.expect("into");
        statement.action = Action::Insert;
        head = "insert into ";
    } else {
        parser.expect("update");
    }
    statement.table = parser.name();
    return head + quoted_name(statement.table);
}
} // namespace

SelectStatement parse_record_source(const Statement &source)
{
    source.check_values();
    const QString text = source.text().trimmed();
    if (is_select(text))
        return parse_select(source.text());
    SelectStatement select;
    select.table = without_brackets(text);
    return select;
}

ActionStatement parse_action(const Statement &statement)
{
    statement.check_values();
    Parser parser(statement.text());
    ActionStatement action;
    const std::string head = action_head(parser, action);
    action.sql = parser.sql_until("");
    action.sql.text = head + ' ' + action.sql.text;
    return action;
}

std::string quoted_name(const QString &name)
{
    QString doubled = name;
    doubled.replace(QLatin1Char('"'), QLatin1String("\"\""));
    return '"' + doubled.toStdString() + '"';
}
