#include <QtTest>

#include <KxCameraControl/kxcameracontrol.h>

#include <thread>
#include <vector>

#include "camerafarm.h"
#include "processuse.h"

// A hundred rounds of open, read and close in one process, with healthy and with faulty cameras.
class tst_Faults_Growth : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void OpenReadClose_ManyRounds_NothingGrows_data();
    void OpenReadClose_ManyRounds_NothingGrows();

private:
    static QString Address(int camera) { return QString("127.50.8.%1").arg(camera); }
    void Round() const;

    CameraFarm m_farm;
};

static const int kCameras = 4;

namespace {

// Opens, reads and closes; the results are other tests' business.
void UseCamera(const QByteArray &address)
{
    KX_CC_DEVICE_INFO info = {};
    void *hDevice = nullptr;
    if (KX_CC_FindDevice(address, 2000, &info) != KX_CC_OK || KX_CC_CreateHandle(&hDevice, &info) != KX_CC_OK)
        return;
    if (KX_CC_OpenDevice(hDevice, KX_CC_ACCESS_MODE_EXCLUSIVE, 0) == KX_CC_OK) {
        std::vector<unsigned char> text(1 << 20);
        unsigned int nSize = 0;
        KX_XML_GetGenICamXML(hDevice, text.data(), static_cast<unsigned int>(text.size()), &nSize);
        KX_CC_INT_VALUE value = {};
        for (const char *feature : {"Width", "Height", "NoSuchFeature"})
            KX_CC_GetIntValue(hDevice, feature, &value);
        KX_CC_SetIntValue(hDevice, "Width", 320);
        KX_CC_CloseDevice(hDevice);
    }
    KX_CC_DestroyHandle(hDevice);
}

} // namespace

void tst_Faults_Growth::initTestCase()
{
    if (!CameraFarm::IsInstalled())
        QSKIP("kx-camera-farm is not built");
    QVERIFY2(m_farm.Start({"--count", QString::number(kCameras), "--first-address", Address(1)}),
             qPrintable(m_farm.Error()));
}

void tst_Faults_Growth::Round() const
{
    std::vector<std::thread> threads;
    for (int camera = 1; camera <= kCameras; ++camera)
        threads.emplace_back(UseCamera, Address(camera).toLatin1());
    for (std::thread &thread : threads)
        thread.join();
}

void tst_Faults_Growth::OpenReadClose_ManyRounds_NothingGrows_data()
{
    QTest::addColumn<QList<QByteArray>>("faults"); // of the second, third and fourth camera
    QTest::addColumn<int>("rounds");
    using Faults = QList<QByteArray>;
    QTest::newRow("healthy") << Faults() << 100;
    QTest::newRow("refusing") << Faults{"control-held 1", "description deep", "status 0x8003 after=20"}
                              << 100;
    QTest::newRow("helpers crash") << Faults{"description length-negative", "description length-2gb",
                                             "description zip-bomb"}
                                   << 12;
    QTest::newRow("silent") << Faults{"mute 1", "mute-after 30", "port-closed-after 30"} << 5;
}

void tst_Faults_Growth::OpenReadClose_ManyRounds_NothingGrows()
{
    QFETCH(QList<QByteArray>, faults);
    QFETCH(int, rounds);
    QCOMPARE(m_farm.Command("clear *"), QByteArray("ok"));
    for (int i = 0; i < faults.size(); ++i)
        QCOMPARE(m_farm.Command("set " + Address(i + 2).toLatin1() + ' ' + faults.at(i)), QByteArray("ok"));

    // What is made once for the process, arenas of threads included, is there after some rounds.
    for (int i = 0; i < qMin(20, rounds / 2); ++i)
        Round();
    const ProcessUse before = UseOfThisProcess();
    for (int i = qMin(20, rounds / 2); i < rounds; ++i)
        Round();
    const ProcessUse after = UseOfThisProcess();

    QCOMPARE(after.nDescriptors, before.nDescriptors);
    QCOMPARE(after.nThreads, before.nThreads);
    QCOMPARE(after.nChildren, before.nChildren);
    qInfo("resident set: %lld kB, then %lld kB", before.nResidentKb, after.nResidentKb);
#if !defined(__SANITIZE_ADDRESS__) // it keeps what was freed
    QVERIFY2(after.nResidentKb < before.nResidentKb + 8192,
             qPrintable(QString("%1 kB, then %2 kB").arg(before.nResidentKb).arg(after.nResidentKb)));
#endif
}

QTEST_GUILESS_MAIN(tst_Faults_Growth)
#include "tst_faults_growth.moc"
