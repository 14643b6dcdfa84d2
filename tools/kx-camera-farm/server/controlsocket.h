#ifndef KXCAMERAFARM_CONTROLSOCKET_H
#define KXCAMERAFARM_CONTROLSOCKET_H

#include "server/filedescriptor.h"

#include <QByteArray>
#include <QString>
#include <functional>
#include <map>

namespace KxFarm {

/// A UNIX stream socket that answers lines with lines. Any number of clients; each line is at most 64 KB.
class ControlSocket
{
public:
    using Execute = std::function<QByteArray(const QByteArray &line)>;

    ~ControlSocket();

    /// Listens at `path`. A socket file left behind by a process that is gone is replaced; one that
    /// somebody listens on, or a file of another kind, is an error.
    bool Listen(const QString &path, QString *pError);

    int Listener() const { return m_listener.Get(); }
    int Accept();                                   ///< the new client's descriptor, -1 without one
    bool Serve(int client, const Execute &execute); ///< false when the client is gone and closed

private:
    struct Client
    {
        FileDescriptor socket;
        QByteArray input;
    };
    QByteArray m_path;
    FileDescriptor m_listener;
    std::map<int, Client> m_mapClients;
};

} // namespace KxFarm

#endif
