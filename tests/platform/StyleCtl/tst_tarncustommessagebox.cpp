#include <QApplication>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTest>
#include <QTimer>
#include <QTranslator>

#include <StyleCtl/tarncustommessagebox.h>
#include <StyleCtl/tarncustomtitlebar.h>

class tst_TarnCustomMessageBox : public QObject
{
    Q_OBJECT

private slots:
    void Simple_Texts_ShownWhereTheyBelong();
    void Simple_EmptyDetailAndTitle_NoDetailAndOwnTitle();
    void Simple_Enter_Closes();
    void Simple_Escape_Closes();
    void Simple_OkClicked_Closes();
    void Simple_CloseButton_Closes();
    void Simple_AfterSetNotBlockRun_StillWaits();
    void Show_OwnerDisabled_CanBeClosed();
    void Show_LongDetail_ScrollsInsteadOfGrowing();
    void LanguageChange_WhileShown_TranslatesButton();

private:
    // Runs act on the message box once it is up; gives up after a while.
    template <typename Act>
    void During(QWidget *pParent, const QString &content, const QString &detail, const QString &title,
                Act act)
    {
        bool bSeen = false;
        QTimer poll;
        connect(&poll, &QTimer::timeout, &poll, [&] {
            auto *pBox = qobject_cast<TarnCustomMessageBox *>(QApplication::activeModalWidget());
            if (!pBox || bSeen)
                return;
            bSeen = true;
            act(pBox);
        });
        poll.start(5);
        TarnCustomMessageBox::simple(pParent, content, detail, title,
                                     static_cast<TarnCustomMessageBox::HintIconStyle>(0));
        QVERIFY(bSeen);
    }
};

void tst_TarnCustomMessageBox::Simple_Texts_ShownWhereTheyBelong()
{
    During(nullptr, "the content", "the detail", "the title", [](TarnCustomMessageBox *pBox) {
        QCOMPARE(pBox->findChild<QLabel *>("MessageContent")->text(), QString("the content"));
        QCOMPARE(pBox->findChild<QPlainTextEdit *>("MessageDetail")->toPlainText(), QString("the detail"));
        QCOMPARE(pBox->cTitleBar()->cText(), QString("the title"));
        QCOMPARE(pBox->windowTitle(), QString("the title"));
        QVERIFY(pBox->isModal());
        pBox->close();
    });
}

void tst_TarnCustomMessageBox::Simple_EmptyDetailAndTitle_NoDetailAndOwnTitle()
{
    During(nullptr, "Importing process is over.", "", "", [](TarnCustomMessageBox *pBox) {
        QVERIFY(!pBox->findChild<QPlainTextEdit *>("MessageDetail")->isVisible());
        QCOMPARE(pBox->cTitleBar()->cText(), QString("Prompt"));
        pBox->close();
    });
}

void tst_TarnCustomMessageBox::Simple_Enter_Closes()
{
    During(nullptr, "text", "", "", [](QWidget *pBox) { QTest::keyClick(pBox, Qt::Key_Return); });
}

void tst_TarnCustomMessageBox::Simple_Escape_Closes()
{
    During(nullptr, "text", "", "", [](QWidget *pBox) { QTest::keyClick(pBox, Qt::Key_Escape); });
}

void tst_TarnCustomMessageBox::Simple_OkClicked_Closes()
{
    During(nullptr, "text", "", "", [](QWidget *pBox) {
        QTest::mouseClick(pBox->findChild<QPushButton *>("MessageOkBtn"), Qt::LeftButton);
    });
}

void tst_TarnCustomMessageBox::Simple_CloseButton_Closes()
{
    During(nullptr, "text", "", "",
           [](QWidget *pBox) { QTest::mouseClick(pBox->findChild<QWidget *>("CloseBtn"), Qt::LeftButton); });
}

void tst_TarnCustomMessageBox::Simple_AfterSetNotBlockRun_StillWaits()
{
#ifdef Q_OS_MACOS
    QSKIP("there it does not wait");
#endif
    TarnCustomMessageBox::setNotBlockRun_Mac();
    bool bClosed = false;
    During(nullptr, "text", "", "", [&](QWidget *pBox) {
        bClosed = true;
        pBox->close();
    });
    QVERIFY(bClosed); // simple() came back only then
}

void tst_TarnCustomMessageBox::Show_OwnerDisabled_CanBeClosed()
{
    QWidget owner;
    owner.show();
    owner.setDisabled(true);
    During(&owner, "text", "", "", [](QWidget *pBox) {
        auto *pOk = pBox->findChild<QPushButton *>("MessageOkBtn");
        QVERIFY(pOk->isEnabled());
        QTest::mouseClick(pOk, Qt::LeftButton);
    });
}

void tst_TarnCustomMessageBox::Show_LongDetail_ScrollsInsteadOfGrowing()
{
    TarnCustomMessageBox box;
    box.SetTexts("content", QString("one line\n").repeated(500), "title");
    box.show();
    QVERIFY(QTest::qWaitForWindowExposed(&box));
    QVERIFY(box.height() < 400);
}

void tst_TarnCustomMessageBox::LanguageChange_WhileShown_TranslatesButton()
{
    TarnCustomMessageBox box;
    box.show();
    auto *pOk = box.findChild<QPushButton *>("MessageOkBtn");
    QCOMPARE(pOk->text(), QString("OK"));
    QTranslator translator;
    QVERIFY(translator.load("StyleCtl_zh_CN.qm", PROJECT_TRANSLATION_DIR));
    QVERIFY(QCoreApplication::installTranslator(&translator));
    QTRY_COMPARE(pOk->text(), QString::fromUtf8("确定"));
    QCOMPARE(box.cTitleBar()->cText(), QString::fromUtf8("提示"));
}

QTEST_MAIN(tst_TarnCustomMessageBox)
#include "tst_tarncustommessagebox.moc"
