#include <QElapsedTimer>
#include <QTemporaryDir>
#include <QTest>

#include <csignal>
#include <thread>

#include <sys/resource.h>

#include "camerafarm.h"
#include "opencamera.h"

namespace {

// Far above the deadline of 3 s, for busy machines, and far below the longest call.
constexpr qint64 kSoonMs = 20000;

const char *const kFirst = TestAddress(1);
const char *const kSecond = TestAddress(2);

} // namespace

// Cameras and helper processes that fail, and what it costs the others: nothing.
class tst_CameraFaults : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void cleanup();

    void Open_NobodyAtTheAddress_IsUnreachable();
    void Open_MuteCamera_IsUnreachable();
    void Open_ControlHeldByAnother_IsDenied();
    void Get_CameraGoesMute_TimesOutOnceAndIsLostThen();
    void Get_ErrorStatus_KeepsTheHandleOpen();
    void Set_ControlWasStolen_IsLost();
    void Get_ControlRanOut_IsLost();
    void Get_SomeDatagramsGetLost_Works();
    void Get_HelperIsKilled_data();
    void Get_HelperIsKilled();
    void Get_HelperIsStopped_TimesOut();
    void Get_HelperHasNoMemory_EndsTheSession();
    void Open_HelperIsMissing_SaysSo();
    void Open_HelperIsNeverReady_TimesOutAndEndsIt();

private:
    int HelperOf(const OpenCamera &camera) const;

    CameraFarm m_farm;
    QList<int> m_childrenBefore;
    int m_nDescriptorsBefore = 0;
};

void tst_CameraFaults::initTestCase()
{
    if (!CameraFarm::IsInstalled())
        QSKIP("the camera simulator is not built");
    QVERIFY2(m_farm.Start({"--count", "2", "--first-address", kFirst}), qPrintable(m_farm.Error()));
}

void tst_CameraFaults::init()
{
    // A helper that was killed has not released its camera; the camera's heartbeat does.
    for (const char *szAddress : {kFirst, kSecond}) {
        KX_CC_DEVICE_INFO info{};
        const auto isFree = [&] {
            return KX_CC_FindDevice(szAddress, 1000, &info) == KX_CC_OK &&
                   info.nAccessStatus == KX_CC_ACCESS_FREE;
        };
        QTRY_VERIFY_WITH_TIMEOUT(isFree(), 30000);
    }
    m_childrenBefore = ChildProcesses();
    m_nDescriptorsBefore = OpenDescriptors();
}

void tst_CameraFaults::cleanup()
{
    QVERIFY(m_farm.Do("clear *"));
    // No helper, no zombie and no descriptor is left, whatever happened.
    QCOMPARE(ChildProcesses(), m_childrenBefore);
    QCOMPARE(OpenDescriptors(), m_nDescriptorsBefore);
}

int tst_CameraFaults::HelperOf(const OpenCamera &camera) const
{
    Q_UNUSED(camera)
    QList<int> children = ChildProcesses();
    for (const int nPid : m_childrenBefore)
        children.removeAll(nPid);
    return children.isEmpty() ? -1 : children.last();
}

void tst_CameraFaults::Open_NobodyAtTheAddress_IsUnreachable()
{
    QElapsedTimer timer;
    timer.start();
    QCOMPARE(OpenCamera(TestAddress(99)).Code(), KX_CC_E_UNREACHABLE);
    QVERIFY(timer.elapsed() < kSoonMs);
}

void tst_CameraFaults::Open_MuteCamera_IsUnreachable()
{
    QVERIFY(m_farm.Set(kFirst, "mute", "1"));
    QElapsedTimer timer;
    timer.start();
    QCOMPARE(OpenCamera(kFirst).Code(), KX_CC_E_UNREACHABLE);
    QVERIFY(timer.elapsed() < kSoonMs);
}

void tst_CameraFaults::Open_ControlHeldByAnother_IsDenied()
{
    QVERIFY(m_farm.Set(kFirst, "control-held", "1"));
    QCOMPARE(OpenCamera(kFirst).Code(), KX_CC_E_ACCESS_DENIED);
    QVERIFY(m_farm.Set(kFirst, "control-held", "0"));
    QCOMPARE(OpenCamera(kFirst).Code(), KX_CC_OK);
}

void tst_CameraFaults::Get_CameraGoesMute_TimesOutOnceAndIsLostThen()
{
    const OpenCamera camera(kFirst);
    const OpenCamera other(kSecond);
    QCOMPARE(camera.Code(), KX_CC_OK);
    QVERIFY(m_farm.Set(kFirst, "mute", "1"));

    QCOMPARE(camera.Get("Width"), KX_CC_E_TIMEOUT);
    QElapsedTimer timer;
    timer.start();
    for (int i = 0; i < 100; ++i)
        QCOMPARE(camera.Get("Width"), KX_CC_E_LOST);
    QVERIFY(timer.elapsed() < 2000); // not one time-out more
    QCOMPARE(other.Get("Width"), KX_CC_OK);

    QVERIFY(m_farm.Set(kFirst, "mute", "0"));
    QCOMPARE(KX_CC_CloseDevice(camera.Handle()), KX_CC_OK);
    int nCode = KX_CC_E_ACCESS_DENIED; // until its heartbeat has run out
    const auto opens = [&] { return (nCode = KX_CC_OpenDevice(camera.Handle(), 1, 0)) == KX_CC_OK; };
    QTRY_VERIFY_WITH_TIMEOUT(nCode == KX_CC_OK || opens(), 20000);
    QCOMPARE(camera.Get("Width"), KX_CC_OK);
}

void tst_CameraFaults::Get_ErrorStatus_KeepsTheHandleOpen()
{
    const OpenCamera camera(kFirst);
    QCOMPARE(camera.Code(), KX_CC_OK);
    QVERIFY(m_farm.Set(kFirst, "status", "0x8003 command=readmem"));
    QCOMPARE(camera.Get("Width"), KX_CC_E_DEVICE_STATUS);
    QVERIFY(m_farm.Set(kFirst, "status", "0"));
    QCOMPARE(camera.Get("Width"), KX_CC_OK);
}

void tst_CameraFaults::Set_ControlWasStolen_IsLost()
{
    const OpenCamera camera(kFirst);
    QCOMPARE(camera.Code(), KX_CC_OK);
    QVERIFY(m_farm.Set(kFirst, "control-held", "1"));
    QCOMPARE(camera.Set("Width", 640), KX_CC_E_LOST);
    QCOMPARE(camera.Get("Width"), KX_CC_E_LOST);
}

void tst_CameraFaults::Get_ControlRanOut_IsLost()
{
    const OpenCamera camera(kFirst);
    QCOMPARE(camera.Code(), KX_CC_OK);
    QVERIFY(m_farm.Set(kFirst, "control-lost-after", "1"));
    QTRY_COMPARE_WITH_TIMEOUT(camera.Get("Width"), KX_CC_E_LOST, 20000);
    QVERIFY(m_farm.Set(kFirst, "control-lost-after", "0"));
}

void tst_CameraFaults::Get_SomeDatagramsGetLost_Works()
{
    const OpenCamera camera(kFirst);
    QCOMPARE(camera.Code(), KX_CC_OK);
    QVERIFY(m_farm.Set(kFirst, "loss", "10"));
    for (int i = 0; i < 5; ++i)
        QCOMPARE(camera.Get("Width"), KX_CC_OK);
}

void tst_CameraFaults::Get_HelperIsKilled_data()
{
    QTest::addColumn<int>("signal");
    QTest::newRow("killed") << SIGKILL;
    QTest::newRow("crashed") << SIGSEGV;
}

void tst_CameraFaults::Get_HelperIsKilled()
{
    QFETCH(int, signal);
    const OpenCamera other(kSecond);
    const OpenCamera camera(kFirst);
    QCOMPARE(camera.Code(), KX_CC_OK);
    const int nHelper = HelperOf(camera);
    QVERIFY(nHelper > 0);
    QVERIFY(m_farm.Set(kFirst, "latency-us", "400000")); // the call is under way when it happens
    std::thread killer([&] {
        QTest::qSleep(100);
        kill(nHelper, signal);
    });

    const int nCode = camera.Get("Width");
    killer.join();

    QCOMPARE(nCode, KX_CC_E_SESSION_ENDED);
    QCOMPARE(camera.Get("Width"), KX_CC_E_LOST);
    QCOMPARE(other.Get("Width"), KX_CC_OK);
    QVERIFY(!ChildProcesses().contains(nHelper));
}

void tst_CameraFaults::Get_HelperIsStopped_TimesOut()
{
    const OpenCamera camera(kFirst);
    QCOMPARE(camera.Code(), KX_CC_OK);
    const int nHelper = HelperOf(camera);
    kill(nHelper, SIGSTOP);
    QElapsedTimer timer;
    timer.start();
    QCOMPARE(camera.Get("Width"), KX_CC_E_TIMEOUT);
    QVERIFY(timer.elapsed() < kSoonMs);
    QVERIFY(!ChildProcesses().contains(nHelper));
}

void tst_CameraFaults::Get_HelperHasNoMemory_EndsTheSession()
{
    const OpenCamera camera(kFirst);
    QCOMPARE(camera.Code(), KX_CC_OK);
    const rlimit none{0, 0};
    QCOMPARE(prlimit(HelperOf(camera), RLIMIT_AS, &none, nullptr), 0);
    std::vector<unsigned char> buffer(32 << 20);
    unsigned int nSize = 77;
    const int nCode = KX_CC_FeatureSave(camera.Handle(), "/dev/null/never");
    if (nCode != KX_CC_E_SESSION_ENDED) // small values may fit into what it has already
        QCOMPARE(KX_XML_GetGenICamXML(camera.Handle(), buffer.data(), 32 << 20, &nSize),
                 KX_CC_E_SESSION_ENDED);
    QCOMPARE(nSize, 77U);
    QCOMPARE(camera.Get("Width"), KX_CC_E_LOST);
}

void tst_CameraFaults::Open_HelperIsMissing_SaysSo()
{
    qputenv("KX_CAMERA_SESSION", "/nowhere/kx-camera-session");
    const int nCode = OpenCamera(kFirst).Code();
    qputenv("KX_CAMERA_SESSION", "/bin/false");
    const int nCodeOfFalse = OpenCamera(kFirst).Code();
    qunsetenv("KX_CAMERA_SESSION");
    QCOMPARE(nCode, KX_CC_E_SESSION);
    QCOMPARE(nCodeOfFalse, KX_CC_E_SESSION_ENDED);
}

void tst_CameraFaults::Open_HelperIsNeverReady_TimesOutAndEndsIt()
{
    QTemporaryDir folder;
    const QString strHelper = folder.filePath("silent");
    QFile script(strHelper);
    QVERIFY(script.open(QIODevice::WriteOnly));
    script.write("#!/bin/sh\necho $$ >" + folder.filePath("pid").toUtf8() + "\nexec sleep 300\n");
    script.close();
    script.setPermissions(QFile::ReadOwner | QFile::ExeOwner);
    qputenv("KX_CAMERA_SESSION", strHelper.toUtf8());
    const int nCode = OpenCamera(kFirst).Code();
    qunsetenv("KX_CAMERA_SESSION");
    QCOMPARE(nCode, KX_CC_E_TIMEOUT);
    QFile pid(folder.filePath("pid"));
    QVERIFY(pid.open(QIODevice::ReadOnly));
    QCOMPARE(::kill(pid.readAll().trimmed().toInt(), 0), -1);
}

QTEST_GUILESS_MAIN(tst_CameraFaults)
#include "tst_camerafaults.moc"
