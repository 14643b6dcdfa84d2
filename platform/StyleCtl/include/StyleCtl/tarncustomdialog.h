#ifndef STYLECTL_TARNCUSTOMDIALOG_H
#define STYLECTL_TARNCUSTOMDIALOG_H

#include <QColor>
#include <QDialog>
#include <QHash>
#include <QMargins>
#include <QPointer>

#include <memory>

#include "styleglobal.h"
#include "tarncustom.h"

class FrameGrip;
class QVBoxLayout;
class TarnCustomTitleBar;

/// Frameless dialog with a title bar, a frame and a drop shadow of its own: what the main window and all
/// dialogs of the library are built on.
///
/// The shadow lies in a translucent margin inside the window. It is drawn only while a compositor runs and
/// the window is neither maximised nor full screen; otherwise a thin border takes its place. A window of
/// type Qt::Dialog is enabled when it is shown, also when the window it belongs to is disabled.
class STYLECTL_EXPORT TarnCustomDialog : public QDialog
{
    Q_OBJECT

public:
    explicit TarnCustomDialog(QWidget *pParent = nullptr, Qt::WindowFlags flags = Qt::Dialog);
    ~TarnCustomDialog() override;

    /// The title bar; owned by the dialog, never null. Hide it for a dialog without one.
    TarnCustomTitleBar *cTitleBar() const { return m_pTitleBar; }

    /// Colour of the area below the title bar. A state without a colour shows the normal one; hovered and
    /// pressed are not used.
    void cSetBackgroundColor(const QColor &color, TarnCustom::CtrlState eState = TarnCustom::StateNormal);
    /// The colour that is drawn in a state.
    QColor cBackgroundColor(TarnCustom::CtrlState eState) const;

    /// Where the mouse can stretch the window; none at start. A corner needs its own flag.
    void cSetStrechEdges(TarnCustom::StrechEdges edges);
    TarnCustom::StrechEdges cStrechEdges() const { return m_strechEdges; }

    /// Turns the drop shadow on or off; off at start.
    void cEnableDefualtShadow(bool bEnable = true);
    bool cIsDefualtShadowEnabled() const { return m_bShadow; }

    /// Width of the translucent margin at present; null while no shadow is drawn.
    QMargins cShadowMargins() const;

    /// The widget below the title bar; the dialog takes ownership and deletes the one before. Null removes
    /// it.
    void cSetCentralWidget(QWidget *pWidget);
    QWidget *cCentralWidget() const { return m_pCentralWidget; }

protected:
    void changeEvent(QEvent *pEvent) override;
    void keyPressEvent(QKeyEvent *pEvent) override;
    void leaveEvent(QEvent *pEvent) override;
    void mouseMoveEvent(QMouseEvent *pEvent) override;
    void mousePressEvent(QMouseEvent *pEvent) override;
    void mouseReleaseEvent(QMouseEvent *pEvent) override;
    void moveEvent(QMoveEvent *pEvent) override;
    void paintEvent(QPaintEvent *pEvent) override;
    void showEvent(QShowEvent *pEvent) override;

private:
    void UpdateFrame();
    void PlaceInCentre();
    bool FillsScreen() const;
    QRect FrameRect() const;

    TarnCustomTitleBar *m_pTitleBar = nullptr;
    QPointer<QWidget> m_pCentralWidget;
    QVBoxLayout *m_pFrameLayout = nullptr;
    QHash<int, QColor> m_mapBackground; // by CtrlState
    TarnCustom::StrechEdges m_strechEdges = TarnCustom::StrechNone;
    QPoint m_placed;             // where the last show put the window
    bool m_bPlaced = false;      // it did, and the window manager has not answered with nonsense yet
    bool m_bShadow = false;      // wished for
    bool m_bCompositing = false; // as of the last look
    std::unique_ptr<FrameGrip> m_pGrip;
};

#endif
