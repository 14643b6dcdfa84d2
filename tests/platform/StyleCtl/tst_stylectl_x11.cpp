#include <QApplication>
#include <QProcess>
#include <QPushButton>
#include <QScreen>
#include <QStandardPaths>
#include <QTest>

#include <cstdlib>
#include <xcb/xcb.h>

#include <StyleCtl/tarncustomloadingdialog.h>
#include <StyleCtl/tarncustommainwindow.h>
#include <StyleCtl/tarncustomtitlebar.h>

/// Counts the events of one type that an object gets.
class EventCounter : public QObject
{
public:
    explicit EventCounter(QEvent::Type eType)
        : m_eType(eType)
    {
    }

    int Count() const { return m_nCount; }

protected:
    bool eventFilter(QObject *, QEvent *pEvent) override
    {
        m_nCount += pEvent->type() == m_eType ? 1 : 0;
        return false;
    }

private:
    const QEvent::Type m_eType;
    int m_nCount = 0;
};

/// Says that a compositor runs for as long as it lives: owns the selection that tells of one.
class CompositorStandIn
{
public:
    CompositorStandIn()
        : m_pConnection(xcb_connect(nullptr, nullptr))
    {
        const xcb_screen_t *pScreen = xcb_setup_roots_iterator(xcb_get_setup(m_pConnection)).data;
        const xcb_window_t window = xcb_generate_id(m_pConnection);
        xcb_create_window(m_pConnection, XCB_COPY_FROM_PARENT, window, pScreen->root, -1, -1, 1, 1, 0,
                          XCB_WINDOW_CLASS_INPUT_ONLY, XCB_COPY_FROM_PARENT, 0, nullptr);
        const char name[] = "_NET_WM_CM_S0";
        xcb_intern_atom_reply_t *pAtom = xcb_intern_atom_reply(
            m_pConnection, xcb_intern_atom(m_pConnection, 0, sizeof name - 1, name), nullptr);
        if (!pAtom)
            return;
        const auto cookie =
            xcb_set_selection_owner_checked(m_pConnection, window, pAtom->atom, XCB_CURRENT_TIME);
        m_bRunning = !xcb_request_check(m_pConnection, cookie);
        std::free(pAtom);
    }
    ~CompositorStandIn() { xcb_disconnect(m_pConnection); }
    CompositorStandIn(const CompositorStandIn &) = delete;
    CompositorStandIn &operator=(const CompositorStandIn &) = delete;

    bool IsRunning() const { return m_bRunning; }

private:
    xcb_connection_t *const m_pConnection;
    bool m_bRunning = false;
};

/// The frameless window on a real X server with a window manager, every widget a native window, as the tool
/// runs it. The display is a virtual one of our own (see CMakeLists.txt); what stands in for a
/// compositor blends nothing.
class tst_StyleCtlX11 : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void cleanupTestCase();
    void init();
    void cleanup();

    void Show_NoCompositor_NothingBlackUpToTheEdges();
    void Compositor_StartsAndEnds_ShadowComesAndGoes();
    void Drag_TitleBar_WindowManagerMovesTheWindow();
    void Drag_RightEdge_WindowManagerStretchesTheWindow();
    void DoubleClick_TitleBar_FillsTheScreenAndBack();
    void CloseRequest_BusyDialog_StaysOpen();
    void CloseRequest_MainWindow_Closes();

private:
    static bool Run(const QStringList &arguments);
    /// Presses a key, again when it went astray: a window that Qt calls active may not have the focus yet.
    template <typename Condition>
    static bool PressUntil(const char *key, Condition isDone)
    {
        for (int i = 0; i < 10 && !isDone(); ++i) {
            Run({"key", QLatin1String(key)});
            if (QTest::qWaitFor(isDone, 2000))
                return true;
        }
        return isDone();
    }
    QByteArray ToldMargins() const;
    void DragBy(const QPoint &from, const QPoint &by);

    QProcess m_windowManager;
    TarnCustomMainWindow *m_pWindow = nullptr;
};

bool tst_StyleCtlX11::Run(const QStringList &arguments)
{
    return QProcess::execute(QStringLiteral("xdotool"), arguments) == 0;
}

void tst_StyleCtlX11::initTestCase()
{
    QCOMPARE(QGuiApplication::platformName(), QString("xcb"));
    for (const char *program : {"openbox", "xdotool"}) {
        if (QStandardPaths::findExecutable(QLatin1String(program)).isEmpty())
            QSKIP("needs openbox and xdotool");
    }
    m_windowManager.start(QStringLiteral("openbox"), {QStringLiteral("--sm-disable")});
    QVERIFY(m_windowManager.waitForStarted());
    // It serves as soon as it names itself on the root window.
    QTRY_VERIFY_WITH_TIMEOUT(Run({"get_num_desktops"}), 20000);
}

void tst_StyleCtlX11::cleanupTestCase()
{
    m_windowManager.terminate();
    m_windowManager.waitForFinished(5000);
}

void tst_StyleCtlX11::init()
{
    m_pWindow = new TarnCustomMainWindow;
    m_pWindow->cSetStrechEdges(TarnCustom::StrechAllButTop);
    m_pWindow->cEnableDefualtShadow();
    m_pWindow->cTitleBar()->setFixedHeight(37);
    m_pWindow->cSetCentralWidget(new QWidget);
    m_pWindow->setGeometry(200, 150, 500, 300);
    m_pWindow->show();
    QVERIFY(QTest::qWaitForWindowActive(m_pWindow));
}

void tst_StyleCtlX11::cleanup()
{
    delete m_pWindow;
}

/// The shadow's margins as the window manager reads them: left, right, top, bottom.
QByteArray tst_StyleCtlX11::ToldMargins() const
{
    QProcess process;
    process.start("xprop", {"-id", QString::number(m_pWindow->winId()), "_GTK_FRAME_EXTENTS"});
    process.waitForFinished(5000);
    return process.readAllStandardOutput().trimmed().split('=').value(1).trimmed();
}

void tst_StyleCtlX11::DragBy(const QPoint &from, const QPoint &by)
{
    const auto place = [](const QPoint &pos) {
        return QStringList{QString::number(pos.x()), QString::number(pos.y())};
    };
    QVERIFY(Run(QStringList{"mousemove"} + place(from) + QStringList{"mousedown", "1"}));
    for (int i = 1; i <= 20; ++i) {
        QVERIFY(Run(QStringList{"mousemove"} + place(from + by * i / 20)));
        QTest::qWait(10);
    }
    QVERIFY(Run({"mouseup", "1"}));
}

void tst_StyleCtlX11::Show_NoCompositor_NothingBlackUpToTheEdges()
{
    const auto darkest = [this] {
        const QRect frame = m_pWindow->geometry();
        const QImage image = QGuiApplication::primaryScreen()
                                 ->grabWindow(0, frame.x(), frame.y(), frame.width(), frame.height())
                                 .toImage();
        int nDarkest = 255;
        for (int x = 0; x < image.width(); x += 7) {
            for (const int y : {0, 2, 60, image.height() - 3, image.height() - 1})
                nDarkest = qMin(nDarkest, image.pixelColor(x, y).lightness());
        }
        for (int y = 0; y < image.height(); y += 7) {
            for (const int x : {0, 2, image.width() - 3, image.width() - 1})
                nDarkest = qMin(nDarkest, image.pixelColor(x, y).lightness());
        }
        return nDarkest;
    };
    QVERIFY(m_pWindow->cShadowMargins().isNull());
    QTRY_VERIFY(darkest() > 150);
}

void tst_StyleCtlX11::Compositor_StartsAndEnds_ShadowComesAndGoes()
{
    const QSize contentBefore = m_pWindow->cCentralWidget()->size();
    {
        const CompositorStandIn compositor;
        QVERIFY(compositor.IsRunning());
        QTRY_VERIFY(!m_pWindow->cShadowMargins().isNull());
        QTRY_VERIFY(m_pWindow->cCentralWidget()->width() < contentBefore.width());
        QTRY_COMPARE(ToldMargins(), QByteArray("10, 10, 10, 10"));
        m_pWindow->showMaximized();
        QTRY_VERIFY(m_pWindow->cShadowMargins().isNull());
        m_pWindow->showNormal();
        QTRY_VERIFY(!m_pWindow->cShadowMargins().isNull());
    }
    QTRY_VERIFY(m_pWindow->cShadowMargins().isNull());
    QTRY_COMPARE(ToldMargins(), QByteArray("0, 0, 0, 0"));
    QTRY_COMPARE(m_pWindow->cCentralWidget()->size(), contentBefore);
}

void tst_StyleCtlX11::Drag_TitleBar_WindowManagerMovesTheWindow()
{
    const QPoint before = m_pWindow->pos();
    DragBy(m_pWindow->mapToGlobal(QPoint(150, 20)), QPoint(120, 80));
    // The way until the drag is taken as one is lost.
    QTRY_VERIFY(((m_pWindow->pos() - before) - QPoint(120, 80)).manhattanLength() <= 40);
}

void tst_StyleCtlX11::Drag_RightEdge_WindowManagerStretchesTheWindow()
{
    const QSize before = m_pWindow->size();
    DragBy(m_pWindow->mapToGlobal(QPoint(m_pWindow->width() - 2, 150)), QPoint(100, 30));
    QTRY_VERIFY(qAbs(m_pWindow->width() - before.width() - 100) <= 20);
    QCOMPARE(m_pWindow->height(), before.height());
}

void tst_StyleCtlX11::DoubleClick_TitleBar_FillsTheScreenAndBack()
{
    const QRect before = m_pWindow->geometry();
    QTest::mouseDClick(m_pWindow->cTitleBar(), Qt::LeftButton, {}, QPoint(150, 20));
    QTRY_COMPARE(m_pWindow->geometry(), QGuiApplication::primaryScreen()->geometry());
    QTRY_COMPARE(m_pWindow->cCentralWidget()->width(), m_pWindow->width());
    QTest::mouseDClick(m_pWindow->cTitleBar(), Qt::LeftButton, {}, QPoint(150, 20));
    QTRY_COMPARE(m_pWindow->geometry(), before);
}

void tst_StyleCtlX11::CloseRequest_BusyDialog_StaysOpen()
{
    TarnCustomLoadingDialog dialog(m_pWindow);
    m_pWindow->setDisabled(true);
    dialog.SetLabelText("Exporting features...");
    dialog.open();
    QVERIFY(QTest::qWaitForWindowActive(&dialog));
    EventCounter requests(QEvent::Close);
    EventCounter keys(QEvent::KeyRelease);
    dialog.installEventFilter(&requests);
    dialog.installEventFilter(&keys);
    QVERIFY(PressUntil("alt+F4", [&] { return requests.Count() > 0; }));
    QVERIFY(PressUntil("Escape", [&] { return keys.Count() > 0; }));
    QVERIFY(dialog.isVisible());
    QVERIFY(m_pWindow->isVisible());
    dialog.close();
    QVERIFY(!dialog.isVisible());
}

void tst_StyleCtlX11::CloseRequest_MainWindow_Closes()
{
    EventCounter keys(QEvent::KeyRelease);
    m_pWindow->installEventFilter(&keys);
    QVERIFY(PressUntil("Escape", [&] { return keys.Count() > 0; }));
    QVERIFY(m_pWindow->isVisible());
    QVERIFY(PressUntil("alt+F4", [&] { return !m_pWindow->isVisible(); }));
}

int main(int argc, char **argv)
{
    QCoreApplication::setAttribute(Qt::AA_NativeWindows); // as the tool does
    QApplication app(argc, argv);
    QApplication::setStyle(QStringLiteral("Fusion"));
    tst_StyleCtlX11 test;
    return QTest::qExec(&test, argc, argv);
}
#include "tst_stylectl_x11.moc"
