#include <QtTest>

#include <fcntl.h>

#include "inchild.h"
#include "output.h"

// What is printed, and whether it was; each case in a process of its own, because a stream remembers.
class tst_Output : public QObject
{
    Q_OBJECT

private slots:
    void Print_Text_ArrivesAtOnceAsUtf8();
    void PrintError_Text_ArrivesOnStandardErrorAlone();
    void IsComplete_AllWritten_IsTrue();
    void IsComplete_DeviceFull_IsFalseForGood();
    void IsComplete_ErrorOutputFull_IsTrue();
};

// Lets the descriptor of a stream be the file.
static void Redirect(int stream, const char *path)
{
    dup2(open(path, O_RDWR | O_APPEND | O_CREAT, 0600), stream);
}

void tst_Output::Print_Text_ArrivesAtOnceAsUtf8()
{
    const QTemporaryDir dir;
    const QByteArray file = QFile::encodeName(dir.filePath("out"));
    QCOMPARE(InChild([&file] {
                 Redirect(STDOUT_FILENO, file.constData());
                 Output::Print(QString::fromUtf8("caf\xC3\xA9\n"));
                 QFile written(QFile::decodeName(file));
                 return written.open(QIODevice::ReadOnly) && written.readAll() == "caf\xC3\xA9\n" ? 0 : 1;
             }),
             0);
}

void tst_Output::PrintError_Text_ArrivesOnStandardErrorAlone()
{
    const QTemporaryDir dir;
    const QByteArray out = QFile::encodeName(dir.filePath("out"));
    const QByteArray err = QFile::encodeName(dir.filePath("err"));
    QCOMPARE(InChild([&] {
                 Redirect(STDOUT_FILENO, out.constData());
                 Redirect(STDERR_FILENO, err.constData());
                 Output::PrintError("why");
                 return 0;
             }),
             0);
    QCOMPARE(QFileInfo(QFile::decodeName(out)).size(), 0);
    QCOMPARE(QFileInfo(QFile::decodeName(err)).size(), 3);
}

void tst_Output::IsComplete_AllWritten_IsTrue()
{
    QCOMPARE(InChild([] {
                 Redirect(STDOUT_FILENO, "/dev/null");
                 Output::Print("line\n");
                 return Output::IsComplete() ? 0 : 1;
             }),
             0);
}

void tst_Output::IsComplete_DeviceFull_IsFalseForGood()
{
    QCOMPARE(InChild([] {
                 Redirect(STDOUT_FILENO, "/dev/full");
                 Output::Print("lost\n");
                 const bool first = Output::IsComplete();
                 Redirect(STDOUT_FILENO, "/dev/null");
                 Output::Print("line\n");
                 return !first && !Output::IsComplete() ? 0 : 1;
             }),
             0);
}

void tst_Output::IsComplete_ErrorOutputFull_IsTrue()
{
    QCOMPARE(InChild([] {
                 Redirect(STDOUT_FILENO, "/dev/null");
                 Redirect(STDERR_FILENO, "/dev/full");
                 Output::PrintError("lost\n");
                 return Output::IsComplete() ? 0 : 1;
             }),
             0);
}

QTEST_GUILESS_MAIN(tst_Output)
#include "tst_output.moc"
