#include <QtTest>

#include "camerafarm.h"
#include "companion.h"

// kx-features export and list against simulated cameras.
class tst_Companion_Export : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();

    void Program_Libraries_HoldNoWidgets();
    void List_Cameras_AreListedWithSerialAddressAndAccess();
    void List_CameraControlledByAnother_IsInUse();
    void Export_EightCameras_WritesAFileEach();
    void Export_ByModel_TakesEveryCameraOfIt();
    void Export_GermanLocale_WritesTheSameBytes();
    void Export_TurkishLocale_WritesTheSameBytes();
    void Export_LossyNetwork_WritesTheSameBytes();
    void Export_MuteCamera_FailsAloneWithinItsDeadline();
    void Export_CameraControlledByAnother_FailsAlone();
    void Export_CameraIsBusyOnce_IsAskedAgain();
    void Export_CameraNotFound_IsNamed();
    void Export_MissingFolder_IsReportedAndNotMade();
    void Export_FileCannotBeWritten_IsReported();
    void Usage_Wrong_IsToldInOneLineWithCode2();

private:
    QString Out(const QString &serial) const { return m_dir->path() + "/SimCam-150_" + serial + ".kfb"; }

    CameraFarm m_farm;
    QScopedPointer<QTemporaryDir> m_dir;
};

void tst_Companion_Export::initTestCase()
{
    if (!CameraFarm::IsInstalled()) {
        QSKIP("kx-camera-farm is not built");
    }
    QVERIFY2(m_farm.Start({"--count", "8", "--first-address", "127.41.1.1"}), qPrintable(m_farm.Error()));
}

void tst_Companion_Export::init()
{
    m_dir.reset(new QTemporaryDir);
    QVERIFY(m_dir->isValid());
}

void tst_Companion_Export::cleanup()
{
    m_farm.Command("clear *");
}

void tst_Companion_Export::Program_Libraries_HoldNoWidgets()
{
    QProcess loader;
    loader.start("ldd", {PROJECT_BIN_DIR "/kx-features"});
    QVERIFY(loader.waitForFinished());
    const QByteArray libraries = loader.readAllStandardOutput();
    QVERIFY2(libraries.contains("libQt5Core"), libraries.constData());
    QVERIFY2(!libraries.contains("libQt5Widgets") && !libraries.contains("libQt5Gui"), libraries.constData());
}

void tst_Companion_Export::List_Cameras_AreListedWithSerialAddressAndAccess()
{
    const CompanionRun run = RunCompanion({"list", "--json"});
    QCOMPARE(run.exitCode, 0);
    for (int i = 1; i <= 8; ++i) {
        const QJsonObject camera = run.Camera(QString("127.41.1.%1").arg(i));
        QCOMPARE(camera.value("model").toString(), QString("SimCam-150"));
        QCOMPARE(camera.value("serial").toString(), QString("SIM000%1").arg(i));
        QCOMPARE(camera.value("transport").toString(), QString("gige"));
        QCOMPARE(camera.value("access").toString(), QString("free"));
    }
}

void tst_Companion_Export::List_CameraControlledByAnother_IsInUse()
{
    QCOMPARE(m_farm.Command("set 127.41.1.3 control-held 1"), QByteArray("ok"));
    const CompanionRun run = RunCompanion({"list", "--json"});
    QCOMPARE(run.Camera("127.41.1.3").value("access").toString(), QString("in use"));
    QCOMPARE(run.Camera("127.41.1.4").value("access").toString(), QString("free"));
}

void tst_Companion_Export::Export_EightCameras_WritesAFileEach()
{
    QStringList arguments = {"export", "--to", m_dir->path(), "--verbose", "--address"};
    for (int i = 1; i <= 8; ++i) {
        arguments << QString("127.41.1.%1").arg(i);
    }
    const CompanionRun run = RunCompanion(arguments);
    QVERIFY2(run.exitCode == 0, run.out + run.err);
    QCOMPARE(run.Lines().size(), 8);
    const QByteArray first = ReadFile(Out("SIM0001"));
    QVERIFY(first.startsWith("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\r\n<Features>\r\n"
                             "<DeviceModelName>SimCam-150</DeviceModelName>\r\n<Feature>\r\n"));
    QVERIFY(first.endsWith("</Feature>\r\n</Features>"));
    QVERIFY2(first.count("<Feature>") >= 80, QByteArray::number(first.count("<Feature>")));
    for (int i = 2; i <= 8; ++i) {
        QCOMPARE(ReadFile(Out(QString("SIM000%1").arg(i))), first); // fresh cameras have equal settings
    }
    QCOMPARE(QDir(m_dir->path()).entryList(QDir::Files | QDir::Hidden).size(), 8);
}

void tst_Companion_Export::Export_ByModel_TakesEveryCameraOfIt()
{
    const CompanionRun run =
        RunCompanion({"export", "--to", m_dir->path(), "--model", "SimCam-150", "--json"});
    for (int i = 1; i <= 8; ++i) {
        const QJsonObject camera = run.Camera(QString("127.41.1.%1").arg(i));
        QCOMPARE(camera.value("result").toString(), QString("ok"));
        QCOMPARE(camera.value("file").toString(), Out(QString("SIM000%1").arg(i)));
        QVERIFY(QFile::exists(camera.value("file").toString()));
    }
}

void tst_Companion_Export::Export_GermanLocale_WritesTheSameBytes()
{
    const QString address = "127.41.1.1";
    QCOMPARE(RunCompanion({"export", "--to", m_dir->path(), "--address", address}).exitCode, 0);
    const QByteArray plain = ReadFile(Out("SIM0001"));
    QVERIFY(QFile::remove(Out("SIM0001")));
    QCOMPARE(RunCompanion({"export", "--to", m_dir->path(), "--address", address},
                          {"LC_ALL=de_DE.UTF-8", "LANG=de_DE.UTF-8"})
                 .exitCode,
             0);
    QCOMPARE(ReadFile(Out("SIM0001")), plain);
}

void tst_Companion_Export::Export_TurkishLocale_WritesTheSameBytes()
{
    const QString address = "127.41.1.1";
    QCOMPARE(RunCompanion({"export", "--to", m_dir->path(), "--address", address}).exitCode, 0);
    const QByteArray plain = ReadFile(Out("SIM0001"));
    QVERIFY(QFile::remove(Out("SIM0001")));
    QCOMPARE(RunCompanion({"export", "--to", m_dir->path(), "--address", address},
                          {"LC_ALL=tr_TR.UTF-8", "LANG=tr_TR.UTF-8"})
                 .exitCode,
             0);
    QCOMPARE(ReadFile(Out("SIM0001")), plain);
}

void tst_Companion_Export::Export_LossyNetwork_WritesTheSameBytes()
{
    QCOMPARE(m_farm.Command("set 127.41.1.2 loss 1"), QByteArray("ok"));
    const CompanionRun run =
        RunCompanion({"export", "--to", m_dir->path(), "--address", "127.41.1.1", "127.41.1.2"});
    QVERIFY2(run.exitCode == 0, run.out + run.err);
    QCOMPARE(ReadFile(Out("SIM0002")), ReadFile(Out("SIM0001")));
}

void tst_Companion_Export::Export_MuteCamera_FailsAloneWithinItsDeadline()
{
    QCOMPARE(m_farm.Command("set 127.41.1.2 mute-after 5"), QByteArray("ok"));
    QElapsedTimer time;
    time.start();
    const CompanionRun run = RunCompanion(
        {"export", "--to", m_dir->path(), "--json", "--address", "127.41.1.1", "127.41.1.2", "127.41.1.3"});
    const qint64 elapsed = time.elapsed();
    QCOMPARE(run.exitCode, 1);
    QCOMPARE(run.Camera("127.41.1.1").value("result").toString(), QString("ok"));
    QCOMPARE(run.Camera("127.41.1.3").value("result").toString(), QString("ok"));
    QCOMPARE(run.Camera("127.41.1.2").value("result").toString(), QString("failed"));
    QCOMPARE(run.Camera("127.41.1.2").value("message").toString(),
             QString("Failed to export features.Failed to open device."));
    QVERIFY(!QFile::exists(Out("SIM0002")));
    QVERIFY2(elapsed < 10000, QByteArray::number(elapsed)); // 3 s on an idle machine
}

void tst_Companion_Export::Export_CameraControlledByAnother_FailsAlone()
{
    QCOMPARE(m_farm.Command("set 127.41.1.2 control-held 1"), QByteArray("ok"));
    const CompanionRun run =
        RunCompanion({"export", "--to", m_dir->path(), "--address", "127.41.1.1", "127.41.1.2"});
    QCOMPARE(run.exitCode, 1);
    QVERIFY(run.Lines().contains("failed  SimCam-150 SIM0002 127.41.1.2  "
                                 "Failed to export features.Failed to open device. (camera is in use)"));
    QVERIFY(QFile::exists(Out("SIM0001")));
    QVERIFY(!QFile::exists(Out("SIM0002")));
}

void tst_Companion_Export::Export_CameraIsBusyOnce_IsAskedAgain()
{
    QCOMPARE(m_farm.Command("set 127.41.1.2 status 0x8007 command=readreg times=1"), QByteArray("ok"));
    const CompanionRun run = RunCompanion({"export", "--to", m_dir->path(), "--address", "127.41.1.1"});
    QVERIFY2(run.exitCode == 0, run.out + run.err);
}

void tst_Companion_Export::Export_CameraNotFound_IsNamed()
{
    const CompanionRun run = RunCompanion(
        {"export", "--to", m_dir->path(), "--address", "127.41.1.1", "127.41.9.9", "--search-ms", "300"});
    QCOMPARE(run.exitCode, 1);
    QVERIFY2(run.Lines().contains("failed  address 127.41.9.9  not found"), run.out);
    QVERIFY(QFile::exists(Out("SIM0001")));
}

void tst_Companion_Export::Export_MissingFolder_IsReportedAndNotMade()
{
    const QString folder = m_dir->path() + "/none";
    const CompanionRun run = RunCompanion({"export", "--to", folder, "--address", "127.41.1.1", "--json"});
    QCOMPARE(run.exitCode, 1);
    QCOMPARE(run.Camera("127.41.1.1").value("message").toString(),
             QString("Failed to export features.Failed to open File."));
    QVERIFY(!QFile::exists(folder));
}

void tst_Companion_Export::Export_FileCannotBeWritten_IsReported()
{
    // A folder of the file's name stands in for a file that cannot be written: it stops root too.
    QVERIFY(QDir().mkpath(Out("SIM0001")));
    const CompanionRun run =
        RunCompanion({"export", "--to", m_dir->path(), "--address", "127.41.1.1", "127.41.1.2", "--json"});
    QCOMPARE(run.exitCode, 1);
    QCOMPARE(run.Camera("127.41.1.1").value("message").toString(),
             QString("Failed to export features.Failed to open File."));
    QCOMPARE(run.Camera("127.41.1.2").value("result").toString(), QString("ok"));
}

void tst_Companion_Export::Usage_Wrong_IsToldInOneLineWithCode2()
{
    const CompanionRun run = RunCompanion({"export", "--all"});
    QCOMPARE(run.exitCode, 2);
    QVERIFY(run.out.isEmpty());
    QCOMPARE(run.err.count('\n'), 1);
    QVERIFY(run.err.contains("usage: kx-features export --to DIR"));
}

QTEST_GUILESS_MAIN(tst_Companion_Export)
#include "tst_companion_export.moc"
