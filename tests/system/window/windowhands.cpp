#include "windowhands.h"

#include <QElapsedTimer>
#include <QHeaderView>
#include <QLabel>
#include <QtTest>

#include <DevListMgr/lumodevicetree.h>
#include <StyleCtl/tarncustomlabel.h>
#include <StyleCtl/tarncustompushbutton.h>
#include <modalhands.h>

namespace {

const int kBatchLimitMs = 60000;
const int kSerialColumn = 4;

} // namespace

TarnCustomTableWidget *WindowHands::Table() const
{
    return m_window.findChild<TarnCustomTableWidget *>("DeviceTable");
}

LumoDeviceTree *WindowHands::Tree() const
{
    return m_window.findChild<LumoDeviceTree *>("ToolTree");
}

QStringList WindowHands::Serials() const
{
    QStringList listSerials;
    for (int nRow = 0; nRow < m_window.GetCameraNum(); ++nRow)
        listSerials.append(Text(nRow, kSerialColumn));
    return listSerials;
}

QString WindowHands::Counts() const
{
    QStringList listCounts;
    for (const char *pName : {"TotalNumLabel", "SuccessNumLabel", "FailedNumLabel"})
        listCounts.append(m_window.findChild<TarnCustomLabel *>(pName)->text());
    return listCounts.join(", ");
}

void WindowHands::Click(QWidget *pWidget, const QPoint &point)
{
    QTest::mouseClick(pWidget, Qt::LeftButton, {}, point);
}

void WindowHands::ClickHeader(int nColumn) const
{
    QHeaderView *pHeader = Table()->horizontalHeader();
    Click(pHeader->viewport(),
          QPoint(pHeader->sectionViewportPosition(nColumn) + pHeader->sectionSize(nColumn) / 2,
                 pHeader->height() / 2));
}

void WindowHands::ClickRow(int nRow) const
{
    Table()->scrollToItem(Table()->item(nRow, 0));
    Click(Table()->viewport(), Table()->visualRect(Table()->model()->index(nRow, 0)).center());
}

void WindowHands::Press(const QString &strButton) const
{
    auto *pButton = m_window.findChild<TarnCustomPushButton *>(strButton);
    QVERIFY(pButton->isVisible() && pButton->isEnabled());
    QTest::mouseClick(pButton, Qt::LeftButton);
}

void WindowHands::TickAll() const
{
    // The header's box may still be ticked from before a camera lost its tick by itself.
    for (int nClick = 0; nClick < 2 && m_window.GetCheckedNum() < m_window.GetCameraNum(); ++nClick)
        ClickHeader(0);
    QCOMPARE(m_window.GetCheckedNum(), m_window.GetCameraNum());
}

WindowHands::Batch WindowHands::Export(const QString &strFolder, const Moments &moments) const
{
    return RunBatch("ExportBtn", strFolder, moments);
}

WindowHands::Batch WindowHands::Import(const QString &strFile, const Moments &moments) const
{
    return RunBatch("ImportBtn", strFile, moments);
}

WindowHands::Batch WindowHands::RunBatch(const QString &strButton, const QString &strPath,
                                         const Moments &moments) const
{
    const bool bExport = strButton == "ExportBtn";
    Batch batch;
    QElapsedTimer timer;
    ModalHands hands;
    hands.Then("QFileDialog", [&](QWidget *pDialog) {
        if (moments.beforeStart)
            moments.beforeStart();
        timer.start();
        ModalHands::Choose(pDialog, strPath);
    });
    if (moments.whileBusy)
        hands.Then("LoadingDlg", moments.whileBusy);
    hands.Then(bExport ? "SaveDoneHintDlg" : "MessageBox", [&](QWidget *pDialog) {
        batch.nMilliseconds = timer.elapsed();
        if (moments.atEnd)
            moments.atEnd();
        batch.strMessage = pDialog->findChild<QLabel *>(bExport ? "SaveDoneText" : "MessageContent")->text();
        QTest::keyClick(pDialog, bExport ? Qt::Key_Escape : Qt::Key_Return);
    });
    if (!m_window.findChild<QWidget *>(strButton)->isVisible())
        Press("BackBtn"); // from the results of the last batch
    Press(strButton);     // returns when the busy dialog was closed
    if (QTest::currentTestFailed())
        return batch; // there is nothing to wait for
    const auto isOver = [&] { return hands.AllDone() && Counts().startsWith("0, "); };
    [&] { QTRY_VERIFY_WITH_TIMEOUT(isOver(), kBatchLimitMs); }();
    return batch;
}
