#include "ownnetwork.h"

#include <cstring>
#include <string>

#include <fcntl.h>
#include <net/if.h>
#include <sched.h>
#include <sys/ioctl.h>
#include <sys/socket.h>
#include <unistd.h>

namespace {

bool WriteFile(const char *pPath, const std::string &text)
{
    const int nFile = open(pPath, O_WRONLY | O_CLOEXEC);
    if (nFile < 0)
        return false;
    const bool bWritten = write(nFile, text.data(), text.size()) == static_cast<ssize_t>(text.size());
    close(nFile);
    return bWritten;
}

bool BringLoopbackUp()
{
    const int nSocket = socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0);
    if (nSocket < 0)
        return false;
    ifreq request = {};
    std::strncpy(request.ifr_name, "lo", IFNAMSIZ - 1);
    bool bUp = ioctl(nSocket, SIOCGIFFLAGS, &request) == 0;
    request.ifr_flags = static_cast<short>(request.ifr_flags | IFF_UP | IFF_RUNNING);
    bUp = bUp && ioctl(nSocket, SIOCSIFFLAGS, &request) == 0;
    close(nSocket);
    return bUp;
}

} // namespace

bool EnterOwnNetwork()
{
    const std::string user = std::to_string(getuid());
    const std::string group = std::to_string(getgid());
    if (unshare(CLONE_NEWNET) != 0) { // needs a privilege, which a user name space of ours gives
        if (unshare(CLONE_NEWUSER | CLONE_NEWNET) != 0)
            return false;
        WriteFile("/proc/self/setgroups", "deny");
        WriteFile("/proc/self/uid_map", user + ' ' + user + " 1");
        WriteFile("/proc/self/gid_map", group + ' ' + group + " 1");
    }
    return BringLoopbackUp();
}
