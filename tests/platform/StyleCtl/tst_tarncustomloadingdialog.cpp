#include <QLabel>
#include <QSignalSpy>
#include <QTest>
#include <QTimer>
#include <QWindow>

#include <StyleCtl/tarncustomloadingdialog.h>

class tst_TarnCustomLoadingDialog : public QObject
{
    Q_OBJECT

private slots:
    void SetLabelText_Text_ShownAndAccessible();
    void Exec_ClosedFromCode_Returns();
    void Exec_ASecondTime_ShowsAgain();
    void KeyEscape_WhileShown_StaysOpen();
    void CloseByWindowManager_WhileShown_StaysOpen();
    void Show_OwnerDisabled_IsEnabled();
    void Show_Owner_IsCentredOverIt();
    void Show_Any_IsModalAndWithoutButtons();
};

void tst_TarnCustomLoadingDialog::SetLabelText_Text_ShownAndAccessible()
{
    TarnCustomLoadingDialog dialog;
    dialog.SetLabelText("Exporting features...");
    QCOMPARE(dialog.LabelText(), QString("Exporting features..."));
    QCOMPARE(dialog.findChild<QLabel *>("LoadingLabel")->text(), QString("Exporting features..."));
    QCOMPARE(dialog.accessibleName(), QString("Exporting features..."));
}

void tst_TarnCustomLoadingDialog::Exec_ClosedFromCode_Returns()
{
    TarnCustomLoadingDialog dialog;
    bool bShown = false;
    QTimer::singleShot(0, &dialog, [&] {
        bShown = dialog.isVisible();
        dialog.close();
    });
    dialog.exec();
    QVERIFY(bShown);
    QVERIFY(!dialog.isVisible());
}

void tst_TarnCustomLoadingDialog::Exec_ASecondTime_ShowsAgain()
{
    TarnCustomLoadingDialog dialog;
    int nShown = 0;
    for (int i = 0; i < 2; ++i) {
        QTimer::singleShot(0, &dialog, [&] {
            nShown += dialog.isVisible() ? 1 : 0;
            dialog.close();
        });
        dialog.exec();
    }
    QCOMPARE(nShown, 2);
}

void tst_TarnCustomLoadingDialog::KeyEscape_WhileShown_StaysOpen()
{
    TarnCustomLoadingDialog dialog;
    QSignalSpy finished(&dialog, &QDialog::finished);
    dialog.open();
    QVERIFY(QTest::qWaitForWindowExposed(&dialog));
    QTest::keyClick(&dialog, Qt::Key_Escape);
    QTest::keyClick(&dialog, Qt::Key_Return);
    QVERIFY(dialog.isVisible());
    QCOMPARE(finished.count(), 0);
}

void tst_TarnCustomLoadingDialog::CloseByWindowManager_WhileShown_StaysOpen()
{
    TarnCustomLoadingDialog dialog;
    dialog.open();
    QVERIFY(QTest::qWaitForWindowExposed(&dialog));
    dialog.windowHandle()->close(); // the way a request of the window manager takes
    QCoreApplication::processEvents();
    QVERIFY(dialog.isVisible());
    dialog.close();
    QVERIFY(!dialog.isVisible());
}

void tst_TarnCustomLoadingDialog::Show_OwnerDisabled_IsEnabled()
{
    QWidget owner;
    TarnCustomLoadingDialog dialog(&owner);
    owner.show();
    owner.setDisabled(true);
    dialog.open();
    QVERIFY(dialog.isEnabled());
    QVERIFY(!owner.isEnabled());
    QVERIFY(dialog.findChild<QLabel *>("LoadingLabel")->isEnabled());
}

void tst_TarnCustomLoadingDialog::Show_Owner_IsCentredOverIt()
{
    QWidget owner;
    owner.setGeometry(100, 80, 600, 400);
    TarnCustomLoadingDialog dialog(&owner);
    owner.show();
    for (const QPoint &pos : {QPoint(100, 80), QPoint(60, 120)}) {
        owner.move(pos);
        dialog.open();
        const QPoint off = dialog.geometry().center() - owner.geometry().center();
        QVERIFY2(off.manhattanLength() <= 2, qPrintable(QString("%1 %2").arg(off.x()).arg(off.y())));
        dialog.close();
    }
}

void tst_TarnCustomLoadingDialog::Show_Any_IsModalAndWithoutButtons()
{
    TarnCustomLoadingDialog dialog;
    dialog.show();
    QVERIFY(dialog.isModal());
    for (const QString &name : {QString("CloseBtn"), QString("MinimizeBtn"), QString("MaximizeBtn")})
        QVERIFY(!dialog.findChild<QWidget *>(name)->isVisible());
}

QTEST_MAIN(tst_TarnCustomLoadingDialog)
#include "tst_tarncustomloadingdialog.moc"
