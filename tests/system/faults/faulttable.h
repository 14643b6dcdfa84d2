#ifndef TESTS_SYSTEM_FAULTTABLE_H
#define TESTS_SYSTEM_FAULTTABLE_H

#include "faultbatch.h"

#include <QObject>

#include <vector>

/// A test program that plays a table of faults in the second camera of a batch, each in fresh cameras. A
/// subclass brings the table, and slots for what takes more than a row.
class FaultTable : public QObject
{
    Q_OBJECT

protected:
    using Wanted = FaultBatch::Wanted;
    struct Row
    {
        QByteArray name;
        QByteArray fault; ///< as for FaultBatch::Play()
        Wanted wanted;
    };

    /// @param network  as for FaultBatch
    FaultTable(const QString &network, std::vector<Row> rows)
        : m_batch(network)
        , m_rows(std::move(rows))
    {
    }

    FaultBatch m_batch;

private slots:
    void initTestCase();
    void Export_OneCameraFaulty_OtherCamerasComplete_data();
    void Export_OneCameraFaulty_OtherCamerasComplete();

private:
    const std::vector<Row> m_rows;
};

#endif
