#ifndef WORKER_WORKERLOG_H
#define WORKER_WORKERLOG_H

#include <QString>

/// Writes one critical entry of the category "default" to Qt's message log. szFunction is the signature
/// that the entry carries; it must stay valid, so pass a literal. Callable from any thread.
void LogWorkerFailure(const char *szFunction, const QString &strText);

#endif
