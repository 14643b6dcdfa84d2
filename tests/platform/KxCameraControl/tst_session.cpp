#include <QElapsedTimer>
#include <QFile>
#include <QTemporaryDir>
#include <QTemporaryFile>
#include <QTest>

#include <csignal>

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <KxCameraControl/kxcameracontrol.h>

namespace {

/// "LEVEL kCamera: TEXT"; written by the thread that calls the library.
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

const QString kCamera = " Model S1 (127.0.0.1): ";

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
    void Call_HelperHangsUpAndLives_IsEnded();
    void Call_HelperComputesBeyondTheDeadline_IsGrantedIt();
    void Call_RequestLongerThanTheSocketHolds_ArrivesAsItIs();
    void Description_HelperSaysItsSize_IsBelievedWithinTheBound_data();
    void Description_HelperSaysItsSize_IsBelievedWithinTheBound();
    void Close_HelperDoesNotEnd_IsKilled();
    void Open_StrangeSurroundings_AreKeptFromTheHelper();
    void Call_HelperExits_LogHasItsExitCode();
    void Call_EachFeatureTakesLong_EndsWithTheTotal();
    void Call_OneFeatureTakesTooLong_EndsBeforeIt();
    void Call_FeaturesInTurn_HaveTheirTimeEach();
    void Call_Paused_IsNotCharged();
    void Open_Again_HasAFreshBudget();
    void Save_FeaturesAreFinished_GoesOnUntilTheTotal();
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
    QCOMPARE(KX_CC_SetTimeBudget(KX_CC_FEATURE_BUDGET_MS, KX_CC_CAMERA_BUDGET_MS), KX_CC_OK);
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
    QCOMPARE(messages.first(), "2" + kCamera + "helper process: " + QString(99, 'n'));
}

void tst_Session::Call_HelperAborts_LogHasItsLastWordsAndTheSignal()
{
    const ScriptedHandle handle("last-words");
    QCOMPARE(handle.Get(), KX_CC_E_SESSION_ENDED);
    QCOMPARE(messages.size(), 3);
    QCOMPARE(messages[0], "2" + kCamera + "helper process: so it ends");
    QVERIFY2(messages[1].startsWith("3" + kCamera + "helper process was ended by: Abort"),
             qPrintable(messages[1]));
    QCOMPARE(messages[2], "3" + kCamera + "lost: camera helper program ended unexpectedly (145)");
}

void tst_Session::Call_HelperHangsUpAndLives_IsEnded()
{
    const ScriptedHandle handle("hang-up 300000");
    QElapsedTimer timer;
    timer.start();
    QCOMPARE(handle.Get(), KX_CC_E_SESSION_ENDED);
    QVERIFY2(timer.elapsed() < 20000, qPrintable(QString::number(timer.elapsed())));
    QCOMPARE(waitpid(-1, nullptr, WNOHANG), -1); // no child is left
}

void tst_Session::Call_HelperComputesBeyondTheDeadline_IsGrantedIt()
{
    const ScriptedHandle handle("work 3100");
    QCOMPARE(handle.Get(), KX_CC_OK);
}

void tst_Session::Call_RequestLongerThanTheSocketHolds_ArrivesAsItIs()
{
    QTemporaryFile file;
    QVERIFY(file.open());
    file.write(QByteArray(8 << 20, 'x'));
    file.close();
    const ScriptedHandle handle("");
    QCOMPARE(KX_CC_FeatureLoad(handle.Handle(), QFile::encodeName(file.fileName())), KX_CC_OK);
    QCOMPARE(handle.Get(), KX_CC_OK); // there is nothing behind it that would be taken for a request
    QCOMPARE(messages, QStringList());
}

void tst_Session::Description_HelperSaysItsSize_IsBelievedWithinTheBound_data()
{
    QTest::addColumn<QByteArray>("script");
    QTest::addColumn<int>("code");
    QTest::addColumn<unsigned int>("size");
    QTest::newRow("the longest") << QByteArray("too-small 16777217") << KX_CC_E_BUFFER_TOO_SMALL << 16777217U;
    QTest::newRow("longer") << QByteArray("too-small 16777218") << KX_CC_E_DEVICE_STATUS << 7U;
    QTest::newRow("as large as the buffer") << QByteArray("too-small 100") << KX_CC_E_DEVICE_STATUS << 7U;
}

void tst_Session::Description_HelperSaysItsSize_IsBelievedWithinTheBound()
{
    QFETCH(QByteArray, script);
    const ScriptedHandle handle(script);
    QByteArray buffer(100, '\0');
    unsigned int nSize = 7;
    QTEST(
        KX_XML_GetGenICamXML(handle.Handle(), reinterpret_cast<unsigned char *>(buffer.data()), 100, &nSize),
        "code");
    QTEST(nSize, "size");
}

void tst_Session::Close_HelperDoesNotEnd_IsKilled()
{
    const ScriptedHandle handle("stubborn");
    QCOMPARE(handle.Get(), KX_CC_OK);
    QElapsedTimer timer;
    timer.start();
    QCOMPARE(KX_CC_CloseDevice(handle.Handle()), KX_CC_OK);
    QVERIFY2(timer.elapsed() >= 900, qPrintable(QString::number(timer.elapsed()))); // it had its time
    QVERIFY2(timer.elapsed() < 20000, qPrintable(QString::number(timer.elapsed())));
    QCOMPARE(waitpid(-1, nullptr, WNOHANG), -1);
    QCOMPARE(messages, QStringList());
}

void tst_Session::Open_StrangeSurroundings_AreKeptFromTheHelper()
{
    QTemporaryFile file;
    QVERIFY(file.open());
    const int nInherited = dup(file.handle()); // not closed by exec
    const int nStandardInput = fcntl(STDIN_FILENO, F_DUPFD_CLOEXEC, 10);
    dup2(file.handle(), STDIN_FILENO);
    const auto before = signal(SIGTERM, SIG_IGN);
    sigset_t term;
    sigemptyset(&term);
    sigaddset(&term, SIGTERM);
    pthread_sigmask(SIG_BLOCK, &term, nullptr);
    unsigned int nValue = 0;
    {
        const ScriptedHandle handle("surroundings");
        QCOMPARE(handle.Get(&nValue), KX_CC_OK);
    }
    pthread_sigmask(SIG_UNBLOCK, &term, nullptr);
    signal(SIGTERM, before);
    close(nInherited);
    dup2(nStandardInput, STDIN_FILENO);
    close(nStandardInput);
    QCOMPARE(nValue, 42U);
}

void tst_Session::Call_HelperExits_LogHasItsExitCode()
{
    const ScriptedHandle handle("exit-code");
    QCOMPARE(handle.Get(), KX_CC_E_SESSION_ENDED);
    QCOMPARE(messages.value(0), "3" + kCamera + "helper process ended with exit code 7");
}

void tst_Session::Call_EachFeatureTakesLong_EndsWithTheTotal()
{
    KX_CC_SetTimeBudget(0, 700);
    const ScriptedHandle handle("slow 150");
    QCOMPARE(handle.Code(), KX_CC_OK);
    int nDone = 0;
    int nCode = KX_CC_OK;
    while ((nCode = handle.Get()) == KX_CC_OK && nDone < 100)
        ++nDone;
    QCOMPARE(nCode, KX_CC_E_TIMEOUT);
    QVERIFY2(nDone >= 1 && nDone <= 4, qPrintable(QString::number(nDone)));
    QCOMPARE(handle.Get(), KX_CC_E_LOST);
    QCOMPARE(messages, QStringList({"3" + kCamera + "its time budget is spent",
                                    "3" + kCamera + "lost: camera did not answer in time (143)"}));
}

void tst_Session::Call_OneFeatureTakesTooLong_EndsBeforeIt()
{
    KX_CC_SetTimeBudget(200, 0);
    const ScriptedHandle handle("slow 2500"); // within the deadline of a call
    QElapsedTimer timer;
    timer.start();
    QCOMPARE(handle.Get(), KX_CC_E_TIMEOUT);
    QVERIFY2(timer.elapsed() >= 200, qPrintable(QString::number(timer.elapsed())));
    QVERIFY2(timer.elapsed() < 2500, qPrintable(QString::number(timer.elapsed())));
    QCOMPARE(handle.Get(), KX_CC_E_LOST);
}

void tst_Session::Call_FeaturesInTurn_HaveTheirTimeEach()
{
    KX_CC_SetTimeBudget(800, 0);
    const ScriptedHandle handle("slow 180");
    for (int i = 0; i < 6; ++i)
        QCOMPARE(handle.Get(), KX_CC_OK);
}

void tst_Session::Call_Paused_IsNotCharged()
{
    KX_CC_SetTimeBudget(500, 500);
    const ScriptedHandle handle("");
    QTest::qSleep(600);
    QCOMPARE(handle.Get(), KX_CC_OK);
}

void tst_Session::Open_Again_HasAFreshBudget()
{
    KX_CC_SetTimeBudget(0, 300);
    const ScriptedHandle handle("slow 100");
    for (int i = 0; i < 20 && handle.Get() == KX_CC_OK; ++i) {
    }
    QCOMPARE(handle.Get(), KX_CC_E_LOST);
    QCOMPARE(KX_CC_CloseDevice(handle.Handle()), KX_CC_OK);
    KX_CC_SetTimeBudget(0, 60000);
    QCOMPARE(KX_CC_OpenDevice(handle.Handle(), KX_CC_ACCESS_MODE_EXCLUSIVE, 0), KX_CC_OK);
    for (int i = 0; i < 4; ++i)
        QCOMPARE(handle.Get(), KX_CC_OK);
}

void tst_Session::Save_FeaturesAreFinished_GoesOnUntilTheTotal()
{
    const QTemporaryDir folder;
    const QByteArray path = QFile::encodeName(folder.filePath("bag"));
    // Far longer than one feature may take, but there is always one finished.
    KX_CC_SetTimeBudget(700, 60000);
    const ScriptedHandle steady("progress 50 30");
    QCOMPARE(KX_CC_FeatureSave(steady.Handle(), path), KX_CC_OK);
    // The same ends in the middle when that is too long in all.
    KX_CC_SetTimeBudget(700, 500);
    const ScriptedHandle endless("progress 50 10000");
    QElapsedTimer timer;
    timer.start();
    QCOMPARE(KX_CC_FeatureLoad(endless.Handle(), path), KX_CC_E_TIMEOUT);
    QVERIFY2(timer.elapsed() < 20000, qPrintable(QString::number(timer.elapsed())));
    QCOMPARE(KX_CC_FeatureSave(endless.Handle(), path), KX_CC_E_LOST);
}

void tst_Session::Open_HelperIsMissing_LogHasTheReason()
{
    qputenv("KX_CAMERA_SESSION", "/nowhere/kx-camera-session");
    const int nCode = ScriptedHandle("").Code();
    qputenv("KX_CAMERA_SESSION", SCRIPTED_HELPER);
    QCOMPARE(nCode, KX_CC_E_SESSION);
    QCOMPARE(messages, QStringList({"4" + kCamera +
                                        "/nowhere/kx-camera-session cannot be started: "
                                        "No such file or directory",
                                    "3" + kCamera +
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
