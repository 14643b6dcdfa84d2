#include <QtTest>

#include "faultbatch.h"

// Imports of a file into cameras of which one refuses values, or fails on the way.
class tst_Faults_Import : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();

    void Import_FaultyWrites_OtherValuesAndCamerasAreSet_data();
    void Import_FaultyWrites_OtherValuesAndCamerasAreSet();
    void Import_CameraCorrectsValues_OthersAreSet_data();
    void Import_CameraCorrectsValues_OthersAreSet();
    void Import_FaultyAnswers_AllValuesAreSet_data();
    void Import_FaultyAnswers_AllValuesAreSet();
    void Import_CameraGoes_OtherCamerasAreSet_data();
    void Import_CameraGoes_OtherCamerasAreSet();
    void Import_ControlHeld_FailsAlone();

private:
    QByteArray Changed() const;
    QString Play(const QList<QByteArray> &faults, const QByteArray &file, const QByteArray &healthy,
                 QByteArray *pFaulty);
    QString Play(const QByteArray &fault, const QByteArray &file, QByteArray *pFaulty)
    {
        return Play(QList<QByteArray>{fault}, file, file, pFaulty);
    }

    FaultBatch m_batch{"127.50.6."};
};

void tst_Faults_Import::initTestCase()
{
    if (!CameraFarm::IsInstalled())
        QSKIP("kx-camera-farm is not built");
    QCOMPARE(m_batch.Prepare(), QString());
}

// Values that the cameras take and that differ from those of a fresh one.
QByteArray tst_Faults_Import::Changed() const
{
    QByteArray file = WithValue(m_batch.Reference(), "Width", "320");
    file = WithValue(file, "Height", "200");
    return WithValue(file, "ExposureTime", "1234.500000");
}

// Imports with the faults; then what the cameras have, without them. The faulty one's values go to *pFaulty,
// those of the others have to be `healthy`.
QString tst_Faults_Import::Play(const QList<QByteArray> &faults, const QByteArray &file,
                                const QByteArray &healthy, QByteArray *pFaulty)
{
    QString error = m_batch.StartFarm();
    for (const QByteArray &fault : faults) {
        if (error.isEmpty())
            error = m_batch.SetFault(fault);
    }
    if (!error.isEmpty())
        return error;
    const FaultBatch::Outcome import = m_batch.Import(file);
    if (import.run.exitCode != 0)
        return QString::fromUtf8(import.run.out + import.run.err);
    if (import.nMilliseconds > FaultBatch::kLongestMs)
        return QStringLiteral("it took %1 ms").arg(import.nMilliseconds);
    error = m_batch.CheckLeftovers(import);
    if (error.isEmpty())
        error = m_batch.CheckFreeAgain();
    if (!error.isEmpty())
        return error;
    const FaultBatch::Outcome after = m_batch.Export();
    *pFaulty = after.files.value("SimCam-150_SIM0002.kfb");
    for (const char *neighbour : {"SimCam-150_SIM0001.kfb", "SimCam-150_SIM0003.kfb"}) {
        if (after.files.value(neighbour) != healthy)
            return QStringLiteral("other values in %1").arg(neighbour);
    }
    return after.run.exitCode == 0 ? QString() : QString::fromUtf8(after.run.out);
}

void tst_Faults_Import::Import_FaultyWrites_OtherValuesAndCamerasAreSet_data()
{
    QTest::addColumn<QByteArray>("fault");
    QTest::addColumn<QByteArray>("feature"); // the one that does not get its value
    QTest::newRow("refused") << QByteArray("write-refused Width") << QByteArray("Width");
    QTest::newRow("read-only") << QByteArray("read-only Width") << QByteArray("Width");
    QTest::newRow("ignored") << QByteArray("write-ignored Width") << QByteArray("Width");
    QTest::newRow("unavailable") << QByteArray("unavailable Width") << QByteArray("Width");
    QTest::newRow("undone by a later one") << QByteArray("write-resets Width=Height") << QByteArray("Height");
}

void tst_Faults_Import::Import_FaultyWrites_OtherValuesAndCamerasAreSet()
{
    QFETCH(QByteArray, fault);
    QFETCH(QByteArray, feature);
    QByteArray faulty;
    QCOMPARE(Play(fault, Changed(), &faulty), QString());
    QCOMPARE(faulty, WithValue(Changed(), feature, ValueOf(m_batch.Reference(), feature)));
}

// The limits of the description are the SDK's. A camera moves what it is given when its own are narrower, or
// when a number lies between two steps, which healthy cameras here refuse.
void tst_Faults_Import::Import_CameraCorrectsValues_OthersAreSet_data()
{
    QTest::addColumn<QList<QByteArray>>("faults");
    QTest::addColumn<QByteArray>("width");   // in the file
    QTest::addColumn<QByteArray>("healthy"); // what the other cameras make of it
    QTest::addColumn<QByteArray>("faulty");
    const QByteArray before = ValueOf(m_batch.Reference(), "Width");
    // Halved with each of the two passes over the numbers, Height before Width.
    const QByteArray limit = QByteArray::number(before.toInt() / 4);
    QTest::newRow("to its limit") << QList<QByteArray>{"write-clamp 1", "write-moves-limit Height=Width"}
                                  << QByteArray("1200") << QByteArray("1200") << limit;
    QTest::newRow("to a step") << QList<QByteArray>{"write-round 1"} << QByteArray("642") << before
                               << QByteArray("640");
    QTest::newRow("to its limit, on a step")
        << QList<QByteArray>{"write-clamp 1", "write-round 1", "write-moves-limit Height=Width"}
        << QByteArray("1202") << before << limit;
}

void tst_Faults_Import::Import_CameraCorrectsValues_OthersAreSet()
{
    QFETCH(QList<QByteArray>, faults);
    QFETCH(QByteArray, width);
    QFETCH(QByteArray, healthy);
    QFETCH(QByteArray, faulty);
    QByteArray content;
    QCOMPARE(
        Play(faults, WithValue(Changed(), "Width", width), WithValue(Changed(), "Width", healthy), &content),
        QString());
    QCOMPARE(content, WithValue(Changed(), "Width", faulty));
}

void tst_Faults_Import::Import_FaultyAnswers_AllValuesAreSet_data()
{
    QTest::addColumn<QByteArray>("fault");
    QTest::newRow("answers twice") << QByteArray("duplicate 2");
    QTest::newRow("previous answer again") << QByteArray("late 1");
    QTest::newRow("slow") << QByteArray("latency-us 5000");
    QTest::newRow("1 % lost") << QByteArray("loss 1");
    QTest::newRow("pending") << QByteArray("pending-ack 3 2");
    QTest::newRow("busy for a while") << QByteArray("status 0x8007 after=100 times=5");
    QTest::newRow("an earlier value is undone") << QByteArray("write-resets Height=Width");
    QTest::newRow("limits move") << QByteArray("write-moves-limit Height=Width");
}

void tst_Faults_Import::Import_FaultyAnswers_AllValuesAreSet()
{
    QFETCH(QByteArray, fault);
    QByteArray faulty;
    QCOMPARE(Play(fault, Changed(), &faulty), QString());
    QCOMPARE(faulty, Changed());
}

void tst_Faults_Import::Import_CameraGoes_OtherCamerasAreSet_data()
{
    QTest::addColumn<QByteArray>("fault");
    QTest::newRow("silent") << QByteArray("mute-after 60");
    QTest::newRow("port closed") << QByteArray("port-closed-after 60");
    QTest::newRow("stolen") << QByteArray("control-stolen-after 60");
    QTest::newRow("restart") << QByteArray("reboot-after 60 300");
    QTest::newRow("pending for ever") << QByteArray("pending-ack forever after=60");
    QTest::newRow("all writes denied") << QByteArray("status 0x8006 command=writereg after=1");
}

// An import does not report what could not be set: the row says success.
void tst_Faults_Import::Import_CameraGoes_OtherCamerasAreSet()
{
    QFETCH(QByteArray, fault);
    QByteArray faulty;
    QCOMPARE(Play(fault, Changed(), &faulty), QString());
    QVERIFY(IsWhole(faulty));
}

void tst_Faults_Import::Import_ControlHeld_FailsAlone()
{
    QCOMPARE(m_batch.StartFarm(), QString());
    QCOMPARE(m_batch.SetFault("control-held 1"), QString());
    const FaultBatch::Outcome outcome = m_batch.Import(Changed());
    QCOMPARE(outcome.run.exitCode, 1);
    QCOMPARE(outcome.run.Camera(m_batch.Faulty()).value("message").toString(),
             QString("Failed to import features.Failed to open device."));
    QCOMPARE(outcome.run.Camera(m_batch.Address(1)).value("result").toString(), QString("ok"));
    QCOMPARE(outcome.run.Camera(m_batch.Address(3)).value("result").toString(), QString("ok"));
    QCOMPARE(m_batch.CheckFreeAgain(), QString());
}

QTEST_GUILESS_MAIN(tst_Faults_Import)
#include "tst_faults_import.moc"
