#pragma once

#include "platform/line_printer.h"

#include <QString>
#include <QStringList>

/// A printer whose jobs end up in a PDF file.
PrinterMaker pdf_printer(const QString &file);

/// The pages of a PDF file, each as its lines, as a person reads them.
QList<QStringList> pdf_pages(const QString &file);
