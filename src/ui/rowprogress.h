#ifndef UI_ROWPROGRESS_H
#define UI_ROWPROGRESS_H

#include <QCoreApplication>

class TarnCustomTableWidget;

/// How the operation on a camera goes, in the Operation Status cell of its row: "Start exporting...", then
/// the worker's messages, then "Exported." or the last failure in red, with its reasons as a tip.
///
/// Whether the operation has failed so far stands in the cell as well (SuccessRole): the last message
/// decides. Works on the table that the owner's pointer names at the time of a call; a row that has no such
/// cell is ignored. The pointer has to outlive this object. GUI thread only; signals nothing.
class RowProgress
{
    Q_DECLARE_TR_FUNCTIONS(MainWidget) // the texts are the window's

public:
    explicit RowProgress(TarnCustomTableWidget *&pTable);
    Q_DISABLE_COPY(RowProgress)

    /// Takes text and tip from every row. Colour and outcome stay.
    void Clear();

    /// An operation of this type begins. The colour stays until the first message.
    void Begin(int nRow, unsigned int nType);
    /// A worker's message. One that is no failure leaves the tip of an earlier one.
    void Report(int nRow, const QString &strMsg, bool bFailed);

    enum class Outcome
    {
        None, ///< the row has no cell
        Succeeded,
        Failed
    };
    /// The operation is over. A failed row keeps its last message.
    Outcome End(int nRow, unsigned int nType);

private:
    TarnCustomTableWidget *&m_pTable;
};

#endif
