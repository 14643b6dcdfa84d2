#include "device/descriptionfile.h"
#include "faultfixture.h"
#include "faults/hostiledescription.h"
#include "server/farm.h"

#include <QtTest>

using namespace KxFarm;

namespace {

const QByteArray kDiscover = QByteArray::fromHex("4201000200001234");

} // namespace

/// What a camera says of itself, and the file that says it for many.
class tst_FarmDescriptions : public QObject, private FaultFixture
{
    Q_OBJECT

private slots:
    void init() { Reset(); }

    void Description_EveryName_PublishesSomething();
    void Description_Zip_IsBroken_data();
    void Description_Zip_IsBroken();
    void DescriptionChanges_SecondOpen_FindsAnother();
    void Identity_AnyByte_GoesOutInDiscovery();
    void Configure_AllThenOne_OneWins();
    void Configure_WrongKey_NamesIt();
};

void tst_FarmDescriptions::Description_EveryName_PublishesSomething()
{
    const auto own = m_pCamera->Device().Model().pDescription;
    for (const QByteArray &name : HostileDescriptionNames()) {
        const auto pDescription = MakeHostileDescription(name, m_pCamera->Device().Model());
        QVERIFY2(pDescription, name.constData());
        QVERIFY2(pDescription->url != own->url || pDescription->content != own->content, name.constData());
    }
    QVERIFY(HostileDescriptionNames().size() >= 28);
}

void tst_FarmDescriptions::Description_Zip_IsBroken_data()
{
    QTest::addColumn<QByteArray>("name");
    for (const char *name : {"zip-bad-directory", "zip-bad-header", "zip-bad-size", "zip-truncated",
                             "zip-encrypted", "zip-bomb"})
        QTest::newRow(name) << QByteArray(name);
}

void tst_FarmDescriptions::Description_Zip_IsBroken()
{
    QFETCH(QByteArray, name);
    QString error;

    const auto pDescription = MakeHostileDescription(name, m_pCamera->Device().Model());

    QVERIFY(LooksLikeZip(pDescription->content));
    QVERIFY(FirstFileOfZip(pDescription->content, &error).isNull());
}

void tst_FarmDescriptions::DescriptionChanges_SecondOpen_FindsAnother()
{
    QCOMPARE(Set("description-changes", "renamed"), QByteArray());
    const QByteArray first = m_pClient->Send("42010084 00080001 00000200 00000200");

    const QByteArray second = m_pClient->Send("42010084 00080001 00000200 00000200");

    QVERIFY(QByteArray::fromHex(first).contains("SimCam-150.zip"));
    QVERIFY(QByteArray::fromHex(second).contains("hostile.xml"));
}

void tst_FarmDescriptions::Identity_AnyByte_GoesOutInDiscovery()
{
    QCOMPARE(Set("serial", "a/b\\x01\\xff\\\\"), QByteArray());
    QCOMPARE(Set("model", QByteArray(64, 'M')), QByteArray());
    QCOMPARE(Set("mac", "02:11:22:33:44:55"), QByteArray());

    const Bytes bytes = m_pClient->SendBytes(kDiscover).at(0).bytes;

    const QByteArray ack(reinterpret_cast<const char *>(bytes.data()), static_cast<int>(bytes.size()));
    QCOMPARE(ack.mid(8 + 0xD8, 7), QByteArray("a/b\x01\xff\\\0", 7));
    QCOMPARE(ack.mid(8 + 0x68, 33), QByteArray(32, 'M') + "1"); // the next field follows at once
    QCOMPARE(ack.mid(8 + 0x0A, 6).toHex(), QByteArray("021122334455"));
}

void tst_FarmDescriptions::Configure_AllThenOne_OneWins()
{
    QString error;
    Farm farm;
    QVERIFY(farm.Populate(MakeBuiltinModel(&error), 3, 0x7F1E0901));

    QVERIFY2(farm.Configure(R"({"*": {"latency-us": 100, "user-name": "all"},
                                "127.30.9.2": {"latency-us": "700", "model": "Other"},
                                "SIM0003": {"write-clamp": true}})",
                            &error),
             qPrintable(error));

    QCOMPARE(farm.Execute("get 127.30.9.1 latency-us", TimePoint()), QByteArray("ok 100"));
    QCOMPARE(farm.Execute("get SIM0002 latency-us", TimePoint()), QByteArray("ok 700"));
    QCOMPARE(farm.Execute("get SIM0002 model", TimePoint()), QByteArray("ok Other"));
    QCOMPARE(farm.Execute("get SIM0003", TimePoint()), QByteArray("ok write-clamp=1; latency-us=100;"));
}

void tst_FarmDescriptions::Configure_WrongKey_NamesIt()
{
    QString error;
    Farm farm;
    QVERIFY(farm.Populate(MakeBuiltinModel(&error), 1, 0x7F1E0901));

    QVERIFY(!farm.Configure(R"({"*": {"latency": 100}})", &error));
    QVERIFY(error.contains("\"latency\""));
    QVERIFY(!farm.Configure("{", &error));
    QVERIFY(!farm.Configure(R"({"SIM9999": {}})", &error));
    QVERIFY(error.contains("SIM9999"));
}

QTEST_APPLESS_MAIN(tst_FarmDescriptions)
#include "tst_farmdescriptions.moc"
