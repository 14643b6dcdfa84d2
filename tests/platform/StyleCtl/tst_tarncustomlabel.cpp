#include <QApplication>
#include <QTest>

#include <StyleCtl/tarncustomlabel.h>

class tst_TarnCustomLabel : public QObject
{
    Q_OBJECT

private slots:
    void CSetFontColor_Normal_HoldsWhileDisabledToo();
    void CSetFontColor_DisabledSet_KeptWhenNormalChanges();
    void CSetFontSize_Pixels_KeepsTheRestOfTheFont();
    void CSetFontSize_NotPositive_Ignored();
    void Colour_DarkSystemPalette_StaysDarkText();
    void Text_LooksLikeHtml_ShownAsIs();
};

void tst_TarnCustomLabel::CSetFontColor_Normal_HoldsWhileDisabledToo()
{
    TarnCustomLabel label;
    label.cSetFontColor(QColor("#FAB700"));
    label.setDisabled(true);
    QCOMPARE(label.cFontColor(), QColor("#FAB700"));
    QCOMPARE(label.cFontColor(TarnCustom::StateDisabled), QColor("#FAB700"));
}

void tst_TarnCustomLabel::CSetFontColor_DisabledSet_KeptWhenNormalChanges()
{
    TarnCustomLabel label;
    label.cSetFontColor(Qt::gray, TarnCustom::StateDisabled);
    label.cSetFontColor(Qt::red);
    QCOMPARE(label.cFontColor(TarnCustom::StateDisabled), QColor(Qt::gray));
    QCOMPARE(label.cFontColor(), QColor(Qt::red));
}

void tst_TarnCustomLabel::CSetFontSize_Pixels_KeepsTheRestOfTheFont()
{
    TarnCustomLabel label("text");
    QFont font = label.font();
    font.setItalic(true);
    label.setFont(font);
    label.cSetFontSize(32);
    QCOMPARE(label.font().pixelSize(), 32);
    QVERIFY(label.font().italic());
}

void tst_TarnCustomLabel::CSetFontSize_NotPositive_Ignored()
{
    TarnCustomLabel label("text");
    label.cSetFontSize(12);
    label.cSetFontSize(0);
    label.cSetFontSize(-3);
    QCOMPARE(label.font().pixelSize(), 12);
}

void tst_TarnCustomLabel::Colour_DarkSystemPalette_StaysDarkText()
{
    const QPalette before = QApplication::palette();
    QApplication::setPalette(QPalette(Qt::black));
    const TarnCustomLabel label("text");
    QVERIFY(label.cFontColor().lightness() < 128);
    QApplication::setPalette(before);
}

void tst_TarnCustomLabel::Text_LooksLikeHtml_ShownAsIs()
{
    const TarnCustomLabel label("<b>camera</b>");
    const TarnCustomLabel plain("camera");
    QVERIFY(label.sizeHint().width() > plain.sizeHint().width());
}

QTEST_MAIN(tst_TarnCustomLabel)
#include "tst_tarncustomlabel.moc"
