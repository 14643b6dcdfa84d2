#include "faulttable.h"

#include <QtTest>

Q_DECLARE_METATYPE(FaultBatch::Wanted)

void FaultTable::initTestCase()
{
    if (!CameraFarm::IsInstalled())
        QSKIP("kx-camera-farm is not built");
    QCOMPARE(m_batch.Prepare(), QString());
}

void FaultTable::Export_OneCameraFaulty_OtherCamerasComplete_data()
{
    QTest::addColumn<QByteArray>("fault");
    QTest::addColumn<Wanted>("wanted");
    for (const Row &row : m_rows)
        QTest::newRow(row.name.constData()) << row.fault << row.wanted;
}

void FaultTable::Export_OneCameraFaulty_OtherCamerasComplete()
{
    QFETCH(QByteArray, fault);
    QFETCH(FaultBatch::Wanted, wanted);
    QCOMPARE(m_batch.Play(fault, wanted), QString());
}
