#include <QtTest>

#include <csignal>
#include <fcntl.h>
#include <sys/resource.h>

#include <process/processsetup.h>

#include "inchild.h"

// Each case in a process of its own, because what is set up holds for the rest of a process.
class tst_ProcessSetup : public QObject
{
    Q_OBJECT

private slots:
    void OccupyStandardStreams_ClosedStream_IsNoOtherFile_data();
    void OccupyStandardStreams_ClosedStream_IsNoOtherFile();
    void OccupyStandardStreams_ClosedOutput_CannotBeWritten();
    void OccupyStandardStreams_OpenOutput_IsLeftAlone();
    void IgnoreSignalsOfFailedWrites_ReaderGone_WriteFails();
    void IgnoreSignalsOfFailedWrites_FileTooLarge_WriteFails();
    void RaiseLimits_SoftBelowHard_IsRaised_data();
    void RaiseLimits_SoftBelowHard_IsRaised();
    void Prepare_Program_HasAllOfThem();
};

void tst_ProcessSetup::OccupyStandardStreams_ClosedStream_IsNoOtherFile_data()
{
    QTest::addColumn<QVector<int>>("closed");
    QTest::newRow("input") << QVector<int>{0};
    QTest::newRow("output") << QVector<int>{1};
    QTest::newRow("error output") << QVector<int>{2};
    QTest::newRow("all") << QVector<int>{0, 1, 2};
}

void tst_ProcessSetup::OccupyStandardStreams_ClosedStream_IsNoOtherFile()
{
    QFETCH(QVector<int>, closed);
    const int number = InChild([&closed] {
        for (const int stream : closed) {
            close(stream);
        }
        ProcessSetup::OccupyStandardStreams();
        return open("/dev/null", O_RDONLY);
    });
    QVERIFY2(number > STDERR_FILENO, qPrintable(QString::number(number)));
}

void tst_ProcessSetup::OccupyStandardStreams_ClosedOutput_CannotBeWritten()
{
    QCOMPARE(InChild([] {
                 close(STDOUT_FILENO);
                 ProcessSetup::OccupyStandardStreams();
                 return write(STDOUT_FILENO, "x", 1) == -1 ? errno : 0;
             }),
             EBADF);
}

void tst_ProcessSetup::OccupyStandardStreams_OpenOutput_IsLeftAlone()
{
    int ends[2] = {-1, -1};
    QCOMPARE(pipe(ends), 0);
    QCOMPARE(InChild([&ends] {
                 dup2(ends[1], STDOUT_FILENO);
                 ProcessSetup::OccupyStandardStreams();
                 return write(STDOUT_FILENO, "x", 1) == 1 ? 0 : 1;
             }),
             0);
    close(ends[1]);
    char byte = 0;
    QCOMPARE(read(ends[0], &byte, 1), ssize_t{1});
    QCOMPARE(byte, 'x');
    close(ends[0]);
}

void tst_ProcessSetup::IgnoreSignalsOfFailedWrites_ReaderGone_WriteFails()
{
    QCOMPARE(InChild([] {
                 signal(SIGPIPE, SIG_DFL);
                 ProcessSetup::IgnoreSignalsOfFailedWrites();
                 int ends[2] = {-1, -1};
                 if (pipe(ends) != 0) {
                     return 0;
                 }
                 close(ends[0]);
                 return write(ends[1], "x", 1) == -1 ? errno : 0;
             }),
             EPIPE);
}

void tst_ProcessSetup::IgnoreSignalsOfFailedWrites_FileTooLarge_WriteFails()
{
    QTemporaryFile file;
    QVERIFY(file.open());
    QCOMPARE(InChild([&file] {
                 signal(SIGXFSZ, SIG_DFL);
                 ProcessSetup::IgnoreSignalsOfFailedWrites();
                 const rlimit none = {0, 0};
                 setrlimit(RLIMIT_FSIZE, &none);
                 return write(file.handle(), "x", 1) == -1 ? errno : 0;
             }),
             EFBIG);
}

void tst_ProcessSetup::RaiseLimits_SoftBelowHard_IsRaised_data()
{
    QTest::addColumn<int>("resource");
    QTest::addColumn<qulonglong>("soft");
    QTest::addColumn<qulonglong>("hard");
    QTest::addColumn<qulonglong>("raised");
    QTest::newRow("descriptors, to the hard limit") << int(RLIMIT_NOFILE) << 64ULL << 256ULL << 256ULL;
    QTest::newRow("descriptors, to enough") << int(RLIMIT_NOFILE) << 1024ULL << 18000ULL << 16384ULL;
    QTest::newRow("descriptors, never lower") << int(RLIMIT_NOFILE) << 17000ULL << 18000ULL << 17000ULL;
    QTest::newRow("processes") << int(RLIMIT_NPROC) << 50ULL << 60000ULL << 60000ULL;
}

void tst_ProcessSetup::RaiseLimits_SoftBelowHard_IsRaised()
{
    QFETCH(int, resource);
    QFETCH(qulonglong, soft);
    QFETCH(qulonglong, hard);
    QFETCH(qulonglong, raised);
    const auto which = static_cast<__rlimit_resource_t>(resource);
    rlimit own = {};
    QCOMPARE(getrlimit(which, &own), 0);
    if (own.rlim_max < hard) {
        QSKIP("the limits of this computer are too low");
    }
    QCOMPARE(InChild([=] {
                 const rlimit low = {soft, hard};
                 setrlimit(which, &low);
                 ProcessSetup::RaiseLimits();
                 rlimit now = {};
                 getrlimit(which, &now);
                 return now.rlim_cur == raised && now.rlim_max == hard ? 0 : 1;
             }),
             0);
}

void tst_ProcessSetup::Prepare_Program_HasAllOfThem()
{
    QCOMPARE(InChild([] {
                 signal(SIGPIPE, SIG_DFL);
                 const rlimit low = {64, 256};
                 setrlimit(RLIMIT_NOFILE, &low);
                 close(STDIN_FILENO);
                 ProcessSetup::Prepare();
                 rlimit now = {};
                 getrlimit(RLIMIT_NOFILE, &now);
                 const bool isOccupied = fcntl(STDIN_FILENO, F_GETFD) != -1;
                 return isOccupied && now.rlim_cur == 256 && signal(SIGPIPE, SIG_DFL) == SIG_IGN ? 0 : 1;
             }),
             0);
}

QTEST_GUILESS_MAIN(tst_ProcessSetup)
#include "tst_processsetup.moc"
