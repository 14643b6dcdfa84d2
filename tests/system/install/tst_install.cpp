#include <QtTest>

#include <QProcess>
#include <QTemporaryDir>

#include <camerafarm.h>

class tst_Install : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void Batch_FromTheInstallation_UsesOnlyWhatIsThere();
    void Window_FromTheInstallation_FindsItsFiles();

private:
    QString Installed(const QString &strName) const { return m_prefix.filePath(strName); }

    QTemporaryDir m_prefix;
};

namespace {

const int kLimitMs = 60000;

/// Every file of the build folder that a process has mapped or open.
QStringList BuildFilesOf(qint64 processId)
{
    QFile maps(QStringLiteral("/proc/%1/maps").arg(processId));
    if (!maps.open(QIODevice::ReadOnly))
        return {QStringLiteral("no maps")};
    QStringList listFiles;
    const QList<QByteArray> lines = maps.readAll().split('\n');
    for (const QByteArray &line : lines) {
        if (line.contains(PROJECT_BINARY_DIR "/"))
            listFiles.append(QString::fromUtf8(line));
    }
    return listFiles;
}

} // namespace

void tst_Install::initTestCase()
{
    QProcess install;
    install.start(CMAKE_PROGRAM, {"--install", PROJECT_BINARY_DIR, "--prefix", m_prefix.path()});
    QVERIFY(install.waitForFinished(kLimitMs));
    QVERIFY2(install.exitCode() == 0, install.readAllStandardError().constData());
}

void tst_Install::Batch_FromTheInstallation_UsesOnlyWhatIsThere()
{
    CameraFarm farm;
    QVERIFY2(farm.Start({"--count", "1", "--first-address", "127.64.1.1"}), qPrintable(farm.Error()));
    const QTemporaryDir folder;
    QProcess companion;
    companion.start(Installed("bin/kx-features"),
                    {"export", "--to", folder.path(), "--address", "127.64.1.1"});
    QVERIFY(companion.waitForFinished(kLimitMs));
    QVERIFY2(companion.exitCode() == 0, companion.readAllStandardError().constData());
    QCOMPARE(QDir(folder.path()).entryList(QDir::Files), QStringList("SimCam-150_SIM0001.kfb"));
    // It does so with the helper that was installed, not with the one of the build folder.
    QVERIFY(QFile::remove(Installed("libexec/kx-camera-session")));
    companion.start();
    QVERIFY(companion.waitForFinished(kLimitMs));
    QCOMPARE(companion.exitCode(), 1);
}

void tst_Install::Window_FromTheInstallation_FindsItsFiles()
{
    QTemporaryDir home;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert("HOME", home.path());
    environment.insert("XDG_CONFIG_HOME", home.path());
    QProcess window;
    window.setProcessEnvironment(environment);
    window.start(Installed("bin/Lumo_ImportExportFeatures"), {});
    QVERIFY(window.waitForStarted(kLimitMs));
    const QString strMaps = QStringLiteral("/proc/%1/maps").arg(window.processId());
    const auto hasMapped = [&](const char *pName) {
        QFile maps(strMaps);
        return maps.open(QIODevice::ReadOnly) && maps.readAll().contains(Installed(pName).toUtf8());
    };
    const auto isUp = [&] {
        return hasMapped("lib/libDevListMgr.so") &&
               hasMapped("share/lumo-import-export-features/rcc/lumo.rcc");
    };
    QTRY_VERIFY_WITH_TIMEOUT(isUp() || window.state() == QProcess::NotRunning, kLimitMs);
    QVERIFY2(window.state() == QProcess::Running, "it ended by itself");
    QCOMPARE(BuildFilesOf(window.processId()), QStringList());
    window.kill();
    QVERIFY(window.waitForFinished(kLimitMs));
}

QTEST_GUILESS_MAIN(tst_Install)
#include "tst_install.moc"
