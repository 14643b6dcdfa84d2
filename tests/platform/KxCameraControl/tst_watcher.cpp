#include <QElapsedTimer>
#include <QFile>
#include <QTest>

#include <array>
#include <cstring>
#include <memory>
#include <optional>

#include <sys/socket.h>
#include <sys/wait.h>

#include "ipc/frame.h"
#include "ipc/helperprocess.h"
#include "opencamera.h"
#include "scriptedcamera.h"

namespace {

constexpr uint32_t kControlPrivilege = 0xA00;

const char *const kAddress = "127.20.79.1"; // of a network of its own, see the label

bool Receive(int nSocket, void *pBytes, size_t nSize)
{
    return nSize == 0 || recv(nSocket, pBytes, nSize, MSG_WAITALL) == static_cast<ssize_t>(nSize);
}

/// Waits for the helper's answer to the request.
std::optional<kxcc::Reply> AnswerTo(uint32_t nSerial, int nSocket)
{
    for (;;) {
        std::array<uint8_t, kxcc::kFrameHeadSize> headBytes{};
        if (!Receive(nSocket, headBytes.data(), headBytes.size()))
            return std::nullopt;
        const auto head = kxcc::DecodeHead(headBytes);
        std::vector<uint8_t> body(head ? head->nBody : 0);
        if (!head || head->nBlob != 0 || !Receive(nSocket, body.data(), body.size()))
            return std::nullopt;
        auto reply = kxcc::DecodeReply(body);
        if (!reply || (reply->nSerial == nSerial && !reply->bProgress))
            return reply;
    }
}

bool HasEnded(pid_t nPid)
{
    siginfo_t info{};
    return waitid(P_PID, static_cast<id_t>(nPid), &info, WEXITED | WNOWAIT | WNOHANG) == 0 &&
           info.si_pid == nPid;
}

} // namespace

// What a helper does on its own while nobody asks it for anything.
class tst_Watcher : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void cleanup() { m_pCamera.reset(); }

    void KeepAlive_NothingIsAsked_ControlIsKept();
    void KeepAlive_ControlIsLost_NothingIsReleased();
    void WatchSocket_CameraAsksForMoreTimeForEver_HelperEnds();

private:
    QByteArray m_description;
    std::unique_ptr<ScriptedCamera> m_pCamera;
};

void tst_Watcher::initTestCase()
{
    qputenv("KX_CAMERA_SESSION", CAMERA_SESSION);
    QFile file(QFINDTESTDATA("data/access.xml"));
    QVERIFY(file.open(QIODevice::ReadOnly));
    m_description = file.readAll().trimmed();
}

void tst_Watcher::init()
{
    m_pCamera = std::make_unique<ScriptedCamera>(
        kAddress, "Local:a.xml;100000;" + QByteArray::number(m_description.size(), 16), m_description);
    QVERIFY(m_pCamera->IsThere());
}

void tst_Watcher::KeepAlive_NothingIsAsked_ControlIsKept()
{
    const OpenCamera camera(kAddress);
    QCOMPARE(camera.Code(), KX_CC_OK);
    const int nBefore = m_pCamera->CommandCount();
    // A camera gives its control away after 3 s of silence. Two signs of life in 6 s leave none so long, and
    // more of them are not promised on a busy machine.
    QElapsedTimer timer;
    timer.start();
    QTRY_VERIFY_WITH_TIMEOUT(m_pCamera->CommandCount() >= nBefore + 3, 20000);
    QVERIFY2(timer.elapsed() < 6000, qPrintable(QString::number(timer.elapsed())));
    QVERIFY(m_pCamera->Register(kControlPrivilege) != 0);
}

void tst_Watcher::KeepAlive_ControlIsLost_NothingIsReleased()
{
    const OpenCamera camera(kAddress);
    QCOMPARE(camera.Code(), KX_CC_OK);
    m_pCamera->SetMemory(kControlPrivilege, QByteArray(4, '\0'));
    const int nBefore = m_pCamera->CommandCount();
    QTRY_VERIFY_WITH_TIMEOUT(m_pCamera->CommandCount() >= nBefore + 2, 20000); // noticed with the first
    m_pCamera->SetMemory(kControlPrivilege, QByteArray("\0\0\0\2", 4));        // somebody else's
    KX_CC_CloseDevice(camera.Handle());
    QCOMPARE(m_pCamera->Register(kControlPrivilege), 2U);
}

void tst_Watcher::WatchSocket_CameraAsksForMoreTimeForEver_HelperEnds()
{
    kxcc::HelperProcess helper("camera");
    QCOMPARE(helper.Start(), KX_CC_OK);
    const KX_CC_DEVICE_INFO info = RecordFor(kAddress);
    kxcc::Request request;
    request.nSerial = 7;
    request.blob.resize(sizeof info);
    std::memcpy(request.blob.data(), &info, sizeof info);
    const std::vector<uint8_t> bytes = kxcc::EncodeRequest(request);
    QCOMPARE(send(helper.Socket(), bytes.data(), bytes.size(), MSG_NOSIGNAL),
             static_cast<ssize_t>(bytes.size()));
    const auto reply = AnswerTo(request.nSerial, helper.Socket());
    QVERIFY(reply && reply->nCode == KX_CC_OK);
    m_pCamera->AskForTimeForEver();
    const int nBefore = m_pCamera->CommandCount();
    // The sign of life, which is held up from now on.
    QTRY_VERIFY_WITH_TIMEOUT(m_pCamera->CommandCount() >= nBefore + 1, 20000);

    shutdown(helper.Socket(), SHUT_WR);

    // Its own last second, not the 5 s that a camera can ask for.
    QTRY_VERIFY_WITH_TIMEOUT(HasEnded(helper.Pid()), 3500);
    helper.End(20000);
}

QTEST_GUILESS_MAIN(tst_Watcher)
#include "tst_watcher.moc"
