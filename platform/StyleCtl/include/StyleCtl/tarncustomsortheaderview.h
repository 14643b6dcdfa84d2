#ifndef STYLECTL_TARNCUSTOMSORTHEADERVIEW_H
#define STYLECTL_TARNCUSTOMSORTHEADERVIEW_H

#include <QHeaderView>
#include <QSet>

#include "styleglobal.h"

/// Header whose sections ask for sorting.
///
/// A click on a section that offers sorting reports the wish and shows an arrow there: ascending first,
/// then the other way at each further click. The header sorts nothing itself. By keyboard: Tab puts the
/// focus into the header, Left, Right, Home and End choose a section, Space or Enter acts like a click.
class STYLECTL_EXPORT TarnCustomSortHeaderView : public QHeaderView
{
    Q_OBJECT

public:
    explicit TarnCustomSortHeaderView(Qt::Orientation orientation, QWidget *pParent = nullptr);
    ~TarnCustomSortHeaderView() override;

    /// Whether a section offers sorting; no section does at start.
    void enableSort(int nSection, bool bEnable);
    bool isSortEnabled(int nSection) const;

    /// Section that shows the arrow, or -1; and which way it points.
    int sortSection() const { return m_nSortSection; }
    bool sortAscending() const { return m_bSortAscending; }

    /// Section that the keyboard acts on, -1 when there is none.
    int focusSection() const;

signals:
    /// The user asks for sorting by a section. Emitted once per click or key press.
    void SigSortByColumn(int nSection, bool bAscending);

protected:
    /// The user clicked a section or pressed Space or Enter on it.
    virtual void activateSection(int nSection);

    /// Draws what a section shows beside frame and arrow, within rect; the base draws the text.
    virtual void paintContent(QPainter *pPainter, const QRect &rect, int nSection) const;

    /// Puts the library's texts into the accessible properties; called at start and on a language change.
    virtual void setTexts();

    void changeEvent(QEvent *pEvent) override;
    bool viewportEvent(QEvent *pEvent) override;
    void focusInEvent(QFocusEvent *pEvent) override;
    void focusOutEvent(QFocusEvent *pEvent) override;
    void keyPressEvent(QKeyEvent *pEvent) override;
    void paintSection(QPainter *pPainter, const QRect &rect, int nSection) const override;
    void paintEvent(QPaintEvent *pEvent) override;
    QSize sectionSizeFromContents(int nSection) const override;

    int hoverSection() const { return m_nHoverSection; }

private:
    void MoveFocus(int nStep);
    int NextVisible(int nVisualIndex, int nStep) const;
    void SetHoverSection(int nSection);
    void ShowWholeText(QHelpEvent *pHelp);

    QSet<int> m_setSortable;
    int m_nSortSection = -1;
    bool m_bSortAscending = true;
    int m_nFocusSection = -1; // logical
    int m_nHoverSection = -1; // logical
};

#endif
