#ifndef TESTS_SUPPORT_MESSAGELOG_H
#define TESTS_SUPPORT_MESSAGELOG_H

#include <QMutex>
#include <QStringList>

#include "journal.h"

/// Takes Qt's critical messages while it lives, as "CATEGORY|FILE|FUNCTION|TEXT"; others go on as before.
/// One at a time.
class MessageLog
{
public:
    MessageLog()
    {
        s_pLog = this;
        s_previous = qInstallMessageHandler(Handle);
    }
    ~MessageLog()
    {
        qInstallMessageHandler(s_previous);
        s_pLog = nullptr;
    }
    Q_DISABLE_COPY(MessageLog)

    QStringList Entries() const
    {
        const QMutexLocker locker(&m_mutex);
        return m_entries;
    }

    /// The entry that a failure of the worker leaves.
    static QString WorkerEntry(const QString &strFunction, const QString &strText)
    {
        return QStringLiteral("default|../../src/Lumo_Import_Export_Features/QOperateThread.cpp|"
                              "void QOperateThread::%1()|%2")
            .arg(strFunction, strText);
    }

private:
    static void Handle(QtMsgType type, const QMessageLogContext &context, const QString &strText)
    {
        if (type != QtCriticalMsg)
            return s_previous(type, context, strText);
        Journal::Note(QStringLiteral("log %1: %2").arg(FunctionName(context), strText));
        const QMutexLocker locker(&s_pLog->m_mutex);
        s_pLog->m_entries.append(
            QStringList({QString::fromLatin1(context.category), QString::fromLatin1(context.file),
                         QString::fromLatin1(context.function), strText})
                .join(QLatin1Char('|')));
    }

    /// "void QOperateThread::FeatureXmlImport()" as "FeatureXmlImport".
    static QString FunctionName(const QMessageLogContext &context)
    {
        return QString::fromLatin1(context.function)
            .section(QLatin1Char(':'), -1)
            .section(QLatin1Char('('), 0, 0);
    }

    inline static MessageLog *s_pLog = nullptr;
    inline static QtMessageHandler s_previous = nullptr;
    mutable QMutex m_mutex; // protects the entries: workers log from their threads
    QStringList m_entries;
};

#endif
