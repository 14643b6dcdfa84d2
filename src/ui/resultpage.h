#ifndef UI_RESULTPAGE_H
#define UI_RESULTPAGE_H

#include <QCoreApplication>

class QWidget;
class TarnCustomLabel;

/// The page that stands above the table while a batch runs and after it: how many cameras are at work, have
/// succeeded and have failed, each with a text behind it, and the way back.
///
/// Works on the labels that the owner's pointers name: Create() sets the pointers, Layout() gives the labels
/// to the page, which owns them from then on. The pointers have to outlive this object. GUI thread only;
/// signals nothing.
class ResultPage
{
    Q_DECLARE_TR_FUNCTIONS(MainWidget) // the texts are the window's

public:
    /// Three counts, each followed by its text.
    struct Labels
    {
        TarnCustomLabel *&pRunningNum;
        TarnCustomLabel *&pRunning;
        TarnCustomLabel *&pSucceededNum;
        TarnCustomLabel *&pSucceeded;
        TarnCustomLabel *&pFailedNum;
        TarnCustomLabel *&pFailed;
    };

    explicit ResultPage(const Labels &labels);
    Q_DISABLE_COPY(ResultPage)

    /// Makes the labels. Those of the first two texts are empty until there is an operation.
    void Create();
    /// Puts labels and button on the page.
    void Layout(QWidget *pPage, QWidget *pBackBtn);

    /// The texts for this type of operation, in the present language; for any other number those of the first
    /// two counts stay as they are.
    void SetTexts(unsigned int nType);
    /// Of them, those that follow the type.
    void ShowOperation(unsigned int nType);

    void ShowRunning(qint32 nCount);
    void ShowSucceeded(qint32 nCount);
    void ShowFailed(qint32 nCount);

private:
    const Labels m_labels;
};

#endif
