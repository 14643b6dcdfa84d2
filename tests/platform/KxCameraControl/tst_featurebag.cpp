#include <QFile>
#include <QTest>

#include <memory>

#include "KxCameraControl/kxerrors.h"
#include "features/featurebag.h"
#include "helper/camera.h"
#include "memorydevice.h"

using namespace kxcc;

namespace {

std::string Description()
{
    QFile file(QFINDTESTDATA("data/bag.xml"));
    return file.open(QIODevice::ReadOnly) ? file.readAll().toStdString() : std::string();
}

std::string Text(const std::vector<FeatureLine> &lines)
{
    std::string strText;
    for (const FeatureLine &line : lines)
        strText += line.strName + "=" + line.strValue + " ";
    return strText;
}

} // namespace

class tst_FeatureBag : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
    void Save_SelectedFeature_IsThereOncePerEntry();
    void Save_Selector_HasItsOwnValueAfterwards();
    void Save_IntegerSelector_HasEachOfItsValues_data();
    void Save_IntegerSelector_HasEachOfItsValues();
    void Load_WhatWasSaved_RestoresEveryEntry();
    void Load_ValueThatWaitsForALaterLine_IsSetInTheEnd();
    void Load_RefusedValue_OthersAreSet();
    void Load_SelectedValueThatWaits_IsSetUnderItsSelector();
    void Load_SelectorIsRefused_LeavesWhatItSelectsAlone();
    void Load_LineWithItsSelection_IsSetUnderIt();
    void Load_LineWithItsSelection_LeavesTheSelector_data();
    void Load_LineWithItsSelection_LeavesTheSelector();
    void Save_CameraIsLost_EndsAtOnce();

private:
    MemoryDevice *m_pDevice = nullptr;
    ArvGc *m_pGenICam = nullptr;
    std::string m_strText;
    std::unique_ptr<FeatureAccess> m_access;
    std::unique_ptr<FeatureBag> m_bag;
};

void tst_FeatureBag::init()
{
    m_pDevice = memory_device_new();
    m_strText = Description();
    m_pGenICam = MakeGenICam(ARV_DEVICE(m_pDevice), m_strText);
    QVERIFY(m_pGenICam != nullptr);
    m_access = std::make_unique<FeatureAccess>(m_pGenICam);
    m_bag = std::make_unique<FeatureBag>(m_pGenICam, *m_access, [] { return KX_CC_OK; });
    memory_device_put(m_pDevice, 0x100, 1); // Blue
    memory_device_put(m_pDevice, 0x200, 11);
    memory_device_put(m_pDevice, 0x204, 22);
    memory_device_put(m_pDevice, 0x300, 5);
    memory_device_put(m_pDevice, 0x304, 50);
}

void tst_FeatureBag::cleanup()
{
    m_bag.reset();
    m_access.reset();
    g_clear_object(&m_pGenICam);
    g_clear_object(&m_pDevice);
}

void tst_FeatureBag::Save_SelectedFeature_IsThereOncePerEntry()
{
    std::vector<FeatureLine> lines;
    QCOMPARE(m_bag->Save(lines), KX_CC_OK);
    QCOMPARE(Text(lines), std::string("GainSelector=Blue Limited=5 Limit=50 GainSelector=Red Gain=11 "
                                      "GainSelector=Blue Gain=22 GainSelector=Blue "));
}

void tst_FeatureBag::Save_Selector_HasItsOwnValueAfterwards()
{
    std::vector<FeatureLine> lines;
    memory_device_put(m_pDevice, 0x100, 0);
    QCOMPARE(m_bag->Save(lines), KX_CC_OK);
    QCOMPARE(memory_device_get(m_pDevice, 0x100), 0U);
}

void tst_FeatureBag::Save_IntegerSelector_HasEachOfItsValues_data()
{
    QTest::addColumn<QByteArray>("maximum");
    QTest::addColumn<int>("count");
    QTest::newRow("three") << QByteArray("1002") << 3;
    QTest::newRow("256") << QByteArray("1255") << 256;
    QTest::newRow("more, which are cut off") << QByteArray("9000") << 256;
}

void tst_FeatureBag::Save_IntegerSelector_HasEachOfItsValues()
{
    QFETCH(QByteArray, maximum);
    const std::string strText = QByteArray(R"(<RegisterDescription><Port Name="Device"/>
<Integer Name="Index"><Value>1001</Value><Min>1000</Min><Max>MAX</Max><pSelected>Entry</pSelected></Integer>
<Integer Name="Entry"><Streamable>Yes</Streamable><pValue>EntryReg</pValue></Integer>
<IntReg Name="EntryReg"><Address>0x200</Address><Length>4</Length><AccessMode>RW</AccessMode>
 <pPort>Device</pPort></IntReg></RegisterDescription>)")
                                    .replace("MAX", maximum)
                                    .toStdString();
    ArvGc *pGenICam = MakeGenICam(ARV_DEVICE(m_pDevice), strText);
    std::vector<FeatureLine> lines;
    int nCode = KX_CC_E_SESSION;
    {
        FeatureAccess access(pGenICam);
        nCode = FeatureBag(pGenICam, access, [] { return KX_CC_OK; }).Save(lines);
    }
    g_object_unref(pGenICam);
    QCOMPARE(nCode, KX_CC_OK);
    QTEST(static_cast<int>(lines.size() / 2), "count"); // and its own value at the end
    QCOMPARE(lines.front().strValue, std::string("1000"));
    QCOMPARE(lines.back().strValue, std::string("1001"));
}

void tst_FeatureBag::Load_WhatWasSaved_RestoresEveryEntry()
{
    std::vector<FeatureLine> lines;
    QCOMPARE(m_bag->Save(lines), KX_CC_OK);
    for (const uint32_t nAddress : {0x100U, 0x200U, 0x204U, 0x300U, 0x304U})
        memory_device_put(m_pDevice, nAddress, 0);

    QCOMPARE(m_bag->Load(lines), KX_CC_OK);

    QCOMPARE(memory_device_get(m_pDevice, 0x100), 1U);
    QCOMPARE(memory_device_get(m_pDevice, 0x200), 11U);
    QCOMPARE(memory_device_get(m_pDevice, 0x204), 22U);
    QCOMPARE(memory_device_get(m_pDevice, 0x300), 5U);
    QCOMPARE(memory_device_get(m_pDevice, 0x304), 50U);
}

void tst_FeatureBag::Load_ValueThatWaitsForALaterLine_IsSetInTheEnd()
{
    QCOMPARE(m_bag->Load({{"Limited", "70", {}}, {"Limit", "80", {}}}), KX_CC_OK);
    QCOMPARE(memory_device_get(m_pDevice, 0x300), 70U);
}

void tst_FeatureBag::Load_RefusedValue_OthersAreSet()
{
    QCOMPARE(m_bag->Load({{"Fixed", "1", {}}, {"Unknown", "1", {}}, {"Limit", "60", {}}}),
             KX_CC_E_FILE_PARTIAL);
    QCOMPARE(memory_device_get(m_pDevice, 0x304), 60U);
}

void tst_FeatureBag::Load_SelectedValueThatWaits_IsSetUnderItsSelector()
{
    QCOMPARE(m_bag->Load({{"GainSelector", "Red", {}},
                          {"Gain", "60", {}}, // until the limit is 80
                          {"GainSelector", "Blue", {}},
                          {"Gain", "33", {}},
                          {"Limit", "80", {}}}),
             KX_CC_OK);
    QCOMPARE(memory_device_get(m_pDevice, 0x200), 60U);
    QCOMPARE(memory_device_get(m_pDevice, 0x204), 33U);
    QCOMPARE(memory_device_get(m_pDevice, 0x100), 1U);
}

void tst_FeatureBag::Load_SelectorIsRefused_LeavesWhatItSelectsAlone()
{
    QCOMPARE(m_bag->Load({{"GainSelector", "Green", {}}, {"Gain", "33", {}}, {"Limited", "7", {}}}),
             KX_CC_E_FILE_PARTIAL);
    QCOMPARE(memory_device_get(m_pDevice, 0x204), 22U);
    QCOMPARE(memory_device_get(m_pDevice, 0x300), 7U);
    QCOMPARE(m_bag->Load({{"GainSelector", "Green", {}}, {"GainSelector", "Red", {}}, {"Gain", "33", {}}}),
             KX_CC_E_FILE_PARTIAL);
    QCOMPARE(memory_device_get(m_pDevice, 0x200), 33U);
}

void tst_FeatureBag::Load_LineWithItsSelection_IsSetUnderIt()
{
    QCOMPARE(m_bag->Load({{"Gain", "60", {{"GainSelector", "Red"}}},
                          {"Gain", "33", {{"GainSelector", "Blue"}}},
                          {"Limit", "80", {}},
                          {"Gain", "5", {{"GainSelector", "Red"}, {"GainSelector", "Green"}}}}),
             KX_CC_E_FILE_PARTIAL);
    QCOMPARE(memory_device_get(m_pDevice, 0x200), 60U);
    QCOMPARE(memory_device_get(m_pDevice, 0x204), 33U);
}

void tst_FeatureBag::Load_LineWithItsSelection_LeavesTheSelector_data()
{
    QTest::addColumn<QByteArray>("ownLine");
    QTest::addColumn<uint32_t>("after");
    QTest::newRow("as it was") << QByteArray() << 1U;
    QTest::newRow("as its own line says") << QByteArray("Red") << 0U;
}

void tst_FeatureBag::Load_LineWithItsSelection_LeavesTheSelector()
{
    QFETCH(QByteArray, ownLine);
    std::vector<FeatureLine> lines;
    if (!ownLine.isEmpty())
        lines.push_back({"GainSelector", ownLine.toStdString(), {}});
    lines.push_back({"Gain", "34", {{"GainSelector", "Blue"}}});
    lines.push_back({"Gain", "12", {{"GainSelector", "Red"}}});
    if (!ownLine.isEmpty())
        lines.push_back({"Gain", "35", {{"GainSelector", "Blue"}}});
    QCOMPARE(m_bag->Load(lines), KX_CC_OK);
    QTEST(memory_device_get(m_pDevice, 0x100), "after");
    QCOMPARE(memory_device_get(m_pDevice, 0x200), 12U);
}

void tst_FeatureBag::Save_CameraIsLost_EndsAtOnce()
{
    std::vector<FeatureLine> lines;
    memory_device_fail_at(m_pDevice, 0x300, ARV_DEVICE_ERROR_TIMEOUT);
    QCOMPARE(m_bag->Save(lines), KX_CC_E_TIMEOUT);
}

QTEST_APPLESS_MAIN(tst_FeatureBag)
#include "tst_featurebag.moc"
