#include "faults/faultfilter.h"

#include <QtTest>

using namespace KxFarm;

Q_DECLARE_METATYPE(Scope)

namespace {

constexpr std::uint32_t kRegister = 0x100;
constexpr std::uint32_t kOther = 0x200;

QByteArray Words(const std::vector<std::uint32_t> &words)
{
    QByteArray bytes(static_cast<int>(4 * words.size()), 0);
    for (std::size_t i = 0; i < words.size(); ++i)
        StoreBe32(reinterpret_cast<std::uint8_t *>(bytes.data()) + 4 * i, words[i]);
    return bytes;
}

/// `payload` outlives the request.
Gvcp::Request Request(Gvcp::Command command, const QByteArray &payload)
{
    Gvcp::Request request;
    request.command = command;
    request.payload = reinterpret_cast<const std::uint8_t *>(payload.constData());
    request.size = static_cast<std::size_t>(payload.size());
    return request;
}

} // namespace

/// Which of the commands that a camera gets a fault meets.
class tst_FaultFilter : public QObject
{
    Q_OBJECT

private slots:
    void Touches_RequestAndAddress_Tells_data();
    void Touches_RequestAndAddress_Tells();
    void IsWrite_Command_OnlyForThoseThatWrite();
    void Parse_Words_LeavesTheFaultsOwn_data();
    void Parse_Words_LeavesTheFaultsOwn();
    void Parse_BadWord_IsRefusedWithAReason_data();
    void Parse_BadWord_IsRefusedWithAReason();
    void Takes_Scope_OnlyItsCommands_data();
    void Takes_Scope_OnlyItsCommands();
    void Takes_Command_OnlyThatOne();
    void Takes_Address_OnlyWhatTouchesIt();
    void Takes_CommandAndAddress_OnlyBoth();
    void Takes_AfterAndTimes_CountsOnlyCommandsItMeets();

private:
    /// How many of ten such requests the filter takes.
    static int Taken(FaultFilter *pFilter, const Gvcp::Request &request)
    {
        int taken = 0;
        for (int i = 0; i < 10; ++i)
            taken += pFilter->Takes(request) ? 1 : 0;
        return taken;
    }
    static FaultFilter Filter(Scope scope, const QByteArray &text)
    {
        FaultFilter filter(scope);
        QByteArray value;
        QString error;
        if (!filter.Parse(text, &value, &error))
            qFatal("%s", qPrintable(error));
        return filter;
    }
};

void tst_FaultFilter::Touches_RequestAndAddress_Tells_data()
{
    using namespace Gvcp;
    QTest::addColumn<int>("command");
    QTest::addColumn<QByteArray>("payload");
    QTest::addColumn<bool>("touches");
    const auto row = [](const char *name, Command command, const QByteArray &payload, bool touches) {
        QTest::newRow(name) << int{command} << payload << touches;
    };
    row("reads it", READREG_CMD, Words({kRegister}), true);
    row("reads it as the second", READREG_CMD, Words({kOther, kRegister}), true);
    row("reads another", READREG_CMD, Words({kOther}), false);
    row("reads nothing", READREG_CMD, {}, false);
    row("writes it", WRITEREG_CMD, Words({kRegister, 1}), true);
    row("writes its address as a value", WRITEREG_CMD, Words({kOther, kRegister}), false);
    row("writes it as the second", WRITEREG_CMD, Words({kOther, 1, kRegister, 1}), true);
    row("writes it, without a value", WRITEREG_CMD, Words({kRegister}), false);
    row("memory from it on", READMEM_CMD, Words({kRegister, 4}), true);
    row("memory up to the byte before it", READMEM_CMD, Words({kRegister - 4, 4}), false);
    row("memory up to it", READMEM_CMD, Words({kRegister - 4, 8}), true);
    row("memory behind it", READMEM_CMD, Words({kRegister + 4, 4}), false);
    row("memory without a size", READMEM_CMD, Words({kRegister}), false);
    row("memory written from it on", WRITEMEM_CMD, Words({kRegister, 1}), true);
    row("memory written up to the byte before it", WRITEMEM_CMD, Words({kRegister - 4, 1}), false);
    row("memory written up to it", WRITEMEM_CMD, Words({kRegister - 4, 1, 2}), true);
    row("discovery", DISCOVERY_CMD, Words({kRegister, 4}), false);
}

void tst_FaultFilter::Touches_RequestAndAddress_Tells()
{
    QFETCH(int, command);
    QFETCH(QByteArray, payload);
    QFETCH(bool, touches);

    QCOMPARE(Touches(Request(static_cast<Gvcp::Command>(command), payload), kRegister), touches);
}

void tst_FaultFilter::IsWrite_Command_OnlyForThoseThatWrite()
{
    QVERIFY(IsWrite(Request(Gvcp::WRITEREG_CMD, {})));
    QVERIFY(IsWrite(Request(Gvcp::WRITEMEM_CMD, {})));
    QVERIFY(!IsWrite(Request(Gvcp::READREG_CMD, {})));
    QVERIFY(!IsWrite(Request(Gvcp::READMEM_CMD, {})));
    QVERIFY(!IsWrite(Request(Gvcp::DISCOVERY_CMD, {})));
}

void tst_FaultFilter::Parse_Words_LeavesTheFaultsOwn_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<QByteArray>("value");
    QTest::newRow("nothing of the filter") << QByteArray("10 20") << QByteArray("10 20");
    QTest::newRow("words between") << QByteArray("10 after=5 20  times=3") << QByteArray("10 20");
    QTest::newRow("an equals sign of its own") << QByteArray("Width=640 after=5") << QByteArray("Width=640");
    QTest::newRow("only the filter") << QByteArray("command=readmem address=0x100") << QByteArray();
}

void tst_FaultFilter::Parse_Words_LeavesTheFaultsOwn()
{
    QFETCH(QByteArray, text);
    QFETCH(QByteArray, value);
    FaultFilter filter(Scope::Commands);
    QByteArray own = "unset";
    QString error;

    QVERIFY2(filter.Parse(text, &own, &error), qPrintable(error));

    QCOMPARE(own, value);
}

void tst_FaultFilter::Parse_BadWord_IsRefusedWithAReason_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<QString>("reason");
    QTest::newRow("no command") << QByteArray("command=dance") << QString("\"dance\" is no command");
    QTest::newRow("no times") << QByteArray("times=0") << QString("\"0\" is no number from 1 to 1000000000");
    QTest::newRow("negative") << QByteArray("after=-1")
                              << QString("\"-1\" is no number from 0 to 1000000000");
    QTest::newRow("address beyond the last")
        << QByteArray("address=0x100000000") << QString("\"0x100000000\" is no number from 0 to 4294967295");
}

void tst_FaultFilter::Parse_BadWord_IsRefusedWithAReason()
{
    QFETCH(QByteArray, text);
    QFETCH(QString, reason);
    FaultFilter filter(Scope::Commands);
    QByteArray own;
    QString error;

    QVERIFY(!filter.Parse(text, &own, &error));

    QCOMPARE(error, reason);
}

void tst_FaultFilter::Takes_Scope_OnlyItsCommands_data()
{
    QTest::addColumn<Scope>("scope");
    QTest::addColumn<int>("discoveries");
    QTest::addColumn<int>("reads");
    QTest::newRow("all but discovery") << Scope::Commands << 0 << 10;
    QTest::newRow("only discovery") << Scope::Discovery << 10 << 0;
    QTest::newRow("all") << Scope::Everything << 10 << 10;
}

void tst_FaultFilter::Takes_Scope_OnlyItsCommands()
{
    QFETCH(Scope, scope);
    QFETCH(int, discoveries);
    QFETCH(int, reads);
    FaultFilter filter(scope);

    QCOMPARE(Taken(&filter, Request(Gvcp::DISCOVERY_CMD, {})), discoveries);
    QCOMPARE(Taken(&filter, Request(Gvcp::READREG_CMD, {})), reads);
}

void tst_FaultFilter::Takes_Command_OnlyThatOne()
{
    const std::pair<const char *, Gvcp::Command> commands[] = {{"discovery", Gvcp::DISCOVERY_CMD},
                                                               {"readreg", Gvcp::READREG_CMD},
                                                               {"writereg", Gvcp::WRITEREG_CMD},
                                                               {"readmem", Gvcp::READMEM_CMD},
                                                               {"writemem", Gvcp::WRITEMEM_CMD}};
    for (const auto &[name, wanted] : commands) {
        FaultFilter filter = Filter(Scope::Commands, QByteArray("command=") + name);
        for (const auto &[other, command] : commands)
            QVERIFY2(Taken(&filter, Request(command, {})) == (command == wanted ? 10 : 0), other);
    }
}

void tst_FaultFilter::Takes_Address_OnlyWhatTouchesIt()
{
    FaultFilter filter = Filter(Scope::Commands, "address=0x100");
    const QByteArray payload = Words({kRegister, 4});
    const QByteArray other = Words({kOther, 4});

    QCOMPARE(Taken(&filter, Request(Gvcp::READMEM_CMD, payload)), 10);
    QCOMPARE(Taken(&filter, Request(Gvcp::WRITEREG_CMD, payload)), 10);
    QCOMPARE(Taken(&filter, Request(Gvcp::READMEM_CMD, other)), 0);
}

void tst_FaultFilter::Takes_CommandAndAddress_OnlyBoth()
{
    FaultFilter filter = Filter(Scope::Commands, "command=readmem address=256");
    const QByteArray payload = Words({kRegister, 4});
    const QByteArray other = Words({kOther, 4});

    QCOMPARE(Taken(&filter, Request(Gvcp::READMEM_CMD, payload)), 10);
    QCOMPARE(Taken(&filter, Request(Gvcp::WRITEREG_CMD, payload)), 0);
    QCOMPARE(Taken(&filter, Request(Gvcp::READMEM_CMD, other)), 0);
}

void tst_FaultFilter::Takes_AfterAndTimes_CountsOnlyCommandsItMeets()
{
    FaultFilter filter = Filter(Scope::Commands, "command=readreg after=2 times=3");
    const Gvcp::Request read = Request(Gvcp::READREG_CMD, {});
    QCOMPARE(Taken(&filter, Request(Gvcp::WRITEREG_CMD, {})), 0);

    QList<bool> taken;
    for (int i = 0; i < 7; ++i)
        taken.append(filter.Takes(read));

    QCOMPARE(taken, QList<bool>({false, false, true, true, true, false, false}));
}

QTEST_APPLESS_MAIN(tst_FaultFilter)
#include "tst_faultfilter.moc"
