#include "device/firmware.h"

#include <QtTest>

using namespace KxFarm;

Q_DECLARE_METATYPE(Gvcp::Status)

namespace {

enum Address : std::uint32_t
{
    kWidth = 0x100,
    kLimit = 0x104,
    kMode = 0x108,
    kGain = 0x10C,
    kInfo = 0x110,
    kReset = 0x114,
    kSetSelector = 0x118,
    kSetLoad = 0x11C,
    kSetSave = 0x120,
    kSetDefault = 0x124,
    kShared = 0x128,
    kExposure = 0x12C,
    kStart = 0x130,
    kStop = 0x134,
    kActive = 0x138,
    kNobodys = 0x13C,
};

constexpr std::uint64_t kSetsFirst = 0x100;
constexpr std::uint64_t kSetsEnd = 0x200;

enum Mode : std::uint32_t
{
    kFree = 0,
    kLocking = 1,
    kGone = 2,
    kUnknown = 7,
};

QByteArray Register(const QByteArray &name, Address address, const QByteArray &more = {})
{
    return "<MaskedIntReg Name=\"" + name + "\"><Address>" + QByteArray::number(address) +
           "</Address><Length>4</Length>" + more + (more.contains("LSB") ? "" : "<LSB>31</LSB><MSB>0</MSB>") +
           "<Endianess>BigEndian</Endianess></MaskedIntReg>";
}

QByteArray Feature(const QByteArray &kind, const QByteArray &name, const QByteArray &more)
{
    return '<' + kind + " Name=\"" + name + "\">" + more + "</" + kind + '>';
}

/// A feature with a register of its own.
QByteArray Setting(const QByteArray &kind, const QByteArray &name, Address address,
                   const QByteArray &more = {})
{
    return Register(name + "Reg", address) + Feature(kind, name, "<pValue>" + name + "Reg</pValue>" + more);
}

QByteArray Command(const QByteArray &name, Address address, const QByteArray &more = {})
{
    return Setting("Command", name, address, "<CommandValue>1</CommandValue>" + more);
}

QByteArray Entry(const QByteArray &name, std::uint32_t value, const QByteArray &more = {})
{
    return Feature("EnumEntry", name, "<Value>" + QByteArray::number(value) + "</Value>" + more);
}

QByteArray Description()
{
    return "<RegisterDescription ModelName=\"M\" VendorName=\"V\">"
           "<Integer Name=\"Nothing\"><Value>0</Value></Integer>" +
           Setting("Integer", "Limit", kLimit) +
           Setting("Integer", "Width", kWidth, "<Min>16</Min><pMax>Limit</pMax><Inc>4</Inc>") +
           Setting("Enumeration", "Mode", kMode,
                   Entry("Free", kFree) + Entry("Locking", kLocking) +
                       Entry("Gone", kGone, "<pIsImplemented>Nothing</pIsImplemented>")) +
           Setting("Integer", "Gain", kGain, "<Min>0</Min><Max>10</Max><pIsLocked>Mode</pIsLocked>") +
           Register("InfoReg", kInfo, "<AccessMode>RO</AccessMode>") +
           Feature("Integer", "Info", "<pValue>InfoReg</pValue>") +
           Register("LockedHalfReg", kShared, "<LSB>31</LSB><MSB>16</MSB>") +
           Feature("Integer", "LockedHalf", "<pValue>LockedHalfReg</pValue><pIsLocked>Mode</pIsLocked>") +
           Register("FreeHalfReg", kShared, "<LSB>15</LSB><MSB>0</MSB>") +
           Feature("Integer", "FreeHalf", "<pValue>FreeHalfReg</pValue>") +
           "<FloatReg Name=\"ExposureReg\"><Address>" + QByteArray::number(kExposure) +
           "</Address><Length>4</Length><Endianess>BigEndian</Endianess></FloatReg>" +
           Feature("Float", "Exposure", "<pValue>ExposureReg</pValue><Min>0.5</Min><Max>100</Max>") +
           Setting("Enumeration", "UserSetSelector", kSetSelector,
                   Entry("Default", 0) + Entry("UserSet1", 1)) +
           Setting("Enumeration", "UserSetDefault", kSetDefault, Entry("Default", 0) + Entry("UserSet1", 1)) +
           Command("UserSetLoad", kSetLoad) + Command("UserSetSave", kSetSave) +
           Command("DeviceReset", kReset) + Command("AcquisitionStart", kStart) +
           Command("AcquisitionStop", kStop, "<pIsLocked>Mode</pIsLocked>") +
           Register("AcquisitionActiveReg", kActive) + "</RegisterDescription>";
}

/// A camera's firmware with all that it works on.
struct Device
{
    explicit Device(const NodeMap &map, bool strict = true)
        : memory(PowerUp())
        , index(map, memory)
        , sets(memory, kSetsFirst, kSetsEnd)
        , firmware(map, index, strict, &memory, &sets)
    {
    }
    static RegisterMemory PowerUp()
    {
        RegisterMemory memory;
        memory.WriteWord(kWidth, 32);
        memory.WriteWord(kLimit, 103);
        memory.WriteWord(kGain, 5);
        memory.WriteWord(kInfo, 77);
        memory.WriteWord(kShared, 0x00010002);
        memory.WriteWord(kExposure, 0x3F800000); // 1.0
        return memory;
    }
    Gvcp::Status Write(std::uint32_t address, std::uint32_t value)
    {
        std::uint8_t bytes[4];
        StoreBe32(bytes, value);
        return firmware.Write(address, bytes, sizeof bytes);
    }
    std::uint32_t Word(std::uint32_t address) const { return memory.ReadWord(address); }

    RegisterMemory memory;
    FeatureIndex index;
    UserSets sets;
    Firmware firmware;
};

} // namespace

/// What a write to a manufacturer register entails, without a network or a whole camera around it.
class tst_Firmware : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();

    void Write_StrictCamera_AnswersAndStores_data();
    void Write_StrictCamera_AnswersAndStores();
    void Write_ForeignDescription_EverythingIsStored();
    void Write_SecondOfTwoIsBad_NeitherIsStored();
    void Write_ClampingOrRounding_MovesTheNumber_data();
    void Write_ClampingOrRounding_MovesTheNumber();
    void Write_LimitLowered_NumberFollows();
    void Write_LockSet_LockedFeatureHasItsPowerUpValue();
    void Write_FieldBesideALockedOne_IsStored();
    void Write_LockedFieldOfASharedRegister_IsRefused();
    void SetMaximum_LowerThanDescribed_HoldsUntilTakenBack();
    void SetMaximum_HigherThanDescribed_ChangesNothing();
    void Write_Command_AnswersAndRegisterStaysZero_data();
    void Write_Command_AnswersAndRegisterStaysZero();
    void Write_DeviceReset_IsRequestedOnce();
    void Write_AcquisitionStartAndStop_ShowInTheirRegister();
    void Write_UserSetSavedAndLoaded_SettingsComeBackAndTheChoiceStays();
    void Restart_NoSetChosen_HasPowerUpValues();
    void Restart_SetChosen_HasItsSettings();
    void ToPowerUpValue_OneFeature_OthersKeepTheirs();
    void FieldOf_FeatureWithoutARegister_IsNothing();

private:
    int Node(const char *name) const { return m_map.Find(name); }

    NodeMap m_map;
};

void tst_Firmware::initTestCase()
{
    QString error;
    QVERIFY2(m_map.Parse(Description(), &error), qPrintable(error));
}

void tst_Firmware::Write_StrictCamera_AnswersAndStores_data()
{
    QTest::addColumn<std::uint32_t>("address");
    QTest::addColumn<std::uint32_t>("value");
    QTest::addColumn<Gvcp::Status>("status");
    const auto row = [](const char *name, Address address, std::uint32_t value, Gvcp::Status status) {
        QTest::newRow(name) << std::uint32_t{address} << value << status;
    };
    row("number within its limits", kWidth, 64, Gvcp::STATUS_SUCCESS);
    row("the minimum", kWidth, 16, Gvcp::STATUS_SUCCESS);
    row("below the minimum", kWidth, 12, Gvcp::STATUS_INVALID_PARAMETER);
    row("the last step below the maximum", kWidth, 100, Gvcp::STATUS_SUCCESS);
    row("above the maximum", kWidth, 104, Gvcp::STATUS_INVALID_PARAMETER);
    row("between two steps", kWidth, 18, Gvcp::STATUS_INVALID_PARAMETER);
    row("the value that it has", kWidth, 32, Gvcp::STATUS_SUCCESS);
    row("float within its limits", kExposure, 0x42C80000, Gvcp::STATUS_SUCCESS); // 100
    row("float above its maximum", kExposure, 0x42C90000, Gvcp::STATUS_INVALID_PARAMETER);
    row("no number", kExposure, 0x7FC00000, Gvcp::STATUS_INVALID_PARAMETER);
    row("entry", kMode, kLocking, Gvcp::STATUS_SUCCESS);
    row("entry that is not implemented", kMode, kGone, Gvcp::STATUS_INVALID_PARAMETER);
    row("no entry", kMode, kUnknown, Gvcp::STATUS_INVALID_PARAMETER);
    row("read-only register", kInfo, 1, Gvcp::STATUS_WRITE_PROTECT);
    row("register of no feature", kNobodys, 1, Gvcp::STATUS_SUCCESS);
}

void tst_Firmware::Write_StrictCamera_AnswersAndStores()
{
    QFETCH(std::uint32_t, address);
    QFETCH(std::uint32_t, value);
    QFETCH(Gvcp::Status, status);
    Device device(m_map);
    const std::uint32_t before = device.Word(address);

    QCOMPARE(device.Write(address, value), status);

    QCOMPARE(device.Word(address), status == Gvcp::STATUS_SUCCESS ? value : before);
}

void tst_Firmware::Write_ForeignDescription_EverythingIsStored()
{
    Device device(m_map, false);
    for (const auto &[address, value] :
         {std::pair{kWidth, 13U}, {kMode, std::uint32_t{kUnknown}}, {kInfo, 1U}, {kExposure, 0x7FC00000U}}) {
        QCOMPARE(device.Write(address, value), Gvcp::STATUS_SUCCESS);
        QCOMPARE(device.Word(address), value);
    }
    // Nothing settles, either: the lock that Mode would be changes no gain.
    QCOMPARE(device.Write(kGain, 9), Gvcp::STATUS_SUCCESS);
    QCOMPARE(device.Write(kMode, kLocking), Gvcp::STATUS_SUCCESS);
    QCOMPARE(device.Word(kGain), 9U);
}

void tst_Firmware::Write_SecondOfTwoIsBad_NeitherIsStored()
{
    Device device(m_map);
    std::uint8_t bytes[8];
    StoreBe32(bytes, kLocking);
    StoreBe32(bytes + 4, 11); // Gain lies behind Mode

    QCOMPARE(device.firmware.Write(kMode, bytes, sizeof bytes), Gvcp::STATUS_INVALID_PARAMETER);

    QCOMPARE(device.Word(kMode), std::uint32_t{kFree});
    QCOMPARE(device.Word(kGain), 5U);
}

void tst_Firmware::Write_ClampingOrRounding_MovesTheNumber_data()
{
    QTest::addColumn<bool>("clamping");
    QTest::addColumn<bool>("rounding");
    QTest::addColumn<std::uint32_t>("written");
    QTest::addColumn<std::uint32_t>("stored"); // 32: refused
    QTest::newRow("clamped to the minimum") << true << false << 3U << 16U;
    QTest::newRow("clamped to the last step below the maximum") << true << false << 900U << 100U;
    QTest::newRow("clamping does not round") << true << false << 18U << 32U;
    QTest::newRow("rounded down") << false << true << 27U << 24U;
    QTest::newRow("rounding does not clamp") << false << true << 900U << 32U;
    QTest::newRow("both") << true << true << 901U << 100U;
}

void tst_Firmware::Write_ClampingOrRounding_MovesTheNumber()
{
    QFETCH(bool, clamping);
    QFETCH(bool, rounding);
    QFETCH(std::uint32_t, written);
    QFETCH(std::uint32_t, stored);
    Device device(m_map);
    device.firmware.SetClamping(clamping);
    device.firmware.SetRounding(rounding);

    const Gvcp::Status status = device.Write(kWidth, written);

    QCOMPARE(device.Word(kWidth), stored);
    QCOMPARE(status, stored == 32 ? Gvcp::STATUS_INVALID_PARAMETER : Gvcp::STATUS_SUCCESS);
}

void tst_Firmware::Write_LimitLowered_NumberFollows()
{
    Device device(m_map);
    QCOMPARE(device.Write(kWidth, 100), Gvcp::STATUS_SUCCESS);

    QCOMPARE(device.Write(kLimit, 50), Gvcp::STATUS_SUCCESS);

    QCOMPARE(device.Word(kWidth), 48U);
    QCOMPARE(device.Write(kLimit, 103), Gvcp::STATUS_SUCCESS);
    QCOMPARE(device.Word(kWidth), 48U);
}

void tst_Firmware::Write_LockSet_LockedFeatureHasItsPowerUpValue()
{
    Device device(m_map);
    QCOMPARE(device.Write(kGain, 9), Gvcp::STATUS_SUCCESS);

    QCOMPARE(device.Write(kMode, kLocking), Gvcp::STATUS_SUCCESS);

    QCOMPARE(device.Word(kGain), 5U);
    QCOMPARE(device.Write(kGain, 9), Gvcp::STATUS_WRITE_PROTECT);
    QCOMPARE(device.Word(kGain), 5U);
    QCOMPARE(device.Write(kMode, kFree), Gvcp::STATUS_SUCCESS);
    QCOMPARE(device.Write(kGain, 9), Gvcp::STATUS_SUCCESS);
}

void tst_Firmware::Write_FieldBesideALockedOne_IsStored()
{
    Device device(m_map);
    QCOMPARE(device.Write(kMode, kLocking), Gvcp::STATUS_SUCCESS);

    QCOMPARE(device.Write(kShared, 0x00090002), Gvcp::STATUS_SUCCESS);

    QCOMPARE(device.Word(kShared), 0x00090002U);
}

void tst_Firmware::Write_LockedFieldOfASharedRegister_IsRefused()
{
    Device device(m_map);
    QCOMPARE(device.Write(kMode, kLocking), Gvcp::STATUS_SUCCESS);

    QCOMPARE(device.Write(kShared, 0x00090003), Gvcp::STATUS_WRITE_PROTECT);

    QCOMPARE(device.Word(kShared), 0x00010002U);
}

void tst_Firmware::SetMaximum_LowerThanDescribed_HoldsUntilTakenBack()
{
    Device device(m_map);
    device.firmware.SetMaximum(Node("Width"), 60);
    QCOMPARE(device.firmware.Maximum(Node("Width")).value_or(-1), 60.0);
    QCOMPARE(device.Write(kWidth, 64), Gvcp::STATUS_INVALID_PARAMETER);
    QCOMPARE(device.Write(kWidth, 60), Gvcp::STATUS_SUCCESS);

    device.firmware.SetMaximum(Node("Width"), std::nullopt);

    QCOMPARE(device.firmware.Maximum(Node("Width")).value_or(-1), 103.0);
    QCOMPARE(device.Write(kWidth, 64), Gvcp::STATUS_SUCCESS);
}

void tst_Firmware::SetMaximum_HigherThanDescribed_ChangesNothing()
{
    Device device(m_map);
    device.firmware.SetMaximum(Node("Width"), 1000);

    QCOMPARE(device.firmware.Maximum(Node("Width")).value_or(-1), 103.0);
    QCOMPARE(device.Write(kWidth, 104), Gvcp::STATUS_INVALID_PARAMETER);
    // A feature without a described one has the one that was set.
    QVERIFY(!device.firmware.Maximum(Node("FreeHalf")).has_value());
    device.firmware.SetMaximum(Node("FreeHalf"), 8);
    QCOMPARE(device.firmware.Maximum(Node("FreeHalf")).value_or(-1), 8.0);
}

void tst_Firmware::Write_Command_AnswersAndRegisterStaysZero_data()
{
    QTest::addColumn<bool>("strict");
    QTest::addColumn<std::uint32_t>("mode");
    QTest::addColumn<std::uint32_t>("address");
    QTest::addColumn<std::uint32_t>("value");
    QTest::addColumn<Gvcp::Status>("status");
    const auto row = [](const char *name, bool strict, Mode mode, Address address, std::uint32_t value,
                        Gvcp::Status status) {
        QTest::newRow(name) << strict << std::uint32_t{mode} << std::uint32_t{address} << value << status;
    };
    row("its value", true, kFree, kStop, 1, Gvcp::STATUS_SUCCESS);
    row("another value", true, kFree, kStop, 2, Gvcp::STATUS_INVALID_PARAMETER);
    row("locked", true, kLocking, kStop, 1, Gvcp::STATUS_ACCESS_DENIED);
    row("save over the factory's set", true, kFree, kSetSave, 1, Gvcp::STATUS_ACCESS_DENIED);
    row("foreign, another value", false, kFree, kStop, 2, Gvcp::STATUS_SUCCESS);
    row("foreign, locked", false, kLocking, kStop, 1, Gvcp::STATUS_SUCCESS);
}

void tst_Firmware::Write_Command_AnswersAndRegisterStaysZero()
{
    QFETCH(bool, strict);
    QFETCH(std::uint32_t, mode);
    QFETCH(std::uint32_t, address);
    QFETCH(std::uint32_t, value);
    QFETCH(Gvcp::Status, status);
    Device device(m_map, strict);
    QCOMPARE(device.Write(kMode, mode), Gvcp::STATUS_SUCCESS);

    QCOMPARE(device.Write(address, value), status);

    QCOMPARE(device.Word(address), 0U);
}

void tst_Firmware::Write_DeviceReset_IsRequestedOnce()
{
    Device device(m_map);
    QVERIFY(!device.firmware.TakeResetRequest());

    QCOMPARE(device.Write(kReset, 1), Gvcp::STATUS_SUCCESS);

    QVERIFY(device.firmware.TakeResetRequest());
    QVERIFY(!device.firmware.TakeResetRequest());
}

void tst_Firmware::Write_AcquisitionStartAndStop_ShowInTheirRegister()
{
    Device device(m_map);

    QCOMPARE(device.Write(kStart, 1), Gvcp::STATUS_SUCCESS);
    QCOMPARE(device.Word(kActive), 1U);

    QCOMPARE(device.Write(kStop, 1), Gvcp::STATUS_SUCCESS);
    QCOMPARE(device.Word(kActive), 0U);
}

void tst_Firmware::Write_UserSetSavedAndLoaded_SettingsComeBackAndTheChoiceStays()
{
    Device device(m_map);
    QCOMPARE(device.Write(kSetSelector, 1), Gvcp::STATUS_SUCCESS);
    QCOMPARE(device.Write(kWidth, 64), Gvcp::STATUS_SUCCESS);
    QCOMPARE(device.Write(kSetSave, 1), Gvcp::STATUS_SUCCESS);
    QCOMPARE(device.Write(kWidth, 48), Gvcp::STATUS_SUCCESS);
    QCOMPARE(device.Write(kSetDefault, 1), Gvcp::STATUS_SUCCESS);

    QCOMPARE(device.Write(kSetLoad, 1), Gvcp::STATUS_SUCCESS);
    QCOMPARE(device.Word(kWidth), 64U);
    QCOMPARE(device.Word(kSetDefault), 1U); // saved as 0, but no set holds it

    QCOMPARE(device.Write(kSetSelector, 0), Gvcp::STATUS_SUCCESS);
    QCOMPARE(device.Write(kSetLoad, 1), Gvcp::STATUS_SUCCESS);
    QCOMPARE(device.Word(kWidth), 32U);
    QCOMPARE(device.Word(kSetSelector), 0U);
}

void tst_Firmware::Restart_NoSetChosen_HasPowerUpValues()
{
    Device device(m_map);
    QCOMPARE(device.Write(kWidth, 64), Gvcp::STATUS_SUCCESS);
    QCOMPARE(device.Write(kNobodys, 1), Gvcp::STATUS_SUCCESS);

    device.firmware.Restart();

    QCOMPARE(device.Word(kWidth), 32U);
    QCOMPARE(device.Word(kNobodys), 0U);
}

void tst_Firmware::Restart_SetChosen_HasItsSettings()
{
    Device device(m_map);
    QCOMPARE(device.Write(kSetSelector, 1), Gvcp::STATUS_SUCCESS);
    QCOMPARE(device.Write(kWidth, 64), Gvcp::STATUS_SUCCESS);
    QCOMPARE(device.Write(kSetSave, 1), Gvcp::STATUS_SUCCESS);
    QCOMPARE(device.Write(kSetDefault, 1), Gvcp::STATUS_SUCCESS);
    QCOMPARE(device.Write(kWidth, 48), Gvcp::STATUS_SUCCESS);

    device.firmware.Restart();

    QCOMPARE(device.Word(kWidth), 64U);
    QCOMPARE(device.Word(kSetDefault), 1U);
    QCOMPARE(device.Word(kSetSelector), 0U); // as after power-up: what chooses a set is kept in none
}

void tst_Firmware::ToPowerUpValue_OneFeature_OthersKeepTheirs()
{
    Device device(m_map);
    QCOMPARE(device.Write(kWidth, 64), Gvcp::STATUS_SUCCESS);
    QCOMPARE(device.Write(kGain, 9), Gvcp::STATUS_SUCCESS);

    device.firmware.ToPowerUpValue(Node("Width"));

    QCOMPARE(device.Word(kWidth), 32U);
    QCOMPARE(device.Word(kGain), 9U);
}

void tst_Firmware::FieldOf_FeatureWithoutARegister_IsNothing()
{
    Device device(m_map);

    QVERIFY(!device.firmware.FieldOf(Node("Nothing")).has_value());
    device.firmware.ToPowerUpValue(Node("Nothing")); // nothing happens, either

    const auto field = device.firmware.FieldOf(Node("Width"));
    QVERIFY(field.has_value());
    QCOMPARE(field->address, std::uint32_t{kWidth});
}

QTEST_APPLESS_MAIN(tst_Firmware)
#include "tst_firmware.moc"
