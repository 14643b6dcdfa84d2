#include <QtTest>

#include <QFrame>
#include <QHBoxLayout>
#include <QStackedWidget>
#include <QVBoxLayout>

#include <StyleCtl/tarncustomlinewidget.h>
#include <StyleCtl/tarncustomloadingdialog.h>
#include <StyleCtl/tarncustomtitlebar.h>

#include "windowfixture.h"

/// What the window looks like when it is new: sizes, colours, layouts.
class tst_MainWidget_Look : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { QCoreApplication::setApplicationVersion("9.8.7"); }

    void Construct_Window_HasTitleSizeAndColour();
    void Construct_Buttons_AreDisabledAndStyled();
    void Construct_Counts_ReadZeroInTheirColours();
    void Construct_Pages_OperatePageIsShown();
    void Construct_Layouts_HaveTheirMarginsAndOrder();
    void Construct_Dividers_AreThinSolidLines();
    void Construct_LineFrame_IsSunkenAndInNoLayout();
    void Dialogs_Owner_IsTheWindow();
};

namespace {

/// Widgets by name, dividers as "|", spaces by their width.
QStringList ItemsOf(const QLayout *pLayout)
{
    QStringList listItems;
    for (int i = 0; i < pLayout->count(); ++i) {
        QLayoutItem *pItem = pLayout->itemAt(i);
        if (qobject_cast<TarnCustomLineWidget *>(pItem->widget()))
            listItems.append("|");
        else if (pItem->widget())
            listItems.append(pItem->widget()->objectName());
        else if (pItem->layout())
            listItems.append("layout");
        else if (pItem->expandingDirections())
            listItems.append("stretch");
        else
            listItems.append(QString::number(pItem->sizeHint().width()));
    }
    return listItems;
}

} // namespace

void tst_MainWidget_Look::Construct_Window_HasTitleSizeAndColour()
{
    WindowFixture fixture;
    QCOMPARE(fixture.m_pWindow->windowTitle(), QString("Import/Export Features"));
    QCOMPARE(fixture.m_pWindow->cTitleBar()->cText(), QString("Import/Export Features V9.8.7"));
    QCOMPARE(fixture.m_pWindow->cTitleBar()->minimumHeight(), 37);
    QCOMPARE(fixture.m_pWindow->cTitleBar()->maximumHeight(), 37);
    QCOMPARE(fixture.m_pWindow->size(), QSize(1058, 632));
    QCOMPARE(fixture.m_pWindow->minimumWidth(), 1058);
    QCOMPARE(int(fixture.m_pWindow->cStrechEdges()), 0xCB);
    QCOMPARE(fixture.m_pWindow->cBackgroundColor(TarnCustom::StateNormal), QColor("#F2F3F5"));
    QVERIFY(fixture.m_pWindow->cIsDefualtShadowEnabled());
    fixture.Show();
    QCOMPARE(fixture.m_pWindow->grab().toImage().pixelColor(12, 300), QColor("#F2F3F5")); // left of the tree
}

void tst_MainWidget_Look::Construct_Buttons_AreDisabledAndStyled()
{
    WindowFixture fixture;
    for (const QString &strName : {QString("ImportBtn"), QString("ExportBtn")}) {
        TarnCustomPushButton *pButton = fixture.Button(strName);
        QVERIFY(!pButton->isEnabled());
        QCOMPARE(pButton->minimumSize(), QSize(70, 26));
        QCOMPARE(pButton->maximumSize(), QSize(70, 26));
        QCOMPARE(pButton->cBorderColor(TarnCustom::StateNormal), QColor("#f76900"));
        QCOMPARE(int(pButton->cBorderEdge(TarnCustom::StateNormal)), 3);
        QCOMPARE(int(pButton->cStyle()), 1);
    }
    QCOMPARE(fixture.Button("ImportBtn")->text(), QString("Import"));
    QCOMPARE(fixture.Button("ExportBtn")->text(), QString("Export"));
    QCOMPARE(fixture.Button("BackBtn")->text(), QString("Back"));
    QCOMPARE(int(fixture.Button("BackBtn")->cStyle()), 1);
    QCOMPARE(fixture.Button("BackBtn")->minimumSize(), QSize(86, 26));
    QCOMPARE(fixture.Button("BackBtn")->maximumSize(), QSize(86, 26));
}

void tst_MainWidget_Look::Construct_Counts_ReadZeroInTheirColours()
{
    WindowFixture fixture;
    QCOMPARE(fixture.Counts(), QString("0, 0, 0"));
    const QVector<QPair<QString, QString>> vecColors{
        {"TotalNumLabel", "#FAB700"}, {"SuccessNumLabel", "#00D53C"}, {"FailedNumLabel", "#FC2F2F"}};
    for (const auto &color : vecColors) {
        const auto *pLabel = fixture.m_pWindow->findChild<TarnCustomLabel *>(color.first);
        QCOMPARE(pLabel->cFontColor(), QColor(color.second));
        QCOMPARE(pLabel->font().pixelSize(), 32);
        QCOMPARE(pLabel->font().weight(), 75);
        QVERIFY(pLabel->font().italic());
        QCOMPARE(pLabel->alignment(), Qt::AlignCenter);
        QCOMPARE(pLabel->minimumWidth(), 50);
        QCOMPARE(pLabel->maximumWidth(), 50);
    }
    for (const QString &strName : {QString("DoingLabel"), QString("SuccessLabel"), QString("FailedLabel")}) {
        const auto *pLabel = fixture.m_pWindow->findChild<TarnCustomLabel *>(strName);
        QCOMPARE(pLabel->cFontColor(), QColor("#6C6C6C"));
        QCOMPARE(pLabel->font().pixelSize(), 12);
    }
}

void tst_MainWidget_Look::Construct_Pages_OperatePageIsShown()
{
    WindowFixture fixture;
    const auto *pStack = fixture.m_pWindow->findChild<QStackedWidget *>("PageStack");
    QCOMPARE(pStack->count(), 2);
    QCOMPARE(pStack->widget(0)->objectName(), QString("OperatePage"));
    QCOMPARE(pStack->widget(1)->objectName(), QString("ResultPage"));
    QCOMPARE(pStack->currentIndex(), 0);
    QCOMPARE(pStack->minimumHeight(), 57);
    QCOMPARE(pStack->maximumHeight(), 57);
}

void tst_MainWidget_Look::Construct_Layouts_HaveTheirMarginsAndOrder()
{
    WindowFixture fixture;
    const auto *pMain = qobject_cast<QVBoxLayout *>(fixture.m_pWindow->cCentralWidget()->layout());
    QVERIFY(pMain);
    QCOMPARE(pMain->contentsMargins(), QMargins(25, 0, 25, 20));
    QCOMPARE(pMain->spacing(), 0);
    QCOMPARE(ItemsOf(pMain), QStringList({"PageStack", "layout", "0"}));
    const auto *pBody = qobject_cast<QHBoxLayout *>(pMain->itemAt(1)->layout());
    QVERIFY(pBody);
    QCOMPARE(ItemsOf(pBody), QStringList({"ToolTree", "DeviceTable"}));
    const auto *pOperate =
        qobject_cast<QHBoxLayout *>(fixture.m_pWindow->findChild<QWidget *>("OperatePage")->layout());
    QVERIFY(pOperate);
    QCOMPARE(ItemsOf(pOperate), QStringList({"ImportBtn", "10", "ExportBtn", "stretch"}));
    const auto *pResult =
        qobject_cast<QHBoxLayout *>(fixture.m_pWindow->findChild<QWidget *>("ResultPage")->layout());
    QVERIFY(pResult);
    QCOMPARE(ItemsOf(pResult),
             QStringList({"TotalNumLabel", "DoingLabel", "20", "|", "20", "SuccessNumLabel", "SuccessLabel",
                          "20", "|", "20", "FailedNumLabel", "FailedLabel", "stretch", "BackBtn"}));
    for (const QLayout *pLayout : std::initializer_list<const QLayout *>{pBody, pOperate, pResult}) {
        QCOMPARE(pLayout->contentsMargins(), QMargins());
        QCOMPARE(pLayout->spacing(), 0);
    }
}

void tst_MainWidget_Look::Construct_Dividers_AreThinSolidLines()
{
    WindowFixture fixture;
    const auto listLines = fixture.m_pWindow->findChildren<TarnCustomLineWidget *>();
    QCOMPARE(listLines.size(), 2);
    for (const auto *pLine : listLines) {
        QCOMPARE(pLine->minimumSize(), QSize(1, 20));
        QCOMPARE(pLine->maximumSize(), QSize(1, 20));
        QCOMPARE(int(pLine->cLineType()), 0);
        QCOMPARE(pLine->cBackgroundColor(), QColor("#BFBFBF"));
    }
}

void tst_MainWidget_Look::Construct_LineFrame_IsSunkenAndInNoLayout()
{
    WindowFixture fixture;
    QList<int> listStyles;
    for (const QWidget *pWidget : QApplication::topLevelWidgets()) {
        if (pWidget->metaObject() == &QFrame::staticMetaObject)
            listStyles.append(static_cast<const QFrame *>(pWidget)->frameStyle());
    }
    QCOMPARE(listStyles, QList<int>({QFrame::HLine | QFrame::Sunken}));
}

void tst_MainWidget_Look::Dialogs_Owner_IsTheWindow()
{
    WindowFixture fixture;
    QWidget *pWindow = fixture.m_pWindow.get();
    fixture.ShowCameras({NetworkCamera(1)});
    QCOMPARE(pWindow->findChildren<TarnCustomLoadingDialog *>(QString(), Qt::FindDirectChildrenOnly).size(),
             1);
    QStringList listOwned;
    ModalHands hands;
    const auto note = [&](QWidget *pDialog) {
        if (pDialog->parentWidget() == pWindow)
            listOwned.append(pDialog->objectName());
        pDialog->close();
    };
    for (const char *pName : {"QFileDialog", "QFileDialog", "MessageBox", "MessageBox", "SaveDoneHintDlg"})
        hands.Then(pName, note);
    fixture.m_pWindow->OnBtnImport();
    fixture.m_pWindow->OnBtnExport();
    fixture.m_pWindow->OnShowMsg("title", "content", "detail");
    for (const unsigned int nType : {2u, 3u}) {
        fixture.Begin(1, nType);
        fixture.End(1, nType);
    }
    QTRY_VERIFY(hands.AllDone());
    QCOMPARE(listOwned.size(), 5);
}

QTEST_MAIN(tst_MainWidget_Look)
#include "tst_mainwidget_look.moc"
