#include <QTest>

#include <KxCameraControl/kxcameracontrol.h>

#include "ipc/timebudget.h"

using kxcc::TimeBudget;
using std::chrono::milliseconds;

namespace {

const TimeBudget::Clock::time_point kBegin{std::chrono::hours(1)};

TimeBudget::Clock::time_point At(int nMs)
{
    return kBegin + milliseconds(nMs);
}

int Left(const TimeBudget &budget, int nAtMs)
{
    return static_cast<int>(budget.Left(At(nAtMs)).count());
}

} // namespace

class tst_TimeBudget : public QObject
{
    Q_OBJECT

private slots:
    void Left_NothingSpent_IsTheSmallerLimit();
    void Left_CallRuns_GoesDown();
    void Left_BetweenCalls_StaysAsItIs();
    void Left_FeatureFinished_StartsThatLimitAnewButNotTheTotal();
    void Left_Spent_IsZeroAndNeverLess();
    void Left_NoLimits_IsADay();
    void Parse_Texts_data();
    void Parse_Texts();
    void SetTimeBudget_TooLong_ChangesNothing();
};

void tst_TimeBudget::Left_NothingSpent_IsTheSmallerLimit()
{
    QCOMPARE(Left(TimeBudget({milliseconds(100), milliseconds(500)}), 0), 100);
    QCOMPARE(Left(TimeBudget({milliseconds(500), milliseconds(100)}), 0), 100);
    QCOMPARE(Left(TimeBudget({milliseconds(0), milliseconds(500)}), 0), 500);
    QCOMPARE(Left(TimeBudget({milliseconds(100), milliseconds(0)}), 0), 100);
}

void tst_TimeBudget::Left_CallRuns_GoesDown()
{
    TimeBudget budget({milliseconds(100), milliseconds(500)});
    budget.BeginCall(At(0));
    QCOMPARE(Left(budget, 0), 100);
    QCOMPARE(Left(budget, 30), 70);
    QVERIFY(!budget.IsSpent(At(99)));
}

void tst_TimeBudget::Left_BetweenCalls_StaysAsItIs()
{
    TimeBudget budget({milliseconds(100), milliseconds(500)});
    budget.BeginCall(At(0));
    budget.EndCall(At(30));
    QCOMPARE(Left(budget, 1000), 70);
    budget.BeginCall(At(1000));
    QCOMPARE(Left(budget, 1010), 60);
    budget.EndCall(At(1010));
    QCOMPARE(Left(budget, 9999), 60);
}

void tst_TimeBudget::Left_FeatureFinished_StartsThatLimitAnewButNotTheTotal()
{
    TimeBudget budget({milliseconds(100), milliseconds(250)});
    budget.BeginCall(At(0));
    budget.FinishFeature(At(90));
    QCOMPARE(Left(budget, 90), 100);
    QCOMPARE(Left(budget, 100), 90);
    budget.FinishFeature(At(180));
    budget.EndCall(At(180));
    QCOMPARE(Left(budget, 180), 70);
}

void tst_TimeBudget::Left_Spent_IsZeroAndNeverLess()
{
    TimeBudget budget({milliseconds(100), milliseconds(500)});
    budget.BeginCall(At(0));
    QCOMPARE(Left(budget, 100), 0);
    QVERIFY(budget.IsSpent(At(100)));
    QCOMPARE(Left(budget, 700), 0);
}

void tst_TimeBudget::Left_NoLimits_IsADay()
{
    TimeBudget budget({milliseconds(0), milliseconds(0)});
    budget.BeginCall(At(0));
    QCOMPARE(Left(budget, 1000000000), 24 * 3600 * 1000);
}

void tst_TimeBudget::Parse_Texts_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<int>("feature");
    QTest::addColumn<int>("total");
    const int kFeature = KX_CC_FEATURE_BUDGET_MS;
    const int kTotal = KX_CC_CAMERA_BUDGET_MS;
    QCOMPARE(kFeature, 60000);
    QCOMPARE(kTotal, 300000);

    QTest::newRow("two numbers") << QByteArray("200,3000") << 200 << 3000;
    QTest::newRow("every digit at the front") << QByteArray("9,9") << 9 << 9;
    QTest::newRow("no limits") << QByteArray("0,0") << 0 << 0;
    QTest::newRow("a day") << QByteArray("86400000,86400000") << 86400000 << 86400000;
    QTest::newRow("empty") << QByteArray("") << kFeature << kTotal;
    QTest::newRow("one number") << QByteArray("200") << kFeature << kTotal;
    QTest::newRow("no second number") << QByteArray("200,") << kFeature << kTotal;
    QTest::newRow("three numbers") << QByteArray("1,2,3") << kFeature << kTotal;
    QTest::newRow("negative") << QByteArray("200,-1") << kFeature << kTotal;
    QTest::newRow("blanks") << QByteArray(" 200, 300") << kFeature << kTotal;
    QTest::newRow("words") << QByteArray("a,b") << kFeature << kTotal;
    QTest::newRow("longer than a day") << QByteArray("200,86400001") << kFeature << kTotal;
    QTest::newRow("beyond all numbers") << QByteArray("99999999999999999999,1") << kFeature << kTotal;
}

void tst_TimeBudget::Parse_Texts()
{
    QFETCH(QByteArray, text);
    QFETCH(int, feature);
    QFETCH(int, total);
    const TimeBudget::Limits limits = TimeBudget::Parse(text);
    QCOMPARE(limits.feature.count(), feature);
    QCOMPARE(limits.total.count(), total);
    QCOMPARE(TimeBudget::Parse(nullptr).total.count(), KX_CC_CAMERA_BUDGET_MS);
}

void tst_TimeBudget::SetTimeBudget_TooLong_ChangesNothing()
{
    QCOMPARE(KX_CC_SetTimeBudget(7, 8), KX_CC_OK);
    QCOMPARE(KX_CC_SetTimeBudget(86400001, 1), KX_CC_E_PARAMETER);
    QCOMPARE(KX_CC_SetTimeBudget(1, 86400001), KX_CC_E_PARAMETER);
    QCOMPARE(TimeBudget::Standard().feature.count(), 7);
    QCOMPARE(TimeBudget::Standard().total.count(), 8);
    QCOMPARE(KX_CC_SetTimeBudget(86400000, 0), KX_CC_OK);
    QCOMPARE(TimeBudget::Standard().feature.count(), 86400000);
}

QTEST_APPLESS_MAIN(tst_TimeBudget)
#include "tst_timebudget.moc"
