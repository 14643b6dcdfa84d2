#ifndef UI_CSORTTABLEITEM_H
#define UI_CSORTTABLEITEM_H

#include <QTableWidgetItem>

/// Cell of the device table. Sorts by its number under Qt::UserRole + 3 when that is above zero, else by
/// its text, case-sensitively.
class CSortTableItem : public QTableWidgetItem
{
public:
    CSortTableItem();
    ~CSortTableItem() override;

    bool operator<(const QTableWidgetItem &other) const override;
};

#endif
