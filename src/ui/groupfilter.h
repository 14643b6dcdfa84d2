#ifndef UI_GROUPFILTER_H
#define UI_GROUPFILTER_H

class LumoDeviceTree;
class QTreeWidgetItem;
class TarnCustomTableWidget;

/// Shows in the device table the cameras of the group that is selected in the device tree.
///
/// Works on the table and the tree that the owner's pointers name at the time of a call; without one of them
/// every call does nothing. The pointers have to outlive this object. GUI thread only; signals nothing.
class GroupFilter
{
public:
    GroupFilter(TarnCustomTableWidget *&pTable, LumoDeviceTree *&pTree);

    /// Shows or hides one camera's row. A row without a camera, or whose camera the tree does not know,
    /// stays.
    void FilterRow(int nRow);
    void FilterAllRows();

    /// Whether a camera's row is shown while this item is selected, which may be null. A camera's own item
    /// shows nothing: only groups do, and the item of all cameras.
    static bool IsShown(const QTreeWidgetItem *pCamera, const QTreeWidgetItem *pSelected);

private:
    TarnCustomTableWidget *&m_pTable;
    LumoDeviceTree *&m_pTree;
};

#endif
