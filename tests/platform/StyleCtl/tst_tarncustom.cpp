#include <QApplication>
#include <QDir>
#include <QFileDialog>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>
#include <QTranslator>

#include <StyleCtl/tarncustom.h>

class tst_TarnCustom : public QObject
{
    Q_OBJECT

private slots:
    void Enumerators_Values_AreThoseCallersPass();
    void SetLanguage_Chinese_LanguageTellsIt();
    void GetExistingDirectory_Accepted_GivesTheFolderShown();
    void GetExistingDirectory_Cancelled_Empty();
    void GetExistingDirectory_StartMissing_ShowsCurrentDirectory();
    void GetExistingDirectory_Chinese_ButtonsTranslated();

private:
    // Runs act on the dialog once it is up.
    template <typename Act>
    QString Ask(const QString &dir, Act act)
    {
        QTimer poll;
        QFileDialog *pSeen = nullptr;
        connect(&poll, &QTimer::timeout, &poll, [&] {
            auto *pDialog = qobject_cast<QFileDialog *>(QApplication::activeModalWidget());
            if (!pDialog || pSeen || !pDialog->isVisible())
                return;
            pSeen = pDialog;
            act(pDialog);
        });
        poll.start(10);
        return TarnCustom::getExistingDirectory(nullptr, "Choose one", dir,
                                                QFileDialog::ShowDirsOnly | QFileDialog::DontUseNativeDialog);
    }
};

void tst_TarnCustom::Enumerators_Values_AreThoseCallersPass()
{
    QCOMPARE(int(TarnCustom::StrechAllButTop), 0xCB);
    QCOMPARE(int(TarnCustom::BorderAll), 3);
    QCOMPARE(int(TarnCustom::StateNormal), 0);
    QCOMPARE(int(TarnCustom::Chinese), 0);
    QCOMPARE(int(TarnCustom::English), 1);
}

void tst_TarnCustom::SetLanguage_Chinese_LanguageTellsIt()
{
    QCOMPARE(TarnCustom::language(), TarnCustom::English);
    TarnCustom::setLanguage(TarnCustom::Chinese);
    QCOMPARE(TarnCustom::language(), TarnCustom::Chinese);
    TarnCustom::setLanguage(TarnCustom::English);
}

void tst_TarnCustom::GetExistingDirectory_Accepted_GivesTheFolderShown()
{
    const QTemporaryDir dir;
    QString caption;
    const QString chosen = Ask(dir.path(), [&](QFileDialog *pDialog) {
        caption = pDialog->windowTitle();
        pDialog->selectFile(dir.path());
        static_cast<QDialog *>(pDialog)->accept();
    });
    QCOMPARE(chosen, QDir(dir.path()).absolutePath());
    QCOMPARE(caption, QString("Choose one"));
}

void tst_TarnCustom::GetExistingDirectory_Cancelled_Empty()
{
    const QTemporaryDir dir;
    QCOMPARE(Ask(dir.path(), [](QFileDialog *pDialog) { pDialog->reject(); }), QString());
}

void tst_TarnCustom::GetExistingDirectory_StartMissing_ShowsCurrentDirectory()
{
    QString shown;
    Ask("/does/not/exist", [&](QFileDialog *pDialog) {
        shown = pDialog->directory().absolutePath();
        pDialog->reject();
    });
    QCOMPARE(shown, QDir::currentPath());
}

void tst_TarnCustom::GetExistingDirectory_Chinese_ButtonsTranslated()
{
    QTranslator translator;
    QVERIFY(translator.load("StyleCtl_zh_CN.qm", PROJECT_TRANSLATION_DIR));
    QVERIFY(QCoreApplication::installTranslator(&translator));
    QString reject;
    Ask(QDir::tempPath(), [&](QFileDialog *pDialog) {
        reject = pDialog->labelText(QFileDialog::Reject);
        pDialog->reject();
    });
    QCOMPARE(reject, QString::fromUtf8("取消"));
}

QTEST_MAIN(tst_TarnCustom)
#include "tst_tarncustom.moc"
