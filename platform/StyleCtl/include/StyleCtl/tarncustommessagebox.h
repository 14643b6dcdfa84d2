#ifndef STYLECTL_TARNCUSTOMMESSAGEBOX_H
#define STYLECTL_TARNCUSTOMMESSAGEBOX_H

#include "tarncustomdialog.h"

class HintIcon;
class QPlainTextEdit;
class TarnCustomLabel;
class TarnCustomPushButton;

/// Modal message with an OK button: Enter and Escape close it.
///
/// Object names: "MessageBox", "MessageContent", "MessageDetail", "MessageOkBtn".
class STYLECTL_EXPORT TarnCustomMessageBox : public TarnCustomDialog
{
    Q_OBJECT

public:
    /// Icon left of the text.
    enum HintIconStyle
    {
        HintInformation = 0,
        HintWarning = 1,
        HintError = 2,
        HintNone = 3,
    };

    explicit TarnCustomMessageBox(QWidget *pParent = nullptr);
    ~TarnCustomMessageBox() override;

    /// The texts are plain; line breaks are kept. An empty detail takes no room; a long one scrolls.
    void SetTexts(const QString &content, const QString &detail, const QString &title);
    void SetIconStyle(HintIconStyle eStyle);

    /// Shows a message and waits until the user closes it.
    /// @param detail  smaller text below the content; may be empty
    /// @param title   empty for the library's own, "Prompt"
    static void simple(QWidget *pParent, const QString &content, const QString &detail = QString(),
                       const QString &title = QString(), HintIconStyle eStyle = HintInformation);

    /// On macOS makes the next simple() return at once, with the message still shown: a nested event loop
    /// there holds back the sheet of a window that has just been enabled. Nothing on other systems.
    static void setNotBlockRun_Mac();

protected:
    void changeEvent(QEvent *pEvent) override;

private:
    void ApplyTexts();

    QString m_strTitle;
    HintIcon *m_pIcon = nullptr;
    TarnCustomLabel *m_pContent = nullptr;
    QPlainTextEdit *m_pDetail = nullptr;
    TarnCustomPushButton *m_pOkBtn = nullptr;
};

#endif
