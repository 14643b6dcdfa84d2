#ifndef UI_CAMERAROWS_H
#define UI_CAMERAROWS_H

#include <QCoreApplication>

class TarnCustomTableWidget;
struct _STRUCT_DEVICE_INFO_;

/// The rows of the device table: one per camera at its top and empty ones below, never fewer than ten.
///
/// What is known of a camera stands in the cells of its row (devicetablemodel.h) and nowhere else. Works on
/// the table that the owner's pointer names at the time of a call; without a table every call does nothing.
/// The pointer has to outlive this object. GUI thread only.
///
/// Emits no signal of its own; Remove() lets the table emit one.
class CameraRows
{
    Q_DECLARE_TR_FUNCTIONS(MainWidget) // the table's texts are the window's

public:
    explicit CameraRows(TarnCustomTableWidget *&pTable);
    Q_DISABLE_COPY(CameraRows)

    /// Gives a new table its header, its columns and its empty rows.
    void SetUp();
    /// Labels the columns in the present language.
    void SetTexts();

    /// Rows with a camera, hidden ones included.
    int Count() const;
    /// Row of a camera; -1 when it has none.
    int RowOf(int nDeviceID) const;

    /// Adds a row for a camera, hidden, below the others; the first camera's row becomes the chosen one.
    /// Returns the row, -1 without a table.
    int Insert(const _STRUCT_DEVICE_INFO_ &stDeviceInfo, const QString &strInterface);

    /// Writes a record into a camera's row. A camera that is not free loses its tick, without a signal.
    void Update(int nRow, const _STRUCT_DEVICE_INFO_ &stDeviceInfo, const QString &strInterface);

    /// Takes a camera's tick, for which the table emits SigCellCheckStateChanged(), then its row. Whoever
    /// answers the signal may wait for a person meanwhile. False when the camera has no row.
    bool Remove(int nDeviceID);

private:
    void SetUpColumns();
    void InsertEmptyRow(int nRow);
    bool SetText(int nRow, int nColumn, const QString &strText);
    void UpdateAccessState(int nRow, quint32 nAccessStatus);
    static QString AccessStateText(int nState);

    TarnCustomTableWidget *&m_pTable;
};

#endif
