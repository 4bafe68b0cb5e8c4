#include "packaging/sample/sample_list.h"

#include "platform/runtime_error.h"
#include "platform/text_file.h"

namespace
{
struct Pair
{
    QString left;
    QString right;
};

QList<Pair> pairs_of(const QString &path)
{
    QList<Pair> pairs;
    for (const QString &line : read_lines(path)) {
        const qsizetype tab = line.indexOf(u'\t');
        if (tab < 0)
            throw RuntimeError(error_number::device_io_error,
                               QStringLiteral("%1: no tab in the line '%2'").arg(path, line));
        pairs.append({line.left(tab), line.mid(tab + 1)});
    }
    return pairs;
}
} // namespace

const QList<SampleHeading> &sample_headings()
{
    static const QList<SampleHeading> headings = {
        {QStringLiteral("Filter"), QStringLiteral("Undeliver"), true},
        {QStringLiteral("Filter1"), QStringLiteral("fail"), true},
        {QStringLiteral("Filter2"), QStringLiteral("Returned mail"), false},
        {QStringLiteral("Delete"), QStringLiteral("Please remove me"), true}};
    return headings;
}

QList<SampleAddress> sample_addresses(const QString &folder)
{
    QList<SampleAddress> addresses;
    for (const Pair &pair : pairs_of(folder + QStringLiteral("/addresses.txt")))
        addresses.append({pair.left, pair.right});
    return addresses;
}

QStringList sample_removals(const QString &folder, const QString &key)
{
    QStringList removals;
    for (const Pair &pair : pairs_of(folder + QStringLiteral("/expected.txt")))
        if (pair.left == key)
            removals.append(pair.right);
    return removals;
}
