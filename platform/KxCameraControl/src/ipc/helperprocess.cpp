#include "ipc/helperprocess.h"

#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstdlib>

#include <dlfcn.h>
#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <glib.h>

#include "KxCameraControl/kxerrors.h"
#include "log/log.h"

namespace kxcc {
namespace {

constexpr int kChildSocket = 3;

/// Only standard streams and the socket reach the helper; it starts with default signals. A process group
/// of its own keeps a Ctrl-C in the terminal from ending it before it has released its camera: it ends
/// when this process does.
class SpawnPlan
{
public:
    /// Both descriptors are above those that the helper gets.
    SpawnPlan(int nSocket, int nErrorOutput)
    {
        posix_spawn_file_actions_init(&m_actions);
        posix_spawn_file_actions_addopen(&m_actions, 0, "/dev/null", O_RDONLY, 0);
        posix_spawn_file_actions_addopen(&m_actions, 1, "/dev/null", O_WRONLY, 0);
        posix_spawn_file_actions_adddup2(&m_actions, nErrorOutput, 2);
        posix_spawn_file_actions_adddup2(&m_actions, nSocket, kChildSocket);
        posix_spawn_file_actions_addclosefrom_np(&m_actions, kChildSocket + 1);
        posix_spawnattr_init(&m_attributes);
        sigset_t all;
        sigset_t none;
        sigfillset(&all);
        sigemptyset(&none);
        posix_spawnattr_setsigdefault(&m_attributes, &all);
        posix_spawnattr_setsigmask(&m_attributes, &none);
        posix_spawnattr_setpgroup(&m_attributes, 0);
        posix_spawnattr_setflags(&m_attributes,
                                 POSIX_SPAWN_SETSIGDEF | POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETPGROUP);
    }
    SpawnPlan(const SpawnPlan &) = delete;
    SpawnPlan &operator=(const SpawnPlan &) = delete;
    ~SpawnPlan()
    {
        posix_spawn_file_actions_destroy(&m_actions);
        posix_spawnattr_destroy(&m_attributes);
    }

    int Spawn(pid_t *pPid, const std::string &strProgram)
    {
        std::string strName = "kx-camera-session";
        char *const argv[] = {strName.data(), nullptr};
        return posix_spawn(pPid, strProgram.c_str(), &m_actions, &m_attributes, argv, environ);
    }

private:
    posix_spawn_file_actions_t m_actions{};
    posix_spawnattr_t m_attributes{};
};

/// A descriptor that is closed in the end.
struct Descriptor
{
    Descriptor() = default;
    Descriptor(const Descriptor &) = delete;
    Descriptor &operator=(const Descriptor &) = delete;
    ~Descriptor()
    {
        if (n >= 0)
            close(n);
    }

    /// In an application without standard streams it may be one of the numbers that the helper gets.
    bool MoveUp()
    {
        const int nBefore = n;
        n = fcntl(nBefore, F_DUPFD_CLOEXEC, kChildSocket + 1);
        close(nBefore);
        return n >= 0;
    }

    int n = -1;
};

bool MakeSocket(Descriptor &ours, Descriptor &helpers)
{
    int sockets[2];
    if (socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, sockets) != 0)
        return false;
    ours.n = sockets[0];
    helpers.n = sockets[1];
    return true;
}

/// Waits until the helper has closed its end, throwing away what it still sends.
bool WaitForHangUp(int nSocket, int nWaitMs)
{
    const auto end = std::chrono::steady_clock::now() + std::chrono::milliseconds(nWaitMs);
    for (;;) {
        const auto left =
            std::chrono::duration_cast<std::chrono::milliseconds>(end - std::chrono::steady_clock::now());
        pollfd descriptor{nSocket, POLLIN, 0};
        const int nReady = poll(&descriptor, 1, left.count() > 0 ? static_cast<int>(left.count()) : 0);
        if (nReady < 0 && errno == EINTR)
            continue;
        if (nReady <= 0)
            return false;
        char waste[4096];
        const ssize_t nRead = recv(nSocket, waste, sizeof waste, MSG_DONTWAIT);
        if (nRead == 0 || (nRead < 0 && errno != EAGAIN && errno != EINTR))
            return true;
    }
}

} // namespace

std::string HelperProgram()
{
    const char *szOverride = getenv("KX_CAMERA_SESSION");
    if (szOverride != nullptr && *szOverride != '\0')
        return szOverride;
    Dl_info info{};
    std::string strLibrary;
    if (dladdr(reinterpret_cast<const void *>(&HelperProgram), &info) != 0 && info.dli_fname != nullptr)
        strLibrary = info.dli_fname;
    const std::size_t nSlash = strLibrary.rfind('/');
    const std::string strFolder = nSlash == std::string::npos ? "." : strLibrary.substr(0, nSlash);
    return strFolder + "/../libexec/kx-camera-session";
}

int HelperProcess::Start()
{
    Descriptor ours;
    Descriptor helpers;
    Descriptor errorOutput;
    if (!MakeSocket(ours, helpers) || !m_output.Open(errorOutput.n) || !helpers.MoveUp() ||
        !errorOutput.MoveUp())
        return KX_CC_E_RESOURCE;
    pid_t nPid = -1;
    const std::string strProgram = HelperProgram();
    const int nError = SpawnPlan(helpers.n, errorOutput.n).Spawn(&nPid, strProgram);
    if (nError != 0) {
        Log(KX_CC_LOG_ERROR, m_strCamera, strProgram + " cannot be started: " + g_strerror(nError));
        const bool bNoRoom = nError == EAGAIN || nError == ENOMEM || nError == EMFILE || nError == ENFILE;
        return bNoRoom ? KX_CC_E_RESOURCE : KX_CC_E_SESSION;
    }
    m_nPid = nPid;
    m_nSocket = std::exchange(ours.n, -1);
    m_bKilled = false;
    return KX_CC_OK;
}

void HelperProcess::End(int nWaitMs)
{
    if (!IsRunning())
        return;
    shutdown(m_nSocket, SHUT_WR);
    if (!WaitForHangUp(m_nSocket, nWaitMs))
        Kill();
    else
        Reap();
}

void HelperProcess::Kill()
{
    if (!IsRunning())
        return;
    m_bKilled = true;
    kill(m_nPid, SIGKILL);
    Reap();
}

void HelperProcess::Reap()
{
    // A helper that closed its socket but does not exit would be waited for without end.
    const auto end = std::chrono::steady_clock::now() + std::chrono::milliseconds(500);
    int nStatus = 0;
    pid_t nDone = 0;
    while ((nDone = waitpid(m_nPid, &nStatus, WNOHANG)) == 0 && std::chrono::steady_clock::now() < end)
        usleep(200);
    if (nDone == 0) {
        m_bKilled = true;
        kill(m_nPid, SIGKILL);
        while (waitpid(m_nPid, &nStatus, 0) < 0 && errno == EINTR) {
        }
    }
    m_output.End(m_strCamera);
    LogEnd(nStatus);
    close(m_nSocket);
    m_nSocket = -1;
    m_nPid = -1;
}

void HelperProcess::LogEnd(int nStatus) const
{
    const bool bByUs = m_bKilled && WTERMSIG(nStatus) == SIGKILL;
    if (WIFSIGNALED(nStatus) && !bByUs)
        Log(KX_CC_LOG_WARNING, m_strCamera,
            std::string("helper process was ended by: ") + g_strsignal(WTERMSIG(nStatus)));
    if (WIFEXITED(nStatus) && WEXITSTATUS(nStatus) != 0)
        Log(KX_CC_LOG_WARNING, m_strCamera,
            "helper process ended with exit code " + std::to_string(WEXITSTATUS(nStatus)));
}

} // namespace kxcc
