#ifndef STYLECTL_TARNCUSTOMCHECKHEADERVIEW_H
#define STYLECTL_TARNCUSTOMCHECKHEADERVIEW_H

#include <QHash>

#include "tarncustomsortheaderview.h"

/// Header with check boxes in chosen sections, to tick all rows at once. It ticks no rows itself: who uses
/// it answers SigCheckStateChange().
///
/// A click on such a section, or Space or Enter on it, turns a ticked box off and any other on.
class STYLECTL_EXPORT TarnCustomCheckHeaderView : public TarnCustomSortHeaderView
{
    Q_OBJECT

public:
    explicit TarnCustomCheckHeaderView(Qt::Orientation orientation, QWidget *pParent = nullptr);
    explicit TarnCustomCheckHeaderView(QWidget *pParent = nullptr);
    ~TarnCustomCheckHeaderView() override;

    /// Gives a section a check box, unticked, or takes it away. May be called before there are sections.
    void setCheckBoxVisible(int nSection, bool bVisible);
    bool isCheckBoxVisible(int nSection) const;

    /// Sets the state of a section's box. With bEmitSignal, SigCheckStateChange() is emitted once, also when
    /// the state was the same. Does nothing for a section without a box.
    void setCheckState(int nSection, Qt::CheckState eState, bool bEmitSignal = false);

    /// Qt::Unchecked for a section without a box.
    Qt::CheckState checkState(int nSection) const;

    /// First section that has a box, -1 when there is none.
    int checkBoxSection() const;

signals:
    /// The user turned the box of a section, or a program did and asked for the signal.
    void SigCheckStateChange(int nSection);

protected:
    void activateSection(int nSection) override;
    void paintContent(QPainter *pPainter, const QRect &rect, int nSection) const override;
    void setTexts() override;

private:
    void UpdateAccessibleState(int nSection);

    QHash<int, Qt::CheckState> m_mapState; // a section without an entry has no box
};

#endif
