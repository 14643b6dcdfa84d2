#include <QtTest>

#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>

#include <featurefile/featurefilereader.h>

#include "faultbatch.h"

// Import files that are no files, or hold more than any camera has.
class tst_Faults_ImportFile : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();

    void Import_NoFile_IsRefusedAtOnce_data();
    void Import_NoFile_IsRefusedAtOnce();
    void Import_ShellsPipe_SetsEveryCamera();
    void Import_TooMuchMarkup_TakesLittleMemory_data();
    void Import_TooMuchMarkup_TakesLittleMemory();
    void Import_LargestFile_TakesLittleMemory_data();
    void Import_LargestFile_TakesLittleMemory();

private:
    QStringList Addresses() const { return {m_batch.Address(1), m_batch.Address(2), m_batch.Address(3)}; }
    QString CheckValues(const QByteArray &width);

    FaultBatch m_batch{"127.50.22."};
};

namespace {

const char kHead[] = "<Features><M>SimCam-150</M>";
const char kTail[] = "</Features>";

QByteArray Record(const QByteArray &name, const QByteArray &type, const QByteArray &value)
{
    return "<Feature><Name>" + name + "</Name><Type>" + type + "</Type><Value>" + value +
           "</Value><Streamable>Yes</Streamable></Feature>";
}

QByteArray Attributes(int count)
{
    QByteArray attributes;
    for (int i = 0; i < count; ++i)
        attributes += " a" + QByteArray::number(i) + "=''";
    return attributes;
}

// kB of the largest child so far; not asked under AddressSanitizer, which keeps much memory of its own.
[[maybe_unused]] long LargestChild()
{
    rusage usage = {};
    getrusage(RUSAGE_CHILDREN, &usage);
    return usage.ru_maxrss;
}

} // namespace

void tst_Faults_ImportFile::initTestCase()
{
    if (!CameraFarm::IsInstalled())
        QSKIP("kx-camera-farm is not built");
    QCOMPARE(m_batch.Prepare(), QString());
}

// Empty when each camera's file is that of a fresh one but for Width.
QString tst_Faults_ImportFile::CheckValues(const QByteArray &width)
{
    const FaultBatch::Outcome outcome = m_batch.Export();
    const QByteArray expected = WithValue(m_batch.Reference(), "Width", width);
    const auto isExpected = [&expected](const QByteArray &file) { return file == expected; };
    return outcome.files.size() == 3 && std::all_of(outcome.files.begin(), outcome.files.end(), isExpected)
               ? QString()
               : "another file: " + QString::fromUtf8(outcome.run.out);
}

void tst_Faults_ImportFile::Import_NoFile_IsRefusedAtOnce_data()
{
    QTest::addColumn<unsigned int>("type");
    QTest::addColumn<QByteArray>("why");
    QTest::newRow("folder") << unsigned{S_IFDIR} << QByteArray("it is a folder");
    QTest::newRow("FIFO") << unsigned{S_IFIFO} << QByteArray("it is a FIFO");
    QTest::newRow("device") << unsigned{S_IFCHR} << QByteArray("it is a device or a socket");
}

void tst_Faults_ImportFile::Import_NoFile_IsRefusedAtOnce()
{
    QFETCH(unsigned int, type);
    QFETCH(QByteArray, why);
    const QTemporaryDir folder;
    const QString path = folder.filePath("import.kfb");
    // A device of its own, of the kind that gives zeros without end; elsewhere mknod() is root's alone.
    if (type == S_IFDIR)
        QVERIFY(QDir().mkdir(path));
    else if (mknod(QFile::encodeName(path).constData(), type | 0666U, type == S_IFCHR ? makedev(1, 5) : 0) !=
             0)
        QSKIP("such a file cannot be made here");
    const CompanionRun run = RunCompanion(QStringList{"import", path, "--address"} + Addresses());
    QCOMPARE(run.exitCode, 2);
    QCOMPARE(run.out, QByteArray());
    QCOMPARE(run.err, "kx-features: " + path.toUtf8() + " cannot be imported: " + why + '\n');
}

void tst_Faults_ImportFile::Import_ShellsPipe_SetsEveryCamera()
{
    QCOMPARE(m_batch.StartFarm(), QString());
    const QTemporaryDir folder;
    QFile file(folder.filePath("import.kfb"));
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(WithValue(m_batch.Reference(), "Width", "320"));
    file.close();
    QProcess shell;
    shell.start("bash",
                QStringList{"-c",
                            "file=$0; exec \"$1\" import <(sleep 0.2; cat \"$file\") --address \"${@:2}\"",
                            file.fileName(), PROJECT_BIN_DIR "/kx-features"} +
                    Addresses());
    if (!shell.waitForStarted())
        QSKIP("there is no bash");
    QVERIFY(shell.waitForFinished(60000));
    QVERIFY2(shell.exitCode() == 0, shell.readAllStandardOutput() + shell.readAllStandardError());
    QCOMPARE(CheckValues("320"), QString());
}

void tst_Faults_ImportFile::Import_TooMuchMarkup_TakesLittleMemory_data()
{
    QTest::addColumn<QByteArray>("file");
    const auto whole = [](const QByteArray &inside) { return kHead + inside + kTail; };
    QTest::newRow("15 MB of tiny elements") << whole(QByteArray("<a/>").repeated(15 << 18));
    QTest::newRow("tiny elements") << whole("<R>" + QByteArray("<a/>").repeated(1000000) + "</R>");
    QTest::newRow("attributes") << whole("<R" + Attributes(300000) + "/>");
    QTest::newRow("comments") << whole(QByteArray("<!---->").repeated(500000));
    QTest::newRow("16 MB of records") << whole(Record("Width", "Integer", "320").repeated(150000));
    QTest::newRow("a record too many")
        << whole(Record("Width", "Integer", "320").repeated(FeatureFile::kMostRecords + 1));
}

void tst_Faults_ImportFile::Import_TooMuchMarkup_TakesLittleMemory()
{
    QFETCH(QByteArray, file);
    QCOMPARE(m_batch.StartFarm(), QString());
    const FaultBatch::Outcome outcome = m_batch.Import(file);
    QCOMPARE(outcome.run.exitCode, 1);
    for (int camera = 1; camera <= 3; ++camera)
        QCOMPARE(outcome.run.Camera(m_batch.Address(camera)).value("message").toString(),
                 QString("Failed to import features.Failed to load xml."));
    QVERIFY2(outcome.nMilliseconds < FaultBatch::kLongestMs, QByteArray::number(outcome.nMilliseconds));
#if !defined(__SANITIZE_ADDRESS__)
    QVERIFY2(LargestChild() < 120L * 1024, QByteArray::number(static_cast<int>(LargestChild())));
#endif
    QCOMPARE(CheckValues(ValueOf(m_batch.Reference(), "Width")), QString());
}

void tst_Faults_ImportFile::Import_LargestFile_TakesLittleMemory_data()
{
    QTest::addColumn<QByteArray>("file");
    // Of a type that is never set: it is the file that counts here, not the cameras.
    const QByteArray last = Record("Width", "Integer", "320") + kTail;
    QByteArray records = kHead;
    const int length = FeatureFile::kLongestFile / FeatureFile::kMostRecords;
    for (int i = 1; i < FeatureFile::kMostRecords; ++i)
        records +=
            Record(QByteArray::number(i).rightJustified(length - Record("", "Text", "1").size() - 1, 'x'),
                   "Text", "1");
    QTest::newRow("records") << records + last;
    QByteArray nodes = "<Features" + Attributes(FeatureFile::kMostNodes - 10) + "><M>SimCam-150</M>";
    nodes += QByteArray(FeatureFile::kLongestFile - nodes.size() - last.size(), ' ');
    QTest::newRow("nodes") << nodes + last;
}

void tst_Faults_ImportFile::Import_LargestFile_TakesLittleMemory()
{
    QFETCH(QByteArray, file);
    QVERIFY(file.size() <= FeatureFile::kLongestFile && file.size() > FeatureFile::kLongestFile * 9 / 10);
    QCOMPARE(m_batch.StartFarm(), QString());
    const FaultBatch::Outcome outcome = m_batch.Import(file);
    QVERIFY2(outcome.run.exitCode == 0, outcome.run.out);
#if !defined(__SANITIZE_ADDRESS__)
    QVERIFY2(LargestChild() < 250L * 1024, QByteArray::number(static_cast<int>(LargestChild())));
#endif
    QCOMPARE(CheckValues("320"), QString());
}

QTEST_GUILESS_MAIN(tst_Faults_ImportFile)
#include "tst_faults_importfile.moc"
