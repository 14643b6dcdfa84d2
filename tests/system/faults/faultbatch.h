#ifndef TESTS_SYSTEM_FAULTBATCH_H
#define TESTS_SYSTEM_FAULTBATCH_H

#include "camerafarm.h"
#include "companion.h"

#include <QByteArray>
#include <QMap>
#include <QString>

/// Batches of kx-features on three simulated cameras, of which the second one misbehaves.
///
/// Each Play() starts fresh cameras, so that no fault outlives its case. One thread.
class FaultBatch
{
public:
    /// What becomes of the faulty camera's export.
    enum class Wanted
    {
        SameFile,    ///< succeeds, with the bytes of a healthy camera
        AllButWidth, ///< succeeds; every feature but Width has its record
        Part,        ///< succeeds with a whole file; each of its records is a healthy camera's
        NoFile       ///< fails: the camera cannot be opened
    };

    /// @param network  "127.50.1.": the cameras are .1, .2 and .3 of it, no other test's
    explicit FaultBatch(const QString &network)
        : m_strNetwork(network)
    {
    }

    /// Starts fresh cameras and exports them. Empty, or what went wrong.
    QString Prepare();

    /// Sets the fault, e.g. "mute-after 5", exports the three cameras in one batch and checks all of it: exit
    /// code, the faulty camera's row and file, its neighbours' files, the time, that the batch leaves no
    /// process and the farm no descriptor behind, and that the camera can be had again without the fault.
    /// Empty, or what was not as it should be.
    QString Play(const QByteArray &fault, Wanted wanted, qint64 longestMs = kLongestMs);

    /// The steps of Play(), for cases of their own.
    QString StartFarm(const QStringList &more = {});
    QString SetFault(const QByteArray &fault);
    struct Outcome
    {
        CompanionRun run;
        qint64 nMilliseconds = 0;
        QMap<QString, QByteArray> files; ///< by name
        QByteArray marker;
    };
    Outcome Export(const QStringList &more = {});
    Outcome Import(const QByteArray &file);
    QString CheckNeighbours(const Outcome &outcome) const;
    QString CheckLeftovers(const Outcome &outcome) const;
    QString CheckFreeAgain();

    QString Address(int camera) const { return m_strNetwork + QString::number(camera); }
    QString Faulty() const { return Address(2); }
    CameraFarm &Farm() { return m_farm; }
    const QByteArray &Reference() const { return m_reference; }

    /// The longest that a batch with a dead camera may take: 3 s, and room for a busy machine.
    static constexpr qint64 kLongestMs = 12000;

private:
    QString CheckFaulty(const Outcome &outcome, Wanted wanted) const;
    Outcome Run(QStringList arguments, const QString &folder);

    const QString m_strNetwork;
    CameraFarm m_farm;
    QByteArray m_reference; // what a healthy camera's file holds
};

/// The records of a feature file, without the lines before and after them.
QList<QByteArray> RecordsOf(const QByteArray &file);

/// Whether the file begins and ends as a complete one does.
bool IsWhole(const QByteArray &file);

/// Processes that carry the text in their environment.
QList<qint64> ProcessesMarked(const QByteArray &marker);

/// Empty, or how the file of a faulty camera is not what it should be beside a healthy camera's. Not for
/// Wanted::NoFile.
QString CheckFile(const QByteArray &file, const QByteArray &healthy, FaultBatch::Wanted wanted);

#endif
