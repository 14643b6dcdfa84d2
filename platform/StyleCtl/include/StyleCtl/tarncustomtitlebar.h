#ifndef STYLECTL_TARNCUSTOMTITLEBAR_H
#define STYLECTL_TARNCUSTOMTITLEBAR_H

#include <QIcon>
#include <QString>
#include <QWidget>

#include "styleglobal.h"

class QMenu;
class TitleBarButton;

/// Title bar of a frameless window: icon, text, and the buttons to minimise, maximise or restore, and close.
///
/// It acts on the window it is in. Dragging it moves the window (through the window manager where that
/// answers), a double click maximises or restores, a right click or Alt+Space opens the window's menu.
/// Buttons show what the window's flags allow. Made by TarnCustomDialog; object name "TitleBar", its buttons
/// "MinimizeBtn", "MaximizeBtn", "CloseBtn".
class STYLECTL_EXPORT TarnCustomTitleBar : public QWidget
{
    Q_OBJECT

public:
    explicit TarnCustomTitleBar(QWidget *pParent = nullptr);
    ~TarnCustomTitleBar() override;

    /// The text shown; too long a text ends in an ellipsis. It is not the window title, which the task bar
    /// shows.
    void cSetText(const QString &text);
    QString cText() const;

    /// The icon left of the text. Without one, the window's icon is shown; without that, none.
    void cSetIcon(const QIcon &icon);

    /// Opens the window's menu (restore, minimise, maximise, close) at a global position.
    void cShowMenu(const QPoint &globalPos);

    /// Shows the buttons that the window's flags allow; call it after changing the flags.
    void cUpdateButtons();

    QSize sizeHint() const override;

protected:
    bool event(QEvent *pEvent) override;
    void paintEvent(QPaintEvent *pEvent) override;
    void mousePressEvent(QMouseEvent *pEvent) override;
    void mouseMoveEvent(QMouseEvent *pEvent) override;
    void mouseReleaseEvent(QMouseEvent *pEvent) override;
    void mouseDoubleClickEvent(QMouseEvent *pEvent) override;
    void contextMenuEvent(QContextMenuEvent *pEvent) override;
    bool eventFilter(QObject *pWatched, QEvent *pEvent) override;

private:
    void CreateButtons();
    void SetTexts();
    void ToggleMaximized();
    void BeginMove(const QPoint &globalPos);
    void MoveWindow(const QPoint &globalPos);
    QIcon ShownIcon() const;

    enum class Drag
    {
        None,
        Pressed,  // the left button is down, the mouse not yet dragged
        Grabbing, // the top-level window is to get the next mouse event
        OwnMove,  // the window manager does not answer: we follow the mouse
    };

    QString m_strText;
    QIcon m_icon;
    QPoint m_pressPos;     // global, where the left button went down
    QPoint m_windowOffset; // window position minus mouse position during a move of our own
    Drag m_eDrag = Drag::None;
    TitleBarButton *m_pMinimizeBtn = nullptr;
    TitleBarButton *m_pMaximizeBtn = nullptr;
    TitleBarButton *m_pCloseBtn = nullptr;
};

#endif
