#ifndef BENCH_LOOPWATCH_H
#define BENCH_LOOPWATCH_H

#include <QElapsedTimer>
#include <QTimer>

#include <ctime>

/// A stretch of time: on the clock, and of this thread's work, which other programs do not lengthen.
struct Span
{
    double wallMs = 0;
    double cpuMs = 0;
    void Raise(const Span &other)
    {
        wallMs = qMax(wallMs, other.wallMs);
        cpuMs = qMax(cpuMs, other.cpuMs);
    }
};

class Stopwatch
{
public:
    Stopwatch() { Restart(); }
    void Restart()
    {
        m_wall.start();
        m_cpuMs = CpuMs();
    }
    Span Elapsed() const { return {double(m_wall.nsecsElapsed()) / 1e6, CpuMs() - m_cpuMs}; }

private:
    static double CpuMs()
    {
        timespec time = {};
        clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
        return double(time.tv_sec) * 1e3 + double(time.tv_nsec) / 1e6;
    }
    QElapsedTimer m_wall;
    double m_cpuMs = 0;
};

/// Longest time between two passes of the event loop.
class LoopWatch
{
public:
    LoopWatch()
    {
        QObject::connect(&m_tick, &QTimer::timeout, &m_tick, [this] {
            m_longest.Raise(m_sinceLast.Elapsed());
            m_sinceLast.Restart();
        });
        m_tick.start(1);
    }
    void Restart()
    {
        m_longest = Span();
        m_sinceLast.Restart();
    }
    Span Longest() const { return m_longest; }

private:
    QTimer m_tick;
    Stopwatch m_sinceLast;
    Span m_longest;
};

#endif
