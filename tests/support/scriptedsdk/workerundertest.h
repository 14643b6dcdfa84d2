#ifndef TESTS_SUPPORT_WORKERUNDERTEST_H
#define TESTS_SUPPORT_WORKERUNDERTEST_H

#include <QStringList>

#include <worker/qoperatethread.h>

#include "camerarecord.h"
#include "journal.h"

/// A worker whose inner parts are open to tests, and which notes its signals in their order:
/// "begin 7 3", "failed 7 TEXT", "info 7 TEXT", "end 7 3 PATH". Use Events() in the thread of run(), or
/// when it has finished.
class WorkerUnderTest : public QOperateThread
{
public:
    explicit WorkerUnderTest(QObject *parent = nullptr)
        : QOperateThread(parent)
    {
        connect(
            this, &QOperateThread::SigBeginThread, this,
            [this](long nDeviceID, unsigned int nType) {
                Note(QStringLiteral("begin %1 %2").arg(nDeviceID).arg(nType));
            },
            Qt::DirectConnection);
        connect(
            this, &QOperateThread::SigThreadInfo, this,
            [this](long nDeviceID, const QString &strMsg, bool bFailed) {
                Note(QStringLiteral("%1 %2 %3")
                         .arg(bFailed ? QStringLiteral("failed") : QStringLiteral("info"),
                              QString::number(nDeviceID), strMsg));
            },
            Qt::DirectConnection);
        connect(
            this, &QOperateThread::SigEndThread, this,
            [this](long nDeviceID, unsigned int nType, QString strPath) {
                Note(QStringLiteral("end %1 %2 %3")
                         .arg(QString::number(nDeviceID), QString::number(nType), strPath));
            },
            Qt::DirectConnection);
    }

    QStringList Events() const { return m_events; }

    /// The next allocation of this size is refused.
    void RefuseBuffer(unsigned int nSize) { m_nRefusedSize = nSize; }

    using QOperateThread::ExitThread;
    using QOperateThread::GenerateDomElementMap;
    using QOperateThread::GenerateFeaturesInvalidatorMap;
    using QOperateThread::GenerateFeatureXmlMap;
    using QOperateThread::GenerateInvalidatorListByProperty;
    using QOperateThread::GetDomElementNode;
    using QOperateThread::GetFeatureInvalidatorList;
    using QOperateThread::InsertFeatureInvalidator;
    using QOperateThread::IsFeatureInQList;
    using QOperateThread::OpenDevice;
    using QOperateThread::ReleaseThread;
    using QOperateThread::run;

    using QOperateThread::m_bRunning;
    using QOperateThread::m_domDocument;
    using QOperateThread::m_hDevice;
    using QOperateThread::m_mapDomElement;
    using QOperateThread::m_mapFeatureInvalidator;
    using QOperateThread::m_mapFeatureXml;
    using QOperateThread::m_nThreadType;
    using QOperateThread::m_stDeviceInfo;
    using QOperateThread::m_strFilePath;

protected:
    char *AllocateDescriptionBuffer(unsigned int nSize) override
    {
        return nSize == m_nRefusedSize ? nullptr : QOperateThread::AllocateDescriptionBuffer(nSize);
    }

private:
    void Note(const QString &strEvent)
    {
        m_events.append(strEvent);
        Journal::Note(strEvent);
    }

    QStringList m_events;
    unsigned int m_nRefusedSize = 0;
};

#endif
