#include "tests/support/print_qt.h"
#include "transfer/csv_line.h"

#include <gtest/gtest.h>

namespace
{
struct Line
{
    QStringList fields;
    QString line;
};
class CsvLine : public testing::TestWithParam<Line>
{
};

TEST_P(CsvLine, QuotesWhatWouldNotReadBackAsOneField)
{
    EXPECT_EQ(csv_line(GetParam().fields), GetParam().line);
}

INSTANTIATE_TEST_SUITE_P(
    Fields, CsvLine,
    testing::Values(Line{{"ann@example.org", "Ann Hill"}, "ann@example.org,Ann Hill"},
                    Line{{"ann@example.org", ""}, "ann@example.org,"},
                    Line{{"ann@example.org", "Hill, Ann"}, "ann@example.org,\"Hill, Ann\""},
                    Line{{"\"Ann\" Hill"}, "\"\"\"Ann\"\" Hill\""},
                    Line{{"two\r\nlines", "two\nlines"}, "\"two\r\nlines\",\"two\nlines\""},
                    Line{{" blanks "}, " blanks "}, Line{{}, ""}));
} // namespace
