#ifndef TESTS_SYSTEM_PROCESSUSE_H
#define TESTS_SYSTEM_PROCESSUSE_H

#include <QList>

/// What a process has of the system; Linux.
struct ProcessUse
{
    int nDescriptors = 0;
    int nThreads = 0;
    int nChildren = 0; ///< zombies too
    qint64 nResidentKb = 0;
};

/// What this process has now.
ProcessUse UseOfThisProcess();

/// Process ids of the children, zombies included. A helper process belongs to the thread that started it.
QList<qint64> ChildrenOf(qint64 processId);

/// Open descriptors of a process.
int DescriptorsOf(qint64 processId);

#endif
