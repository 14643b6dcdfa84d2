#include "processuse.h"

#include <QCoreApplication>
#include <QDir>

#include "companion.h"

namespace {

QStringList TasksOf(qint64 processId)
{
    return QDir(QStringLiteral("/proc/%1/task").arg(processId)).entryList(QDir::Dirs | QDir::NoDotAndDotDot);
}

} // namespace

ProcessUse UseOfThisProcess()
{
    const qint64 own = QCoreApplication::applicationPid();
    ProcessUse use;
    use.nDescriptors = DescriptorsOf(own);
    use.nThreads = TasksOf(own).size();
    use.nChildren = ChildrenOf(own).size();
    // Second number: pages.
    use.nResidentKb = ReadFile("/proc/self/statm").split(' ').value(1).toLongLong() * 4;
    return use;
}

QList<qint64> ChildrenOf(qint64 processId)
{
    QList<qint64> children;
    const QStringList tasks = TasksOf(processId);
    for (const QString &task : tasks) {
        const QByteArray ids = ReadFile(QStringLiteral("/proc/%1/task/%2/children").arg(processId).arg(task));
        for (const QByteArray &id : ids.simplified().split(' ')) {
            if (!id.isEmpty())
                children << id.toLongLong();
        }
    }
    return children;
}

int DescriptorsOf(qint64 processId)
{
    return QDir(QStringLiteral("/proc/%1/fd").arg(processId))
        .entryList(QDir::AllEntries | QDir::System | QDir::NoDotAndDotDot)
        .size();
}
