#include <QFile>
#include <QTest>

#include <clocale>
#include <memory>

#include "KxCameraControl/kxerrors.h"
#include "features/featureaccess.h"
#include "helper/camera.h"
#include "memorydevice.h"

using namespace kxcc;

namespace {

std::string Description()
{
    QFile file(QFINDTESTDATA("data/access.xml"));
    return file.open(QIODevice::ReadOnly) ? file.readAll().toStdString() : std::string();
}

} // namespace

class tst_FeatureAccess : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void GetInt_PlainRegister_CostsOneAccess();
    void GetInt_ChangedBehindOurBack_GivesTheCamerasValue();
    void GetInt_SignedRegister_GivesNegativeValue();
    void GetInt_BeyondThePattern_IsRefused_data();
    void GetInt_BeyondThePattern_IsRefused();
    void GetInt_NameOrTypeIsWrong_SaysWhich();
    void Access_Conditions_data();
    void Access_Conditions();
    void Find_BrokenPointers_data();
    void Find_BrokenPointers();
    void Find_LimitsThatDependOnEachOther_AreSound();
    void SetInt_PatternOfNegativeValue_WritesNegativeValue();
    void SetInt_SignForgottenInTheRegister_SetsWhatWasRead();
    void SetInt_LargePatternOfUnsignedFeature_WritesLargeValue();
    void SetInt_OutOfRange_IsRefusedBeforeTheCameraIsAsked();
    void SetEnum_ByNumber_WritesTheNumber();
    void SetEnum_EntryThatCannotBeChosen_IsRefused();
    void SetFloat_LimitRoundedToSinglePrecision_WritesTheLimit();
    void SetFloat_BeyondTheLimit_IsRefused();
    void SetBool_OnAndOffValues_AreWritten();
    void GetFloat_LocaleWithDecimalComma_MakesNoDifference();
    void GetInt_StructEntry_GivesItsBits();
    void GetInt_CameraRefuses_GivesDeviceStatus();
    void GetInt_CameraIsSilent_GivesTimeout();
    void SetText_EachType_SetsTheValueThatGetTextGives();
    void SetText_IntegerBeyond64Bits_IsRefused();
    void GetText_FloatIsNoNumber_IsRefused_data();
    void GetText_FloatIsNoNumber_IsRefused();

private:
    MemoryDevice *m_pDevice = nullptr;
    ArvGc *m_pGenICam = nullptr;
    std::string m_strText;
    std::unique_ptr<FeatureAccess> m_access;
};

void tst_FeatureAccess::init()
{
    m_pDevice = memory_device_new();
    m_strText = Description();
    m_pGenICam = MakeGenICam(ARV_DEVICE(m_pDevice), m_strText);
    QVERIFY(m_pGenICam != nullptr);
    m_access = std::make_unique<FeatureAccess>(m_pGenICam);
    memory_device_take_accesses(m_pDevice);
}

void tst_FeatureAccess::cleanup()
{
    m_access.reset();
    g_clear_object(&m_pGenICam);
    g_clear_object(&m_pDevice);
}

void tst_FeatureAccess::GetInt_PlainRegister_CostsOneAccess()
{
    memory_device_put(m_pDevice, 0x100, 640);
    int64_t nValue = 0;
    QCOMPARE(m_access->GetInt("Width", nValue), KX_CC_OK);
    QCOMPARE(nValue, int64_t{640});
    QCOMPARE(memory_device_take_accesses(m_pDevice), 1);
}

void tst_FeatureAccess::GetInt_ChangedBehindOurBack_GivesTheCamerasValue()
{
    int64_t nValue = 0;
    QCOMPARE(m_access->SetInt("Width", 320), KX_CC_OK);
    memory_device_put(m_pDevice, 0x100, 328); // the camera rounds
    QCOMPARE(m_access->GetInt("Width", nValue), KX_CC_OK);
    QCOMPARE(nValue, int64_t{328});
}

void tst_FeatureAccess::GetInt_SignedRegister_GivesNegativeValue()
{
    memory_device_put(m_pDevice, 0x104, 0xFFFFFFFE);
    int64_t nValue = 0;
    QCOMPARE(m_access->GetInt("Offset", nValue), KX_CC_OK);
    QCOMPARE(nValue, int64_t{-2});
}

void tst_FeatureAccess::GetInt_BeyondThePattern_IsRefused_data()
{
    QTest::addColumn<QByteArray>("feature");
    QTest::addColumn<uint32_t>("address");
    QTest::addColumn<uint32_t>("high");
    QTest::addColumn<uint32_t>("low");
    QTest::addColumn<int>("code");
    const auto row = [](const char *szName, const char *szFeature, uint64_t nRegister, int nCode) {
        const uint32_t nAddress = qstrcmp(szFeature, "LongReg") == 0 ? 0x110 : 0x148;
        QTest::newRow(szName) << QByteArray(szFeature) << nAddress << static_cast<uint32_t>(nRegister >> 32)
                              << static_cast<uint32_t>(nRegister) << nCode;
    };
    row("signed, -1", "LongReg", 0xFFFFFFFFFFFFFFFF, KX_CC_OK);
    row("signed, -2^31", "LongReg", 0xFFFFFFFF80000000, KX_CC_OK);
    row("signed, 2^31-1", "LongReg", 0x7FFFFFFF, KX_CC_OK);
    row("signed, 2^31 would become negative", "LongReg", 0x80000000, KX_CC_E_FEATURE_VALUE);
    row("signed, 2^32-1 would become negative", "LongReg", 0xFFFFFFFF, KX_CC_E_FEATURE_VALUE);
    row("unsigned, 2^32-1", "UnsignedLongReg", 0xFFFFFFFF, KX_CC_OK);
    row("unsigned, 2^64-1 would become 2^32-1", "UnsignedLongReg", 0xFFFFFFFFFFFFFFFF, KX_CC_E_FEATURE_VALUE);
    row("unsigned, 2^64-2^31 would become 2^31", "UnsignedLongReg", 0xFFFFFFFF80000000,
        KX_CC_E_FEATURE_VALUE);
}

void tst_FeatureAccess::GetInt_BeyondThePattern_IsRefused()
{
    QFETCH(QByteArray, feature);
    QFETCH(uint32_t, address);
    QFETCH(uint32_t, high);
    QFETCH(uint32_t, low);
    QFETCH(int, code);
    memory_device_put(m_pDevice, address, high);
    memory_device_put(m_pDevice, address + 4, low);
    int64_t nValue = 0;

    QCOMPARE(m_access->GetInt(feature.toStdString(), nValue), code);

    if (code != KX_CC_OK)
        return;
    memory_device_put(m_pDevice, address, 0x12345678);
    QCOMPARE(m_access->SetInt(feature.toStdString(), static_cast<uint32_t>(nValue)), KX_CC_OK);
    QCOMPARE(memory_device_get(m_pDevice, address), high);
    QCOMPARE(memory_device_get(m_pDevice, address + 4), low);
}

void tst_FeatureAccess::GetInt_NameOrTypeIsWrong_SaysWhich()
{
    int64_t nValue = 0;
    QCOMPARE(m_access->GetInt("Nothing", nValue), KX_CC_E_FEATURE_UNKNOWN);
    QCOMPARE(m_access->GetInt("Mode", nValue), KX_CC_E_FEATURE_TYPE);
    QCOMPARE(m_access->GetInt("Root", nValue), KX_CC_E_FEATURE_TYPE);
    double dValue = 0;
    QCOMPARE(m_access->GetFloat("Width", dValue), KX_CC_E_FEATURE_TYPE);
}

void tst_FeatureAccess::Access_Conditions_data()
{
    QTest::addColumn<QByteArray>("feature");
    QTest::addColumn<int>("reading");
    QTest::addColumn<int>("writing");
    QTest::newRow("read and write") << QByteArray("Width") << KX_CC_OK << KX_CC_OK;
    QTest::newRow("read only") << QByteArray("ReadOnlyReg") << KX_CC_OK << KX_CC_E_FEATURE_ACCESS;
    QTest::newRow("write only") << QByteArray("WriteOnlyReg") << KX_CC_E_FEATURE_ACCESS << KX_CC_OK;
    QTest::newRow("formula") << QByteArray("LeftMax") << KX_CC_OK << KX_CC_E_FEATURE_ACCESS;
    QTest::newRow("not implemented") << QByteArray("NotImplemented") << KX_CC_E_FEATURE_ACCESS
                                     << KX_CC_E_FEATURE_ACCESS;
    QTest::newRow("not available") << QByteArray("NotAvailable") << KX_CC_E_FEATURE_ACCESS
                                   << KX_CC_E_FEATURE_ACCESS;
    QTest::newRow("locked") << QByteArray("Locked") << KX_CC_OK << KX_CC_E_FEATURE_ACCESS;
    QTest::newRow("register below not available")
        << QByteArray("OverHiddenReg") << KX_CC_E_FEATURE_ACCESS << KX_CC_E_FEATURE_ACCESS;
}

void tst_FeatureAccess::Access_Conditions()
{
    QFETCH(QByteArray, feature);
    int64_t nValue = 0;
    QTEST(m_access->GetInt(feature.toStdString(), nValue), "reading");
    QTEST(m_access->SetInt(feature.toStdString(), 100), "writing");
}

void tst_FeatureAccess::Find_BrokenPointers_data()
{
    QTest::addColumn<QByteArray>("feature");
    for (const char *szName : {"Dangling", "DanglingDeep", "DanglingCondition", "DanglingLimit",
                               "DanglingPort", "CycleA", "CycleB", "Self", "CycleKnife"})
        QTest::newRow(szName) << QByteArray(szName);
}

void tst_FeatureAccess::Find_BrokenPointers()
{
    QFETCH(QByteArray, feature);
    int64_t nValue = 0;
    QCOMPARE(m_access->GetInt(feature.toStdString(), nValue), KX_CC_E_FEATURE_BROKEN);
    QCOMPARE(m_access->SetInt(feature.toStdString(), 1), KX_CC_E_FEATURE_BROKEN);
    QCOMPARE(memory_device_take_accesses(m_pDevice), 0);
}

void tst_FeatureAccess::Find_LimitsThatDependOnEachOther_AreSound()
{
    memory_device_put(m_pDevice, 0x108, 300);
    QCOMPARE(m_access->SetInt("Left", 700), KX_CC_OK);
    QCOMPARE(m_access->SetInt("Left", 701), KX_CC_E_FEATURE_VALUE);
    QCOMPARE(m_access->SetInt("Right", 300), KX_CC_OK);
}

void tst_FeatureAccess::SetInt_PatternOfNegativeValue_WritesNegativeValue()
{
    int64_t nValue = 0;
    QCOMPARE(m_access->SetInt("Offset", 0xFFFFFFFE), KX_CC_OK);
    QCOMPARE(memory_device_get(m_pDevice, 0x104), 0xFFFFFFFEU);
    QCOMPARE(m_access->SetInt("LongReg", 0xFFFFFFFE), KX_CC_OK);
    QCOMPARE(m_access->GetInt("LongReg", nValue), KX_CC_OK);
    QCOMPARE(nValue, int64_t{-2});
}

void tst_FeatureAccess::SetInt_SignForgottenInTheRegister_SetsWhatWasRead()
{
    memory_device_put(m_pDevice, 0x108, 0xFFFFFFFE);
    int64_t nValue = 0;
    QCOMPARE(m_access->GetInt("SignForgotten", nValue), KX_CC_OK);
    memory_device_put(m_pDevice, 0x108, 0);
    QCOMPARE(m_access->SetInt("SignForgotten", static_cast<uint32_t>(nValue)), KX_CC_OK);
    QCOMPARE(memory_device_get(m_pDevice, 0x108), 0xFFFFFFFEU);
}

void tst_FeatureAccess::SetInt_LargePatternOfUnsignedFeature_WritesLargeValue()
{
    int64_t nValue = 0;
    QCOMPARE(m_access->SetInt("UnsignedReg", 0xFFFFFFFE), KX_CC_OK);
    QCOMPARE(m_access->GetInt("UnsignedReg", nValue), KX_CC_OK);
    QCOMPARE(nValue, int64_t{0xFFFFFFFE});
}

void tst_FeatureAccess::SetInt_OutOfRange_IsRefusedBeforeTheCameraIsAsked()
{
    QCOMPARE(m_access->SetInt("Width", 15), KX_CC_E_FEATURE_VALUE);
    QCOMPARE(m_access->SetInt("Width", 4097), KX_CC_E_FEATURE_VALUE);
    QCOMPARE(memory_device_take_accesses(m_pDevice), 0);
}

void tst_FeatureAccess::SetEnum_ByNumber_WritesTheNumber()
{
    int64_t nValue = 0;
    QCOMPARE(m_access->SetEnum("Mode", 7), KX_CC_OK);
    QCOMPARE(memory_device_take_accesses(m_pDevice), 1);
    QCOMPARE(m_access->GetEnum("Mode", nValue), KX_CC_OK);
    QCOMPARE(nValue, int64_t{7});
    QCOMPARE(memory_device_get(m_pDevice, 0x130), 7U);
}

void tst_FeatureAccess::SetEnum_EntryThatCannotBeChosen_IsRefused()
{
    QCOMPARE(m_access->SetEnum("Mode", 8), KX_CC_E_FEATURE_VALUE);
    QCOMPARE(m_access->SetEnum("Mode", 9), KX_CC_E_FEATURE_VALUE);
    QCOMPARE(m_access->SetEnum("Mode", 10), KX_CC_E_FEATURE_VALUE);
    QCOMPARE(memory_device_get(m_pDevice, 0x130), 0U);
}

void tst_FeatureAccess::SetFloat_LimitRoundedToSinglePrecision_WritesTheLimit()
{
    double dValue = 0;
    QVERIFY(static_cast<double>(0.1F) > 0.1);
    QCOMPARE(m_access->SetFloat("Gain", 0.1F), KX_CC_OK);
    QCOMPARE(m_access->GetFloat("Gain", dValue), KX_CC_OK);
    QCOMPARE(static_cast<float>(dValue), 0.1F);
    QCOMPARE(m_access->SetFloat("Gain", -0.1F), KX_CC_OK);
}

void tst_FeatureAccess::SetFloat_BeyondTheLimit_IsRefused()
{
    QCOMPARE(m_access->SetFloat("Gain", 0.11F), KX_CC_E_FEATURE_VALUE);
    QCOMPARE(m_access->SetFloat("Gain", std::numeric_limits<float>::quiet_NaN()), KX_CC_E_FEATURE_VALUE);
    QCOMPARE(m_access->SetFloat("Gain", std::numeric_limits<float>::infinity()), KX_CC_E_FEATURE_VALUE);
}

void tst_FeatureAccess::SetBool_OnAndOffValues_AreWritten()
{
    bool bValue = false;
    QCOMPARE(m_access->SetBool("Flag", true), KX_CC_OK);
    QCOMPARE(memory_device_get(m_pDevice, 0x134), 3U);
    QCOMPARE(m_access->GetBool("Flag", bValue), KX_CC_OK);
    QVERIFY(bValue);
    QCOMPARE(m_access->SetBool("Flag", false), KX_CC_OK);
    QCOMPARE(memory_device_get(m_pDevice, 0x134), 1U);
}

void tst_FeatureAccess::GetFloat_LocaleWithDecimalComma_MakesNoDifference()
{
    const char *szComma = setlocale(LC_NUMERIC, "de_DE.UTF-8");
    if (szComma == nullptr)
        QSKIP("no locale with a decimal comma is installed");
    cleanup();
    init();
    const int nCode = m_access->SetFloat("Gain", 0.05F);
    const int nTooMuch = m_access->SetFloat("Gain", 0.5F);
    setlocale(LC_NUMERIC, "C");
    QCOMPARE(nCode, KX_CC_OK);
    QCOMPARE(nTooMuch, KX_CC_E_FEATURE_VALUE);
}

void tst_FeatureAccess::GetInt_StructEntry_GivesItsBits()
{
    memory_device_put(m_pDevice, 0x140, 0xABCD1234);
    int64_t nValue = 0;
    QCOMPARE(m_access->GetInt("Upper", nValue), KX_CC_OK);
    QCOMPARE(nValue, int64_t{0xABCD});
}

void tst_FeatureAccess::GetInt_CameraRefuses_GivesDeviceStatus()
{
    int64_t nValue = 0;
    QCOMPARE(m_access->GetInt("Ghost", nValue), KX_CC_E_DEVICE_STATUS);
    QCOMPARE(m_access->GetInt("Width", nValue), KX_CC_OK);
}

void tst_FeatureAccess::GetInt_CameraIsSilent_GivesTimeout()
{
    int64_t nValue = 0;
    memory_device_fail_at(m_pDevice, 0x100, ARV_DEVICE_ERROR_TIMEOUT);
    QCOMPARE(m_access->GetInt("Width", nValue), KX_CC_E_TIMEOUT);
}

void tst_FeatureAccess::SetText_EachType_SetsTheValueThatGetTextGives()
{
    const std::pair<const char *, const char *> values[] = {
        {"Width", "100"}, {"Offset", "-5"}, {"Gain", "0.0625"}, {"Mode", "On"}, {"Flag", "1"}};
    for (const auto &value : values) {
        std::string strText;
        QCOMPARE(m_access->SetText(value.first, value.second), KX_CC_OK);
        QCOMPARE(m_access->GetText(value.first, strText), KX_CC_OK);
        QCOMPARE(strText, std::string(value.second));
    }
    QCOMPARE(m_access->SetText("Width", "12x"), KX_CC_E_FEATURE_VALUE);
    QCOMPARE(m_access->SetText("Mode", "1"), KX_CC_E_FEATURE_VALUE);
    QCOMPARE(m_access->SetText("Flag", "yes"), KX_CC_E_FEATURE_VALUE);
}

void tst_FeatureAccess::SetText_IntegerBeyond64Bits_IsRefused()
{
    QCOMPARE(m_access->SetText("LongReg", "9223372036854775807"), KX_CC_OK);
    QCOMPARE(m_access->SetText("LongReg", "9223372036854775808"), KX_CC_E_FEATURE_VALUE);
    QCOMPARE(m_access->SetText("LongReg", "-99999999999999999999"), KX_CC_E_FEATURE_VALUE);
    QCOMPARE(memory_device_get(m_pDevice, 0x110), 0x7FFFFFFFU);
}

void tst_FeatureAccess::GetText_FloatIsNoNumber_IsRefused_data()
{
    QTest::addColumn<uint32_t>("high");
    QTest::newRow("not a number") << 0x7FF80000U;
    QTest::newRow("infinity") << 0x7FF00000U;
    QTest::newRow("negative infinity") << 0xFFF00000U;
}

void tst_FeatureAccess::GetText_FloatIsNoNumber_IsRefused()
{
    QFETCH(uint32_t, high);
    memory_device_put(m_pDevice, 0x128, high);
    std::string strText;
    QCOMPARE(m_access->GetText("HugeReg", strText), KX_CC_E_FEATURE_VALUE);
}

QTEST_APPLESS_MAIN(tst_FeatureAccess)
#include "tst_featureaccess.moc"
