#ifndef UI_DEVICETABLEMODEL_H
#define UI_DEVICETABLEMODEL_H

#include <QtGlobal>

/// Columns, item roles and sizes of the device table.
namespace DeviceTable {

enum Column
{
    CheckColumn = 0, ///< check box; DeviceIdRole
    PortColumn = 1,
    ModelColumn = 2,
    UserNameColumn = 3,
    SerialColumn = 4,
    InterfaceColumn = 5,
    MacColumn = 6,
    StateColumn = 7,   ///< icon; StateCodeRole
    OperateColumn = 8, ///< text of the operation; SuccessRole
    ColumnCount = 9
};

enum Role
{
    DeviceIdRole = Qt::UserRole + 1, ///< int: the camera's nDeviceID
    SuccessRole = Qt::UserRole + 2,  ///< bool: the operation has not failed so far
    StateCodeRole = Qt::UserRole + 3 ///< int: AccessState
};

const int kMinRows = 10; // empty rows fill the table up to this number
const int kRowHeight = 38;
const int kHeaderHeight = 32;
const int kIconSize = 34;

} // namespace DeviceTable

#endif
