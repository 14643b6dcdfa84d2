#include "windowfixture.h"

#include <QApplication>
#include <QFile>
#include <QResource>
#include <QStackedWidget>
#include <QtTest>

#include <ToolBase/lumointerface.h>
#include <ui/devicetablemodel.h>

WindowFixture::WindowFixture(int nLimit)
{
    qputenv("XDG_CONFIG_HOME", QFile::encodeName(m_directory.path()));
    WriteSettings("ENG", nLimit);
    QResource::registerResource(LumoInterface::readonlyCfgPath() + "/rcc/lumo.rcc");
    m_pWindow = std::make_unique<MainWidget>();
}

WindowFixture::~WindowFixture() = default;

void WindowFixture::WriteSettings(const QString &strLanguage, int nLimit) const
{
    QDir(m_directory.path()).mkpath("lumo");
    QFile file(m_directory.filePath("lumo/installation.conf"));
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(QString("Language=%1\nToolsSupportNum=%2\n").arg(strLanguage).arg(nLimit).toUtf8());
}

void WindowFixture::Show()
{
    m_pWindow->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_pWindow.get()));
}

void WindowFixture::ShowCameras(const QVector<KX_CC_DEVICE_INFO> &vecCameras)
{
    m_devices.Set(vecCameras);
    Show();
    QTRY_COMPARE_WITH_TIMEOUT(m_pWindow->GetCameraNum(), vecCameras.size(), 20000);
}

void WindowFixture::ChangeCameras(const QVector<KX_CC_DEVICE_INFO> &vecCameras)
{
    m_devices.Set(vecCameras);
    QVERIFY(m_devices.WaitForRound());
    // What the round found is queued by now; the tree applies it in slices, each after a pass of the loop.
    QTRY_COMPARE_WITH_TIMEOUT(Tree()->findItem(LumoDeviceTree::AllCamerasItem, -1)->text(1).toInt(),
                              vecCameras.size(), 20000);
    QTest::qWait(20);
}

LumoDeviceTree *WindowFixture::Tree() const
{
    return m_pWindow->findChild<LumoDeviceTree *>("ToolTree");
}

TarnCustomTableWidget *WindowFixture::Table() const
{
    return m_pWindow->findChild<TarnCustomTableWidget *>("DeviceTable");
}

TarnCustomCheckHeaderView *WindowFixture::Header() const
{
    return qobject_cast<TarnCustomCheckHeaderView *>(Table()->horizontalHeader());
}

TarnCustomPushButton *WindowFixture::Button(const QString &strName) const
{
    return m_pWindow->findChild<TarnCustomPushButton *>(strName);
}

QString WindowFixture::LabelText(const QString &strName) const
{
    return m_pWindow->findChild<TarnCustomLabel *>(strName)->text();
}

QString WindowFixture::Text(int nRow, int nColumn) const
{
    const QTableWidgetItem *pItem = Table()->item(nRow, nColumn);
    return pItem ? pItem->text() : QString("no item");
}

QStringList WindowFixture::VisibleTexts(int nColumn) const
{
    QStringList listTexts;
    for (int nRow = 0; nRow < m_pWindow->GetCameraNum(); ++nRow) {
        if (!Table()->isRowHidden(nRow))
            listTexts.append(Text(nRow, nColumn));
    }
    return listTexts;
}

bool WindowFixture::IsChecked(int nRow) const
{
    return Table()->cellCheckState(nRow, 0) == Qt::Checked;
}

QTreeWidgetItem *WindowFixture::Group(const QString &strText) const
{
    return Tree()->findItems(strText, Qt::MatchExactly | Qt::MatchRecursive).value(0);
}

bool WindowFixture::IsResultPage() const
{
    return m_pWindow->findChild<QStackedWidget *>("PageStack")->currentWidget()->objectName() == "ResultPage";
}

QString WindowFixture::Counts() const
{
    return QStringList{LabelText("TotalNumLabel"), LabelText("SuccessNumLabel"), LabelText("FailedNumLabel")}
        .join(", ");
}

void WindowFixture::ClickCheckBox(int nRow)
{
    const QRect rect = Table()->visualRect(Table()->model()->index(nRow, 0));
    QTest::mouseClick(Table()->viewport(), Qt::LeftButton, Qt::NoModifier, rect.center());
}

void WindowFixture::ClickHeader(int nColumn)
{
    const QPoint point(Header()->sectionViewportPosition(nColumn) + Header()->sectionSize(nColumn) / 2,
                       Header()->height() / 2);
    QTest::mouseClick(Header()->viewport(), Qt::LeftButton, Qt::NoModifier, point);
}

void WindowFixture::ClickTree(QTreeWidgetItem *pItem)
{
    QVERIFY(pItem);
    QTest::mouseClick(Tree()->viewport(), Qt::LeftButton, Qt::NoModifier,
                      Tree()->visualItemRect(pItem).center());
}

void WindowFixture::ClickButton(const QString &strName)
{
    QTest::mouseClick(Button(strName), Qt::LeftButton);
}

void WindowFixture::Begin(int nDeviceID, unsigned int nType)
{
    m_pWindow->onBeginThread(nDeviceID, nType);
}

void WindowFixture::Info(int nDeviceID, const QString &strMsg, bool bFailed)
{
    m_pWindow->onThreadInfo(nDeviceID, strMsg, bFailed);
}

void WindowFixture::End(int nDeviceID, unsigned int nType, const QString &strPath)
{
    m_pWindow->onEndThread(nDeviceID, nType, strPath);
}
