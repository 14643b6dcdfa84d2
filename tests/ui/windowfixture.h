#ifndef TESTS_UI_WINDOWFIXTURE_H
#define TESTS_UI_WINDOWFIXTURE_H

#include <QPointer>
#include <QTemporaryDir>
#include <QVector>

#include <memory>

#include <DevListMgr/lumodevicetree.h>
#include <StyleCtl/tarncustomcheckheaderview.h>
#include <StyleCtl/tarncustomlabel.h>
#include <StyleCtl/tarncustompushbutton.h>
#include <StyleCtl/tarncustomtablewidget.h>
#include <scripteddevices.h>
#include <ui/mainwidget.h>

#include "modalhands.h"

/// The tool's window over scripted cameras, and the hands of a person who uses it. The settings of the
/// user are in a directory of its own.
class WindowFixture
{
public:
    /// @param nLimit  most cameras that the tool may serve
    explicit WindowFixture(int nLimit = 64);
    ~WindowFixture();
    Q_DISABLE_COPY(WindowFixture)

    /// Shows the window and waits until it is exposed.
    void Show();
    /// Lets the tree find these and waits until the table has a row for each, in this order.
    void ShowCameras(const QVector<KX_CC_DEVICE_INFO> &vecCameras);
    /// Changes the list and waits until the tree has seen it.
    void ChangeCameras(const QVector<KX_CC_DEVICE_INFO> &vecCameras);

    LumoDeviceTree *Tree() const;
    TarnCustomTableWidget *Table() const;
    TarnCustomCheckHeaderView *Header() const;
    TarnCustomPushButton *Button(const QString &strName) const;
    QString LabelText(const QString &strName) const;
    QString Text(int nRow, int nColumn) const;
    /// The texts of a column's camera rows, hidden ones left out.
    QStringList VisibleTexts(int nColumn) const;
    bool IsChecked(int nRow) const;
    QTreeWidgetItem *Group(const QString &strText) const;
    bool IsResultPage() const;
    QString Counts() const; ///< "running, succeeded, failed"

    void ClickCheckBox(int nRow);
    void ClickHeader(int nColumn);
    void ClickTree(QTreeWidgetItem *pItem);
    void ClickButton(const QString &strName);

    /// Calls a slot of the window, as a queued signal of a worker does.
    void Begin(int nDeviceID, unsigned int nType);
    void Info(int nDeviceID, const QString &strMsg, bool bFailed);
    void End(int nDeviceID, unsigned int nType, const QString &strPath = QStringLiteral("/some/path"));

    QString Dir() const { return m_directory.path(); }
    /// Writes the user's installation.conf.
    void WriteSettings(const QString &strLanguage, int nLimit) const;

    ScriptedDevices m_devices;
    std::unique_ptr<MainWidget> m_pWindow;

private:
    QTemporaryDir m_directory;
};

#endif
