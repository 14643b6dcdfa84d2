#include "processsetup.h"

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <sys/resource.h>
#include <unistd.h>

namespace {

// Enough for 4096 cameras. Not all that the system allows: that may be a billion, and there are programs
// that walk through every number that a descriptor could have.
const rlim_t kMostDescriptors = 16384;

void RaiseLimit(__rlimit_resource_t resource, rlim_t most)
{
    rlimit limit = {};
    if (getrlimit(resource, &limit) != 0) {
        return;
    }
    const rlim_t wanted = std::min(limit.rlim_max, most);
    if (limit.rlim_cur < wanted) {
        limit.rlim_cur = wanted;
        setrlimit(resource, &limit);
    }
}

} // namespace

void ProcessSetup::Prepare()
{
    OccupyStandardStreams();
    IgnoreSignalsOfFailedWrites();
    RaiseLimits();
}

void ProcessSetup::OccupyStandardStreams()
{
    for (const int stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
        if (fcntl(stream, F_GETFD) == -1 && errno == EBADF) {
            // The lowest free number is the stream's, for those below are open by now. Not O_CLOEXEC:
            // programs started by this one must not find it closed either.
            const int opened = open("/dev/null", O_RDONLY);
            static_cast<void>(opened);
        }
    }
}

void ProcessSetup::IgnoreSignalsOfFailedWrites()
{
    signal(SIGPIPE, SIG_IGN);
    signal(SIGXFSZ, SIG_IGN);
}

void ProcessSetup::RaiseLimits()
{
    RaiseLimit(RLIMIT_NOFILE, kMostDescriptors);
    RaiseLimit(RLIMIT_NPROC, RLIM_INFINITY);
}
