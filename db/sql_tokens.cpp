#include "db/sql_tokens.h"

#include "db/sql_failure.h"

#include <algorithm>
#include <array>

namespace
{
using Kind = SqlToken::Kind;

bool starts_word(QChar c)
{
    return c.isLetter() || c == QLatin1Char('_') || c.isSurrogate();
}

bool continues_word(QChar c)
{
    return starts_word(c) || c.isDigit() || c.isMark();
}

bool is_digit(QChar c)
{
    return c >= QLatin1Char('0') && c <= QLatin1Char('9');
}

class Scanner
{
public:
    explicit Scanner(const QString &statement) : statement_(statement) {}

    std::vector<SqlToken> run()
    {
        while (skip_blanks(), position_ < statement_.size()) {
            if (ended_)
                fail(QStringLiteral("characters found after the end of the statement"));
            scan_token();
        }
        return std::move(tokens_);
    }

private:
    void skip_blanks()
    {
        while (position_ < statement_.size() &&
               (here().isSpace() || (ended_ && here() == QLatin1Char(';'))))
            ++position_;
    }

    void scan_token()
    {
        const QChar c = here();
        if (c == QLatin1Char('\'') || c == QLatin1Char('"'))
            add(Kind::Text, enclosed(c, QStringLiteral("a quote is not closed")));
        else if (c == QLatin1Char('['))
            add(Kind::BracketedName,
                enclosed(QLatin1Char(']'), QStringLiteral("a bracket is not closed")));
        else if (c == QLatin1Char(';'))
            ended_ = true;
        else if (is_digit(c))
            add(Kind::Number, run_of([](QChar d) { return is_digit(d) || d == QLatin1Char('.'); }));
        else if (starts_word(c))
            add(Kind::Word, run_of(continues_word));
        else
            scan_symbol();
    }

    /// The text up to the closing character, which stands twice for itself.
    QString enclosed(QChar closing, const QString &complaint)
    {
        QString text;
        for (++position_; position_ < statement_.size(); ++position_) {
            if (here() == closing) {
                if (position_ + 1 >= statement_.size() || statement_[position_ + 1] != closing) {
                    ++position_;
                    return text;
                }
                ++position_;
            }
            text += here();
        }
        fail(complaint);
    }

    template <typename Accepts>
    QString run_of(Accepts accepts)
    {
        const qsizetype start = position_;
        while (position_ < statement_.size() && accepts(here()))
            ++position_;
        return statement_.mid(start, position_ - start);
    }

    void scan_symbol()
    {
        static constexpr std::array two = {"<>", "<=", ">="};
        static const QString one = QStringLiteral("=<>(),.+-*/&");
        const QString pair = statement_.mid(position_, 2);
        if (std::any_of(two.begin(), two.end(),
                        [&pair](const char *symbol) { return pair == QLatin1String(symbol); }))
            add(Kind::Symbol, pair);
        else if (one.contains(here()))
            add(Kind::Symbol, QString(here()));
        else
            fail(QStringLiteral("the character '%1' has no meaning here").arg(here()));
        position_ += tokens_.back().text.size();
    }

    void add(Kind kind, const QString &text) { tokens_.push_back({kind, text}); }

    QChar here() const { return statement_[position_]; }
    [[noreturn]] void fail(const QString &reason) const
    {
        throw syntax_failure(statement_, reason);
    }

    const QString &statement_;
    qsizetype position_ = 0;
    bool ended_ = false;
    std::vector<SqlToken> tokens_;
};
} // namespace

bool SqlToken::is(const char *word) const
{
    return (kind == Kind::Word || kind == Kind::Symbol) &&
           text.compare(QLatin1String(word), Qt::CaseInsensitive) == 0;
}

bool SqlToken::is_comparison() const
{
    static constexpr std::array comparisons = {"=", "<>", "<", ">", "<=", ">=", "between", "and"};
    return std::any_of(comparisons.begin(), comparisons.end(),
                       [this](const char *symbol) { return is(symbol); });
}

std::vector<SqlToken> sql_tokens(const QString &statement)
{
    return Scanner(statement).run();
}
