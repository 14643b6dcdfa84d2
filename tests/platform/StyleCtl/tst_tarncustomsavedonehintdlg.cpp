#include <QDesktopServices>
#include <QLabel>
#include <QLineEdit>
#include <QPointer>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTest>
#include <QTranslator>
#include <QUrl>

#include <StyleCtl/tarncustomsavedonehintdlg.h>

class tst_TarnCustomSaveDoneHintDlg : public QObject
{
    Q_OBJECT

public slots:
    void TakeUrl(const QUrl &url) { m_urls += url; }

private slots:
    void init() { m_urls.clear(); }
    void initTestCase() { QDesktopServices::setUrlHandler("file", this, "TakeUrl"); }
    void cleanupTestCase() { QDesktopServices::unsetUrlHandler("file"); }

    void SetMsgText_TextAndPath_ShownAndSelectable();
    void SetMsgText_EmptyPath_NothingToOpen();
    void OpenFolder_FolderExists_OpensItAndCloses();
    void OpenFolder_File_OpensItsFolder();
    void OpenFolder_FolderMissing_SaysSoAndStays();
    void KeyEscape_DeleteOnClose_Deletes();
    void KeyEnter_Shown_Closes();
    void LanguageChange_WhileShown_TranslatesButtons();

private:
    QList<QUrl> m_urls;
};

void tst_TarnCustomSaveDoneHintDlg::SetMsgText_TextAndPath_ShownAndSelectable()
{
    TarnCustomSaveDoneHintDlg dialog(nullptr, QString(), QString());
    dialog.SetMsgText("Exporting process is over.", "/tmp/some folder");
    dialog.show();
    auto *pPath = dialog.findChild<QLineEdit *>("SaveDonePath");
    QCOMPARE(dialog.findChild<QLabel *>("SaveDoneText")->text(), QString("Exporting process is over."));
    QCOMPARE(pPath->text(), QString("/tmp/some folder"));
    QVERIFY(pPath->isVisible() && pPath->isReadOnly());
    pPath->selectAll();
    QCOMPARE(pPath->selectedText(), QString("/tmp/some folder"));
}

void tst_TarnCustomSaveDoneHintDlg::SetMsgText_EmptyPath_NothingToOpen()
{
    TarnCustomSaveDoneHintDlg dialog(nullptr, "text", QString());
    dialog.show();
    QVERIFY(!dialog.findChild<QWidget *>("SaveDonePath")->isVisible());
    QVERIFY(!dialog.findChild<QWidget *>("OpenFolderBtn")->isVisible());
}

void tst_TarnCustomSaveDoneHintDlg::OpenFolder_FolderExists_OpensItAndCloses()
{
    const QTemporaryDir dir;
    TarnCustomSaveDoneHintDlg dialog(nullptr, "text", dir.path());
    dialog.show();
    QVERIFY(QTest::qWaitForWindowExposed(&dialog));
    QTest::mouseClick(dialog.findChild<QPushButton *>("OpenFolderBtn"), Qt::LeftButton);
    QCOMPARE(m_urls, QList<QUrl>({QUrl::fromLocalFile(dir.path())}));
    QVERIFY(!dialog.isVisible());
}

void tst_TarnCustomSaveDoneHintDlg::OpenFolder_File_OpensItsFolder()
{
    const QTemporaryDir dir;
    QFile file(dir.filePath("camera.kfb"));
    QVERIFY(file.open(QIODevice::WriteOnly));
    TarnCustomSaveDoneHintDlg dialog(nullptr, "text", file.fileName());
    dialog.OpenFolder();
    QCOMPARE(m_urls, QList<QUrl>({QUrl::fromLocalFile(dir.path())}));
}

void tst_TarnCustomSaveDoneHintDlg::OpenFolder_FolderMissing_SaysSoAndStays()
{
    TarnCustomSaveDoneHintDlg dialog(nullptr, "text", "/does/not/exist");
    dialog.show();
    dialog.OpenFolder();
    QVERIFY(m_urls.isEmpty());
    QVERIFY(dialog.isVisible());
    QVERIFY(dialog.findChild<QLabel *>("SaveDoneError")->isVisible());
}

void tst_TarnCustomSaveDoneHintDlg::KeyEscape_DeleteOnClose_Deletes()
{
    QPointer<TarnCustomSaveDoneHintDlg> pDialog = new TarnCustomSaveDoneHintDlg(nullptr, "text", "/tmp");
    pDialog->setAttribute(Qt::WA_DeleteOnClose);
    pDialog->setModal(true);
    pDialog->show();
    QVERIFY(QTest::qWaitForWindowExposed(pDialog));
    QTest::keyClick(pDialog, Qt::Key_Escape);
    QTRY_VERIFY(!pDialog);
}

void tst_TarnCustomSaveDoneHintDlg::KeyEnter_Shown_Closes()
{
    TarnCustomSaveDoneHintDlg dialog(nullptr, "text", "/tmp");
    dialog.show();
    QVERIFY(QTest::qWaitForWindowExposed(&dialog));
    QTest::keyClick(&dialog, Qt::Key_Return);
    QVERIFY(!dialog.isVisible());
    QVERIFY(m_urls.isEmpty());
}

void tst_TarnCustomSaveDoneHintDlg::LanguageChange_WhileShown_TranslatesButtons()
{
    TarnCustomSaveDoneHintDlg dialog(nullptr, "text", "/tmp");
    dialog.show();
    QTranslator translator;
    QVERIFY(translator.load("StyleCtl_zh_CN.qm", PROJECT_TRANSLATION_DIR));
    QVERIFY(QCoreApplication::installTranslator(&translator));
    auto *pOpen = dialog.findChild<QPushButton *>("OpenFolderBtn");
    QTRY_COMPARE(pOpen->text(), QString::fromUtf8("打开文件夹"));
    QCoreApplication::removeTranslator(&translator);
    QTRY_COMPARE(pOpen->text(), QString("Open Folder"));
}

QTEST_MAIN(tst_TarnCustomSaveDoneHintDlg)
#include "tst_tarncustomsavedonehintdlg.moc"
