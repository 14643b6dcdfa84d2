#ifndef STYLECTL_TARNCUSTOMLOADINGDIALOG_H
#define STYLECTL_TARNCUSTOMLOADINGDIALOG_H

#include "tarncustomdialog.h"

class LoadingSpinner;
class TarnCustomLabel;

/// Modal "please wait": an animation and a text, over the window it belongs to.
///
/// The user cannot close it, neither by Escape nor through the window manager. The program ends it: close(),
/// accept(), reject() and done() hide it and make exec() return. It can be shown again.
/// Object names: "LoadingDlg", its text "LoadingLabel".
class STYLECTL_EXPORT TarnCustomLoadingDialog : public TarnCustomDialog
{
    Q_OBJECT

public:
    explicit TarnCustomLoadingDialog(QWidget *pParent = nullptr);
    ~TarnCustomLoadingDialog() override;

    void SetLabelText(const QString &text);
    QString LabelText() const;

protected:
    void closeEvent(QCloseEvent *pEvent) override;
    void keyPressEvent(QKeyEvent *pEvent) override;

private:
    LoadingSpinner *m_pSpinner = nullptr;
    TarnCustomLabel *m_pLabel = nullptr;
};

#endif
