/// kx-camera-session: serves one camera to the process that started it.
///
/// Started by the camera SDK with a socket as descriptor 3, over which requests come. It ends when the
/// other end is closed. Nothing else is read: no arguments, no files but the camera's.

#include <clocale>
#include <csignal>
#include <cstdio>

#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <unistd.h>

#include "helper/requestloop.h"

namespace {

constexpr int kSocket = 3;

bool IsSocket(int nDescriptor)
{
    struct stat status
    {
    };
    return fstat(nDescriptor, &status) == 0 && S_ISSOCK(status.st_mode);
}

void Limit(int nResource, rlim_t nValue)
{
    rlimit limit{};
    getrlimit(static_cast<__rlimit_resource_t>(nResource), &limit);
    if (limit.rlim_cur > nValue) {
        limit.rlim_cur = nValue;
        setrlimit(static_cast<__rlimit_resource_t>(nResource), &limit);
    }
}

/// A faulty camera can make the evaluator crash or eat memory. That ends here and leaves no core file.
void SetLimits()
{
    Limit(RLIMIT_CORE, 0);
    Limit(RLIMIT_NOFILE, 256); // the application's may be raised for hundreds of cameras
#if !defined(__SANITIZE_ADDRESS__)
    Limit(RLIMIT_DATA, rlim_t{512} << 20); // a sanitizer reserves terabytes
#endif
}

} // namespace

int main()
{
    if (!IsSocket(kSocket)) {
        std::fputs("kx-camera-session is started by the camera SDK\n", stderr);
        return 2;
    }
    setlocale(LC_ALL, "C");
    signal(SIGPIPE, SIG_IGN);
    SetLimits();
    kxcc::RequestLoop loop(kSocket);
    // The window of the application comes before its cameras. The watcher, started already, keeps its
    // priority: it must speak to the camera in time.
    setpriority(PRIO_PROCESS, 0, 5);
    loop.Run();
    // The hang-up ended the loop, or a failure which is made one here.
    shutdown(kSocket, SHUT_RDWR);
    for (;;)
        pause();
}
