#ifndef TESTS_SUPPORT_JOURNAL_H
#define TESTS_SUPPORT_JOURNAL_H

#include <QFileInfo>
#include <QMutex>
#include <QStringList>

/// What a worker does to the world, in one list: its calls of the camera SDK, its signals, its log entries,
/// and the moment at which a file is there. Filled by ScriptedSdk, WorkerUnderTest and MessageLog. Callable
/// from any thread.
class Journal
{
public:
    static void Clear()
    {
        const QMutexLocker locker(&s_mutex);
        s_entries.clear();
        s_strWatched.clear();
    }

    /// From now on, "file" stands before the first entry that finds this file there.
    static void Watch(const QString &strPath)
    {
        const QMutexLocker locker(&s_mutex);
        s_strWatched = strPath;
    }

    static void Note(const QString &strEntry)
    {
        const QMutexLocker locker(&s_mutex);
        if (!s_strWatched.isEmpty() && QFileInfo::exists(s_strWatched)) {
            s_entries.append(QStringLiteral("file"));
            s_strWatched.clear();
        }
        s_entries.append(strEntry);
    }

    static QStringList Entries()
    {
        const QMutexLocker locker(&s_mutex);
        return s_entries;
    }

private:
    inline static QMutex s_mutex; // protects the other two
    inline static QStringList s_entries;
    inline static QString s_strWatched;
};

#endif
