#include "camerafarm.h"

#include <QStandardPaths>
#include <QtTest>

namespace {

const QString kClient = QStringLiteral("arv-tool-0.8");

struct Result
{
    int exitCode = -1;
    QString output;
};

Result Run(const QStringList &arguments)
{
    QProcess process;
    process.setProcessChannelMode(QProcess::MergedChannels);
    process.start(kClient, arguments);
    Result result;
    if (process.waitForFinished(60000) && process.exitStatus() == QProcess::NormalExit)
        result.exitCode = process.exitCode();
    result.output = QString::fromUtf8(process.readAll());
    return result;
}

Result Control(const QString &address, const QStringList &commands)
{
    return Run(QStringList{QStringLiteral("-a"), address, QStringLiteral("control")} + commands);
}

QString DescriptionDirectory()
{
    return QStringLiteral(PROJECT_SOURCE_DIR "/../shared/descriptions");
}

} // namespace

/// The cameras as a GenICam client that is not ours sees them.
class tst_IndependentClient : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void List_ThreeCameras_AllAreFound();
    void Values_BuiltinCamera_EveryFeatureIsRead();
    void Control_WriteAndRead_ValueIsThere();
    void Control_ValueBeyondTheLimit_IsRefused();
    void Control_UserSet_SavedAndLoaded();
    void Control_MuteCamera_TimesOut();
    void Control_HeldCamera_WriteIsDenied();
    void Control_PendingAckTenTimes_ValueComes();
    void Control_UnpluggedThenPlugged_IsBack();
    void Control_ClosedPort_IsAnError();
    void Control_DuplicatesAndLateAnswers_ValueComes();
    void Values_GivenDescription_EveryFeatureIsRead_data();
    void Values_GivenDescription_EveryFeatureIsRead();
};

void tst_IndependentClient::initTestCase()
{
    if (!CameraFarm::IsInstalled())
        QSKIP("kx-camera-farm is not built");
    if (QStandardPaths::findExecutable(kClient).isEmpty())
        QSKIP("arv-tool-0.8 is not installed");
}

void tst_IndependentClient::List_ThreeCameras_AllAreFound()
{
    CameraFarm farm;
    QVERIFY2(farm.Start({"--count", "3", "--first-address", "127.30.10.1"}), qPrintable(farm.Error()));

    // The client drops one of two cameras with the same model and serial number, and other farms may run.
    for (const char *number : {"1", "2", "3"})
        QCOMPARE(farm.Command(QByteArray("set 127.30.10.") + number + " serial LISTED" + number),
                 QByteArray("ok"));

    QString output;
    for (const char *camera : {"LISTED1 (127.30.10.1)", "LISTED2 (127.30.10.2)", "LISTED3 (127.30.10.3)"}) {
        QTRY_VERIFY2((output = Run({}).output).contains(QLatin1String("Simulated-SimCam-150-") + camera),
                     qPrintable(output));
    }
}

void tst_IndependentClient::Values_BuiltinCamera_EveryFeatureIsRead()
{
    CameraFarm farm;
    QVERIFY2(farm.Start({"--first-address", "127.30.11.1"}), qPrintable(farm.Error()));

    const Result result = Run({"-a", "127.30.11.1", "values"});

    QCOMPARE(result.exitCode, 0);
    QVERIFY(result.output.count(QLatin1String(" = ")) >= 150);
    QVERIFY2(!result.output.contains(QLatin1String("rror:")), qPrintable(result.output));
    QVERIFY2(!result.output.contains(QLatin1String("(null)")), qPrintable(result.output));
    for (const char *kind : {"Integer ", "IntReg ", "Float ", "Boolean ", "Enumeration ", "Command ",
                             "StringReg ", "String ", "Register ", "Category "})
        QVERIFY2(result.output.contains(QLatin1String(kind)), kind);
}

void tst_IndependentClient::Control_WriteAndRead_ValueIsThere()
{
    CameraFarm farm;
    QVERIFY2(farm.Start({"--first-address", "127.30.12.1"}), qPrintable(farm.Error()));

    const Result written =
        Control("127.30.12.1", {"Width=640", "BlackLevelOffset=-37", "ExposureTime=123.5",
                                "PixelFormat=Mono12", "ReverseX=true", "GainSelector=Blue", "Gain=4.5"});
    const Result read = Control("127.30.12.1", {"Width", "BlackLevelOffset", "ExposureTime", "PixelFormat",
                                                "ReverseX", "Gain", "GainSelector=All", "Gain"});

    QVERIFY2(!written.output.contains(QLatin1String("error")), qPrintable(written.output));
    for (const char *line : {"Width = 640 ", "BlackLevelOffset = -37 ", "ExposureTime = 123.5 ",
                             "PixelFormat = Mono12", "ReverseX = true", "Gain = 4.5 ", "Gain = 0 "})
        QVERIFY2(read.output.contains(QLatin1String(line)), qPrintable(line + read.output));
}

void tst_IndependentClient::Control_ValueBeyondTheLimit_IsRefused()
{
    CameraFarm farm;
    QVERIFY2(farm.Start({"--first-address", "127.30.13.1"}), qPrintable(farm.Error()));

    const Result result = Control("127.30.13.1", {"Width=5000", "Width"});

    QVERIFY2(result.output.contains(QLatin1String("invalid-parameter")), qPrintable(result.output));
    QVERIFY2(result.output.contains(QLatin1String("Width = 1936 ")), qPrintable(result.output));
}

void tst_IndependentClient::Control_UserSet_SavedAndLoaded()
{
    CameraFarm farm;
    QVERIFY2(farm.Start({"--first-address", "127.30.14.1"}), qPrintable(farm.Error()));

    const Result result = Control(
        "127.30.14.1", {"Width=640", "UserSetSelector=UserSet2", "UserSetSave", "Width=800", "UserSetLoad",
                        "Width", "UserSetSelector=Default", "UserSetLoad", "Height", "Width"});

    const int loaded = result.output.indexOf(QLatin1String("UserSetLoad executed"));
    QVERIFY2(result.output.mid(loaded).contains(QLatin1String("Width = 640 ")), qPrintable(result.output));
    QVERIFY2(result.output.mid(result.output.indexOf(QLatin1String("Height")))
                 .contains(QLatin1String("Width = 1936 ")),
             qPrintable(result.output));
}

void tst_IndependentClient::Control_MuteCamera_TimesOut()
{
    CameraFarm farm;
    QVERIFY2(farm.Start({"--first-address", "127.30.15.1"}), qPrintable(farm.Error()));
    QCOMPARE(farm.Command("set 127.30.15.1 mute 1"), QByteArray("ok"));

    const Result result = Control("127.30.15.1", {"Width"});

    QVERIFY2(!result.output.contains(QLatin1String("Width = ")), qPrintable(result.output));
}

void tst_IndependentClient::Control_HeldCamera_WriteIsDenied()
{
    CameraFarm farm;
    QVERIFY2(farm.Start({"--first-address", "127.30.16.1"}), qPrintable(farm.Error()));
    // Held by another one with full access only in name: reading is refused, too.
    QCOMPARE(farm.Command("set SIM0001 control-held 1"), QByteArray("ok"));

    const Result result = Control("127.30.16.1", {"Width=640", "Width"});

    QVERIFY2(!result.output.contains(QLatin1String("Width = 640")), qPrintable(result.output));
}

void tst_IndependentClient::Control_PendingAckTenTimes_ValueComes()
{
    CameraFarm farm;
    QVERIFY2(farm.Start({"--first-address", "127.30.17.1"}), qPrintable(farm.Error()));
    QCOMPARE(farm.Command("set * pending-ack 10 20 address=0x10000 times=1"), QByteArray("ok"));

    const Result result = Control("127.30.17.1", {"Width=640", "Width"});

    QVERIFY2(result.output.contains(QLatin1String("Width = 640 ")), qPrintable(result.output));
}

void tst_IndependentClient::Control_UnpluggedThenPlugged_IsBack()
{
    CameraFarm farm;
    QVERIFY2(farm.Start({"--first-address", "127.30.18.1"}), qPrintable(farm.Error()));
    QCOMPARE(farm.Command("unplug *"), QByteArray("ok"));
    QVERIFY(!Control("127.30.18.1", {"Width"}).output.contains(QLatin1String("Width = ")));

    QCOMPARE(farm.Command("plug *"), QByteArray("ok"));

    QVERIFY(Control("127.30.18.1", {"Width"}).output.contains(QLatin1String("Width = 1936 ")));
}

void tst_IndependentClient::Control_ClosedPort_IsAnError()
{
    CameraFarm farm;
    QVERIFY2(farm.Start({"--first-address", "127.30.19.1"}), qPrintable(farm.Error()));
    QCOMPARE(farm.Command("set * port closed"), QByteArray("ok"));
    QVERIFY(!Control("127.30.19.1", {"Width"}).output.contains(QLatin1String("Width = ")));

    QCOMPARE(farm.Command("set * port open"), QByteArray("ok"));

    QVERIFY(Control("127.30.19.1", {"Width"}).output.contains(QLatin1String("Width = 1936 ")));
}

void tst_IndependentClient::Control_DuplicatesAndLateAnswers_ValueComes()
{
    CameraFarm farm;
    QVERIFY2(farm.Start({"--first-address", "127.30.20.1", "--latency-us", "200"}), qPrintable(farm.Error()));
    QCOMPARE(farm.Command("set * duplicate 1"), QByteArray("ok"));

    const Result result = Control("127.30.20.1", {"Width=640", "Width"});

    QVERIFY2(result.output.contains(QLatin1String("Width = 640 ")), qPrintable(result.output));
}

void tst_IndependentClient::Values_GivenDescription_EveryFeatureIsRead_data()
{
    QTest::addColumn<QString>("path");
    const auto files = QDir(DescriptionDirectory()).entryInfoList({"*.xml"}, QDir::Files);
    for (const QFileInfo &file : files)
        QTest::newRow(qPrintable(file.baseName())) << file.filePath();
    if (files.isEmpty())
        QTest::newRow("none") << QString();
}

void tst_IndependentClient::Values_GivenDescription_EveryFeatureIsRead()
{
    QFETCH(QString, path);
    if (path.isEmpty())
        QSKIP("there are no descriptions of other cameras here");
    CameraFarm farm;
    QVERIFY2(farm.Start({"--first-address", "127.30.21.1", "--description", path}), qPrintable(farm.Error()));

    const Result result = Run({"-a", "127.30.21.1", "values"});

    QCOMPARE(result.exitCode, 0);
    QVERIFY(result.output.count(QLatin1String(" = ")) > 50);
    QVERIFY2(!result.output.contains(QLatin1String("(null)")), qPrintable(result.output));
    QVERIFY2(!result.output.contains(QLatin1String("rror:")), qPrintable(result.output));
}

QTEST_GUILESS_MAIN(tst_IndependentClient)
#include "tst_independentclient.moc"
