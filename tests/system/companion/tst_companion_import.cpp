#include <QtTest>

#include "camerafarm.h"
#include "companion.h"

// kx-features import against simulated cameras: what arrives in them, and what is refused.
class tst_Companion_Import : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();

    void Import_IntoACameraWithOtherSettings_MakesTheExportsEqual();
    void Import_IntoSeveralCameras_ReachesEach();
    void Import_GermanLocale_SetsTheSameValues();
    void Import_MissingFile_IsReportedAndTheCameraUntouched();
    void Import_EmptyFile_IsReported();
    void Import_MalformedFile_IsReported();
    void Import_FileOfAnotherModel_IsRefusedAndTheCameraUntouched();
    void Import_RecordNotStreamable_IsRefusedBeforehandByName();
    void Import_FileWithoutRecords_Succeeds();

private:
    QByteArray ExportOf(int camera);
    CompanionRun Import(const QByteArray &file, const QStringList &cameras);
    static QString Address(int camera) { return QString("127.42.1.%1").arg(camera); }
    static QByteArray Changed(QByteArray file);
    void VerifyRefused(const QByteArray &file, const QString &message);

    CameraFarm m_farm;
    QScopedPointer<QTemporaryDir> m_dir;
};

void tst_Companion_Import::initTestCase()
{
    if (!CameraFarm::IsInstalled()) {
        QSKIP("kx-camera-farm is not built");
    }
    QVERIFY2(m_farm.Start({"--count", "4", "--first-address", "127.42.1.1"}), qPrintable(m_farm.Error()));
}

void tst_Companion_Import::init()
{
    m_dir.reset(new QTemporaryDir);
    QVERIFY(m_dir->isValid());
}

QByteArray tst_Companion_Import::ExportOf(int camera)
{
    const CompanionRun run =
        RunCompanion({"export", "--to", m_dir->path(), "--address", Address(camera), "--json"});
    return run.exitCode == 0 ? ReadFile(run.Camera(Address(camera)).value("file").toString()) : QByteArray();
}

CompanionRun tst_Companion_Import::Import(const QByteArray &file, const QStringList &cameras)
{
    QFile out(m_dir->path() + "/import.kfb");
    [&] { QVERIFY(out.open(QIODevice::WriteOnly)); }();
    out.write(file);
    out.close();
    return RunCompanion(QStringList({"import", out.fileName(), "--json", "--address"}) + cameras);
}

// Values of each type that the camera takes and that differ from those of a fresh camera.
QByteArray tst_Companion_Import::Changed(QByteArray file)
{
    file = WithValue(file, "Width", "320");
    file = WithValue(file, "ReverseX", ValueOf(file, "ReverseX") == "1" ? "0" : "1");
    file = WithValue(file, "ExposureTime", "1234.500000");
    return file;
}

void tst_Companion_Import::Import_IntoACameraWithOtherSettings_MakesTheExportsEqual()
{
    const QByteArray wanted = ExportOf(1);
    QVERIFY(!wanted.isEmpty());
    const CompanionRun change = Import(Changed(wanted), {Address(2)});
    QVERIFY2(change.exitCode == 0, change.out + change.err);
    const QByteArray changed = ExportOf(2);
    QCOMPARE(ValueOf(changed, "Width"), QByteArray("320"));
    QCOMPARE(ValueOf(changed, "ExposureTime"), QByteArray("1234.500000"));
    QVERIFY(ValueOf(changed, "ReverseX") != ValueOf(wanted, "ReverseX"));

    const CompanionRun restore = Import(wanted, {Address(2)});
    QVERIFY2(restore.exitCode == 0, restore.out + restore.err);
    QCOMPARE(ExportOf(2), wanted);
}

void tst_Companion_Import::Import_IntoSeveralCameras_ReachesEach()
{
    const QByteArray file = Changed(ExportOf(1));
    const CompanionRun run = Import(file, {Address(2), Address(3), Address(4)});
    QVERIFY2(run.exitCode == 0, run.out + run.err);
    for (int camera = 2; camera <= 4; ++camera) {
        QCOMPARE(ExportOf(camera), file);
    }
}

void tst_Companion_Import::Import_GermanLocale_SetsTheSameValues()
{
    const QByteArray file = WithValue(ExportOf(1), "ExposureTime", "2345.500000");
    QFile out(m_dir->path() + "/import.kfb");
    QVERIFY(out.open(QIODevice::WriteOnly));
    out.write(file);
    out.close();
    const CompanionRun run =
        RunCompanion({"import", out.fileName(), "--address", Address(3)}, {"LC_ALL=de_DE.UTF-8"});
    QCOMPARE(run.exitCode, 0);
    QCOMPARE(ValueOf(ExportOf(3), "ExposureTime"), QByteArray("2345.500000"));
}

void tst_Companion_Import::VerifyRefused(const QByteArray &file, const QString &message)
{
    const QByteArray before = ExportOf(4);
    const CompanionRun run = Import(file, {Address(4)});
    QCOMPARE(run.exitCode, 1);
    QCOMPARE(run.Camera(Address(4)).value("message").toString(), message);
    QCOMPARE(ExportOf(4), before);
}

void tst_Companion_Import::Import_MissingFile_IsReportedAndTheCameraUntouched()
{
    const QByteArray before = ExportOf(4);
    const CompanionRun run =
        RunCompanion({"import", m_dir->path() + "/none.kfb", "--address", Address(4), "--json"});
    QCOMPARE(run.exitCode, 1);
    QCOMPARE(run.Camera(Address(4)).value("message").toString(),
             QString("Failed to import features.Failed to open xml."));
    QCOMPARE(ExportOf(4), before);
}

void tst_Companion_Import::Import_EmptyFile_IsReported()
{
    VerifyRefused("", "Failed to import features.Failed to open xml.");
}

void tst_Companion_Import::Import_MalformedFile_IsReported()
{
    VerifyRefused(Changed(ExportOf(1)).chopped(20), "Failed to import features.Failed to load xml.");
}

void tst_Companion_Import::Import_FileOfAnotherModel_IsRefusedAndTheCameraUntouched()
{
    QByteArray file = Changed(ExportOf(1));
    file.replace("<DeviceModelName>SimCam-150<", "<DeviceModelName>simcam-150<");
    VerifyRefused(file, "Failed to import features. Camera models mismatch.");
}

void tst_Companion_Import::Import_RecordNotStreamable_IsRefusedBeforehandByName()
{
    QByteArray file = Changed(ExportOf(1));
    const int width = file.indexOf("<Name>Width</Name>");
    const int streamable = file.indexOf("<Streamable>Yes<", width);
    file.replace(streamable, 16, "<Streamable>No<");
    const QByteArray before = ExportOf(4);
    const CompanionRun run = Import(file, {Address(4)});
    QCOMPARE(run.exitCode, 2);
    QCOMPARE(run.err.count('\n'), 1);
    QVERIFY2(run.err.contains("\"Width\" is not streamable"), run.err);
    QCOMPARE(ExportOf(4), before);
}

void tst_Companion_Import::Import_FileWithoutRecords_Succeeds()
{
    QCOMPARE(
        Import("<Features><DeviceModelName>SimCam-150</DeviceModelName></Features>", {Address(4)}).exitCode,
        0);
    QCOMPARE(Import("<Features/>", {Address(4)}).exitCode, 0);
}

QTEST_GUILESS_MAIN(tst_Companion_Import)
#include "tst_companion_import.moc"
