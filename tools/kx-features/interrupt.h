#ifndef KXFEATURES_INTERRUPT_H
#define KXFEATURES_INTERRUPT_H

#include <QObject>
#include <QSocketNotifier>

/// Turns Ctrl-C (SIGINT), SIGTERM and SIGHUP into a signal of the event loop. Those that were ignored when
/// the program was started, by nohup for example, stay ignored.
///
/// One per process, in the main thread. A second Ctrl-C while the first is still being answered ends the
/// process the hard way, as a user expects.
class Interrupt : public QObject
{
    Q_OBJECT

public:
    explicit Interrupt(QObject *pParent = nullptr);
    ~Interrupt() override;

signals:
    void Raised();

private:
    void OnReadable();

    int m_fds[2] = {-1, -1}; // the signal handler writes into the second
    QSocketNotifier *m_pNotifier = nullptr;
};

#endif
