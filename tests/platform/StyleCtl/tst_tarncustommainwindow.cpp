#include <QApplication>
#include <QSignalSpy>
#include <QTest>
#include <QVBoxLayout>
#include <QWindow>

#include <StyleCtl/tarncustommainwindow.h>
#include <StyleCtl/tarncustompushbutton.h>
#include <StyleCtl/tarncustomtitlebar.h>

class tst_TarnCustomMainWindow : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void Flags_Window_IsFramelessTopLevelWithButtons();
    void KeyEscape_Shown_StaysOpen();
    void KeyEnter_ButtonWithoutFocus_NotPressed();
    void Close_FromCode_Hides();
    void CSetCentralWidget_Replaced_OldOneIsDeleted();
    void CSetCentralWidget_Shown_FillsTheAreaBelowTheTitleBar();
    void CSetBackgroundColor_Normal_Drawn();
    void CSetBackgroundColor_DarkSystemPalette_Drawn();
    void CEnableDefualtShadow_NoCompositor_NoMarginAndNothingBlack();
    void CSetStrechEdges_Default_ContentKeepsClearOfTheGrip();
    void Maximised_Shown_ContentReachesTheEdges();
    void Drag_RightEdge_Widens();
    void Drag_BottomLeftCorner_StretchesBothWays();
    void Drag_LeftEdgeBelowMinimum_StopsAtMinimum();
    void Drag_TopEdgeNotAllowed_Nothing();
    void Drag_EdgesOff_Nothing();
    void Cursor_OverEdges_ShowsDirection();
    void SetDisabled_Shown_TitleLooksDifferent();
    void SetDisabled_MinimisedAndBack_StaysDisabled();

private:
    void Drag(const QPoint &from, const QPoint &by);
    Qt::CursorShape CursorAt(const QPoint &pos);

    TarnCustomMainWindow *m_pWindow = nullptr;
};

void tst_TarnCustomMainWindow::init()
{
    m_pWindow = new TarnCustomMainWindow;
    m_pWindow->cSetBackgroundColor(QColor("#F2F3F5"));
    m_pWindow->cSetStrechEdges(static_cast<TarnCustom::StrechEdges>(0xCB));
    m_pWindow->cEnableDefualtShadow();
    m_pWindow->cSetCentralWidget(new QWidget);
    m_pWindow->setMinimumWidth(300);
    m_pWindow->setGeometry(100, 100, 400, 300);
    m_pWindow->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_pWindow));
    m_pWindow->setGeometry(100, 100, 400, 300);
}

void tst_TarnCustomMainWindow::cleanup()
{
    delete m_pWindow;
}

static void SendMouse(QWidget *pWidget, QEvent::Type eType, const QPoint &global, Qt::MouseButtons buttons)
{
    const Qt::MouseButton eCause = eType == QEvent::MouseMove ? Qt::NoButton : Qt::LeftButton;
    QMouseEvent event(eType, pWidget->mapFromGlobal(global), global, eCause, buttons, {});
    QApplication::sendEvent(pWidget, &event);
}

void tst_TarnCustomMainWindow::Drag(const QPoint &from, const QPoint &by)
{
    const QPoint start = m_pWindow->mapToGlobal(from);
    SendMouse(m_pWindow, QEvent::MouseButtonPress, start, Qt::LeftButton);
    for (int i = 1; i <= 4; ++i)
        SendMouse(m_pWindow, QEvent::MouseMove, start + by * i / 4, Qt::LeftButton);
    SendMouse(m_pWindow, QEvent::MouseButtonRelease, start + by, Qt::NoButton);
}

Qt::CursorShape tst_TarnCustomMainWindow::CursorAt(const QPoint &pos)
{
    SendMouse(m_pWindow, QEvent::MouseMove, m_pWindow->mapToGlobal(pos), Qt::NoButton);
    return m_pWindow->cursor().shape();
}

void tst_TarnCustomMainWindow::Flags_Window_IsFramelessTopLevelWithButtons()
{
    const Qt::WindowFlags flags = m_pWindow->windowFlags();
    QCOMPARE(m_pWindow->windowType(), Qt::Window);
    QVERIFY(flags & Qt::FramelessWindowHint);
    QVERIFY(flags & Qt::WindowMinimizeButtonHint);
    QVERIFY(flags & Qt::WindowMaximizeButtonHint);
    QVERIFY(flags & Qt::WindowCloseButtonHint);
}

void tst_TarnCustomMainWindow::KeyEscape_Shown_StaysOpen()
{
    QTest::keyClick(m_pWindow, Qt::Key_Escape);
    QVERIFY(m_pWindow->isVisible());
}

void tst_TarnCustomMainWindow::KeyEnter_ButtonWithoutFocus_NotPressed()
{
    auto *pButton = new TarnCustomPushButton("Import", TarnCustomPushButton::OutlineStyle);
    auto *pDefault = new QPushButton("Other"); // Qt would make it the default button
    auto *pLayout = new QVBoxLayout(m_pWindow->cCentralWidget());
    pLayout->addWidget(pButton);
    pLayout->addWidget(pDefault);
    pDefault->setDefault(true);
    QSignalSpy clicked(pButton, &QPushButton::clicked);
    QSignalSpy other(pDefault, &QPushButton::clicked);
    QTest::keyClick(m_pWindow, Qt::Key_Return);
    QCOMPARE(clicked.count(), 0);
    QCOMPARE(other.count(), 0);
}

void tst_TarnCustomMainWindow::Close_FromCode_Hides()
{
    QVERIFY(m_pWindow->close());
    QVERIFY(!m_pWindow->isVisible());
}

void tst_TarnCustomMainWindow::CSetCentralWidget_Replaced_OldOneIsDeleted()
{
    const QPointer<QWidget> pOld = m_pWindow->cCentralWidget();
    auto *pNew = new QWidget;
    m_pWindow->cSetCentralWidget(pNew);
    QVERIFY(!pOld);
    QCOMPARE(m_pWindow->cCentralWidget(), pNew);
    QTRY_VERIFY(pNew->isVisible());
}

void tst_TarnCustomMainWindow::CSetCentralWidget_Shown_FillsTheAreaBelowTheTitleBar()
{
    m_pWindow->cTitleBar()->setFixedHeight(37);
    QTRY_COMPARE(m_pWindow->cTitleBar()->height(), 37);
    const QRect content = m_pWindow->cCentralWidget()->geometry();
    QTRY_COMPARE(m_pWindow->cCentralWidget()->y(), m_pWindow->cTitleBar()->geometry().bottom() + 1);
    QVERIFY(content.width() >= m_pWindow->width() - 20);
}

void tst_TarnCustomMainWindow::CSetBackgroundColor_Normal_Drawn()
{
    QCOMPARE(m_pWindow->grab().toImage().pixelColor(200, 200), QColor("#F2F3F5"));
    m_pWindow->cSetBackgroundColor(QColor("#102030"));
    QCOMPARE(m_pWindow->grab().toImage().pixelColor(200, 200), QColor("#102030"));
}

void tst_TarnCustomMainWindow::CSetBackgroundColor_DarkSystemPalette_Drawn()
{
    const QPalette before = QApplication::palette();
    QApplication::setPalette(QPalette(Qt::black));
    QCOMPARE(m_pWindow->grab().toImage().pixelColor(200, 200), QColor("#F2F3F5"));
    QVERIFY(m_pWindow->cCentralWidget()->palette().color(QPalette::WindowText).lightness() < 128);
    QApplication::setPalette(before);
}

void tst_TarnCustomMainWindow::CEnableDefualtShadow_NoCompositor_NoMarginAndNothingBlack()
{
    QVERIFY(m_pWindow->cShadowMargins().isNull());
    const QImage image = m_pWindow->grab().toImage();
    for (const QPoint &pos :
         {QPoint(0, 0), QPoint(399, 0), QPoint(0, 299), QPoint(399, 299), QPoint(3, 150)}) {
        QCOMPARE(image.pixelColor(pos).alpha(), 255);
        QVERIFY(image.pixelColor(pos).lightness() > 150);
    }
}

void tst_TarnCustomMainWindow::CSetStrechEdges_Default_ContentKeepsClearOfTheGrip()
{
    const QRect content = m_pWindow->cCentralWidget()->geometry();
    QVERIFY(content.left() >= 4);
    QVERIFY(content.right() <= m_pWindow->width() - 5);
    QVERIFY(content.bottom() <= m_pWindow->height() - 5);
}

void tst_TarnCustomMainWindow::Maximised_Shown_ContentReachesTheEdges()
{
    m_pWindow->showMaximized();
    QTRY_COMPARE(m_pWindow->cCentralWidget()->geometry().bottomRight(), m_pWindow->rect().bottomRight());
    QCOMPARE(m_pWindow->cTitleBar()->pos(), QPoint(0, 0));
    QCOMPARE(CursorAt(QPoint(m_pWindow->width() - 1, 100)), Qt::ArrowCursor);
}

void tst_TarnCustomMainWindow::Drag_RightEdge_Widens()
{
    Drag(QPoint(398, 150), QPoint(60, 0));
    QCOMPARE(m_pWindow->geometry(), QRect(100, 100, 460, 300));
}

void tst_TarnCustomMainWindow::Drag_BottomLeftCorner_StretchesBothWays()
{
    Drag(QPoint(2, 297), QPoint(-40, 20));
    QCOMPARE(m_pWindow->geometry(), QRect(60, 100, 440, 320));
}

void tst_TarnCustomMainWindow::Drag_LeftEdgeBelowMinimum_StopsAtMinimum()
{
    Drag(QPoint(2, 150), QPoint(200, 0));
    QCOMPARE(m_pWindow->geometry(), QRect(200, 100, 300, 300));
}

void tst_TarnCustomMainWindow::Drag_TopEdgeNotAllowed_Nothing()
{
    Drag(QPoint(200, 0), QPoint(0, -50));
    QCOMPARE(m_pWindow->geometry(), QRect(100, 100, 400, 300));
}

void tst_TarnCustomMainWindow::Drag_EdgesOff_Nothing()
{
    m_pWindow->cSetStrechEdges(TarnCustom::StrechNone);
    Drag(QPoint(398, 150), QPoint(60, 0));
    QCOMPARE(m_pWindow->geometry(), QRect(100, 100, 400, 300));
}

void tst_TarnCustomMainWindow::Cursor_OverEdges_ShowsDirection()
{
    QCOMPARE(CursorAt(QPoint(1, 150)), Qt::SizeHorCursor);
    QCOMPARE(CursorAt(QPoint(398, 150)), Qt::SizeHorCursor);
    QCOMPARE(CursorAt(QPoint(200, 298)), Qt::SizeVerCursor);
    QCOMPARE(CursorAt(QPoint(398, 298)), Qt::SizeFDiagCursor);
    QCOMPARE(CursorAt(QPoint(1, 298)), Qt::SizeBDiagCursor);
    QCOMPARE(CursorAt(QPoint(200, 0)), Qt::ArrowCursor);
    QCOMPARE(CursorAt(QPoint(200, 150)), Qt::ArrowCursor);
    QCOMPARE(m_pWindow->cCentralWidget()->cursor().shape(), Qt::ArrowCursor);
}

void tst_TarnCustomMainWindow::SetDisabled_Shown_TitleLooksDifferent()
{
    m_pWindow->cTitleBar()->cSetText("Import/Export Features");
    const QImage enabled = m_pWindow->cTitleBar()->grab().toImage();
    m_pWindow->setDisabled(true);
    QVERIFY(m_pWindow->cTitleBar()->grab().toImage() != enabled);
    m_pWindow->setEnabled(true);
    QCOMPARE(m_pWindow->cTitleBar()->grab().toImage(), enabled);
}

void tst_TarnCustomMainWindow::SetDisabled_MinimisedAndBack_StaysDisabled()
{
    m_pWindow->setDisabled(true);
    m_pWindow->showMinimized();
    m_pWindow->showNormal();
    m_pWindow->hide();
    m_pWindow->show();
    QVERIFY(!m_pWindow->isEnabled());
}

QTEST_MAIN(tst_TarnCustomMainWindow)
#include "tst_tarncustommainwindow.moc"
