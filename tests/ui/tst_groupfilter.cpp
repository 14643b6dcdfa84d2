#include <QtTest>

#include <StyleCtl/tarncustomtablewidget.h>
#include <ui/camerarows.h>
#include <ui/devicetablemodel.h>
#include <ui/groupfilter.h>

#include "tabledevices.h"

using namespace DeviceTable;

/// The filter over a plain table and a tree of scripted cameras: no window.
class tst_GroupFilter : public QObject
{
    Q_OBJECT

private slots:
    void IsShown_Selected_DecidesByItsPlace_data();
    void IsShown_Selected_DecidesByItsPlace();
    void Filter_GroupSelected_ShowsItsCamerasAlone();
    void FilterRow_CameraUnknownToTheTree_StaysAsItIs();
    void FilterAllRows_Always_LeavesUpdatesEnabled();
    void Missing_TableOrTree_DoesNothing();
};

void tst_GroupFilter::IsShown_Selected_DecidesByItsPlace_data()
{
    QTest::addColumn<QString>("strSelected");
    QTest::addColumn<bool>("bShown");
    QTest::newRow("nothing") << QString() << false;
    QTest::newRow("its group") << "group" << true;
    QTest::newRow("the group of its group") << "outer" << true;
    QTest::newRow("another group") << "other" << false;
    QTest::newRow("itself") << "camera" << false;
    QTest::newRow("all cameras") << "all" << true;
}

void tst_GroupFilter::IsShown_Selected_DecidesByItsPlace()
{
    QFETCH(QString, strSelected);
    QTreeWidgetItem outer;
    auto *pGroup = new QTreeWidgetItem(&outer);
    auto *pCamera = new QTreeWidgetItem(pGroup);
    QTreeWidgetItem other;
    QTreeWidgetItem all;
    all.setData(0, LumoDeviceTree::ItemTypeRole, LumoDeviceTree::AllCamerasItem);
    const QMap<QString, QTreeWidgetItem *> mapItems{
        {"group", pGroup}, {"outer", &outer}, {"other", &other}, {"camera", pCamera}, {"all", &all}};
    QTEST(GroupFilter::IsShown(pCamera, mapItems.value(strSelected)), "bShown");
}

namespace {

/// A table with a row for each camera of a tree.
struct TableOfATree
{
    explicit TableOfATree(const QVector<KX_CC_DEVICE_INFO> &vecCameras)
    {
        devices.Set(vecCameras);
        pTree = new LumoDeviceTree;
        rows.SetUp();
        QObject::connect(pTree, &LumoDeviceTree::sigNewDeviceItem, pTable, [this](QTreeWidgetItem *pItem) {
            rows.Insert(pItem->data(0, LumoDeviceTree::RecordRole).value<StructDeviceInfo>(), QString());
        });
        pTree->updateDeviceTypes(KX_CC_TRANSPORT_GIGE, true);
    }
    ~TableOfATree()
    {
        delete pTree;
        delete pTable;
    }
    Q_DISABLE_COPY(TableOfATree)

    void Select(const QString &strGroup)
    {
        pTree->setCurrentItem(pTree->findItems(strGroup, Qt::MatchExactly | Qt::MatchRecursive, 0).value(0));
    }

    QStringList Shown() const
    {
        QStringList listSerials;
        for (int nRow = 0; nRow < rows.Count(); ++nRow) {
            if (!pTable->isRowHidden(nRow))
                listSerials.append(pTable->item(nRow, SerialColumn)->text());
        }
        listSerials.sort();
        return listSerials;
    }

    ScriptedDevices devices;
    LumoDeviceTree *pTree = nullptr;
    TarnCustomTableWidget *pTable = new TarnCustomTableWidget;
    CameraRows rows{pTable};
    GroupFilter filter{pTable, pTree};
};

} // namespace

void tst_GroupFilter::Filter_GroupSelected_ShowsItsCamerasAlone()
{
    TableOfATree table(NetworkCameras(1, 2, "eth0") + NetworkCameras(3, 3, "eth1"));
    QTRY_COMPARE_WITH_TIMEOUT(table.rows.Count(), 3, 20000);
    QCOMPARE(table.Shown(), QStringList());
    table.Select("GigE Vision - eth0");
    table.filter.FilterAllRows();
    QCOMPARE(table.Shown(), QStringList({"SN0001", "SN0002"}));
    table.Select("GigE Vision - eth1");
    table.filter.FilterAllRows();
    QCOMPARE(table.Shown(), QStringList("SN0003"));
    table.pTree->setCurrentItem(table.pTree->findItem(LumoDeviceTree::AllCamerasItem, -1));
    table.filter.FilterRow(0);
    table.filter.FilterRow(1);
    table.filter.FilterRow(2);
    QCOMPARE(table.Shown().size(), 3);
}

void tst_GroupFilter::FilterRow_CameraUnknownToTheTree_StaysAsItIs()
{
    TableOfATree table(NetworkCameras(1, 1));
    QTRY_COMPARE_WITH_TIMEOUT(table.rows.Count(), 1, 20000);
    table.pTable->item(0, CheckColumn)->setData(DeviceIdRole, 99);
    table.pTree->setCurrentItem(table.pTree->findItem(LumoDeviceTree::AllCamerasItem, -1));
    table.filter.FilterRow(0);
    QVERIFY(table.pTable->isRowHidden(0));
    table.pTable->setRowHidden(0, false);
    table.pTree->setCurrentItem(nullptr);
    table.filter.FilterRow(0);
    QVERIFY(!table.pTable->isRowHidden(0));
}

void tst_GroupFilter::FilterAllRows_Always_LeavesUpdatesEnabled()
{
    TableOfATree table({});
    table.filter.FilterAllRows();
    QVERIFY(table.pTable->updatesEnabled());
}

void tst_GroupFilter::Missing_TableOrTree_DoesNothing()
{
    TarnCustomTableWidget *pNoTable = nullptr;
    LumoDeviceTree *pNoTree = nullptr;
    GroupFilter none(pNoTable, pNoTree);
    none.FilterRow(0);
    none.FilterAllRows();

    auto pTable = std::make_unique<TarnCustomTableWidget>(1, 1);
    TarnCustomTableWidget *pWithoutTree = pTable.get();
    pTable->setItem(0, CheckColumn, new QTableWidgetItem);
    GroupFilter noTree(pWithoutTree, pNoTree);
    noTree.FilterRow(0);
    noTree.FilterAllRows();
    QVERIFY(!pTable->isRowHidden(0));
    QVERIFY(pTable->updatesEnabled());
}

QTEST_MAIN(tst_GroupFilter)
#include "tst_groupfilter.moc"
