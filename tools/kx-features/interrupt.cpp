#include "interrupt.h"

#include <csignal>
#include <cstring>
#include <fcntl.h>
#include <unistd.h>

namespace {

const int kSignals[] = {SIGINT, SIGTERM, SIGHUP};

// Written before the handler is installed and read by it alone.
int g_writeEnd = -1;

// A handler may do no more than this; the rest happens in the event loop.
void OnSignal(int /*number*/)
{
    const char byte = 0;
    const ssize_t written = write(g_writeEnd, &byte, 1);
    static_cast<void>(written);
}

// A signal that the caller has ignored, as nohup does with SIGHUP and a shell with a background job's SIGINT,
// is not for this program.
bool IsIgnored(int number)
{
    struct sigaction action = {};
    return sigaction(number, nullptr, &action) == 0 && action.sa_handler == SIG_IGN;
}

void SetHandlers(void (*pHandler)(int), int flags)
{
    struct sigaction action = {};
    action.sa_handler = pHandler;
    action.sa_flags = flags;
    for (const int number : kSignals) {
        if (!IsIgnored(number)) {
            sigaction(number, &action, nullptr);
        }
    }
}

} // namespace

Interrupt::Interrupt(QObject *pParent)
    : QObject(pParent)
{
    if (pipe2(m_fds, O_CLOEXEC | O_NONBLOCK) != 0) {
        return; // the system's own answer to the signals stays
    }
    g_writeEnd = m_fds[1];
    m_pNotifier = new QSocketNotifier(m_fds[0], QSocketNotifier::Read, this);
    connect(m_pNotifier, &QSocketNotifier::activated, this, &Interrupt::OnReadable);
    // RESETHAND: the second signal finds the default action.
    SetHandlers(OnSignal, SA_RESTART | static_cast<int>(SA_RESETHAND));
}

Interrupt::~Interrupt()
{
    if (m_pNotifier == nullptr) {
        return;
    }
    SetHandlers(SIG_DFL, 0);
    close(m_fds[0]);
    close(m_fds[1]);
}

void Interrupt::OnReadable()
{
    char byte = 0;
    if (read(m_fds[0], &byte, 1) == 1) {
        emit Raised();
    }
}
