#include <QtTest>

#include <sys/resource.h>

#include <KxCameraControl/kxerrors.h>

#include <process/processroom.h>
#include <scriptedsdk.h>

#include "batch.h"
#include "testcameras.h"

// Which cameras of a batch have a worker when, and what is told of them.
class tst_Batch : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void Start_NoCamera_FinishesFromTheEventLoop();
    void Start_Cameras_AreDoneOnceEach();
    void Start_RoomForAll_StartsAll();
    void Start_RoomForThree_StartsThreeAndTheOthersInTurn();
    void Start_NoRoom_FailsWithTheReason();
    void Start_CameraThatCannotBeOpened_FailsWithItsMessage();
    void Start_RefusedCamera_FailsWithoutAWorker();
    void Start_RefusedCameraBehindThePlaces_FailsToo();
    void Start_Import_NamesTheFile();
    void Destroy_WorkersRun_WaitsForThem();

private:
    static QVector<Camera> Cameras(int count);
    static int WorkersOf(const Batch &batch) { return batch.findChildren<QThread *>().size(); }
    void LeaveRoomFor(int workers);
    bool RunToEnd(Batch &batch);

    QScopedPointer<QTemporaryDir> m_dir;
    rlimit m_limit = {};
};

void tst_Batch::init()
{
    m_dir.reset(new QTemporaryDir);
    QCOMPARE(getrlimit(RLIMIT_NOFILE, &m_limit), 0);
    ScriptedSdk::Reset();
    ScriptedSdk::AnswerEverything();
    ScriptedSdk::SetDescription("<RegisterDescription><Integer Name=\"Width\"><Streamable>Yes</Streamable>"
                                "</Integer></RegisterDescription>");
}

void tst_Batch::cleanup()
{
    setrlimit(RLIMIT_NOFILE, &m_limit);
    ScriptedSdk::ReleaseOpens();
}

QVector<Camera> tst_Batch::Cameras(int count)
{
    QVector<Camera> cameras;
    for (int i = 1; i <= count; ++i) {
        cameras << NetworkCamera("M", QByteArray::number(i).constData(),
                                 0x0A000000U + static_cast<quint32>(i));
    }
    return cameras;
}

void tst_Batch::LeaveRoomFor(int workers)
{
    rlimit limit = m_limit;
    limit.rlim_cur = 8;
    setrlimit(RLIMIT_NOFILE, &limit);
    while (ProcessRoom::ForWorkers() < workers) {
        ++limit.rlim_cur;
        setrlimit(RLIMIT_NOFILE, &limit);
    }
    QCOMPARE(ProcessRoom::ForWorkers(), workers);
}

bool tst_Batch::RunToEnd(Batch &batch)
{
    QSignalSpy finished(&batch, &Batch::Finished);
    batch.Start();
    return finished.count() == 0 && finished.wait(20000) && finished.count() == 1;
}

void tst_Batch::Start_NoCamera_FinishesFromTheEventLoop()
{
    Batch batch(Batch::Operation::Export, {}, m_dir->path());
    QVERIFY(RunToEnd(batch));
    QCOMPARE(batch.DoneCount(), 0);
}

void tst_Batch::Start_Cameras_AreDoneOnceEach()
{
    Batch batch(Batch::Operation::Export, Cameras(5), m_dir->path());
    QVector<int> done;
    connect(&batch, &Batch::CameraDone, &batch, [&](int index) {
        QVERIFY(batch.Results().at(index).bDone);
        done << index;
    });
    QVERIFY(RunToEnd(batch));
    std::sort(done.begin(), done.end());
    QCOMPARE(done, QVector<int>({0, 1, 2, 3, 4}));
    QCOMPARE(batch.DoneCount(), 5);
    QCOMPARE(batch.FailedCount(), 0);
    QVERIFY(batch.Results().at(4).bOk);
    QCOMPARE(batch.Results().at(4).strFile, m_dir->path() + "/M_5.kfb");
    QCOMPARE(QDir(m_dir->path()).entryList(QDir::Files).size(), 5);
}

void tst_Batch::Start_RoomForAll_StartsAll()
{
    LeaveRoomFor(6);
    ScriptedSdk::HoldOpens();
    Batch batch(Batch::Operation::Export, Cameras(6), m_dir->path());
    batch.Start();
    QCOMPARE(WorkersOf(batch), 6);
    ScriptedSdk::ReleaseOpens();
}

void tst_Batch::Start_RoomForThree_StartsThreeAndTheOthersInTurn()
{
    LeaveRoomFor(3);
    ScriptedSdk::HoldOpens();
    Batch batch(Batch::Operation::Export, Cameras(8), m_dir->path());
    int mostHandles = 0;
    connect(&batch, &Batch::CameraDone, &batch,
            [&] { mostHandles = qMax(mostHandles, ScriptedSdk::LivingHandles()); });
    QSignalSpy finished(&batch, &Batch::Finished);
    batch.Start();
    QCOMPARE(WorkersOf(batch), 3);
    ScriptedSdk::ReleaseOpens();
    QVERIFY(finished.count() == 1 || finished.wait(20000));
    QCOMPARE(batch.DoneCount(), 8);
    QCOMPARE(batch.FailedCount(), 0);
    QVERIFY2(mostHandles <= 3, qPrintable(QString::number(mostHandles)));
    QCOMPARE(ScriptedSdk::LivingHandles(), 0);
}

void tst_Batch::Start_NoRoom_FailsWithTheReason()
{
    rlimit limit = m_limit;
    limit.rlim_cur = 8;
    setrlimit(RLIMIT_NOFILE, &limit);
    Batch batch(Batch::Operation::Export, Cameras(2), m_dir->path());
    QVERIFY(RunToEnd(batch));
    QCOMPARE(batch.FailedCount(), 2);
    for (const CameraResult &result : batch.Results()) {
        QCOMPARE(result.strMessage, QString("This computer allows too few open files."));
        QVERIFY(result.bDone && !result.bOk);
    }
    QCOMPARE(ScriptedSdk::Calls(), QStringList());
}

void tst_Batch::Start_CameraThatCannotBeOpened_FailsWithItsMessage()
{
    ScriptedSdk::Refuse("KX_CC_OpenDevice", KX_CC_E_TIMEOUT);
    Batch batch(Batch::Operation::Export, Cameras(1), m_dir->path());
    QVERIFY(RunToEnd(batch));
    QCOMPARE(batch.FailedCount(), 1);
    QCOMPARE(batch.Results().at(0).strMessage, QString("Failed to export features.Failed to open device."));
}

void tst_Batch::Start_RefusedCamera_FailsWithoutAWorker()
{
    ScriptedSdk::HoldOpens();
    Batch batch(Batch::Operation::Export, Cameras(3), m_dir->path());
    batch.Refuse(1, "no");
    QSignalSpy finished(&batch, &Batch::Finished);
    batch.Start();
    QCOMPARE(WorkersOf(batch), 2);
    ScriptedSdk::ReleaseOpens();
    QVERIFY(finished.wait(20000));
    QCOMPARE(batch.FailedCount(), 1);
    QCOMPARE(batch.Results().at(1).strMessage, QString("no"));
    QVERIFY(batch.Results().at(0).bOk && batch.Results().at(2).bOk);
}

void tst_Batch::Start_RefusedCameraBehindThePlaces_FailsToo()
{
    LeaveRoomFor(1);
    Batch batch(Batch::Operation::Export, Cameras(4), m_dir->path());
    batch.Refuse(2, "no");
    QVERIFY(RunToEnd(batch));
    QCOMPARE(batch.DoneCount(), 4);
    QCOMPARE(batch.FailedCount(), 1);
    QVERIFY(batch.Results().at(3).bOk);
}

void tst_Batch::Start_Import_NamesTheFile()
{
    Batch batch(Batch::Operation::Import, Cameras(2), "/nowhere.kfb");
    QVERIFY(RunToEnd(batch));
    QCOMPARE(batch.FailedCount(), 2);
    QCOMPARE(batch.Results().at(1).strFile, QString("/nowhere.kfb"));
    QCOMPARE(batch.Results().at(1).strMessage, QString("Failed to import features.Failed to open xml."));
}

void tst_Batch::Destroy_WorkersRun_WaitsForThem()
{
    ScriptedSdk::HoldOpens();
    {
        Batch batch(Batch::Operation::Export, Cameras(2), m_dir->path());
        batch.Start();
        QTRY_COMPARE(ScriptedSdk::LivingHandles(), 2);
        ScriptedSdk::ReleaseOpens();
    }
    QCOMPARE(ScriptedSdk::LivingHandles(), 0);
}

QTEST_GUILESS_MAIN(tst_Batch)
#include "tst_batch.moc"
