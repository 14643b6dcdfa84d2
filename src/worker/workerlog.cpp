#include "workerlog.h"

#include <QMessageLogger>

namespace {

// The path that log filters and evaluations in the field look for; it is not the path of this tree.
const char *const kSource = "../../src/Lumo_Import_Export_Features/QOperateThread.cpp";

} // namespace

void LogWorkerFailure(const char *szFunction, const QString &strText)
{
    // No line number: it would point into another file than kSource names.
    QMessageLogger(kSource, 0, szFunction, "default").critical("%s", qUtf8Printable(strText));
}
