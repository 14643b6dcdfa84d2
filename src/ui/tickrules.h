#ifndef UI_TICKRULES_H
#define UI_TICKRULES_H

#include <QCoreApplication>
#include <QVector>

#include <functional>

class TarnCustomCheckHeaderView;
class TarnCustomTableWidget;

/// What ticking cameras in the device table means: how many may be ticked, when the header's box is, and
/// whether a batch can be started. Hidden rows are neither counted nor changed.
///
/// Works on the table that the owner's pointer names, and by the limit of the owner, at the time of a call;
/// without a table that has a header with boxes nothing happens. Both have to outlive this object. GUI thread
/// only. What it changes itself, it changes without a signal of the table or its header.
class TickRules
{
    Q_DECLARE_TR_FUNCTIONS(MainWidget) // the message is the window's

public:
    /// What is asked of the window.
    struct Window
    {
        std::function<void(bool bEnable)> enableButtons; ///< those that start a batch
        /// Waits until the message is closed. Meanwhile rows may go, and change places.
        std::function<void(const QString &strText)> showMessage;
    };

    TickRules(TarnCustomTableWidget *&pTable, const qint32 &nLimit, Window window);
    Q_DISABLE_COPY(TickRules)

    /// Null when the table has none with boxes.
    TarnCustomCheckHeaderView *Header() const;

    /// Visible rows that are ticked.
    int CheckedCount() const;
    /// Visible rows that can be ticked.
    int EnabledCount() const;
    /// Identifiers of the cameras that are ticked and visible, from the top.
    QVector<int> CheckedDevices() const;

    /// After a row was ticked or cleared, or when the rows have changed. Beyond the limit it shows a message
    /// and clears the row again; header and buttons stay. Else they follow the ticks.
    void OnCellChanged(int nRow);

    /// After the header's box was turned: the boxes of that column follow, from the top and up to the limit.
    void OnHeaderChanged(int nColumn);

private:
    bool IsChecked(int nRow) const;
    void SetVisibleRows(int nColumn, Qt::CheckState nState);

    TarnCustomTableWidget *&m_pTable;
    const qint32 &m_nLimit;
    const Window m_window;
};

#endif
