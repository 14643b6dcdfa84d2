#include <QDialog>
#include <QSignalSpy>
#include <QTest>
#include <QVBoxLayout>

#include <StyleCtl/tarncustompushbutton.h>

class tst_TarnCustomPushButton : public QObject
{
    Q_OBJECT

private slots:
    void Style_Selector1_IsOutline();
    void CSetBorderColor_Normal_DrawnOnAllEdges();
    void CSetBorderColor_Normal_HoverFollowsDisabledDoesNot();
    void CSetBorderColor_TopAndBottom_SidesAreFree();
    void Paint_Disabled_LooksDifferent();
    void KeyEnter_WithFocus_ClicksOnce();
    void KeySpace_WithFocus_ClicksOnce();
    void KeyEnter_FocusElsewhereInDialog_NotPressed();
    void SizeHint_LongerText_IsWider();
};

void tst_TarnCustomPushButton::Style_Selector1_IsOutline()
{
    const TarnCustomPushButton button(static_cast<TarnCustomPushButton::ButtonStyle>(1));
    QCOMPARE(button.cStyle(), TarnCustomPushButton::OutlineStyle);
}

void tst_TarnCustomPushButton::CSetBorderColor_Normal_DrawnOnAllEdges()
{
    TarnCustomPushButton button("", TarnCustomPushButton::OutlineStyle);
    button.resize(70, 26);
    const QColor orange("#f76900");
    button.cSetBorderColor(orange, static_cast<TarnCustom::BorderEdge>(3), TarnCustom::StateNormal);
    const QImage image = button.grab().toImage();
    for (const QPoint &pos : {QPoint(35, 0), QPoint(35, 25), QPoint(0, 13), QPoint(69, 13)})
        QCOMPARE(image.pixelColor(pos), orange);
    QVERIFY(image.pixelColor(35, 13) != orange);
}

void tst_TarnCustomPushButton::CSetBorderColor_Normal_HoverFollowsDisabledDoesNot()
{
    TarnCustomPushButton button;
    const QColor green("#00aa00");
    button.cSetBorderColor(green);
    QCOMPARE(button.cBorderColor(TarnCustom::StateNormal), green);
    QCOMPARE(button.cBorderColor(TarnCustom::StateHover), green);
    QVERIFY(button.cBorderColor(TarnCustom::StateDisabled) != green);
    button.cSetBorderColor(QColor());
    QVERIFY(button.cBorderColor(TarnCustom::StateNormal) != green);
}

void tst_TarnCustomPushButton::CSetBorderColor_TopAndBottom_SidesAreFree()
{
    TarnCustomPushButton button;
    button.resize(70, 26);
    const QColor orange("#f76900");
    button.cSetBorderColor(orange, TarnCustom::BorderTopBottom);
    const QImage image = button.grab().toImage();
    QCOMPARE(image.pixelColor(35, 0), orange);
    QVERIFY(image.pixelColor(0, 13) != orange);
}

void tst_TarnCustomPushButton::Paint_Disabled_LooksDifferent()
{
    TarnCustomPushButton button("Import", TarnCustomPushButton::OutlineStyle);
    button.resize(70, 26);
    const QImage enabled = button.grab().toImage();
    button.setDisabled(true);
    QCOMPARE(button.cState(), TarnCustom::StateDisabled);
    QVERIFY(button.grab().toImage() != enabled);
}

void tst_TarnCustomPushButton::KeyEnter_WithFocus_ClicksOnce()
{
    TarnCustomPushButton button("Import", TarnCustomPushButton::OutlineStyle);
    QSignalSpy clicked(&button, &QPushButton::clicked);
    QTest::keyClick(&button, Qt::Key_Return);
    QCOMPARE(clicked.count(), 1);
}

void tst_TarnCustomPushButton::KeySpace_WithFocus_ClicksOnce()
{
    TarnCustomPushButton button("Import", TarnCustomPushButton::OutlineStyle);
    QSignalSpy clicked(&button, &QPushButton::clicked);
    QTest::keyClick(&button, Qt::Key_Space);
    QCOMPARE(clicked.count(), 1);
}

void tst_TarnCustomPushButton::KeyEnter_FocusElsewhereInDialog_NotPressed()
{
    QDialog dialog;
    auto *pLayout = new QVBoxLayout(&dialog);
    auto *pButton = new TarnCustomPushButton("Import", TarnCustomPushButton::OutlineStyle);
    pLayout->addWidget(pButton);
    QSignalSpy clicked(pButton, &QPushButton::clicked);
    dialog.show();
    QVERIFY(QTest::qWaitForWindowExposed(&dialog));
    QTest::keyClick(&dialog, Qt::Key_Return);
    QCOMPARE(clicked.count(), 0);
}

void tst_TarnCustomPushButton::SizeHint_LongerText_IsWider()
{
    const TarnCustomPushButton small("OK", TarnCustomPushButton::OutlineStyle);
    const TarnCustomPushButton wide("Open the folder", TarnCustomPushButton::OutlineStyle);
    QVERIFY(wide.sizeHint().width() > small.sizeHint().width());
    QVERIFY(small.sizeHint().height() >= 26);
}

QTEST_MAIN(tst_TarnCustomPushButton)
#include "tst_tarncustompushbutton.moc"
