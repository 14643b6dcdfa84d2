#include <QtTest>

#include "faultbatch.h"

// Cameras that introduce themselves badly: answers to the search, and names that end in file names.
class tst_Faults_Discovery : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();

    void Export_FaultySearchAnswer_IsFoundAllTheSame_data();
    void Export_FaultySearchAnswer_IsFoundAllTheSame();
    void Export_UnreadableSearchAnswer_IsNotFoundAlone_data();
    void Export_UnreadableSearchAnswer_IsNotFoundAlone();
    void Export_BadName_StaysInTheFolder_data();
    void Export_BadName_StaysInTheFolder();
    void Export_SameFileName_FailsBothAndWritesNeither_data();
    void Export_SameFileName_FailsBothAndWritesNeither();
    void Export_SameFileNameOverwritten_LeavesOneWholeFile();
    void Export_AddressOfAnotherCamera_FailsAlone();
    void Import_AddressOfAnotherCamera_SetsNothingThere();
    void Export_AllWithOneUnreachable_SaysSoAndDoesNotOpenIt();
    void Import_BroadcastAddress_SetsNothing_data();
    void Import_BroadcastAddress_SetsNothing();

private:
    FaultBatch m_batch{"127.50.5."};
};

void tst_Faults_Discovery::initTestCase()
{
    if (!CameraFarm::IsInstalled())
        QSKIP("kx-camera-farm is not built");
    QCOMPARE(m_batch.Prepare(), QString());
}

void tst_Faults_Discovery::Export_FaultySearchAnswer_IsFoundAllTheSame_data()
{
    QTest::addColumn<QByteArray>("fault");
    QTest::newRow("bytes behind the end") << QByteArray("discovery-oversized 1000");
    QTest::newRow("as large as datagrams get") << QByteArray("discovery-oversized 60000");
    QTest::newRow("endless") << QByteArray("discovery-endless-ms 1");
    QTest::newRow("MAC address of another camera") << QByteArray("mac 02:00:7f:32:05:01");
    QTest::newRow("user name no text") << QByteArray("user-name \\xff\\xfe/..");
    QTest::newRow("user name of a serial number") << QByteArray("user-name SIM0001");
}

void tst_Faults_Discovery::Export_FaultySearchAnswer_IsFoundAllTheSame()
{
    QFETCH(QByteArray, fault);
    QCOMPARE(m_batch.Play(fault, FaultBatch::Wanted::SameFile), QString());
}

void tst_Faults_Discovery::Export_UnreadableSearchAnswer_IsNotFoundAlone_data()
{
    QTest::addColumn<QByteArray>("fault");
    QTest::newRow("none") << QByteArray("discovery-mute 1");
    QTest::newRow("cut to the header") << QByteArray("discovery-short 8");
    QTest::newRow("cut in the payload") << QByteArray("discovery-short 100");
}

void tst_Faults_Discovery::Export_UnreadableSearchAnswer_IsNotFoundAlone()
{
    QFETCH(QByteArray, fault);
    QCOMPARE(m_batch.StartFarm(), QString());
    QCOMPARE(m_batch.SetFault(fault), QString());
    const FaultBatch::Outcome outcome = m_batch.Export();
    QCOMPARE(outcome.run.exitCode, 1);
    QVERIFY2(outcome.run.out.contains("address 127.50.5.2 not found"), outcome.run.out);
    QCOMPARE(outcome.files.size(), 2);
    QCOMPARE(m_batch.CheckNeighbours(outcome), QString());
}

void tst_Faults_Discovery::Export_BadName_StaysInTheFolder_data()
{
    QTest::addColumn<QByteArray>("setting");
    QTest::addColumn<QString>("file");
    const auto row = [](const char *name, const char *setting, const char *file) {
        QTest::newRow(name) << QByteArray(setting) << QString(file);
    };
    row("serial is the parent folder", "serial ..", "SimCam-150_...kfb");
    row("serial leads out", "serial ../../x", "SimCam-150_.._.._x.kfb");
    row("serial is absolute", "serial /tmp/x", "SimCam-150__tmp_x.kfb");
    row("serial holds a NUL", "serial a\\x00b", "SimCam-150_a.kfb");
    row("serial is no text", "serial \\x01\\x02\\xff\\xfe", "SimCam-150_____.kfb");
    row("serial breaks the line", "serial a\\x0ab", "SimCam-150_a_b.kfb");
    row("serial turns the direction", "serial a\\xe2\\x80\\xaeb", "SimCam-150_a_b.kfb");
    row("serial with a space of no width", "serial a\\xe2\\x80\\x8bb", "SimCam-150_a_b.kfb");
    row("serial is empty", "serial ", "SimCam-150_.kfb");
    row("serial without a NUL", "serial 0123456789ABCDEF", "SimCam-150_0123456789ABCDEF.kfb");
    row("model is the parent folder", "model ..", ".._SIM0002.kfb");
    row("model leads out", "model ../x", ".._x_SIM0002.kfb");
    row("model leads out the other way", "model ..\\\\..\\\\x", ".._.._x_SIM0002.kfb");
    row("model is empty", "model ", "_SIM0002.kfb");
}

void tst_Faults_Discovery::Export_BadName_StaysInTheFolder()
{
    QFETCH(QByteArray, setting);
    QFETCH(QString, file);
    QCOMPARE(m_batch.StartFarm(), QString());
    QCOMPARE(m_batch.SetFault(setting), QString());
    const QTemporaryDir parent;
    const QString folder = parent.filePath("one/two");
    QVERIFY(QDir().mkpath(folder));

    const CompanionRun run =
        RunCompanion({"export", "--to", folder, "--json", "--address", m_batch.Faulty(), m_batch.Address(1)});
    QCOMPARE(run.exitCode, 0);
    const auto inside = [](const QString &path) {
        return QDir(path).entryList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot);
    };
    const QStringList files = inside(folder);
    QCOMPARE(files.size(), 2);
    QVERIFY2(files.contains(file), qPrintable(files.join(QLatin1Char(32))));
    QCOMPARE(inside(parent.filePath("one")), QStringList("two"));
    QCOMPARE(inside(parent.path()), QStringList("one"));
    QVERIFY(IsWhole(ReadFile(folder + '/' + file)));
    QCOMPARE(ReadFile(folder + "/SimCam-150_SIM0001.kfb"), m_batch.Reference());
    QVERIFY(!QFile::exists("/tmp/x.kfb"));
}

void tst_Faults_Discovery::Export_SameFileName_FailsBothAndWritesNeither_data()
{
    QTest::addColumn<QByteArrayList>("others"); // settings of the second camera
    QTest::addColumn<QByteArrayList>("own");    // and of the first
    QTest::newRow("same names") << QByteArrayList{"serial SIM0001"} << QByteArrayList();
    QTest::newRow("names that meet") << QByteArrayList{"model A_B", "serial C"}
                                     << QByteArrayList{"model A", "serial B_C"};
}

void tst_Faults_Discovery::Export_SameFileName_FailsBothAndWritesNeither()
{
    QFETCH(QByteArrayList, others);
    QFETCH(QByteArrayList, own);
    QCOMPARE(m_batch.StartFarm(), QString());
    for (const QByteArray &setting : others)
        QCOMPARE(m_batch.SetFault(setting), QString());
    for (const QByteArray &setting : own)
        QVERIFY(m_batch.Farm().Do("set 127.50.5.1 " + QString::fromUtf8(setting)));
    const FaultBatch::Outcome outcome = m_batch.Export();
    QCOMPARE(outcome.run.exitCode, 1);
    const QString first = outcome.run.Camera(m_batch.Address(1)).value("message").toString();
    const QString second = outcome.run.Camera(m_batch.Address(2)).value("message").toString();
    QVERIFY2(first.startsWith("127.50.5.1 and 127.50.5.2 have the same file"), qPrintable(first));
    QVERIFY2(second.startsWith("127.50.5.2 and 127.50.5.1 have the same file"), qPrintable(second));
    QCOMPARE(outcome.run.Camera(m_batch.Address(3)).value("result").toString(), QString("ok"));
    QCOMPARE(outcome.files.keys(), QStringList("SimCam-150_SIM0003.kfb"));
    QCOMPARE(outcome.files.first(), m_batch.Reference());
}

void tst_Faults_Discovery::Export_SameFileNameOverwritten_LeavesOneWholeFile()
{
    QCOMPARE(m_batch.StartFarm(), QString());
    QCOMPARE(m_batch.SetFault("serial SIM0001"), QString());
    const FaultBatch::Outcome outcome = m_batch.Export({"--overwrite"});
    QCOMPARE(outcome.run.exitCode, 0);
    QCOMPARE(outcome.files.size(), 2);
    QCOMPARE(m_batch.CheckNeighbours(outcome), QString());
}

void tst_Faults_Discovery::Export_AddressOfAnotherCamera_FailsAlone()
{
    QCOMPARE(m_batch.StartFarm(), QString());
    QCOMPARE(m_batch.SetFault("discovery-address 127.50.5.1"), QString());
    const FaultBatch::Outcome outcome = m_batch.Export();

    QCOMPARE(outcome.run.exitCode, 1);
    QVERIFY2(outcome.run.out.contains("address 127.50.5.2 not found"), outcome.run.out);
    QCOMPARE(outcome.files.size(), 2);
    QCOMPARE(m_batch.CheckNeighbours(outcome), QString());
    QCOMPARE(m_batch.CheckLeftovers(outcome), QString());
    QCOMPARE(m_batch.CheckFreeAgain(), QString());
}

void tst_Faults_Discovery::Import_AddressOfAnotherCamera_SetsNothingThere()
{
    QCOMPARE(m_batch.StartFarm(), QString());
    QCOMPARE(m_batch.SetFault("discovery-address 127.50.5.1"), QString());
    const QTemporaryDir folder;
    QFile file(folder.filePath("import.kfb"));
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(WithValue(m_batch.Reference(), "Width", "320"));
    file.close();

    // The second camera alone, whose record leads to the first.
    const CompanionRun run = RunCompanion({"import", file.fileName(), "--address", m_batch.Faulty()});

    QCOMPARE(run.exitCode, 1);
    m_batch.Farm().Command("clear *");
    const FaultBatch::Outcome after = m_batch.Export();
    QCOMPARE(after.files.size(), 3);
    for (const QByteArray &content : after.files)
        QCOMPARE(content, m_batch.Reference());
}

void tst_Faults_Discovery::Export_AllWithOneUnreachable_SaysSoAndDoesNotOpenIt()
{
    QCOMPARE(m_batch.StartFarm(), QString());
    QCOMPARE(m_batch.SetFault("mute 1"), QString());
    const QTemporaryDir folder;

    const CompanionRun run = RunCompanion({"export", "--to", folder.path(), "--json", "--all"});

    QCOMPARE(run.exitCode, 1);
    const QJsonObject row = run.Camera(m_batch.Faulty());
    QCOMPARE(row.value("result").toString(), QString("failed"));
    QCOMPARE(row.value("message").toString(),
             QString("Not opened: in another network, or without an answer."));
    for (const int camera : {1, 3}) {
        const QString file = QStringLiteral("/SimCam-150_SIM000%1.kfb").arg(camera);
        QCOMPARE(ReadFile(folder.path() + file), m_batch.Reference());
    }
    QCOMPARE(QDir(folder.path()).entryList(QDir::Files).size(), 2);
}

void tst_Faults_Discovery::Import_BroadcastAddress_SetsNothing_data()
{
    QTest::addColumn<QString>("address");
    QTest::newRow("of every network") << "255.255.255.255";
    QTest::newRow("of the network here") << "127.255.255.255";
    QTest::newRow("multicast") << "224.0.0.1";
    QTest::newRow("none") << "0.0.0.0";
}

void tst_Faults_Discovery::Import_BroadcastAddress_SetsNothing()
{
    QFETCH(QString, address);
    QCOMPARE(m_batch.StartFarm(), QString());
    const QTemporaryDir folder;
    QFile file(folder.filePath("import.kfb"));
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(WithValue(m_batch.Reference(), "Width", "320"));
    file.close();

    const CompanionRun run = RunCompanion({"import", file.fileName(), "--address", address});

    QCOMPARE(run.exitCode, 1);
    const FaultBatch::Outcome after = m_batch.Export();
    QCOMPARE(after.files.size(), 3);
    for (const QByteArray &content : after.files)
        QCOMPARE(content, m_batch.Reference());
}

QTEST_GUILESS_MAIN(tst_Faults_Discovery)
#include "tst_faults_discovery.moc"
