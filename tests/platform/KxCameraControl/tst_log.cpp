#include <QtTest>

#include <atomic>
#include <thread>

#include "KxCameraControl/kxerrors.h"
#include "log/log.h"

using namespace kxcc;

namespace {

struct Messages
{
    QStringList lines; ///< "LEVEL CAMERA: TEXT"

    static void Take(unsigned int nLevel, const char *szCamera, const char *szText, void *pUser)
    {
        static_cast<Messages *>(pUser)->lines
            << QStringLiteral("%1 %2: %3").arg(nLevel).arg(szCamera, szText);
    }
};

QByteArray Printable(const QByteArray &text, size_t nWidth = 100)
{
    return QByteArray::fromStdString(
        PrintableLine(text.constData(), static_cast<size_t>(text.size()), nWidth));
}

} // namespace

class tst_Log : public QObject
{
    Q_OBJECT

private slots:
    void cleanup() { SetLogReceiver(KX_CC_LOG_DEBUG, nullptr, nullptr); }

    void Log_NobodyListens_IsDropped();
    void Log_ReceiverIsSet_GetsLevelCameraAndText();
    void Log_BelowTheLowestLevel_IsDropped();
    void Log_LineEndsAndControls_BecomeOnePrintableLine();
    void Log_EndlessText_IsCut();
    void SetLogReceiver_LevelThatIsNone_KeepsTheFormerOne();
    void SetLogReceiver_CallbackIsRunning_WaitsForIt();
    void PrintableLine_Texts_data();
    void PrintableLine_Texts();
};

void tst_Log::Log_NobodyListens_IsDropped()
{
    Log(KX_CC_LOG_ERROR, "Camera", "text");
    Messages messages;
    SetLogReceiver(KX_CC_LOG_DEBUG, Messages::Take, &messages);
    SetLogReceiver(KX_CC_LOG_DEBUG, nullptr, nullptr);
    Log(KX_CC_LOG_ERROR, "Camera", "text");
    QCOMPARE(messages.lines, QStringList());
}

void tst_Log::Log_ReceiverIsSet_GetsLevelCameraAndText()
{
    Messages messages;
    QCOMPARE(SetLogReceiver(KX_CC_LOG_DEBUG, Messages::Take, &messages), KX_CC_OK);
    Log(KX_CC_LOG_DEBUG, "Camera 1", "one");
    Log(KX_CC_LOG_ERROR, "", "two");
    QCOMPARE(messages.lines, QStringList({"1 Camera 1: one", "4 : two"}));
}

void tst_Log::Log_BelowTheLowestLevel_IsDropped()
{
    Messages messages;
    SetLogReceiver(KX_CC_LOG_WARNING, Messages::Take, &messages);
    Log(KX_CC_LOG_INFO, "", "info");
    Log(KX_CC_LOG_WARNING, "", "warning");
    Log(KX_CC_LOG_ERROR, "", "error");
    QCOMPARE(messages.lines, QStringList({"3 : warning", "4 : error"}));
}

void tst_Log::Log_LineEndsAndControls_BecomeOnePrintableLine()
{
    Messages messages;
    SetLogReceiver(KX_CC_LOG_DEBUG, Messages::Take, &messages);
    Log(KX_CC_LOG_INFO, "Cam\nera", "a\r\nb\x1b[2J");
    QCOMPARE(messages.lines, QStringList({"2 Cam?era: a??b?[2J"}));
}

void tst_Log::Log_EndlessText_IsCut()
{
    Messages messages;
    SetLogReceiver(KX_CC_LOG_DEBUG, Messages::Take, &messages);
    Log(KX_CC_LOG_INFO, "", std::string(1000000, 'x'));
    QCOMPARE(messages.lines, QStringList("2 : " + QString(400, 'x')));
}

void tst_Log::SetLogReceiver_LevelThatIsNone_KeepsTheFormerOne()
{
    Messages messages;
    SetLogReceiver(KX_CC_LOG_DEBUG, Messages::Take, &messages);
    QCOMPARE(SetLogReceiver(KX_CC_LOG_DEBUG - 1, nullptr, nullptr), KX_CC_E_PARAMETER);
    QCOMPARE(SetLogReceiver(KX_CC_LOG_ERROR + 1, nullptr, nullptr), KX_CC_E_PARAMETER);
    Log(KX_CC_LOG_INFO, "", "still");
    QCOMPARE(messages.lines, QStringList("2 : still"));
    QCOMPARE(SetLogReceiver(KX_CC_LOG_ERROR, nullptr, nullptr), KX_CC_OK);
}

void tst_Log::SetLogReceiver_CallbackIsRunning_WaitsForIt()
{
    struct Slow
    {
        std::atomic_bool bEntered{false};
        std::atomic_bool bLeft{false};
    } slow;
    const auto take = [](unsigned int, const char *, const char *, void *pUser) {
        auto *pSlow = static_cast<Slow *>(pUser);
        pSlow->bEntered = true;
        QTest::qSleep(50); // long enough for a change that does not wait
        pSlow->bLeft = true;
    };
    SetLogReceiver(KX_CC_LOG_DEBUG, take, &slow);
    std::thread other([] { Log(KX_CC_LOG_INFO, "", "text"); });
    while (!slow.bEntered)
        std::this_thread::yield();
    SetLogReceiver(KX_CC_LOG_DEBUG, nullptr, nullptr);
    const bool bLeft = slow.bLeft;
    other.join();
    QVERIFY(bLeft);
}

void tst_Log::PrintableLine_Texts_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<QByteArray>("printable");

    QTest::newRow("ASCII") << QByteArray("a/b\\c ~") << QByteArray("a/b\\c ~");
    QTest::newRow("two to four bytes") << QByteArray("ä相😀") << QByteArray("ä相😀");
    QTest::newRow("controls") << QByteArray("\t\x01\x7f\xc2\x85") << QByteArray("????");
    QTest::newRow("NUL") << QByteArray("a\0b", 3) << QByteArray("a?b");
    QTest::newRow("no UTF-8") << QByteArray("a\xff\xe4z") << QByteArray("a??z");
    QTest::newRow("character cut off") << QByteArray("a\xe7\x9b") << QByteArray("a??");
    QTest::newRow("right to left, zero width") << QByteArray("a\u202e\u200bb") << QByteArray("a??b");
    QTest::newRow("separators of lines") << QByteArray("a\u2028\u2029b") << QByteArray("a??b");
    QTest::newRow("as long as it may be") << QByteArray(100, 'x') << QByteArray(100, 'x');
    QTest::newRow("too long") << QByteArray(101, 'x') << QByteArray(100, 'x');
    QTest::newRow("too long by half a character") << QByteArray(99, 'x') + "ä" << QByteArray(99, 'x');
}

void tst_Log::PrintableLine_Texts()
{
    QFETCH(QByteArray, text);
    QFETCH(QByteArray, printable);
    QCOMPARE(Printable(text), printable);
}

QTEST_APPLESS_MAIN(tst_Log)
#include "tst_log.moc"
