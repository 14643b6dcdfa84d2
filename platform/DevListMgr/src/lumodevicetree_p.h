#ifndef DEVLISTMGR_LUMODEVICETREE_P_H
#define DEVLISTMGR_LUMODEVICETREE_P_H

#include <QHash>
#include <QIcon>
#include <QMap>
#include <QQueue>
#include <QSet>
#include <QTimer>

#include "DevListMgr/lumodevicetree.h"
#include "devicelistdiff.h"
#include "devicesearch.h"

/// The items of a LumoDeviceTree and the search behind it.
class LumoDeviceTreePrivate
{
public:
    explicit LumoDeviceTreePrivate(LumoDeviceTree *pTree, DeviceSourceFactory factory);

    void CreateFixedItems();
    void SetTexts();

    QTreeWidgetItem *MakeItem(QTreeWidgetItem *pParent, LumoDeviceTree::ItemType nType, int nID);
    QTreeWidgetItem *GroupFor(const KX_CC_DEVICE_INFO &stDevInfo);
    void DropGroupIfEmpty(QTreeWidgetItem *pGroup);
    void WriteCamera(QTreeWidgetItem *pItem, const DeviceChange &change);
    void ShowCounts();
    void ApplyVisibility(QTreeWidgetItem *pItem);
    void ApplyVisibilityToAll();

    LumoDeviceTree *const m_pTree;
    QTreeWidgetItem *m_pAllItem = nullptr;
    QTreeWidgetItem *m_pHintItem = nullptr;
    QMap<QString, QTreeWidgetItem *> m_mapGroups; ///< by the interface's text
    QHash<int, QTreeWidgetItem *> m_hashCameras;  ///< by nDeviceID
    QQueue<DeviceChange> m_queueChanges;          ///< found, not yet in the tree
    QTimer m_timerSlice;
    QList<int> m_listVisible; ///< item types shown; empty: all
    unsigned int m_nTransports = 0;
    int m_nNextGroup = 1;
    bool m_bRoundDone = false; ///< at least one
    DeviceSearch m_search;

private:
    QString StateText(quint32 nAccessStatus) const;
};

#endif
