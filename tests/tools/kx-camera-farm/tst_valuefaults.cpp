#include "faultfixture.h"

#include <QtTest>

using namespace KxFarm;

/// What becomes of written values.
class tst_ValueFaults : public QObject, private FaultFixture
{
    Q_OBJECT

private slots:
    void init() { Reset(); }

    void WriteClamp_BeyondTheLimit_TakesTheLimit();
    void WriteRound_BetweenIncrements_TakesTheLower();
    void ReadOnly_Feature_WriteIsProtected();
    void Unavailable_Feature_ReadIsDenied();
    void WriteIgnored_Feature_KeepsItsValueAndSaysSuccess();
    void WriteResets_OtherFeature_IsAtPowerUpValue();
    void WriteMovesLimit_OtherFeature_RefusesWhatItTook();
};

void tst_ValueFaults::WriteClamp_BeyondTheLimit_TakesTheLimit()
{
    QVERIFY(m_pClient->TakeControl());
    QCOMPARE(Set("write-clamp", "1"), QByteArray());

    QCOMPARE(SetFeature("Width", 5000), Gvcp::STATUS_SUCCESS);

    QCOMPARE(Value("Width"), std::int64_t{1936});
    QCOMPARE(SetFeature("Width", 641), Gvcp::STATUS_INVALID_PARAMETER);
}

void tst_ValueFaults::WriteRound_BetweenIncrements_TakesTheLower()
{
    QVERIFY(m_pClient->TakeControl());
    QCOMPARE(Set("write-round", "1"), QByteArray());

    QCOMPARE(SetFeature("Width", 643), Gvcp::STATUS_SUCCESS);

    QCOMPARE(Value("Width"), std::int64_t{640});
    QCOMPARE(SetFeature("Width", 5000), Gvcp::STATUS_INVALID_PARAMETER);
}

void tst_ValueFaults::ReadOnly_Feature_WriteIsProtected()
{
    QVERIFY(m_pClient->TakeControl());
    QCOMPARE(Set("read-only", "Height,Width"), QByteArray());

    QCOMPARE(SetFeature("Width", 640), Gvcp::STATUS_WRITE_PROTECT);
    QCOMPARE(Value("Width"), std::int64_t{1936});
    QCOMPARE(SetFeature("OffsetX", 0), Gvcp::STATUS_SUCCESS);
}

void tst_ValueFaults::Unavailable_Feature_ReadIsDenied()
{
    QCOMPARE(Set("unavailable", "Width"), QByteArray());

    QCOMPARE(Value("Width"), std::int64_t{-1});
    QCOMPARE(m_pClient->LastStatus(), Gvcp::STATUS_ACCESS_DENIED);
}

void tst_ValueFaults::WriteIgnored_Feature_KeepsItsValueAndSaysSuccess()
{
    QVERIFY(m_pClient->TakeControl());
    QCOMPARE(Set("write-ignored", "Width"), QByteArray());

    QCOMPARE(SetFeature("Width", 640), Gvcp::STATUS_SUCCESS);

    QCOMPARE(Value("Width"), std::int64_t{1936});
}

void tst_ValueFaults::WriteResets_OtherFeature_IsAtPowerUpValue()
{
    QVERIFY(m_pClient->TakeControl());
    QCOMPARE(SetFeature("Height", 480), Gvcp::STATUS_SUCCESS);
    QCOMPARE(Set("write-resets", "Width=Height"), QByteArray());

    QCOMPARE(SetFeature("Width", 640), Gvcp::STATUS_SUCCESS);

    QCOMPARE(Value("Height"), std::int64_t{1216});
}

void tst_ValueFaults::WriteMovesLimit_OtherFeature_RefusesWhatItTook()
{
    QVERIFY(m_pClient->TakeControl());
    QCOMPARE(Set("write-moves-limit", "Width=Height"), QByteArray());
    QCOMPARE(SetFeature("Height", 1000), Gvcp::STATUS_SUCCESS);

    QCOMPARE(SetFeature("Width", 640), Gvcp::STATUS_SUCCESS);

    QCOMPARE(SetFeature("Height", 998), Gvcp::STATUS_INVALID_PARAMETER);
    QCOMPARE(SetFeature("Height", 600), Gvcp::STATUS_SUCCESS);
}

QTEST_APPLESS_MAIN(tst_ValueFaults)
#include "tst_valuefaults.moc"
