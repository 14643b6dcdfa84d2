#include <QElapsedTimer>
#include <QFile>
#include <QTest>

#include <cstring>

#include <arpa/inet.h>
#include <sys/socket.h>
#include <unistd.h>

#include <KxCameraControl/kxcameracontrol.h>

#include "ipc/frame.h"
#include "ipc/helperprocess.h"
#include "scriptedcamera.h"

namespace {

constexpr uint32_t kModelName = 0x68;
constexpr uint32_t kSerialNumber = 0xD8;
constexpr uint32_t kMacAddress = 0x8;
constexpr uint32_t kSecondMacAddress = 0x680;
constexpr uint32_t kControlPrivilege = 0xA00;

const char *const kAddress = "127.20.77.1"; // of a network of its own, see the label

/// What the camera of the address calls itself, but for the texts that a test changes.
KX_CC_DEVICE_INFO Record(const QByteArray &model, const QByteArray &serial)
{
    KX_CC_DEVICE_INFO info{};
    info.nTransportType = KX_CC_TRANSPORT_GIGE;
    KX_CC_GIGE_INFO &gige = info.SpecialInfo.stGigEInfo;
    in_addr address{};
    inet_pton(AF_INET, kAddress, &address);
    gige.nCurrentIp = ntohl(address.s_addr);
    gige.nInterfaceIp = 0x7F000001;
    std::copy(model.begin(), model.end(), gige.chModelName);
    std::copy(serial.begin(), serial.end(), gige.chSerialNumber);
    return info;
}

int Open(const KX_CC_DEVICE_INFO &info)
{
    void *hDevice = nullptr;
    KX_CC_CreateHandle(&hDevice, &info);
    const int nCode = KX_CC_OpenDevice(hDevice, KX_CC_ACCESS_MODE_EXCLUSIVE, 0);
    KX_CC_DestroyHandle(hDevice);
    return nCode;
}

} // namespace

// The helper's way to a GigE Vision camera, with a camera that does what it is told.
class tst_GigeCamera : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void cleanupTestCase() { delete m_pCamera; }

    void Open_MacAddressOfTheRecord_IsCompared_data();
    void Open_MacAddressOfTheRecord_IsCompared();
    void Open_NameOfTheRecord_IsCompared_data();
    void Open_NameOfTheRecord_IsCompared();
    void Open_RegisterIsRefused_CountsAsEmpty();
    void Open_AnotherName_LogTellsBoth();
    void Open_AnswersAreLate_TakesLongerThanADeadlineAndSucceeds();
    void Open_LibraryGoesAtAnyMoment_CameraIsFree();

private:
    bool HangUpAt(int nCommand, bool &bWasTaken);

    ScriptedCamera *m_pCamera = nullptr;
};

void tst_GigeCamera::initTestCase()
{
    qputenv("KX_CAMERA_SESSION", CAMERA_SESSION);
    QFile file(QFINDTESTDATA("data/access.xml"));
    QVERIFY(file.open(QIODevice::ReadOnly));
    const QByteArray description = file.readAll().trimmed();
    m_pCamera = new ScriptedCamera(
        kAddress, "Local:a.xml;100000;" + QByteArray::number(description.size(), 16), description);
    QVERIFY(m_pCamera->IsThere());
}

void tst_GigeCamera::init()
{
    m_pCamera->BeforeAnswer(0, nullptr);
    m_pCamera->Refuse(0);
    m_pCamera->SetMemory(kMacAddress, QByteArray(8, '\0'));
    m_pCamera->SetMemory(kSecondMacAddress, QByteArray(8, '\0'));
    m_pCamera->SetMemory(kModelName, QByteArray(32, '\0'));
    m_pCamera->SetMemory(kSerialNumber, QByteArray(16, '\0'));
    QCOMPARE(m_pCamera->Register(kControlPrivilege), 0U);
}

void tst_GigeCamera::Open_MacAddressOfTheRecord_IsCompared_data()
{
    QTest::addColumn<QByteArray>("camera");
    QTest::addColumn<quint32>("high");
    QTest::addColumn<quint32>("low");
    QTest::addColumn<int>("code");
    const auto row = [](const char *szName, const char *szCamera, quint32 nHigh, quint32 nLow, int nCode) {
        QTest::newRow(szName) << QByteArray::fromHex(szCamera) << nHigh << nLow << nCode;
    };
    const int kOther = KX_CC_E_UNREACHABLE;
    row("the same", "0000112233445566", 0x1122, 0x33445566, KX_CC_OK);
    row("another high word", "0000112233445566", 0x1123, 0x33445566, kOther);
    row("another low word", "0000112233445566", 0x1122, 0x33445567, kOther);
    row("flags above it", "8000112233445566", 0x1122, 0x33445566, KX_CC_OK);
    row("high word 0", "0000000033445566", 0, 0x33445566, KX_CC_OK);
    row("high word 0, another", "0000000033445566", 0, 0x33445567, kOther);
    row("low word 0", "0000112200000000", 0x1122, 0, KX_CC_OK);
    row("low word 0, another", "0000112200000000", 0x1123, 0, kOther);
    row("high word 0, another's is not", "0000112233445566", 0, 0x33445566, kOther);
    row("low word 0, another's is not", "0000112233445566", 0x1122, 0, kOther);
    row("none in the record", "0000112233445566", 0, 0, KX_CC_OK);
    row("none in the camera", "0000000000000000", 0x1122, 0x33445566, KX_CC_OK);
    row("of the second interface", "0000112233445566", 0x99AA, 0xBBCCDDEE, KX_CC_OK);
}

void tst_GigeCamera::Open_MacAddressOfTheRecord_IsCompared()
{
    QFETCH(QByteArray, camera);
    QFETCH(quint32, high);
    QFETCH(quint32, low);
    m_pCamera->SetMemory(kMacAddress, camera);
    if (high == 0x99AA)
        m_pCamera->SetMemory(kSecondMacAddress, QByteArray::fromHex("000099aabbccddee"));
    KX_CC_DEVICE_INFO info = Record("", "");
    info.nMacAddrHigh = high;
    info.nMacAddrLow = low;
    QTEST(Open(info), "code");
}

void tst_GigeCamera::Open_NameOfTheRecord_IsCompared_data()
{
    QTest::addColumn<QByteArray>("cameraModel");
    QTest::addColumn<QByteArray>("cameraSerial");
    QTest::addColumn<QByteArray>("recordModel");
    QTest::addColumn<QByteArray>("recordSerial");
    QTest::addColumn<quint32>("mac"); // the camera does not tell its own, so any is right
    QTest::addColumn<int>("code");

    const auto row = [](const char *szName, const QByteArray &cameraModel, const QByteArray &cameraSerial,
                        const QByteArray &recordModel, const QByteArray &recordSerial, quint32 nMac,
                        int nCode) {
        QTest::newRow(szName) << cameraModel << cameraSerial << recordModel << recordSerial << nMac << nCode;
    };
    const int kOther = KX_CC_E_UNREACHABLE;
    row("the same", "M", "1", "M", "1", 7, KX_CC_OK);
    row("another model", "M", "1", "N", "1", 7, kOther);
    row("another serial number", "M", "1", "M", "2", 7, kOther);
    row("another serial number, no MAC address", "M", "1", "M", "2", 0, kOther);
    row("another model, no MAC address nor serial number", "M", "1", "N", "", 0, kOther);
    row("the beginning only", "M", "12", "M", "1", 7, kOther);
    row("no model in the record", "M", "1", "", "1", 7, kOther);
    row("no serial number in the record", "M", "1", "M", "", 7, kOther);
    row("neither in the record", "M", "1", "", "", 7, kOther);
    row("no identity in the record", "M", "1", "", "", 0, KX_CC_OK);
    row("no serial number in the camera", "M", "", "M", "1", 7, kOther);
    row("neither in both", "", "", "", "", 7, KX_CC_OK);
    row("cleaned in the record", "M/\x01", "\xff\\", "M__", "__", 7, KX_CC_OK);
    row("unlike in what is cleaned", "M/", "1\x02", "M\\", "1\x03", 7, KX_CC_OK);
    row("bytes behind the NUL", QByteArray("M\0x", 3), QByteArray("1\0y", 3), "M", "1", 7, KX_CC_OK);
    row("as long as their registers", QByteArray(32, 'M'), QByteArray(16, '1'), QByteArray(32, 'M'),
        QByteArray(16, '1'), 7, KX_CC_OK);
    row("as long as their registers, unlike at the end", QByteArray(32, 'M'), QByteArray(15, '1') + "2",
        QByteArray(32, 'M'), QByteArray(16, '1'), 7, kOther);
}

void tst_GigeCamera::Open_NameOfTheRecord_IsCompared()
{
    QFETCH(QByteArray, cameraModel);
    QFETCH(QByteArray, cameraSerial);
    QFETCH(QByteArray, recordModel);
    QFETCH(QByteArray, recordSerial);
    QFETCH(quint32, mac);
    QFETCH(int, code);
    m_pCamera->SetMemory(kModelName, cameraModel.leftJustified(32, '\0'));
    m_pCamera->SetMemory(kSerialNumber, cameraSerial.leftJustified(16, '\0'));
    KX_CC_DEVICE_INFO info = Record(recordModel, recordSerial);
    info.nMacAddrLow = mac;

    QCOMPARE(Open(info), code);
    // Control is given up at once, also by the one that was not meant.
    QCOMPARE(m_pCamera->Register(kControlPrivilege), 0U);
}

void tst_GigeCamera::Open_RegisterIsRefused_CountsAsEmpty()
{
    m_pCamera->SetMemory(kModelName, QByteArray("M").leftJustified(32, '\0'));
    m_pCamera->SetMemory(kSerialNumber, QByteArray("1").leftJustified(16, '\0'));
    m_pCamera->Refuse(kSerialNumber);
    QCOMPARE(Open(Record("M", "")), KX_CC_OK);
    QCOMPARE(Open(Record("M", "1")), KX_CC_E_UNREACHABLE);
}

void tst_GigeCamera::Open_AnotherName_LogTellsBoth()
{
    m_pCamera->SetMemory(kModelName, QByteArray("Mine").leftJustified(32, '\0'));
    QStringList messages;
    KX_CC_SetLogCallback(
        KX_CC_LOG_DEBUG,
        [](unsigned int, const char *, const char *szText, void *pMessages) {
            *static_cast<QStringList *>(pMessages) << szText;
        },
        &messages);
    const int nCode = Open(Record("Yours", ""));
    KX_CC_SetLogCallback(KX_CC_LOG_DEBUG, nullptr, nullptr);
    QCOMPARE(nCode, KX_CC_E_UNREACHABLE);
    QCOMPARE(messages.value(0),
             QStringLiteral("helper process: another camera is there: \"Mine\" instead of \"Yours\""));
}

void tst_GigeCamera::Open_AnswersAreLate_TakesLongerThanADeadlineAndSucceeds()
{
    m_pCamera->BeLate(160);
    QElapsedTimer timer;
    timer.start();
    const int nCode = Open(Record("", ""));
    m_pCamera->BeLate(0);
    QCOMPARE(nCode, KX_CC_OK);
    QVERIFY2(timer.elapsed() > KX_CC_DEADLINE_MS, qPrintable(QString::number(timer.elapsed())));
}

/// Opens the camera and lets the library go between the camera's command and its answer.
/// @param bWasTaken  Out: the camera was under control at that moment
/// @return false when the helper did not end by itself
bool tst_GigeCamera::HangUpAt(int nCommand, bool &bWasTaken)
{
    kxcc::HelperProcess helper("camera");
    if (helper.Start() != KX_CC_OK)
        return false;
    const int nLast = m_pCamera->CommandCount() + nCommand;
    std::atomic_bool bGone{false};
    m_pCamera->BeforeAnswer(nLast, [&, nSocket = helper.Socket()](uint32_t nPrivilege) {
        bWasTaken = nPrivilege != 0;
        shutdown(nSocket, SHUT_WR);
        usleep(20000); // until the helper has noticed, and waits for the answer to this command
        bGone = true;
    });
    const KX_CC_DEVICE_INFO info = Record("", "");
    kxcc::Request request;
    request.blob.resize(sizeof info);
    std::memcpy(request.blob.data(), &info, sizeof info);
    const std::vector<uint8_t> bytes = kxcc::EncodeRequest(request);
    if (send(helper.Socket(), bytes.data(), bytes.size(), MSG_NOSIGNAL) != static_cast<ssize_t>(bytes.size()))
        return false;
    const bool bHungUp = QTest::qWaitFor([&] { return bGone.load(); }, 20000);
    helper.End(20000);
    return bHungUp;
}

void tst_GigeCamera::Open_LibraryGoesAtAnyMoment_CameraIsFree()
{
    const int nBefore = m_pCamera->CommandCount();
    QCOMPARE(Open(Record("", "")), KX_CC_OK);
    const int nCommands = m_pCamera->CommandCount() - nBefore - 1; // the last one releases the camera
    QVERIFY(nCommands > 5);
    int nTaken = 0;
    for (int i = 1; i <= nCommands; ++i) {
        bool bWasTaken = false;
        QVERIFY(HangUpAt(i, bWasTaken));
        m_pCamera->BeforeAnswer(0, nullptr);
        nTaken += bWasTaken ? 1 : 0;
        QVERIFY2(m_pCamera->Register(kControlPrivilege) == 0, qPrintable(QString::number(i)));
    }
    QVERIFY2(nTaken > 3 && nTaken < nCommands, qPrintable(QString::number(nTaken)));
}

QTEST_GUILESS_MAIN(tst_GigeCamera)
#include "tst_gigecamera.moc"
