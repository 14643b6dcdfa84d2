#include "device/usersets.h"

#include <QtTest>

using namespace KxFarm;

namespace {

constexpr std::uint32_t kFirst = 0x10000;
constexpr std::uint32_t kEnd = 0x18000;
constexpr std::uint32_t kFactoryValue = 100;

} // namespace

/// What a camera keeps without power, and what it does not.
class tst_UserSets : public QObject
{
    Q_OBJECT

private slots:
    void init();

    void Load_NobodySavedIt_IsTheFactorys_data();
    void Load_NobodySavedIt_IsTheFactorys();
    void Load_SavedAndChangedSince_IsAsSaved();
    void Load_TwoSaved_EachKeepsItsOwn();
    void Load_SavedTwice_IsTheLaterOne();
    void Load_AnySet_LeavesRegistersOutsideTheRange();
    void Save_FactorySet_IsRefusedAndItKeepsItsContent();

private:
    RegisterMemory Memory(std::uint32_t value) const
    {
        RegisterMemory memory(m_pBase);
        memory.WriteWord(kFirst, value);
        memory.WriteWord(kEnd - 4, value);
        return memory;
    }
    std::uint32_t Loaded(std::int64_t number) const
    {
        RegisterMemory memory = Memory(999);
        m_pSets->Load(number, &memory);
        return memory.ReadWord(kFirst) == memory.ReadWord(kEnd - 4) ? memory.ReadWord(kFirst) : 0;
    }

    std::shared_ptr<RegisterMemory> m_pBase;
    std::unique_ptr<UserSets> m_pSets;
};

void tst_UserSets::init()
{
    m_pBase = std::make_shared<RegisterMemory>();
    m_pSets = std::make_unique<UserSets>(Memory(kFactoryValue), kFirst, kEnd);
}

void tst_UserSets::Load_NobodySavedIt_IsTheFactorys_data()
{
    QTest::addColumn<qint64>("number");
    QTest::newRow("the factory's") << qint64{0};
    QTest::newRow("the first of the user's") << qint64{1};
    QTest::newRow("one that the camera does not have") << qint64{-1};
}

void tst_UserSets::Load_NobodySavedIt_IsTheFactorys()
{
    QFETCH(qint64, number);

    QCOMPARE(Loaded(number), kFactoryValue);
}

void tst_UserSets::Load_SavedAndChangedSince_IsAsSaved()
{
    RegisterMemory memory = Memory(1);
    QVERIFY(m_pSets->Save(1, memory));
    memory.WriteWord(kFirst, 2);

    m_pSets->Load(1, &memory);

    QCOMPARE(memory.ReadWord(kFirst), 1U);
}

void tst_UserSets::Load_TwoSaved_EachKeepsItsOwn()
{
    QVERIFY(m_pSets->Save(1, Memory(1)));
    QVERIFY(m_pSets->Save(2, Memory(2)));

    QCOMPARE(Loaded(1), 1U);
    QCOMPARE(Loaded(2), 2U);
    QCOMPARE(Loaded(0), kFactoryValue);
}

void tst_UserSets::Load_SavedTwice_IsTheLaterOne()
{
    QVERIFY(m_pSets->Save(1, Memory(1)));
    QVERIFY(m_pSets->Save(1, Memory(2)));

    QCOMPARE(Loaded(1), 2U);
}

void tst_UserSets::Load_AnySet_LeavesRegistersOutsideTheRange()
{
    RegisterMemory saved = Memory(1);
    saved.WriteWord(kFirst - 4, 1);
    saved.WriteWord(kEnd, 1);
    QVERIFY(m_pSets->Save(1, saved));
    RegisterMemory memory = Memory(2);
    memory.WriteWord(kFirst - 4, 2);
    memory.WriteWord(kEnd, 2);

    m_pSets->Load(1, &memory);

    QCOMPARE(memory.ReadWord(kFirst), 1U);
    QCOMPARE(memory.ReadWord(kFirst - 4), 2U);
    QCOMPARE(memory.ReadWord(kEnd), 2U);
}

void tst_UserSets::Save_FactorySet_IsRefusedAndItKeepsItsContent()
{
    QVERIFY(!m_pSets->Save(0, Memory(1)));

    QCOMPARE(Loaded(0), kFactoryValue);
}

QTEST_APPLESS_MAIN(tst_UserSets)
#include "tst_usersets.moc"
