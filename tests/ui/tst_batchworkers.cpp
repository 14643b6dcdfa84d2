#include <QtTest>

#include <QTemporaryDir>

#include <scripteddevices.h>
#include <ui/batchworkers.h>
#include <worker/qoperatethread.h>

#include "scriptedcameras.h"
#include "tabledevices.h"

namespace {

const unsigned int kExport = 1; // as the button says it

} // namespace

/// The workers of scripted cameras under a plain parent, without a window.
class tst_BatchWorkers : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void WorkerOf_FirstTime_MakesAndConnectsOne();
    void WorkerOf_Again_IsTheSame();
    void Start_Export_RunsToItsEnd();
    void Start_Import_IsAnImport();
    void Start_Again_ReusesTheWorker();
    void Start_WorkerStillRuns_TakesAFreshOne();
    void Start_NoThreadForIt_IsFalse();
    void IsAnyRunning_FormerWorker_DoesNotCount();
    void IsFormer_Sender_DecidesByItsCamera();
    void Remove_IdleWorker_IsDeletedBehindItsSignals();
    void Remove_RunningWorker_IsDeletedWhenItEnds();
    void Remove_CameraWithoutAWorker_ChangesNothing();
    void DeleteAll_WorkersAtWork_WaitsForFormerOnesToo();

private:
    static StructDeviceInfo Record(int nDeviceID);
    bool Start(int nDeviceID, unsigned int nType = kExport);
    QList<QOperateThread *> Children() const { return m_pParent->findChildren<QOperateThread *>(); }

    std::unique_ptr<QTemporaryDir> m_pDirectory;
    QMap<long, QOperateThread *> m_mapWorkers;
    std::unique_ptr<QObject> m_pParent;
    std::unique_ptr<BatchWorkers> m_pWorkers;
    QVector<QOperateThread *> m_vecConnected;
    QStringList m_listSignals; // "camera begin|end type"
};

void tst_BatchWorkers::init()
{
    ScriptedCameras::Reset();
    m_pDirectory = std::make_unique<QTemporaryDir>();
    m_vecConnected.clear();
    m_listSignals.clear();
    m_pParent = std::make_unique<QObject>();
    m_pWorkers =
        std::make_unique<BatchWorkers>(m_mapWorkers, m_pParent.get(), [this](QOperateThread *pWorker) {
            m_vecConnected.append(pWorker);
            connect(pWorker, &QOperateThread::SigBeginThread, m_pParent.get(),
                    [this](long nID, unsigned int nType) {
                        m_listSignals.append(QString("%1 begin %2").arg(nID).arg(nType));
                    });
            connect(pWorker, &QOperateThread::SigEndThread, m_pParent.get(),
                    [this](long nID, unsigned int nType) {
                        m_listSignals.append(QString("%1 end %2").arg(nID).arg(nType));
                    });
        });
}

void tst_BatchWorkers::cleanup()
{
    for (const char *pSerial : {"SN0001", "SN0002"})
        ScriptedCameras::Release(pSerial);
    m_pWorkers->DeleteAll();
    QVERIFY(m_mapWorkers.isEmpty());
    m_pWorkers.reset();
    m_pParent.reset();
}

StructDeviceInfo tst_BatchWorkers::Record(int nDeviceID)
{
    return HandMadeItem(NetworkCamera(nDeviceID), KX_CC_TRANSPORT_GIGE, "eth0", nDeviceID).record;
}

bool tst_BatchWorkers::Start(int nDeviceID, unsigned int nType)
{
    return m_pWorkers->Start(Record(nDeviceID), nType, m_pDirectory->path());
}

void tst_BatchWorkers::WorkerOf_FirstTime_MakesAndConnectsOne()
{
    QOperateThread *pWorker = m_pWorkers->WorkerOf(7);
    QVERIFY(pWorker);
    QCOMPARE(pWorker->parent(), m_pParent.get());
    QCOMPARE(m_mapWorkers, (QMap<long, QOperateThread *>{{7, pWorker}}));
    QCOMPARE(m_vecConnected, QVector<QOperateThread *>({pWorker}));
}

void tst_BatchWorkers::WorkerOf_Again_IsTheSame()
{
    QOperateThread *pWorker = m_pWorkers->WorkerOf(7);
    QCOMPARE(m_pWorkers->WorkerOf(7), pWorker);
    QVERIFY(m_pWorkers->WorkerOf(8) != pWorker);
    QCOMPARE(m_vecConnected.size(), 2);
}

void tst_BatchWorkers::Start_Export_RunsToItsEnd()
{
    QVERIFY(Start(1));
    QTRY_COMPARE(m_listSignals, QStringList({"1 begin 3", "1 end 3"}));
    QCOMPARE(QDir(m_pDirectory->path()).entryList({"*.kfb"}), QStringList("ABC-1000_SN0001.kfb"));
}

void tst_BatchWorkers::Start_Import_IsAnImport()
{
    QVERIFY(Start(1, 0));
    QTRY_COMPARE(m_listSignals, QStringList({"1 begin 2", "1 end 2"}));
}

void tst_BatchWorkers::Start_Again_ReusesTheWorker()
{
    for (int nTime : {1, 2}) {
        QVERIFY(Start(1));
        QTRY_COMPARE(m_listSignals.size(), 2 * nTime);
        QTRY_VERIFY(!m_pWorkers->IsAnyRunning());
    }
    QCOMPARE(m_vecConnected.size(), 1);
}

void tst_BatchWorkers::Start_WorkerStillRuns_TakesAFreshOne()
{
    ScriptedCameras::Hold("SN0001");
    QVERIFY(Start(1));
    const QPointer<QOperateThread> pFormer = m_mapWorkers.value(1);
    QVERIFY(Start(1));
    QVERIFY(pFormer);
    QVERIFY(m_mapWorkers.value(1) != pFormer);
    QTRY_COMPARE(ScriptedCameras::OpenCount(), 2);
    ScriptedCameras::Release("SN0001");
    QTRY_VERIFY(!pFormer);
    QTRY_VERIFY(!m_pWorkers->IsAnyRunning());
    QCOMPARE(Children().size(), 1);
}

void tst_BatchWorkers::Start_NoThreadForIt_IsFalse()
{
    m_pWorkers->WorkerOf(1)->setStackSize(1); // no thread can have so small a one
    QVERIFY(!Start(1));
    QVERIFY(!m_pWorkers->IsAnyRunning());
    QVERIFY(Start(2));
    QTRY_COMPARE(m_listSignals, QStringList({"2 begin 3", "2 end 3"}));
}

void tst_BatchWorkers::IsAnyRunning_FormerWorker_DoesNotCount()
{
    QVERIFY(!m_pWorkers->IsAnyRunning());
    ScriptedCameras::Hold("SN0002");
    m_pWorkers->WorkerOf(1);
    QVERIFY(Start(2));
    QVERIFY(m_pWorkers->IsAnyRunning());
    m_pWorkers->Remove(2);
    QVERIFY(!m_pWorkers->IsAnyRunning());
}

void tst_BatchWorkers::IsFormer_Sender_DecidesByItsCamera()
{
    ScriptedCameras::Hold("SN0001");
    QVERIFY(Start(1));
    QOperateThread *pWorker = m_mapWorkers.value(1);
    QVERIFY(!m_pWorkers->IsFormer(pWorker, 1));
    QVERIFY(!m_pWorkers->IsFormer(nullptr, 1));
    QVERIFY(!m_pWorkers->IsFormer(m_pParent.get(), 1));
    QVERIFY(Start(1));
    QVERIFY(m_pWorkers->IsFormer(pWorker, 1));
    QVERIFY(!m_pWorkers->IsFormer(m_mapWorkers.value(1), 1));
    m_pWorkers->Remove(1);
    QVERIFY(m_pWorkers->IsFormer(pWorker, 1));
}

void tst_BatchWorkers::Remove_IdleWorker_IsDeletedBehindItsSignals()
{
    const QPointer<QOperateThread> pWorker = m_pWorkers->WorkerOf(1);
    QVERIFY(Start(1));
    QVERIFY(pWorker->wait(20000)); // its signals are on their way
    m_pWorkers->Remove(1);
    QVERIFY(pWorker);
    QTRY_VERIFY(!pWorker);
    QCOMPARE(m_listSignals, QStringList({"1 begin 3", "1 end 3"}));
}

void tst_BatchWorkers::Remove_RunningWorker_IsDeletedWhenItEnds()
{
    ScriptedCameras::Hold("SN0001");
    QVERIFY(Start(1));
    const QPointer<QOperateThread> pWorker = m_mapWorkers.value(1);
    m_pWorkers->Remove(1);
    QVERIFY(!m_mapWorkers.contains(1));
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QVERIFY(pWorker);
    ScriptedCameras::Release("SN0001");
    QTRY_VERIFY(!pWorker);
}

void tst_BatchWorkers::Remove_CameraWithoutAWorker_ChangesNothing()
{
    QOperateThread *pWorker = m_pWorkers->WorkerOf(1);
    m_pWorkers->Remove(2);
    QCOMPARE(m_mapWorkers, (QMap<long, QOperateThread *>{{1, pWorker}}));
}

void tst_BatchWorkers::DeleteAll_WorkersAtWork_WaitsForFormerOnesToo()
{
    ScriptedCameras::Hold("SN0001");
    QVERIFY(Start(1));
    QVERIFY(Start(1));
    QVERIFY(Start(2));
    QTRY_VERIFY(ScriptedCameras::OpenCount() >= 2);
    std::unique_ptr<QThread> pReleaser(QThread::create([] {
        QThread::msleep(50);
        ScriptedCameras::Release("SN0001");
    }));
    pReleaser->start();
    m_pWorkers->DeleteAll();
    QCOMPARE(ScriptedCameras::OpenCount(), 0);
    QVERIFY(Children().isEmpty());
    QVERIFY(m_mapWorkers.isEmpty());
    pReleaser->wait();
}

QTEST_MAIN(tst_BatchWorkers)
#include "tst_batchworkers.moc"
