#ifndef TESTS_SYSTEM_WINDOWHANDS_H
#define TESTS_SYSTEM_WINDOWHANDS_H

#include <QPoint>
#include <QString>
#include <QStringList>

#include <functional>

#include <StyleCtl/tarncustomtablewidget.h>
#include <ui/mainwidget.h>

class LumoDeviceTree;
class QWidget;

/// Eyes and hands of a person at the tool's window, whoever made it: what it shows, and whole batches by
/// mouse and keyboard. What is not possible fails the running test.
class WindowHands
{
public:
    /// Moments of a batch at which a test wants to do something.
    struct Moments
    {
        std::function<void()> beforeStart;        ///< the file dialog is up
        std::function<void(QWidget *)> whileBusy; ///< so is the busy dialog, which is handed over
        std::function<void()> atEnd;              ///< so is the final dialog
    };
    struct Batch
    {
        qint64 nMilliseconds = -1; ///< from the choice in the file dialog to the final dialog
        QString strMessage;        ///< what the final dialog said
    };

    /// @param window  borrowed
    explicit WindowHands(MainWidget &window)
        : m_window(window)
    {
    }

    MainWidget &Window() const { return m_window; }
    TarnCustomTableWidget *Table() const;
    LumoDeviceTree *Tree() const;
    QString Text(int nRow, int nColumn) const { return Table()->item(nRow, nColumn)->text(); }
    QStringList Serials() const; ///< in the order of the rows
    int RowOf(const QString &strSerial) const { return Serials().indexOf(strSerial); }
    QString Counts() const; ///< of the result page: "running, succeeded, failed"

    static void Click(QWidget *pWidget, const QPoint &point);
    void ClickHeader(int nColumn) const;
    void ClickRow(int nRow) const; ///< its check box
    void Press(const QString &strButton) const;
    void TickAll() const; ///< with the header's check box

    /// Exports the ticked cameras; one at least must succeed. Returns when the final dialog was closed and
    /// the last camera is through.
    Batch Export(const QString &strFolder, const Moments &moments = {}) const;
    /// Imports a file into the ticked cameras, in the same way.
    Batch Import(const QString &strFile, const Moments &moments = {}) const;

private:
    Batch RunBatch(const QString &strButton, const QString &strPath, const Moments &moments) const;

    MainWidget &m_window;
};

#endif
