#ifndef TESTS_KXCAMERACONTROL_CAMERAFARM_H
#define TESTS_KXCAMERACONTROL_CAMERAFARM_H

#include <QProcess>
#include <QStringList>
#include <QTemporaryDir>

/// A running camera simulator. Ended with this object.
class CameraFarm
{
public:
    ~CameraFarm();

    /// True when the simulator was built.
    static bool IsThere();

    /// @return false when it does not say that it is ready
    bool Start(const QString &strFirstAddress, int nCount = 1, const QString &strDescription = {});
    void Stop();

    /// Switches a fault or setting on one camera ("0" switches a fault off).
    bool Set(const QString &strAddress, const QString &strKey, const QString &strValue)
    {
        return Do(QStringLiteral("set %1 %2 %3").arg(strAddress, strKey, strValue));
    }
    /// A line for its control socket: "unplug ADDRESS", "plug ADDRESS", "clear ADDRESS", ...
    bool Do(const QString &strCommand);

    qint64 Pid() const { return m_process.processId(); }

private:
    QTemporaryDir m_folder;
    QProcess m_process;
};

#endif
