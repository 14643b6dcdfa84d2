#include "camerafarm.h"

#include <QtTest>

namespace {

/// Runs the program to its end.
int ExitCode(const QStringList &arguments, QByteArray *pErrors)
{
    QProcess process;
    process.start(CameraFarm::Program(), arguments);
    if (!process.waitForFinished(30000))
        return -1;
    *pErrors = process.readAllStandardError();
    return process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -2;
}

} // namespace

/// The program as a whole, from outside.
class tst_Program : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void Start_ThreeCameras_SaysReadyAndEndsOnSigterm();
    void Start_WrongUsage_OneLineAndTwo_data();
    void Start_WrongUsage_OneLineAndTwo();
    void Start_AddressInUse_OneLineAndOne();
    void Control_List_NamesEveryCamera();
};

void tst_Program::initTestCase()
{
    if (!CameraFarm::IsInstalled())
        QSKIP("kx-camera-farm is not built");
}

void tst_Program::Start_ThreeCameras_SaysReadyAndEndsOnSigterm()
{
    CameraFarm farm;
    QVERIFY2(farm.Start({"--count", "3", "--first-address", "127.30.1.1"}), qPrintable(farm.Error()));
    QCOMPARE(farm.CameraCount(), 3);
    QVERIFY(farm.Stop());
}

void tst_Program::Start_WrongUsage_OneLineAndTwo_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::newRow("unknown option") << QStringList{"--cameras", "3"};
    QTest::newRow("no value") << QStringList{"--count"};
    QTest::newRow("count zero") << QStringList{"--count", "0"};
    QTest::newRow("count no number") << QStringList{"--count", "three"};
    QTest::newRow("address of a network") << QStringList{"--first-address", "127.30.1.0"};
    QTest::newRow("address off loopback") << QStringList{"--first-address", "10.0.0.1"};
    QTest::newRow("negative latency") << QStringList{"--latency-us", "-1"};
}

void tst_Program::Start_WrongUsage_OneLineAndTwo()
{
    QFETCH(QStringList, arguments);
    QByteArray errors;

    QCOMPARE(ExitCode(arguments, &errors), 2);
    QCOMPARE(errors.count('\n'), 1);
}

void tst_Program::Start_AddressInUse_OneLineAndOne()
{
    CameraFarm farm;
    QVERIFY2(farm.Start({"--first-address", "127.30.2.1"}), qPrintable(farm.Error()));
    QByteArray errors;

    QCOMPARE(ExitCode({"--first-address", "127.30.2.1"}, &errors), 1);
    QCOMPARE(errors.count('\n'), 1);
    QVERIFY(errors.contains("127.30.2.1, UDP port 3956: the address is in use"));
}

void tst_Program::Control_List_NamesEveryCamera()
{
    CameraFarm farm;
    QVERIFY2(farm.Start({"--count", "3", "--first-address", "127.30.3.254"}), qPrintable(farm.Error()));

    QCOMPARE(farm.Command("list"),
             QByteArray("ok 3 127.30.3.254/SIM0001 127.30.4.1/SIM0002 127.30.4.2/SIM0003"));
}

QTEST_GUILESS_MAIN(tst_Program)
#include "tst_program.moc"
