#ifndef STYLECTL_TARNCUSTOMSAVEDONEHINTDLG_H
#define STYLECTL_TARNCUSTOMSAVEDONEHINTDLG_H

#include "tarncustomdialog.h"

class QLineEdit;
class TarnCustomLabel;
class TarnCustomPushButton;

/// Tells that something was saved, and where: a text, the path (selectable), and buttons to open the folder
/// and to close. Enter and Escape close it.
///
/// Object names: "SaveDoneHintDlg", "SaveDoneText", "SaveDonePath", "SaveDoneError", "OpenFolderBtn",
/// "SaveDoneCloseBtn".
class STYLECTL_EXPORT TarnCustomSaveDoneHintDlg : public TarnCustomDialog
{
    Q_OBJECT

public:
    explicit TarnCustomSaveDoneHintDlg(QWidget *pParent = nullptr, const QString &text = QString(),
                                       const QString &path = QString());
    ~TarnCustomSaveDoneHintDlg() override;

    /// @param path  a folder, or a file whose folder is opened; with the separators to be shown. An empty
    ///              path is not shown and cannot be opened.
    void SetMsgText(const QString &text, const QString &path);

public slots:
    /// Opens the folder in the desktop's file manager and closes the dialog; says so in the dialog when the
    /// folder does not exist or nothing opens it.
    void OpenFolder();

protected:
    void changeEvent(QEvent *pEvent) override;

private:
    void ApplyTexts();

    TarnCustomLabel *m_pText = nullptr;
    QLineEdit *m_pPath = nullptr;
    TarnCustomLabel *m_pError = nullptr;
    TarnCustomPushButton *m_pOpenBtn = nullptr;
    TarnCustomPushButton *m_pCloseBtn = nullptr;
};

#endif
