#include <QtTest>

#include "camerafarm.h"
#include "companion.h"

#include <csignal>

#include <unistd.h>

// What is left of a batch that the user, or the system, ends in the middle.
class tst_Companion_Interrupt : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();

    void Interrupt_DuringExport_ReleasesCamerasAndLeavesNoHalfFile_data();
    void Interrupt_DuringExport_ReleasesCamerasAndLeavesNoHalfFile();

    void Interrupt_WholeProcessGroup_CamerasAreFreeAtOnce();

private:
    QStringList Exporting() const;
    bool AllFree();

    CameraFarm m_farm;
    QScopedPointer<QTemporaryDir> m_dir;
};

static const int kCameras = 6;

void tst_Companion_Interrupt::initTestCase()
{
    if (!CameraFarm::IsInstalled()) {
        QSKIP("kx-camera-farm is not built");
    }
    // Slow cameras: a batch takes seconds, so it can be met in the middle.
    QVERIFY2(m_farm.Start({"--count", QString::number(kCameras), "--first-address", "127.43.1.1",
                           "--latency-us", "10000"}),
             qPrintable(m_farm.Error()));
}

void tst_Companion_Interrupt::init()
{
    m_dir.reset(new QTemporaryDir);
    QVERIFY(m_dir->isValid());
}

QStringList tst_Companion_Interrupt::Exporting() const
{
    QStringList arguments = {"export", "--to", m_dir->path(), "--address"};
    for (int i = 1; i <= kCameras; ++i) {
        arguments << QString("127.43.1.%1").arg(i);
    }
    return arguments;
}

bool tst_Companion_Interrupt::AllFree()
{
    const CompanionRun list = RunCompanion({"list", "--json", "--search-ms", "200"});
    for (int i = 1; i <= kCameras; ++i) {
        if (list.Camera(QString("127.43.1.%1").arg(i)).value("access").toString() != "free") {
            return false;
        }
    }
    return true;
}

void tst_Companion_Interrupt::Interrupt_DuringExport_ReleasesCamerasAndLeavesNoHalfFile_data()
{
    QTest::addColumn<int>("signal");
    QTest::addColumn<int>("exitCode");
    QTest::newRow("Ctrl-C") << SIGINT << 130;
    QTest::newRow("terminated") << SIGTERM << 130;
    QTest::newRow("killed") << SIGKILL << -1;
}

void tst_Companion_Interrupt::Interrupt_DuringExport_ReleasesCamerasAndLeavesNoHalfFile()
{
    QFETCH(int, signal);
    QFETCH(int, exitCode);
    QProcess process;
    StartCompanion(process, Exporting());
    QTRY_VERIFY_WITH_TIMEOUT(!AllFree(), 20000); // the batch has cameras open
    kill(static_cast<pid_t>(process.processId()), signal);
    QVERIFY(process.waitForFinished(10000));
    QCOMPARE(process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1, exitCode);

    QTRY_VERIFY_WITH_TIMEOUT(AllFree(), 20000);
    const QStringList files = QDir(m_dir->path()).entryList(QDir::Files);
    for (const QString &file : files) {
        QVERIFY2(ReadFile(m_dir->path() + "/" + file).endsWith("</Features>"), qPrintable(file));
    }
    if (exitCode == 130) {
        QCOMPARE(process.readAllStandardOutput().count("interrupted"), kCameras - files.size());
    }
}

namespace {

/// A program that is a process group of its own, as one that a shell has started.
class GroupLeader : public QProcess
{
protected:
    void setupChildProcess() override { setpgid(0, 0); }
};

} // namespace

// As Ctrl-C in a terminal: the signal reaches the helper processes, too, unless they are out of its way. A
// camera that was not released would be free only when its heartbeat has run out, 3 s after the last word to
// it.
void tst_Companion_Interrupt::Interrupt_WholeProcessGroup_CamerasAreFreeAtOnce()
{
    GroupLeader process;
    StartCompanion(process, Exporting());
    QTRY_VERIFY_WITH_TIMEOUT(!AllFree(), 20000);
    QElapsedTimer timer;
    timer.start();
    QCOMPARE(kill(-static_cast<pid_t>(process.processId()), SIGINT), 0);
    QVERIFY(process.waitForFinished(10000));
    QCOMPARE(process.exitCode(), 130);
    bool bFree = false;
    while (!bFree && timer.elapsed() < 2500)
        bFree = AllFree();
    QVERIFY2(bFree, qPrintable(QString::number(timer.elapsed())));
}

QTEST_GUILESS_MAIN(tst_Companion_Interrupt)
#include "tst_companion_interrupt.moc"
