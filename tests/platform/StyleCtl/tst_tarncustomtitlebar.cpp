#include <QAbstractButton>
#include <QTest>
#include <QTranslator>

#include <StyleCtl/tarncustommainwindow.h>
#include <StyleCtl/tarncustomtitlebar.h>

class tst_TarnCustomTitleBar : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void CSetText_LongText_KeptWhole();
    void Buttons_MainWindow_AllShown();
    void Buttons_Dialog_OnlyClose();
    void MinimizeButton_Clicked_Minimises();
    void MaximizeButton_ClickedTwice_MaximisesAndRestores();
    void CloseButton_Clicked_Closes();
    void DoubleClick_OnText_MaximisesAndRestores();
    void DoubleClick_OnDialog_Nothing();
    void Drag_NobodyMovesTheWindow_FollowsTheMouse();
    void Drag_RightButton_Nothing();
    void Names_LanguageChange_Translated();
    void Names_Maximised_SaysRestore();

private:
    QAbstractButton *Button(const char *name) const
    {
        return m_pWindow->findChild<QAbstractButton *>(QLatin1String(name));
    }

    TarnCustomMainWindow *m_pWindow = nullptr;
};

void tst_TarnCustomTitleBar::init()
{
    m_pWindow = new TarnCustomMainWindow;
    m_pWindow->cTitleBar()->setFixedHeight(37);
    m_pWindow->resize(400, 300);
    m_pWindow->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_pWindow));
}

void tst_TarnCustomTitleBar::cleanup()
{
    delete m_pWindow;
}

void tst_TarnCustomTitleBar::CSetText_LongText_KeptWhole()
{
    const QString text = QString("Import/Export Features ").repeated(20);
    m_pWindow->cTitleBar()->cSetText(text);
    QCOMPARE(m_pWindow->cTitleBar()->cText(), text);
    QCOMPARE(m_pWindow->cTitleBar()->accessibleName(), text);
    QCOMPARE(m_pWindow->width(), 400);
}

void tst_TarnCustomTitleBar::Buttons_MainWindow_AllShown()
{
    for (const char *name : {"MinimizeBtn", "MaximizeBtn", "CloseBtn"}) {
        QVERIFY(Button(name)->isVisible());
        QVERIFY(!Button(name)->accessibleName().isEmpty());
    }
}

void tst_TarnCustomTitleBar::Buttons_Dialog_OnlyClose()
{
    TarnCustomDialog dialog;
    dialog.show();
    QVERIFY(dialog.findChild<QWidget *>("CloseBtn")->isVisible());
    QVERIFY(!dialog.findChild<QWidget *>("MinimizeBtn")->isVisible());
    QVERIFY(!dialog.findChild<QWidget *>("MaximizeBtn")->isVisible());
}

void tst_TarnCustomTitleBar::MinimizeButton_Clicked_Minimises()
{
    QTest::mouseClick(Button("MinimizeBtn"), Qt::LeftButton);
    QVERIFY(m_pWindow->isMinimized());
}

void tst_TarnCustomTitleBar::MaximizeButton_ClickedTwice_MaximisesAndRestores()
{
    QTest::mouseClick(Button("MaximizeBtn"), Qt::LeftButton);
    QTRY_VERIFY(m_pWindow->isMaximized());
    QTest::mouseClick(Button("MaximizeBtn"), Qt::LeftButton);
    QTRY_VERIFY(!m_pWindow->isMaximized());
}

void tst_TarnCustomTitleBar::CloseButton_Clicked_Closes()
{
    QTest::mouseClick(Button("CloseBtn"), Qt::LeftButton);
    QVERIFY(!m_pWindow->isVisible());
}

void tst_TarnCustomTitleBar::DoubleClick_OnText_MaximisesAndRestores()
{
    QTest::mouseDClick(m_pWindow->cTitleBar(), Qt::LeftButton, {}, QPoint(50, 10));
    QTRY_VERIFY(m_pWindow->isMaximized());
    QTest::mouseDClick(m_pWindow->cTitleBar(), Qt::LeftButton, {}, QPoint(50, 10));
    QTRY_VERIFY(!m_pWindow->isMaximized());
}

void tst_TarnCustomTitleBar::DoubleClick_OnDialog_Nothing()
{
    TarnCustomDialog dialog;
    dialog.show();
    QTest::mouseDClick(dialog.cTitleBar(), Qt::LeftButton, {}, QPoint(20, 10));
    QVERIFY(!dialog.isMaximized());
}

static void Drag(QWidget *pWidget, Qt::MouseButton eButton, const QPoint &from, const QPoint &by)
{
    const auto send = [&](QEvent::Type eType, const QPoint &global, Qt::MouseButtons buttons) {
        const Qt::MouseButton eCause = eType == QEvent::MouseMove ? Qt::NoButton : eButton;
        QMouseEvent event(eType, pWidget->mapFromGlobal(global), global, eCause, buttons, {});
        QApplication::sendEvent(pWidget, &event);
    };
    const QPoint start = pWidget->mapToGlobal(from);
    send(QEvent::MouseButtonPress, start, eButton);
    for (int i = 1; i <= 4; ++i)
        send(QEvent::MouseMove, start + by * i / 4, eButton);
    send(QEvent::MouseButtonRelease, start + by, Qt::NoButton);
}

void tst_TarnCustomTitleBar::Drag_NobodyMovesTheWindow_FollowsTheMouse()
{
    m_pWindow->move(50, 60);
    Drag(m_pWindow->cTitleBar(), Qt::LeftButton, QPoint(50, 10), QPoint(100, 40));
    QCOMPARE(m_pWindow->pos(), QPoint(150, 100));
}

void tst_TarnCustomTitleBar::Drag_RightButton_Nothing()
{
    m_pWindow->move(50, 60);
    Drag(m_pWindow->cTitleBar(), Qt::RightButton, QPoint(50, 10), QPoint(100, 40));
    QCOMPARE(m_pWindow->pos(), QPoint(50, 60));
}

void tst_TarnCustomTitleBar::Names_LanguageChange_Translated()
{
    QTranslator translator;
    QVERIFY(translator.load("StyleCtl_zh_CN.qm", PROJECT_TRANSLATION_DIR));
    QVERIFY(QCoreApplication::installTranslator(&translator));
    QTRY_COMPARE(Button("CloseBtn")->toolTip(), QString::fromUtf8("关闭"));
    QCOMPARE(Button("CloseBtn")->accessibleName(), QString::fromUtf8("关闭"));
}

void tst_TarnCustomTitleBar::Names_Maximised_SaysRestore()
{
    QCOMPARE(Button("MaximizeBtn")->toolTip(), QString("Maximize"));
    m_pWindow->showMaximized();
    QTRY_COMPARE(Button("MaximizeBtn")->toolTip(), QString("Restore"));
}

QTEST_MAIN(tst_TarnCustomTitleBar)
#include "tst_tarncustomtitlebar.moc"
