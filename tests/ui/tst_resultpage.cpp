#include <QtTest>

#include <QHBoxLayout>
#include <QPushButton>

#include <StyleCtl/tarncustomlabel.h>
#include <ui/resultpage.h>

#include "marker.h"

/// The page on a plain widget with a plain button.
class tst_ResultPage : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void Create_Counts_AreZeroAndOnlyTheLastTextIsThere();
    void Layout_Order_IsCountAndTextThreeTimesThenTheButton();
    void Layout_Labels_BelongToThePage();
    void SetTexts_Type_DecidesTheFirstTwoTexts_data();
    void SetTexts_Type_DecidesTheFirstTwoTexts();
    void SetTexts_LanguageChanged_AreInTheNewOne();
    void ShowOperation_LastText_Stays();
    void Show_Count_GoesToItsLabel();

private:
    QString Texts() const;

    TarnCustomLabel *m_labels[6] = {};
    ResultPage m_results{{m_labels[0], m_labels[1], m_labels[2], m_labels[3], m_labels[4], m_labels[5]}};
    std::unique_ptr<QWidget> m_pPage;
    QPushButton *m_pBackBtn = nullptr;
};

void tst_ResultPage::init()
{
    m_pPage = std::make_unique<QWidget>();
    m_pBackBtn = new QPushButton;
    m_results.Create();
    m_results.Layout(m_pPage.get(), m_pBackBtn);
}

void tst_ResultPage::cleanup()
{
    m_pPage.reset();
}

QString tst_ResultPage::Texts() const
{
    QStringList listTexts;
    for (const TarnCustomLabel *pLabel : m_labels)
        listTexts.append(pLabel->text());
    return listTexts.join('|');
}

void tst_ResultPage::Create_Counts_AreZeroAndOnlyTheLastTextIsThere()
{
    QCOMPARE(Texts(), QString("0||0||0|Failed"));
}

void tst_ResultPage::Layout_Order_IsCountAndTextThreeTimesThenTheButton()
{
    QVector<QWidget *> vecOrder;
    for (int i = 0; i < m_pPage->layout()->count(); ++i) {
        QWidget *pWidget = m_pPage->layout()->itemAt(i)->widget();
        if (qobject_cast<TarnCustomLabel *>(pWidget) || pWidget == m_pBackBtn)
            vecOrder.append(pWidget);
    }
    QCOMPARE(vecOrder, QVector<QWidget *>({m_labels[0], m_labels[1], m_labels[2], m_labels[3], m_labels[4],
                                           m_labels[5], m_pBackBtn}));
}

void tst_ResultPage::Layout_Labels_BelongToThePage()
{
    const QPointer<TarnCustomLabel> pLabel = m_labels[0];
    QCOMPARE(pLabel->parentWidget(), m_pPage.get());
    m_pPage.reset();
    QVERIFY(!pLabel);
}

void tst_ResultPage::SetTexts_Type_DecidesTheFirstTwoTexts_data()
{
    QTest::addColumn<uint>("nType");
    QTest::addColumn<QString>("strTexts");
    QTest::newRow("button's import") << 0u << "0| Importing|0| Imported.|0|Failed";
    QTest::newRow("button's export") << 1u << "0| Exporting|0| Exported.|0|Failed";
    QTest::newRow("worker's import") << 2u << "0| Importing|0| Imported.|0|Failed";
    QTest::newRow("worker's export") << 3u << "0| Exporting|0| Exported.|0|Failed";
    QTest::newRow("none") << ~0u << "0|first|0|second|0|Failed";
}

void tst_ResultPage::SetTexts_Type_DecidesTheFirstTwoTexts()
{
    QFETCH(uint, nType);
    m_labels[1]->setText("first");
    m_labels[3]->setText("second");
    m_labels[5]->setText("third");
    m_results.SetTexts(nType);
    QTEST(Texts(), "strTexts");
}

void tst_ResultPage::SetTexts_LanguageChanged_AreInTheNewOne()
{
    Marker marker;
    QVERIFY(QCoreApplication::installTranslator(&marker));
    m_results.SetTexts(1);
    QCOMPARE(Texts(), QString("0|# Exporting|0|# Exported.|0|#Failed"));
    QCoreApplication::removeTranslator(&marker);
}

void tst_ResultPage::ShowOperation_LastText_Stays()
{
    m_labels[5]->setText("third");
    m_results.ShowOperation(0);
    QCOMPARE(Texts(), QString("0| Importing|0| Imported.|0|third"));
}

void tst_ResultPage::Show_Count_GoesToItsLabel()
{
    m_results.ShowRunning(-1); // more ends than begins
    m_results.ShowSucceeded(400);
    m_results.ShowFailed(7);
    QCOMPARE(Texts(), QString("-1||400||7|Failed"));
}

QTEST_MAIN(tst_ResultPage)
#include "tst_resultpage.moc"
