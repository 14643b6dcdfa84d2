#ifndef TESTS_CHECKTABLE_H
#define TESTS_CHECKTABLE_H

#include <QTest>

#include <StyleCtl/tarncustomcheckheaderview.h>
#include <StyleCtl/tarncustomtablewidget.h>

/// A table as the tool has it, on the screen: rows "b", "c" and "a" with a check box in column 0 and their
/// name in column 1, then three rows without items; a check box in the header.
class CheckTable : public TarnCustomTableWidget
{
public:
    CheckTable()
    {
        m_pHeader = new TarnCustomCheckHeaderView(Qt::Horizontal, this);
        m_pHeader->setCheckBoxVisible(0, true);
        setHorizontalHeader(m_pHeader);
        setColumnCount(3);
        setColumnWidth(0, 38);
        setColumnWidth(1, 150);
        setColumnWidth(2, 150);
        for (const char *name : {"b", "c", "a"})
            AddRow(QLatin1String(name));
        for (int i = 0; i < 3; ++i)
            insertRow(rowCount());
        resize(500, 300);
        show();
    }

    TarnCustomCheckHeaderView *Header() const { return m_pHeader; }

    QPoint Centre(int nRow, int nColumn) const { return visualRect(model()->index(nRow, nColumn)).center(); }

    QImage CellImage(int nRow, int nColumn) const
    {
        return viewport()->grab(visualRect(model()->index(nRow, nColumn))).toImage();
    }

private:
    void AddRow(const QString &name)
    {
        const int nRow = rowCount();
        insertRow(nRow);
        for (int nColumn = 0; nColumn < 3; ++nColumn)
            setItem(nRow, nColumn, new QTableWidgetItem);
        item(nRow, 1)->setText(name);
        setCheckBoxVisible(nRow, 0, true);
    }

    TarnCustomCheckHeaderView *m_pHeader = nullptr;
};

#endif
