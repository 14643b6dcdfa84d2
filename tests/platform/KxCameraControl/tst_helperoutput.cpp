#include <QtTest>

#include <csignal>

#include <fcntl.h>
#include <unistd.h>

#include "ipc/helperoutput.h"
#include "log/log.h"

using namespace kxcc;

namespace {

QStringList lines; ///< "CAMERA: TEXT"

void Take(unsigned int, const char *szCamera, const char *szText, void *)
{
    lines << QString(szCamera) + ": " + szText;
}

QString Said(const QString &strText)
{
    return "Camera: helper process: " + strText;
}

const QString kTooMuch = "Camera: helper process: what it says beyond these lines is left out";

} // namespace

class tst_HelperOutput : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void Read_LinesInParts_AreHandedOnWhole();
    void Read_NothingThere_ComesBackAtOnce();
    void Read_MoreLinesThanAllowed_SaysSoOnceAndStops();
    void Read_EmptyLines_AreCountedButNotHandedOn();
    void Read_LineWithoutEnd_IsCutIntoSeveral();
    void Read_HelperClosedItsEnd_IsNotPolledAnyMore();
    void End_LineWithoutItsEnd_IsHandedOn();
    void End_AfterTooMuch_SaysNothingMore();
    void Open_Again_StartsAnew();
    void Open_AgainInTheMiddleOfALine_ForgetsIt();
    void HelperEnd_NobodyReads_DoesNotBlock();

private:
    void Write(const QByteArray &text) const;

    HelperOutput *m_pOutput = nullptr;
    int m_nEnd = -1;
};

void tst_HelperOutput::init()
{
    signal(SIGPIPE, SIG_IGN);
    lines.clear();
    SetLogReceiver(KX_CC_LOG_DEBUG, Take, nullptr);
    m_pOutput = new HelperOutput;
    QVERIFY(m_pOutput->Open(m_nEnd));
}

void tst_HelperOutput::cleanup()
{
    delete m_pOutput;
    if (m_nEnd >= 0)
        close(m_nEnd);
    m_nEnd = -1;
    SetLogReceiver(KX_CC_LOG_DEBUG, nullptr, nullptr);
}

void tst_HelperOutput::Write(const QByteArray &text) const
{
    QCOMPARE(write(m_nEnd, text.constData(), static_cast<size_t>(text.size())), ssize_t(text.size()));
}

void tst_HelperOutput::Read_LinesInParts_AreHandedOnWhole()
{
    Write("one\ntw");
    m_pOutput->Read("Camera");
    QCOMPARE(lines, QStringList(Said("one")));
    Write("o\nthree\n");
    m_pOutput->Read("Camera");
    QCOMPARE(lines, QStringList({Said("one"), Said("two"), Said("three")}));
    QVERIFY(m_pOutput->Descriptor() >= 0);
}

void tst_HelperOutput::Read_NothingThere_ComesBackAtOnce()
{
    m_pOutput->Read("Camera");
    QCOMPARE(lines, QStringList());
    QVERIFY(m_pOutput->Descriptor() >= 0);
}

void tst_HelperOutput::Read_MoreLinesThanAllowed_SaysSoOnceAndStops()
{
    QStringList expected;
    for (unsigned int i = 0; i < KX_CC_LOG_HELPER_LINES - 1; ++i) {
        Write(QByteArray::number(i) + "\n");
        expected << Said(QString::number(i));
    }
    m_pOutput->Read("Camera");
    QCOMPARE(lines, expected);
    QVERIFY(m_pOutput->Descriptor() >= 0);

    Write("last\nnever\n");
    m_pOutput->Read("Camera");
    QCOMPARE(lines, expected << Said("last") << kTooMuch);
    QCOMPARE(m_pOutput->Descriptor(), -1);
    Write("nor this\n");
    m_pOutput->Read("Camera");
    QCOMPARE(lines, expected);
}

void tst_HelperOutput::Read_EmptyLines_AreCountedButNotHandedOn()
{
    Write(QByteArray(KX_CC_LOG_HELPER_LINES - 1, '\n') + "one\ntwo\n");
    m_pOutput->Read("Camera");
    QCOMPARE(lines, QStringList({Said("one"), kTooMuch}));
}

void tst_HelperOutput::Read_LineWithoutEnd_IsCutIntoSeveral()
{
    Write(QByteArray(650, 'x'));
    m_pOutput->Read("Camera");
    QCOMPARE(lines, QStringList({Said(QString(300, 'x')), Said(QString(300, 'x'))}));
}

void tst_HelperOutput::Read_HelperClosedItsEnd_IsNotPolledAnyMore()
{
    close(m_nEnd);
    m_nEnd = -1;
    m_pOutput->Read("Camera");
    QCOMPARE(m_pOutput->Descriptor(), -1);
}

void tst_HelperOutput::End_LineWithoutItsEnd_IsHandedOn()
{
    Write("one\nand no more");
    m_pOutput->End("Camera");
    QCOMPARE(lines, QStringList({Said("one"), Said("and no more")}));
    QCOMPARE(m_pOutput->Descriptor(), -1);
}

void tst_HelperOutput::End_AfterTooMuch_SaysNothingMore()
{
    Write(QByteArray(KX_CC_LOG_HELPER_LINES, '\n') + "rest");
    m_pOutput->End("Camera");
    QCOMPARE(lines, QStringList(kTooMuch));
}

void tst_HelperOutput::Open_Again_StartsAnew()
{
    Write(QByteArray(KX_CC_LOG_HELPER_LINES, '\n') + "half");
    m_pOutput->Read("Camera");
    close(m_nEnd);
    QVERIFY(m_pOutput->Open(m_nEnd));
    Write("fresh\n");
    m_pOutput->Read("Camera");
    QCOMPARE(lines, QStringList({kTooMuch, Said("fresh")}));
}

void tst_HelperOutput::Open_AgainInTheMiddleOfALine_ForgetsIt()
{
    Write("half");
    m_pOutput->Read("Camera");
    close(m_nEnd);
    QVERIFY(m_pOutput->Open(m_nEnd));
    Write("fresh\n");
    m_pOutput->Read("Camera");
    QCOMPARE(lines, QStringList(Said("fresh")));
}

void tst_HelperOutput::HelperEnd_NobodyReads_DoesNotBlock()
{
    const QByteArray block(65536, '\n');
    ssize_t nWritten = 0;
    for (int i = 0; i < 100 && nWritten >= 0; ++i)
        nWritten = write(m_nEnd, block.constData(), static_cast<size_t>(block.size()));
    QCOMPARE(nWritten, ssize_t(-1));
    QCOMPARE(errno, EAGAIN);
    m_pOutput->Read("Camera");
    QVERIFY(write(m_nEnd, "x", 1) == 1 || errno == EAGAIN); // not a broken pipe, which could end the helper
    QVERIFY(errno != EPIPE);
}

QTEST_APPLESS_MAIN(tst_HelperOutput)
#include "tst_helperoutput.moc"
