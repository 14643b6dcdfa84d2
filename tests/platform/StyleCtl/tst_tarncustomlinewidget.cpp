#include <QTest>

#include <StyleCtl/tarncustomlinewidget.h>

class tst_TarnCustomLineWidget : public QObject
{
    Q_OBJECT

private slots:
    void Paint_SolidLine_FillsWithItsColour();
    void Paint_DashLine_HasGaps();
};

static int PixelsOf(TarnCustomLineWidget *pLine, const QColor &color)
{
    const QImage image = pLine->grab().toImage();
    int nFound = 0;
    for (int y = 0; y < image.height(); ++y)
        nFound += image.pixelColor(0, y) == color ? 1 : 0;
    return nFound;
}

void tst_TarnCustomLineWidget::Paint_SolidLine_FillsWithItsColour()
{
    TarnCustomLineWidget line;
    line.setFixedSize(1, 20);
    line.cSetLineType(static_cast<TarnCustomLineWidget::LineType>(0));
    line.cSetBackgroundColor(QColor("#BFBFBF"));
    QCOMPARE(line.cLineType(), TarnCustomLineWidget::SolidLine);
    QCOMPARE(PixelsOf(&line, QColor("#BFBFBF")), 20);
}

void tst_TarnCustomLineWidget::Paint_DashLine_HasGaps()
{
    TarnCustomLineWidget line;
    line.setFixedSize(1, 20);
    line.cSetLineType(TarnCustomLineWidget::DashLine);
    line.cSetBackgroundColor(QColor("#BF0000"));
    QCOMPARE(PixelsOf(&line, QColor("#BF0000")), 12);
}

QTEST_MAIN(tst_TarnCustomLineWidget)
#include "tst_tarncustomlinewidget.moc"
