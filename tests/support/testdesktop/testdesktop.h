#ifndef TESTS_SUPPORT_TESTDESKTOP_H
#define TESTS_SUPPORT_TESTDESKTOP_H

#include <QByteArray>
#include <QString>

#include <sys/types.h>

#include <vector>

/// A display of its own for a test program, with a window manager.
///
/// Use it in main(), before there is a QApplication: Start() sets DISPLAY and QT_QPA_PLATFORM for the
/// program and its children. Everything ends with the object, or with the program when it crashes.
class TestDesktop
{
public:
    TestDesktop() = default;
    ~TestDesktop();
    TestDesktop(const TestDesktop &) = delete;
    TestDesktop &operator=(const TestDesktop &) = delete;

    /// False when something is missing; Reason() says what.
    bool Start();
    QString Reason() const { return m_strReason; }

private:
    bool StartServer();
    bool StartWindowManager();
    pid_t Spawn(const std::vector<QByteArray> &arguments, int nKeptDescriptor);

    std::vector<pid_t> m_vecChildren;
    QString m_strReason;
};

#endif
