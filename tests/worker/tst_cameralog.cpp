#include <QtTest>

#include <QTemporaryFile>

#include <unistd.h>

#include <KxCameraControl/kxcameracontrol.h>
#include <worker/cameralog.h>

namespace {

/// The camera SDK, played by this program: it keeps the callback.
struct Sdk
{
    unsigned int nLowestLevel = 0;
    KX_CC_LOG_CALLBACK pCallback = nullptr;
    void *pUser = nullptr;
};
Sdk sdk;

QStringList entries; ///< "TYPE CATEGORY TEXT"

void Take(QtMsgType type, const QMessageLogContext &context, const QString &strText)
{
    entries << QStringLiteral("%1 %2 %3").arg(type).arg(context.category, strText);
}

/// What the action writes to the standard error.
QByteArray StandardErrorOf(const std::function<void()> &action)
{
    QTemporaryFile file;
    if (!file.open())
        return "no file";
    fflush(stderr);
    const int nBefore = dup(STDERR_FILENO);
    dup2(file.handle(), STDERR_FILENO);
    action();
    fflush(stderr);
    dup2(nBefore, STDERR_FILENO);
    close(nBefore);
    file.seek(0);
    return file.readAll();
}

} // namespace

int KX_CC_SetLogCallback(unsigned int nLowestLevel, KX_CC_LOG_CALLBACK pCallback, void *pUser)
{
    sdk = {nLowestLevel, pCallback, pUser};
    return KX_CC_OK;
}

class tst_CameraLog : public QObject
{
    Q_OBJECT

private slots:
    void init() { entries.clear(); }

    void FeedCameraLog_Message_IsLoggedWithItsCamera_data();
    void FeedCameraLog_Message_IsLoggedWithItsCamera();
    void FeedCameraLog_MessageAboutNone_IsTheTextAlone();
    void FeedCameraLog_PercentSigns_StayAsTheyAre();
    void FeedCameraLog_AlsoOnStderr_IsThereAndInTheLog();
};

void tst_CameraLog::FeedCameraLog_Message_IsLoggedWithItsCamera_data()
{
    QTest::addColumn<unsigned int>("level");
    QTest::addColumn<int>("type");
    QTest::newRow("debug") << KX_CC_LOG_DEBUG << int(QtDebugMsg);
    QTest::newRow("info") << KX_CC_LOG_INFO << int(QtInfoMsg);
    QTest::newRow("warning") << KX_CC_LOG_WARNING << int(QtWarningMsg);
    QTest::newRow("error") << KX_CC_LOG_ERROR << int(QtCriticalMsg);
    QTest::newRow("one of a later library") << 99U << int(QtWarningMsg);
}

void tst_CameraLog::FeedCameraLog_Message_IsLoggedWithItsCamera()
{
    QFETCH(unsigned int, level);
    QFETCH(int, type);
    FeedCameraLog(false);
    QCOMPARE(sdk.nLowestLevel, KX_CC_LOG_INFO);
    const QtMessageHandler before = qInstallMessageHandler(Take);
    const QByteArray standardError =
        StandardErrorOf([&] { sdk.pCallback(level, "Modèle 1", "été", sdk.pUser); });
    qInstallMessageHandler(before);
    QCOMPARE(entries, QStringList(QStringLiteral("%1 camera Modèle 1: été").arg(type)));
    QCOMPARE(standardError, QByteArray());
}

void tst_CameraLog::FeedCameraLog_MessageAboutNone_IsTheTextAlone()
{
    FeedCameraLog(false);
    const QtMessageHandler before = qInstallMessageHandler(Take);
    sdk.pCallback(KX_CC_LOG_INFO, "", "text", sdk.pUser);
    qInstallMessageHandler(before);
    QCOMPARE(entries, QStringList(QStringLiteral("%1 camera text").arg(int(QtInfoMsg))));
}

void tst_CameraLog::FeedCameraLog_PercentSigns_StayAsTheyAre()
{
    FeedCameraLog(true);
    const QtMessageHandler before = qInstallMessageHandler(Take);
    const QByteArray standardError =
        StandardErrorOf([] { sdk.pCallback(KX_CC_LOG_INFO, "%1%s", "%n%s%2", sdk.pUser); });
    qInstallMessageHandler(before);
    QCOMPARE(entries, QStringList(QStringLiteral("%1 camera ").arg(int(QtInfoMsg)) + "%1%s: %n%s%2"));
    QCOMPARE(standardError, QByteArray("%1%s: %n%s%2\n"));
}

void tst_CameraLog::FeedCameraLog_AlsoOnStderr_IsThereAndInTheLog()
{
    FeedCameraLog(true);
    const QtMessageHandler before = qInstallMessageHandler(Take);
    const QByteArray standardError =
        StandardErrorOf([] { sdk.pCallback(KX_CC_LOG_WARNING, "Camera", "text", sdk.pUser); });
    qInstallMessageHandler(before);
    QCOMPARE(entries, QStringList(QStringLiteral("%1 camera Camera: text").arg(int(QtWarningMsg))));
    QCOMPARE(standardError, QByteArray("Camera: text\n"));
}

QTEST_GUILESS_MAIN(tst_CameraLog)
#include "tst_cameralog.moc"
