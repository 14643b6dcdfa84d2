#ifndef PROCESS_PROCESSROOM_H
#define PROCESS_PROCESSROOM_H

class QString;
class QThread;

/// How much of the system this process may still take, and threads that may not get their part of it.
///
/// A worker takes, of descriptors, its event dispatcher's, its helper's socket and the file it reads or
/// writes; of processes, its own thread and the three of its helper. A thread that finds no descriptor for
/// its event dispatcher ends the whole process, so none may be started then.
namespace ProcessRoom {

/// How many workers can run at once beside what the process has now; at most kMostWorkers. Ask it while none
/// runs. 0 when there are too few descriptors for even one. What other programs take meanwhile is not
/// known: a thread may fail to start all the same.
int ForWorkers();

/// A helper takes some megabytes, and any device can claim to be thousands of cameras.
const int kMostWorkers = 512;

/// QThread::start(), which tells a failure by a warning alone: there is no signal then, and waiting for the
/// thread's end would be in vain. The thread must not run.
/// @return whether the thread runs, or has ended already
bool Start(QThread *pThread);

/// Parts of ForWorkers(): how many descriptors can be opened, 16384 when there are more; and how many threads
/// and processes can be started, INT_MAX when nothing limits them.
int FreeDescriptors();
int FreeProcesses();

/// Processes that the control groups of a process still allow, in the hierarchies of version 1 and 2.
/// @param strMembership  text of /proc/self/cgroup
/// @param strRoot        where the control groups are mounted: /sys/fs/cgroup
int FreeInControlGroups(const QString &strMembership, const QString &strRoot);

} // namespace ProcessRoom

#endif
