#ifndef TESTS_UI_MODALHANDS_H
#define TESTS_UI_MODALHANDS_H

#include <QObject>
#include <QTimer>
#include <QVector>

#include <functional>

class QWidget;

/// Operates the modal windows that appear while the code under test waits for them, one handler after the
/// other, each for the next window of its name (object name, or class name for Qt's own dialogs).
class ModalHands : public QObject
{
public:
    using Handler = std::function<void(QWidget *)>;

    ModalHands();
    ~ModalHands() override;

    /// Then, when a window of this name is up, do this.
    ModalHands &Then(const QString &strName, Handler handler);
    bool AllDone() const { return m_vecSteps.isEmpty(); }

    /// Types a path into a file dialog and accepts it.
    static void Choose(QWidget *pDialog, const QString &strPath);
    static void Cancel(QWidget *pDialog);

private:
    void Look();

    struct Step
    {
        QString strName;
        Handler handler;
    };
    QVector<Step> m_vecSteps;
    QTimer m_timer;
};

#endif
