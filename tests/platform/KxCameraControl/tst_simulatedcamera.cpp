#include <QFile>
#include <QProcess>
#include <QTest>

#include <atomic>
#include <csignal>
#include <thread>
#include <vector>

#include <sys/mman.h>

#include "camerafarm.h"
#include "opencamera.h"

// Finding, opening and using cameras, on the simulator.
class tst_SimulatedCamera : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();

    void Enumerate_Cameras_AreListedOnce();
    void Enumerate_HeldByAnother_IsInUse();
    void Enumerate_OpenInThisProcess_IsFree();
    void Enumerate_CameraIsUnplugged_IsUnreachableThenGone();
    void Enumerate_CameraIsMute_IsUnreachable();
    void Enumerate_SameSerialAndName_ListsBoth();
    void Open_AddressClaimedByTwo_IsTheOneThatHasIt();
    void Open_RecordWithoutMacAddress_TakesWhoIsThere();
    void FindDevice_Address_GivesTheRecord();
    void FindDevice_Nobody_IsUnreachable();
    void Open_WhileOpen_IsRefused();
    void Open_SameCameraTwice_IsDenied();
    void Close_CameraIsFreeAtOnce();
    void Handles_Wrong_AreRefused();
    void IsDeviceOpen_FollowsTheHandle();
    void Xml_BufferOfReportedSize_HoldsTheWholeText();
    void Xml_BufferTooSmall_IsNotTouched();
    void Xml_HugeLazyBuffer_IsTouchedOnlyWhereTheTextGoes();
    void Values_WrittenAreReadBack();
    void Open_FortyCamerasAtOnce_AllWork();
    void FeatureFile_SavedAndLoaded_RestoresTheCamera();
    void FeatureFile_OddValues_AreKeptOrLeftOut_data();
    void FeatureFile_OddValues_AreKeptOrLeftOut();
    void FeatureFile_Bad_SetsNothing();
    void Process_IsKilledWithACameraOpen_HelperEndsAndCameraIsFree();

private:
    CameraFarm m_farm;
};

namespace {

const char *const kFirst = TestAddress(1);
const char *const kSecond = TestAddress(2);

/// Rounds of discovery, of the simulator's cameras only.
class Rounds
{
public:
    Rounds() { KX_CC_CreateEnumerator(&m_hEnumerator, KX_CC_TRANSPORT_GIGE); }
    ~Rounds() { KX_CC_DestroyEnumerator(m_hEnumerator); }

    std::vector<KX_CC_DEVICE_INFO> Run()
    {
        KX_CC_DEVICE_LIST list{};
        std::vector<KX_CC_DEVICE_INFO> found;
        KX_CC_Enumerate(m_hEnumerator, 500, &list);
        for (unsigned int i = 0; i < list.nDeviceNum; ++i) {
            if ((list.pstDevices[i].SpecialInfo.stGigEInfo.nCurrentIp & 0xFFFFFF00) == TestNetwork())
                found.push_back(list.pstDevices[i]);
        }
        return found;
    }

private:
    void *m_hEnumerator = nullptr;
};

uint32_t AccessOf(const char *szAddress)
{
    KX_CC_DEVICE_INFO info{};
    KX_CC_FindDevice(szAddress, 5000, &info);
    return info.nAccessStatus;
}

} // namespace

void tst_SimulatedCamera::initTestCase()
{
    if (!CameraFarm::IsInstalled())
        QSKIP("the camera simulator is not built");
    QVERIFY2(m_farm.Start({"--count", "40", "--first-address", kFirst}), qPrintable(m_farm.Error()));
}

void tst_SimulatedCamera::Enumerate_Cameras_AreListedOnce()
{
    Rounds rounds;
    QTRY_COMPARE(rounds.Run().size(), size_t{40});
    const auto found = rounds.Run();
    for (size_t i = 0; i < found.size(); ++i) {
        QCOMPARE(found[i].SpecialInfo.stGigEInfo.nCurrentIp, TestNetwork() + 1 + static_cast<uint32_t>(i));
        QCOMPARE(found[i].nAccessStatus, KX_CC_ACCESS_FREE);
    }
}

void tst_SimulatedCamera::Enumerate_HeldByAnother_IsInUse()
{
    Rounds rounds;
    QVERIFY(m_farm.Set(kFirst, "control-held", "1"));
    QTRY_COMPARE(rounds.Run().front().nAccessStatus, KX_CC_ACCESS_IN_USE);
    QVERIFY(m_farm.Set(kFirst, "control-held", "0"));
    QTRY_COMPARE(rounds.Run().front().nAccessStatus, KX_CC_ACCESS_FREE);
}

void tst_SimulatedCamera::Enumerate_OpenInThisProcess_IsFree()
{
    Rounds rounds;
    KX_CC_DEVICE_INFO info{};
    QCOMPARE(KX_CC_FindDevice(kFirst, 5000, &info), KX_CC_OK);
    void *hDevice = nullptr;
    QCOMPARE(KX_CC_CreateHandle(&hDevice, &info), KX_CC_OK);
    QCOMPARE(KX_CC_OpenDevice(hDevice, 1, 0), KX_CC_OK);
    std::atomic_bool bEnd{false};
    // Opened and closed all the time while rounds run: it is never somebody else's.
    std::thread opener([&] {
        while (!bEnd) {
            KX_CC_CloseDevice(hDevice);
            KX_CC_OpenDevice(hDevice, 1, 0);
        }
    });
    int nInUse = 0;
    for (int i = 0; i < 10; ++i) {
        for (const KX_CC_DEVICE_INFO &found : rounds.Run())
            nInUse += found.nAccessStatus == KX_CC_ACCESS_IN_USE ? 1 : 0;
    }
    bEnd = true;
    opener.join();
    KX_CC_DestroyHandle(hDevice);
    QCOMPARE(nInUse, 0);
}

void tst_SimulatedCamera::Enumerate_CameraIsUnplugged_IsUnreachableThenGone()
{
    Rounds rounds;
    QTRY_COMPARE(rounds.Run().size(), size_t{40});
    QVERIFY(m_farm.Do(QStringLiteral("unplug %1").arg(kFirst)));
    QCOMPARE(rounds.Run().front().nAccessStatus, KX_CC_ACCESS_UNREACHABLE);
    QCOMPARE(rounds.Run().front().nAccessStatus, KX_CC_ACCESS_UNREACHABLE);
    QCOMPARE(rounds.Run().front().SpecialInfo.stGigEInfo.nCurrentIp, TestNetwork() + 2);
    QVERIFY(m_farm.Do(QStringLiteral("plug %1").arg(kFirst)));
    QTRY_COMPARE(rounds.Run().front().SpecialInfo.stGigEInfo.nCurrentIp, TestNetwork() + 1);
}

void tst_SimulatedCamera::Enumerate_CameraIsMute_IsUnreachable()
{
    Rounds rounds;
    QVERIFY(m_farm.Set(kFirst, "mute", "1"));
    QCOMPARE(rounds.Run().front().nAccessStatus, KX_CC_ACCESS_UNREACHABLE);
    QVERIFY(m_farm.Set(kFirst, "mute", "0"));
    QTRY_COMPARE(rounds.Run().front().nAccessStatus, KX_CC_ACCESS_FREE);
}

void tst_SimulatedCamera::Enumerate_SameSerialAndName_ListsBoth()
{
    for (const char *szAddress : {kFirst, kSecond}) {
        QVERIFY(m_farm.Set(szAddress, "serial", "TWIN"));
        QVERIFY(m_farm.Set(szAddress, "user-name", "TWIN"));
    }
    Rounds rounds;
    QTRY_COMPARE(rounds.Run().size(), size_t{40});
    const auto found = rounds.Run();
    QCOMPARE(reinterpret_cast<const char *>(found[0].SpecialInfo.stGigEInfo.chSerialNumber), "TWIN");
    QCOMPARE(reinterpret_cast<const char *>(found[1].SpecialInfo.stGigEInfo.chUserDefinedName), "TWIN");
}

void tst_SimulatedCamera::Open_AddressClaimedByTwo_IsTheOneThatHasIt()
{
    QVERIFY(m_farm.Set(kSecond, "discovery-address", kFirst));
    Rounds rounds;
    QTRY_COMPARE(rounds.Run().size(), size_t{40});
    const auto found = rounds.Run(); // ordered by address, then by MAC address
    QVERIFY(m_farm.Set(kSecond, "discovery-address", "0"));
    QCOMPARE(found[1].SpecialInfo.stGigEInfo.nCurrentIp, TestNetwork() + 1);
    QCOMPARE(found[1].nMacAddrLow, TestNetwork() + 2);

    // The wrong one is neither opened nor keeps the right one from being opened.
    const OpenCamera impostor(found[1]);
    const OpenCamera owner(found[0]);

    QCOMPARE(impostor.Code(), KX_CC_E_UNREACHABLE);
    QCOMPARE(owner.Code(), KX_CC_OK);
}

void tst_SimulatedCamera::Open_RecordWithoutMacAddress_TakesWhoIsThere()
{
    KX_CC_DEVICE_INFO info{};
    QCOMPARE(KX_CC_FindDevice(kFirst, 5000, &info), KX_CC_OK);
    QVERIFY(info.nMacAddrLow != 0);
    QCOMPARE(OpenCamera(info).Code(), KX_CC_OK);
    info.nMacAddrHigh = info.nMacAddrLow = 0;
    QCOMPARE(OpenCamera(info).Code(), KX_CC_OK);
}

void tst_SimulatedCamera::FindDevice_Address_GivesTheRecord()
{
    KX_CC_DEVICE_INFO info{};
    QCOMPARE(KX_CC_FindDevice(TestAddress(7), 5000, &info), KX_CC_OK);
    QCOMPARE(info.SpecialInfo.stGigEInfo.nCurrentIp, TestNetwork() + 7);
    QCOMPARE(info.nAccessStatus, KX_CC_ACCESS_FREE);
    QCOMPARE(reinterpret_cast<const char *>(info.SpecialInfo.stGigEInfo.chInterfaceName), "lo");
}

void tst_SimulatedCamera::FindDevice_Nobody_IsUnreachable()
{
    KX_CC_DEVICE_INFO info{};
    info.nAccessStatus = 99;
    QCOMPARE(KX_CC_FindDevice(TestAddress(200), 300, &info), KX_CC_E_UNREACHABLE);
    QCOMPARE(info.nAccessStatus, 0U);
    QCOMPARE(KX_CC_FindDevice("not an address", 300, &info), KX_CC_E_PARAMETER);
    QCOMPARE(KX_CC_FindDevice(kFirst, 0, &info), KX_CC_E_PARAMETER);
    QCOMPARE(KX_CC_FindDevice(kFirst, 10001, &info), KX_CC_E_PARAMETER);
}

void tst_SimulatedCamera::Open_WhileOpen_IsRefused()
{
    const OpenCamera camera(kFirst);
    QCOMPARE(camera.Code(), KX_CC_OK);
    QCOMPARE(KX_CC_OpenDevice(camera.Handle(), 1, 0), KX_CC_E_ALREADY_OPEN);
    QCOMPARE(KX_CC_OpenDevice(camera.Handle(), 2, 0), KX_CC_E_UNSUPPORTED);
    QCOMPARE(KX_CC_OpenDevice(camera.Handle(), 1, 5), KX_CC_E_UNSUPPORTED);
}

void tst_SimulatedCamera::Open_SameCameraTwice_IsDenied()
{
    const OpenCamera camera(kFirst);
    QCOMPARE(camera.Code(), KX_CC_OK);
    QCOMPARE(OpenCamera(kFirst).Code(), KX_CC_E_ACCESS_DENIED);
    QCOMPARE(camera.Get("Width"), KX_CC_OK);
}

void tst_SimulatedCamera::Close_CameraIsFreeAtOnce()
{
    for (int i = 0; i < 20; ++i)
        QCOMPARE(OpenCamera(kFirst).Code(), KX_CC_OK);
    QCOMPARE(AccessOf(kFirst), KX_CC_ACCESS_FREE);
}

void tst_SimulatedCamera::Handles_Wrong_AreRefused()
{
    KX_CC_INT_VALUE value{};
    void *hDevice = nullptr;
    KX_CC_DEVICE_INFO info = RecordFor(kFirst);
    QCOMPARE(KX_CC_CreateHandle(nullptr, &info), KX_CC_E_PARAMETER);
    QCOMPARE(KX_CC_CreateHandle(&hDevice, nullptr), KX_CC_E_PARAMETER);
    QCOMPARE(KX_CC_CreateHandle(&hDevice, &info), KX_CC_OK);
    QCOMPARE(KX_CC_GetIntValue(hDevice, "Width", &value), KX_CC_E_NOT_OPEN);
    QCOMPARE(KX_CC_CloseDevice(hDevice), KX_CC_OK);
    QCOMPARE(KX_CC_DestroyHandle(hDevice), KX_CC_OK);
    QCOMPARE(KX_CC_DestroyHandle(hDevice), KX_CC_E_HANDLE);
    QCOMPARE(KX_CC_OpenDevice(hDevice, 1, 0), KX_CC_E_HANDLE);
    QCOMPARE(KX_CC_GetIntValue(&value, "Width", &value), KX_CC_E_HANDLE);
    QCOMPARE(KX_CC_DestroyHandle(nullptr), KX_CC_E_HANDLE);
    info.nTransportType = KX_CC_TRANSPORT_PORT;
    QCOMPARE(KX_CC_CreateHandle(&hDevice, &info), KX_CC_E_UNSUPPORTED);
    QVERIFY(hDevice == nullptr);
    const OpenCamera camera(kFirst);
    QCOMPARE(KX_CC_GetIntValue(camera.Handle(), nullptr, &value), KX_CC_E_PARAMETER);
    QCOMPARE(KX_CC_GetIntValue(camera.Handle(), "", &value), KX_CC_E_PARAMETER);
    QCOMPARE(KX_CC_GetIntValue(camera.Handle(), "Width", nullptr), KX_CC_E_PARAMETER);
}

void tst_SimulatedCamera::IsDeviceOpen_FollowsTheHandle()
{
    const KX_CC_DEVICE_INFO info = RecordFor(kFirst);
    QVERIFY(!KX_CC_IsDeviceOpen(&info));
    {
        const OpenCamera camera(kFirst);
        QVERIFY(KX_CC_IsDeviceOpen(&info));
    }
    QVERIFY(!KX_CC_IsDeviceOpen(&info));
    QVERIFY(!KX_CC_IsDeviceOpen(nullptr));
}

void tst_SimulatedCamera::Xml_BufferOfReportedSize_HoldsTheWholeText()
{
    const OpenCamera camera(kFirst);
    unsigned int nSize = 0;
    QCOMPARE(KX_XML_GetGenICamXML(camera.Handle(), nullptr, 0, &nSize), KX_CC_E_BUFFER_TOO_SMALL);
    std::vector<unsigned char> buffer(nSize + 1, 0xEE);
    unsigned int nAgain = 0;
    QCOMPARE(KX_XML_GetGenICamXML(camera.Handle(), buffer.data(), nSize, &nAgain), KX_CC_OK);
    QCOMPARE(nAgain, nSize);
    QCOMPARE(strlen(reinterpret_cast<const char *>(buffer.data())), size_t{nSize} - 1);
    QVERIFY(QByteArray(reinterpret_cast<const char *>(buffer.data())).startsWith("<?xml"));
    QCOMPARE(buffer[nSize], static_cast<unsigned char>(0xEE));
}

void tst_SimulatedCamera::Xml_BufferTooSmall_IsNotTouched()
{
    const OpenCamera camera(kFirst);
    unsigned int nSize = 0;
    KX_XML_GetGenICamXML(camera.Handle(), nullptr, 0, &nSize);
    std::vector<unsigned char> buffer(nSize - 1, 0xEE);
    unsigned int nReported = 0;
    QCOMPARE(KX_XML_GetGenICamXML(camera.Handle(), buffer.data(), nSize - 1, &nReported),
             KX_CC_E_BUFFER_TOO_SMALL);
    QCOMPARE(nReported, nSize);
    QVERIFY(buffer == std::vector<unsigned char>(nSize - 1, 0xEE));
}

void tst_SimulatedCamera::Xml_HugeLazyBuffer_IsTouchedOnlyWhereTheTextGoes()
{
    constexpr size_t kHuge = 0xFFFFFFFF;
    void *pBuffer =
        mmap(nullptr, kHuge, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0);
    if (pBuffer == MAP_FAILED)
        QSKIP("no 4 GB of address space");
    const OpenCamera camera(kFirst);
    unsigned int nSize = 0;
    QCOMPARE(KX_XML_GetGenICamXML(camera.Handle(), static_cast<unsigned char *>(pBuffer), 0xFFFFFFFF, &nSize),
             KX_CC_OK);
    unsigned char touched = 1;
    auto *pLast = static_cast<unsigned char *>(pBuffer) + (kHuge / 4096) * 4096;
    mincore(pLast, 4096, &touched);
    munmap(pBuffer, kHuge);
    QCOMPARE(touched & 1, 0);
}

void tst_SimulatedCamera::Values_WrittenAreReadBack()
{
    const OpenCamera camera(kSecond);
    QCOMPARE(camera.Code(), KX_CC_OK);
    uint32_t nWidth = 0;
    KX_CC_FLOAT_VALUE exposure{};
    KX_CC_ENUM_VALUE mode{};
    bool bReverse = false;
    QCOMPARE(camera.Set("Width", 320), KX_CC_OK);
    QCOMPARE(camera.Get("Width", &nWidth), KX_CC_OK);
    QCOMPARE(nWidth, 320U);
    QCOMPARE(KX_CC_SetFloatValue(camera.Handle(), "ExposureTime", 1234.5F), KX_CC_OK);
    QCOMPARE(KX_CC_GetFloatValue(camera.Handle(), "ExposureTime", &exposure), KX_CC_OK);
    QVERIFY(qAbs(exposure.fCurValue - 1234.5F) < 1.0F);
    QCOMPARE(KX_CC_SetEnumValue(camera.Handle(), "TriggerMode", 1), KX_CC_OK);
    QCOMPARE(KX_CC_GetEnumValue(camera.Handle(), "TriggerMode", &mode), KX_CC_OK);
    QCOMPARE(mode.nCurValue, 1U);
    QCOMPARE(KX_CC_SetBoolValue(camera.Handle(), "ReverseX", true), KX_CC_OK);
    QCOMPARE(KX_CC_GetBoolValue(camera.Handle(), "ReverseX", &bReverse), KX_CC_OK);
    QVERIFY(bReverse);
}

void tst_SimulatedCamera::Open_FortyCamerasAtOnce_AllWork()
{
    std::vector<std::thread> threads;
    std::atomic_int nGood{0};
    for (int i = 1; i <= 40; ++i) {
        const char *szAddress = TestAddress(i);
        threads.emplace_back([i, szAddress, &nGood] {
            const OpenCamera camera(szAddress);
            const auto nWidth = static_cast<uint32_t>(64 + 16 * i);
            uint32_t nRead = 0;
            bool bGood = camera.Code() == KX_CC_OK && camera.Set("Width", nWidth) == KX_CC_OK;
            for (int n = 0; n < 20; ++n)
                bGood = bGood && camera.Get("Width", &nRead) == KX_CC_OK && nRead == nWidth;
            nGood += bGood ? 1 : 0;
        });
    }
    for (std::thread &thread : threads)
        thread.join();
    QCOMPARE(nGood.load(), 40);
}

void tst_SimulatedCamera::FeatureFile_SavedAndLoaded_RestoresTheCamera()
{
    const QTemporaryDir folder;
    const QByteArray path = QFile::encodeName(folder.filePath("settings"));
    const OpenCamera camera(kFirst);
    uint32_t nWidth = 0;
    QCOMPARE(camera.Set("Width", 480), KX_CC_OK);
    QCOMPARE(KX_CC_FeatureSave(camera.Handle(), path), KX_CC_OK);
    QCOMPARE(camera.Set("Width", 160), KX_CC_OK);
    const int nCode = KX_CC_FeatureLoad(camera.Handle(), path);
    QVERIFY2(nCode == KX_CC_OK || nCode == KX_CC_E_FILE_PARTIAL, KX_CC_ErrorText(nCode));
    QCOMPARE(camera.Get("Width", &nWidth), KX_CC_OK);
    QCOMPARE(nWidth, 480U);
    QCOMPARE(KX_CC_FeatureSave(camera.Handle(), "/nowhere/settings"), KX_CC_E_FILE_OPEN);
}

void tst_SimulatedCamera::FeatureFile_OddValues_AreKeptOrLeftOut_data()
{
    QTest::addColumn<QString>("value");
    QTest::addColumn<QByteArray>("line"); // in the file; empty: none
    const auto row = [](const char *szName, const char *szValue, const QByteArray &line) {
        QTest::newRow(szName) << QString(szValue) << line;
    };
    row("text without an end", "DeviceNote=0123456789abcdef0123456789abcdef",
        "DeviceNote\t0123456789abcdef0123456789abcdef\n");
    row("text that is no UTF-8", "DeviceNote=\\xff\\xc3\\x28", "DeviceNote\t\xff\xc3\x28\n");
    row("text of control characters", "DeviceNote=\\x01\\x09#", "DeviceNote\t\x01\t#\n");
    row("text of two lines", "DeviceNote=a\\x0aWidth\\x09640", QByteArray());
    row("64 bits", "LineFaultMask=9223372036854775807", "LineFaultMask\t9223372036854775807\n");
    row("64 bits, the highest one set", "LineFaultMask=-2", QByteArray());
    row("no entry", "ExposureMode=77", QByteArray());
    row("no number", "Hue=nan", QByteArray());
    row("infinity", "Hue=-inf", QByteArray());
}

void tst_SimulatedCamera::FeatureFile_OddValues_AreKeptOrLeftOut()
{
    QFETCH(QString, value);
    QFETCH(QByteArray, line);
    const QTemporaryDir folder;
    const auto save = [&](const OpenCamera &camera) {
        QFile file(folder.filePath("settings"));
        if (KX_CC_FeatureSave(camera.Handle(), QFile::encodeName(file.fileName())) != KX_CC_OK)
            return QByteArray();
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    };
    QVERIFY(m_farm.Set(kSecond, "value", value));
    const OpenCamera camera(kSecond);
    QCOMPARE(camera.Code(), KX_CC_OK);
    const QByteArray saved = save(camera);
    QVERIFY2(saved.contains('\n' + line), saved);
    if (line.isEmpty())
        QVERIFY2(!saved.contains('\n' + value.section('=', 0, 0).toLatin1() + '\t'), saved);

    QVERIFY(m_farm.Set(kSecond, "value", "0"));
    const int nCode = KX_CC_FeatureLoad(camera.Handle(), QFile::encodeName(folder.filePath("settings")));

    QVERIFY2(nCode == KX_CC_OK || nCode == KX_CC_E_FILE_PARTIAL, KX_CC_ErrorText(nCode));
    QVERIFY2(line.isEmpty() || save(camera) == saved, save(camera));
}

void tst_SimulatedCamera::FeatureFile_Bad_SetsNothing()
{
    const QTemporaryDir folder;
    QFile file(folder.filePath("bad"));
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write("# {05D8C294-F295-4dfb-9D01-096BD04049F4}\nWidth\t800\nno tab here\n");
    file.close();
    const OpenCamera camera(kFirst);
    uint32_t nWidth = 0;
    QCOMPARE(camera.Set("Width", 480), KX_CC_OK);
    QCOMPARE(KX_CC_FeatureLoad(camera.Handle(), QFile::encodeName(file.fileName())), KX_CC_E_FILE_FORMAT);
    QCOMPARE(KX_CC_FeatureLoad(camera.Handle(), "/nowhere/settings"), KX_CC_E_FILE_OPEN);
    QCOMPARE(camera.Get("Width", &nWidth), KX_CC_OK);
    QCOMPARE(nWidth, 480U);
}

void tst_SimulatedCamera::Process_IsKilledWithACameraOpen_HelperEndsAndCameraIsFree()
{
    QProcess holder;
    holder.start(QCoreApplication::applicationFilePath(), {"--hold", kSecond});
    QVERIFY(holder.waitForReadyRead(30000));
    QCOMPARE(holder.readAll().trimmed(), QByteArray("0"));
    QCOMPARE(AccessOf(kSecond), KX_CC_ACCESS_IN_USE);
    holder.kill();
    holder.waitForFinished(10000);
    // At once, not by the heartbeat of 3 s: the helper has released it.
    QTRY_COMPARE_WITH_TIMEOUT(AccessOf(kSecond), KX_CC_ACCESS_FREE, 20000);
}

int main(int argc, char *argv[])
{
    QCoreApplication app(argc, argv);
    if (argc == 3 && qstrcmp(argv[1], "--hold") == 0) {
        const OpenCamera camera(argv[2]);
        printf("%d\n", camera.Code());
        fflush(stdout);
        for (;;)
            pause();
    }
    tst_SimulatedCamera test;
    return QTest::qExec(&test, argc, argv);
}
#include "tst_simulatedcamera.moc"
