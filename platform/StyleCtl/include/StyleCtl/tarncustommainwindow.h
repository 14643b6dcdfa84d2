#ifndef STYLECTL_TARNCUSTOMMAINWINDOW_H
#define STYLECTL_TARNCUSTOMMAINWINDOW_H

#include "tarncustomdialog.h"

/// Main window of a tool: a top-level window with an entry in the task bar, to minimise and to maximise.
///
/// Unlike other dialogs it is not closed by Escape, and Enter presses no button that does not have the focus;
/// it closes by its close button, its menu or the window manager (Alt+F4), all of which go through
/// closeEvent().
class STYLECTL_EXPORT TarnCustomMainWindow : public TarnCustomDialog
{
    Q_OBJECT

public:
    explicit TarnCustomMainWindow(QWidget *pParent = nullptr);
    ~TarnCustomMainWindow() override;

protected:
    void keyPressEvent(QKeyEvent *pEvent) override;
};

#endif
