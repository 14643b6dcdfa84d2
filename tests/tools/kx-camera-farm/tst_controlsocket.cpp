#include <QTemporaryDir>
#include <QTest>

#include <cstring>
#include <sys/socket.h>
#include <sys/un.h>

#include "server/controlsocket.h"

using namespace KxFarm;

class tst_ControlSocket : public QObject
{
    Q_OBJECT

private slots:
    void Serve_LineByLine_IsAnswered();
    void Serve_ClientReadsNoAnswers_IsClosedWithoutWaiting();

private:
    /// A client of the socket; not open when it cannot connect.
    static FileDescriptor Connect(const QString &path);
};

FileDescriptor tst_ControlSocket::Connect(const QString &path)
{
    FileDescriptor client(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0));
    sockaddr_un name = {};
    name.sun_family = AF_UNIX;
    const QByteArray bytes = path.toLocal8Bit();
    std::memcpy(name.sun_path, bytes.constData(), static_cast<std::size_t>(bytes.size()));
    if (::connect(client.Get(), reinterpret_cast<const sockaddr *>(&name), sizeof name) != 0)
        client.Reset();
    return client;
}

void tst_ControlSocket::Serve_LineByLine_IsAnswered()
{
    const QTemporaryDir folder;
    ControlSocket control;
    QString error;
    QVERIFY2(control.Listen(folder.filePath("socket"), &error), qPrintable(error));
    const FileDescriptor client = Connect(folder.filePath("socket"));
    QVERIFY(client.IsOpen());
    const int served = control.Accept();

    QCOMPARE(::send(client.Get(), "one\ntwo\nthr", 11, 0), ssize_t{11});
    QVERIFY(control.Serve(served, [](const QByteArray &line) { return "ok " + line; }));

    char answers[100];
    const ssize_t size = ::recv(client.Get(), answers, sizeof answers, 0);
    QCOMPARE(QByteArray(answers, static_cast<int>(size)), QByteArray("ok one\nok two\n"));
}

// The cameras are served by the same thread: it must never wait for a client.
void tst_ControlSocket::Serve_ClientReadsNoAnswers_IsClosedWithoutWaiting()
{
    const QTemporaryDir folder;
    ControlSocket control;
    QString error;
    QVERIFY2(control.Listen(folder.filePath("socket"), &error), qPrintable(error));
    const FileDescriptor client = Connect(folder.filePath("socket"));
    QVERIFY(client.IsOpen());
    const int served = control.Accept();
    bool alive = true;

    for (int i = 0; alive && i < 1000; ++i) {
        QCOMPARE(::send(client.Get(), "list\n", 5, MSG_DONTWAIT), ssize_t{5});
        alive = control.Serve(served, [](const QByteArray &) { return QByteArray(50000, 'x'); });
    }

    QVERIFY(!alive);
}

QTEST_GUILESS_MAIN(tst_ControlSocket)
#include "tst_controlsocket.moc"
