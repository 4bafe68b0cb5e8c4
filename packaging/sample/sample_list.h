#pragma once

#include <QList>
#include <QString>
#include <QStringList>

/// An address of the sample's master list.
struct SampleAddress
{
    QString email;
    QString name;
};

/// A subject heading of the sample: the setting that holds it, its text, and whether it is set from
/// the start or left for the person to set.
struct SampleHeading
{
    QString key;
    QString text;
    bool from_the_start;
};
const QList<SampleHeading> &sample_headings();

/// The addresses in `folder`/addresses.txt: address, tab, name on each line.
/// @throws RuntimeError when the file cannot be read or a line has no tab.
QList<SampleAddress> sample_addresses(const QString &folder);

/// The addresses in `folder`/expected.txt that the heading of the setting `key` removes.
/// @throws RuntimeError as above.
QStringList sample_removals(const QString &folder, const QString &key);
