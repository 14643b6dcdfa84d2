#include "csorttableitem.h"

#include "devicetablemodel.h"

CSortTableItem::CSortTableItem() = default;

CSortTableItem::~CSortTableItem() = default;

bool CSortTableItem::operator<(const QTableWidgetItem &other) const
{
    const int nCode = data(DeviceTable::StateCodeRole).toInt();
    if (nCode > 0)
        return nCode < other.data(DeviceTable::StateCodeRole).toInt();
    return text() < other.text();
}
