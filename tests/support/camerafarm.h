#ifndef TESTS_SUPPORT_CAMERAFARM_H
#define TESTS_SUPPORT_CAMERAFARM_H

#include <QByteArray>
#include <QProcess>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>

/// Simulated cameras for a test: one run of kx-camera-farm, ended with the object.
///
///     CameraFarm farm;
///     if (!farm.IsInstalled())
///         QSKIP("kx-camera-farm is not built");
///     QVERIFY2(farm.Start({"--count", "2", "--first-address", "127.31.1.1"}), qPrintable(farm.Error()));
///     QCOMPARE(farm.Command("set 127.31.1.2 mute 1"), QByteArray("ok"));
///
/// Needs no event loop. One thread. Each test program uses addresses of its own (127.30.x.y and so on), so
/// that programs run side by side.
class CameraFarm
{
public:
    CameraFarm() = default;
    ~CameraFarm();
    CameraFarm(const CameraFarm &) = delete;
    CameraFarm &operator=(const CameraFarm &) = delete;

    static QString Program();
    static bool IsInstalled();

    /// Starts the program with `arguments`, to which a control socket is added, and waits until it serves.
    /// False when it ended, or did not say so in 30 s; Error() tells what it wrote.
    bool Start(const QStringList &arguments);

    /// Ends it as SIGTERM does and waits for its end. False when it had to be killed or returned an error.
    bool Stop();

    /// Sends one line of the control protocol; returns the answer without line end, empty when the program
    /// does not answer in 10 s.
    QByteArray Command(const QByteArray &line);

    /// Whether Command() answers "ok"; other answers go to the test's log.
    bool Do(const QString &line);
    bool Set(const QString &who, const QString &key, const QString &value) ///< Do("set ...")
    {
        return Do(QStringLiteral("set %1 %2 %3").arg(who, key, value));
    }

    bool IsRunning() const { return m_process.state() == QProcess::Running; }
    qint64 ProcessId() const { return m_process.processId(); }
    int CameraCount() const { return m_nCameras; } ///< as its "ready N cameras" says
    QString Error() const { return m_strError; }

private:
    bool Connect();

    QTemporaryDir m_directory;
    QProcess m_process;
    QString m_strError;
    int m_nCameras = 0;
    int m_nSocket = -1;
};

#endif
