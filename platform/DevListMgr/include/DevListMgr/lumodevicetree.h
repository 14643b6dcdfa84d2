#ifndef DEVLISTMGR_LUMODEVICETREE_H
#define DEVLISTMGR_LUMODEVICETREE_H

#include <QList>
#include <QTreeWidget>

#include <memory>

#include "devicesource.h"
#include "devlistmgrglobal.h"
#include "structdeviceinfo.h"

struct DeviceChange;
class LumoDeviceTreePrivate;

/// A tree that finds cameras by itself and shows them under the interface that they were found on.
///
/// What a person sees: "All Cameras" at the top, below it one group for each interface
/// ("GigE Vision - eth0", "USB3 Vision"), below each its cameras; column 1 counts the cameras of a group.
/// Everything is always expanded. A camera that is not free is greyed, its tool tip says why.
///
/// The search runs in a thread of its own and starts with the first updateDeviceTypes(). Its results are
/// put into the tree in slices of a few milliseconds, so a thousand cameras that appear at once do not
/// hold up the window. All functions and signals belong to the GUI thread.
///
/// A camera keeps its nDeviceID for as long as the tree lives, also when it goes and comes back. One that
/// is lost while this process has it open stays in the tree, unreachable, until its handle was closed and
/// one more round of the search has passed.
class DEVLISTMGR_EXPORT LumoDeviceTree : public QTreeWidget
{
    Q_OBJECT

public:
    /// What an item stands for: column 0, ItemTypeRole.
    enum ItemType
    {
        CameraItem = 1,        ///< a camera; identifier: its nDeviceID
        GigEInterfaceItem = 2, ///< a network interface; identifier: its number in the tree, from 1
        UsbInterfaceItem = 3,  ///< the USB cameras; identifier as above
        PortInterfaceItem = 4, ///< the numbered ports of serial interfaces; identifier as above
        HintItem = 10,         ///< says that no camera was found (yet); not selectable; identifier -1
        AllCamerasItem = 11    ///< stands for all cameras; identifier -1
    };
    Q_ENUM(ItemType)

    /// Item data in column 0.
    enum ItemDataRole
    {
        ItemTypeRole = Qt::UserRole + 1, ///< int: ItemType
        ItemIdRole = Qt::UserRole + 2,   ///< int: the identifier
        RecordRole = Qt::UserRole + 3    ///< StructDeviceInfo, of cameras only
    };

    explicit LumoDeviceTree(QWidget *parent = nullptr);

    /// Ends the search; waits for its round in progress, half a second as a rule.
    ~LumoDeviceTree() override;

    /// Names the tree after the tool that shows it: its object name, for style sheets and tests. Stays the
    /// first virtual function of the class: tools call it by its place.
    virtual void setToolName(const QString &strName);

    /// The item types that are shown, with what is below them; all of them at first.
    void setVisibleItemTypes(const QList<int> &listTypes);
    /// The list as it was set; empty at first.
    QList<int> visibleItemTypes() const;

    /// Switches the search for kinds of cameras on or off; all are off at first.
    /// @param nTypes  KX_CC_TRANSPORT_... flags: 1 network, 4 USB, 8 port cameras
    void updateDeviceTypes(unsigned int nTypes, bool bOn);

    /// The item of this type and identifier; null when there is none. Valid until sigDeleteDeviceItem()
    /// of a camera, until its last camera goes for an interface, and with the tree for the others.
    QTreeWidgetItem *findItem(ItemType nType, long nID) const;

    /// The item of a camera, in constant time; null when there is none.
    QTreeWidgetItem *findCameraItem(long nDeviceID) const;

    /// What trees that are built from now on search with; null for the camera SDK.
    static void setSourceFactory(DeviceSourceFactory factory);

signals:
    /// A camera was found; its item is in the tree.
    void sigNewDeviceItem(QTreeWidgetItem *pItem);
    /// The record or the interface of a camera changed; the item holds the new one.
    void sigUpdateDeviceItem(QTreeWidgetItem *pItem);
    /// A camera has gone; its item is deleted when the signal has been delivered.
    void sigDeleteDeviceItem(QTreeWidgetItem *pItem);

protected:
    void changeEvent(QEvent *pEvent) override;
    void drawBranches(QPainter *pPainter, const QRect &rect, const QModelIndex &index) const override;

private:
    void OnRoundDone(const QVector<DeviceChange> &vecChanges);
    void ApplySlice();
    void Apply(const DeviceChange &change);
    void AddCamera(const DeviceChange &change);
    void UpdateCamera(const DeviceChange &change);
    void DeleteCamera(const DeviceChange &change);

    std::unique_ptr<LumoDeviceTreePrivate> m_pPrivate;
};

#endif
