#include <QElapsedTimer>
#include <QTest>

#include <thread>

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <KxCameraControl/kxcameracontrol.h>

namespace {

/// "LEVEL CAMERA: TEXT"; written by the thread that calls the library.
QStringList messages;

void Take(unsigned int nLevel, const char *szCamera, const char *szText, void *)
{
    messages << QStringLiteral("%1 %2: %3").arg(nLevel).arg(szCamera, szText);
}

KX_CC_DEVICE_INFO Record()
{
    KX_CC_DEVICE_INFO info{};
    info.nTransportType = KX_CC_TRANSPORT_GIGE;
    info.SpecialInfo.stGigEInfo.nCurrentIp = 0x7F000001;
    qstrcpy(reinterpret_cast<char *>(info.SpecialInfo.stGigEInfo.chModelName), "Model");
    qstrcpy(reinterpret_cast<char *>(info.SpecialInfo.stGigEInfo.chSerialNumber), "S1");
    return info;
}

/// An open handle whose helper plays a script.
class ScriptedHandle
{
public:
    explicit ScriptedHandle(const char *szScript)
    {
        qputenv("KX_SCRIPT", szScript);
        const KX_CC_DEVICE_INFO info = Record();
        KX_CC_CreateHandle(&m_hDevice, &info);
        m_nCode = KX_CC_OpenDevice(m_hDevice, KX_CC_ACCESS_MODE_EXCLUSIVE, 0);
    }
    ScriptedHandle(const ScriptedHandle &) = delete;
    ScriptedHandle &operator=(const ScriptedHandle &) = delete;
    ~ScriptedHandle() { KX_CC_DestroyHandle(m_hDevice); }

    int Code() const { return m_nCode; }
    void *Handle() const { return m_hDevice; }
    int Get(unsigned int *pnValue = nullptr) const
    {
        KX_CC_INT_VALUE value{};
        const int nCode = KX_CC_GetIntValue(m_hDevice, "Width", &value);
        if (pnValue != nullptr)
            *pnValue = value.nCurValue;
        return nCode;
    }

private:
    void *m_hDevice = nullptr;
    int m_nCode = KX_CC_E_HANDLE;
};

const QString CAMERA = " Model S1 (127.0.0.1): ";

} // namespace

// The library's side of a session, with a helper that does what it is told.
class tst_Session : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();

    void Call_HelperKeepsToTheProtocol_GivesItsReply();
    void Call_ReplyToAnotherRequest_EndsTheSession();
    void Call_HelperWritesWithoutEnd_GetsItsReplyAndAFewLines();
    void Call_HelperAborts_LogHasItsLastWordsAndTheSignal();
    void Call_HelperExits_LogHasItsExitCode();
    void Open_HelperIsMissing_LogHasTheReason();
    void Open_NoStandardStreams_WorksAllTheSame();
};

void tst_Session::initTestCase()
{
    qputenv("KX_CAMERA_SESSION", SCRIPTED_HELPER);
    QCOMPARE(KX_CC_SetLogCallback(KX_CC_LOG_DEBUG, Take, nullptr), KX_CC_OK);
}

void tst_Session::init()
{
    messages.clear();
}

void tst_Session::Call_HelperKeepsToTheProtocol_GivesItsReply()
{
    const ScriptedHandle handle("");
    QCOMPARE(handle.Code(), KX_CC_OK);
    unsigned int nValue = 0;
    QCOMPARE(handle.Get(&nValue), KX_CC_OK);
    QCOMPARE(nValue, 42U);
    QCOMPARE(KX_CC_CloseDevice(handle.Handle()), KX_CC_OK);
    QCOMPARE(messages, QStringList());
}

void tst_Session::Call_ReplyToAnotherRequest_EndsTheSession()
{
    const ScriptedHandle handle("wrong-serial");
    QCOMPARE(handle.Code(), KX_CC_OK);
    QCOMPARE(handle.Get(), KX_CC_E_SESSION_ENDED);
    QCOMPARE(handle.Get(), KX_CC_E_LOST);
}

void tst_Session::Call_HelperWritesWithoutEnd_GetsItsReplyAndAFewLines()
{
    const ScriptedHandle handle("noisy");
    QCOMPARE(handle.Get(), KX_CC_OK);
    QCOMPARE(handle.Get(), KX_CC_OK);
    QCOMPARE(messages.size(), int(KX_CC_LOG_HELPER_LINES) + 1);
    QCOMPARE(messages.first(), "2" + CAMERA + "helper process: " + QString(99, 'n'));
}

void tst_Session::Call_HelperAborts_LogHasItsLastWordsAndTheSignal()
{
    const ScriptedHandle handle("last-words");
    QCOMPARE(handle.Get(), KX_CC_E_SESSION_ENDED);
    QCOMPARE(messages.size(), 3);
    QCOMPARE(messages[0], "2" + CAMERA + "helper process: so it ends");
    QVERIFY2(messages[1].startsWith("3" + CAMERA + "helper process was ended by: Abort"),
             qPrintable(messages[1]));
    QCOMPARE(messages[2], "3" + CAMERA + "lost: camera helper program ended unexpectedly (145)");
}

void tst_Session::Call_HelperExits_LogHasItsExitCode()
{
    const ScriptedHandle handle("exit-code");
    QCOMPARE(handle.Get(), KX_CC_E_SESSION_ENDED);
    QCOMPARE(messages.value(0), "3" + CAMERA + "helper process ended with exit code 7");
}

void tst_Session::Open_HelperIsMissing_LogHasTheReason()
{
    qputenv("KX_CAMERA_SESSION", "/nowhere/kx-camera-session");
    const int nCode = ScriptedHandle("").Code();
    qputenv("KX_CAMERA_SESSION", SCRIPTED_HELPER);
    QCOMPARE(nCode, KX_CC_E_SESSION);
    QCOMPARE(messages, QStringList({"4" + CAMERA +
                                        "/nowhere/kx-camera-session cannot be started: "
                                        "No such file or directory",
                                    "3" + CAMERA +
                                        "not opened: camera helper program could not be started "
                                        "(122)"}));
}

void tst_Session::Open_NoStandardStreams_WorksAllTheSame()
{
    const pid_t nChild = fork();
    if (nChild == 0) {
        for (const int nStream : {0, 1, 2})
            close(nStream);
        const ScriptedHandle handle("");
        _exit(handle.Code() == KX_CC_OK && handle.Get() == KX_CC_OK ? 0 : 1);
    }
    int nStatus = -1;
    QCOMPARE(waitpid(nChild, &nStatus, 0), nChild);
    QCOMPARE(nStatus, 0);
}

QTEST_GUILESS_MAIN(tst_Session)
#include "tst_session.moc"
