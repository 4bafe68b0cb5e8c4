#pragma once

#include <QString>

// The text manipulator's transformations. Each is given a whole text and takes time by its length,
// whatever its shape.

/// A file's text as the view box takes it: every line, also a last one without an end, followed by
/// CR LF. CR LF, LF and CR end a line.
QString with_ended_lines(const QString &text);

/// `text` with every occurrence of `wanted` replaced, from the first character on; letter case
/// counts. Nothing is found in place of an empty `wanted`.
QString with_replaced(const QString &text, const QString &wanted, const QString &replacement);

/// The comma-separated items of `text`, last one first, each followed by CR LF. What stands behind
/// the last comma is no item and is dropped.
QString items_from_the_last(const QString &text);

/// The lines of a text that hold something.
struct KeptLines
{
    QString text; ///< each followed by CR LF, in their order
    QString last; ///< the last line looked at, whether kept or not; empty when there was none
};

/// Keeps the lines of `text` that contain `wanted`; letter case counts. Every line contains an
/// empty `wanted`.
KeptLines lines_that_contain(const QString &text, const QString &wanted);

QString with_commas_for_blanks(QString text);
QString with_commas_for_semicolons(QString text);
