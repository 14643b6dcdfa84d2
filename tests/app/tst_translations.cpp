#include <QtTest>

#include <QDomDocument>
#include <QProcess>

/// The translation files against the texts in the code.
class tst_Translations : public QObject
{
    Q_OBJECT

private slots:
    void File_EveryText_IsTranslated_data();
    void File_EveryText_IsTranslated();
    void File_PlaceHolders_AreKept_data() { File_EveryText_IsTranslated_data(); }
    void File_PlaceHolders_AreKept();
    void OperateTexts_LeadingBlank_IsKept();

private:
    struct Message
    {
        QString strContext;
        QString strSource;
        QString strTranslation;
        bool bFinished;
    };
    static QVector<Message> Messages(const QString &strFile);
};

QVector<tst_Translations::Message> tst_Translations::Messages(const QString &strFile)
{
    QFile file(strFile);
    QDomDocument document;
    if (!file.open(QIODevice::ReadOnly) || !document.setContent(&file))
        return {};
    QVector<Message> vecMessages;
    const QDomNodeList list = document.elementsByTagName("message");
    for (int i = 0; i < list.count(); ++i) {
        const QDomElement message = list.at(i).toElement();
        const QDomElement translation = message.firstChildElement("translation");
        vecMessages.append({message.parentNode().firstChildElement("name").text(),
                            message.firstChildElement("source").text(), translation.text(),
                            translation.attribute("type").isEmpty() && !translation.text().isEmpty()});
    }
    return vecMessages;
}

void tst_Translations::File_EveryText_IsTranslated_data()
{
    QTest::addColumn<QString>("strFile");
    QTest::addColumn<QStringList>("listSources");
    QTest::newRow("tool") << "Import_Export_Features_zh_CN.ts" << QStringList({"src", "platform/DevListMgr"});
    QTest::newRow("widgets") << "StyleCtl_zh_CN.ts" << QStringList("platform/StyleCtl");
    QTest::newRow("services") << "ToolBase_zh_CN.ts" << QStringList("platform/ToolBase");
}

void tst_Translations::File_EveryText_IsTranslated()
{
    QFETCH(QString, strFile);
    QFETCH(QStringList, listSources);
    // A copy that the texts in the code are added to: those that were missing are unfinished in it.
    QTemporaryDir directory;
    const QString strCopy = directory.filePath(strFile);
    QVERIFY(QFile::copy(QString(PROJECT_SOURCE_DIR "/translations/") + strFile, strCopy));
    QVERIFY(QFile::setPermissions(strCopy, QFile::ReadOwner | QFile::WriteOwner));
    QStringList listArguments{"-silent", "-locations", "none", "-no-obsolete"};
    for (const QString &strSource : listSources)
        listArguments.append(QString(PROJECT_SOURCE_DIR "/") + strSource);
    QProcess lupdate;
    lupdate.start(LUPDATE, listArguments + QStringList{"-ts", strCopy});
    QVERIFY2(lupdate.waitForFinished(60000), qPrintable(lupdate.errorString()));
    QCOMPARE(lupdate.exitCode(), 0);

    const QVector<Message> vecMessages = Messages(strCopy);
    QVERIFY(!vecMessages.isEmpty());
    for (const Message &message : vecMessages)
        QVERIFY2(message.bFinished, qPrintable(message.strContext + ": " + message.strSource));
}

void tst_Translations::File_PlaceHolders_AreKept()
{
    QFETCH(QString, strFile);
    for (const Message &message : Messages(QString(PROJECT_SOURCE_DIR "/translations/") + strFile)) {
        for (const char *pHolder : {"%1", "%2", "*.kfb"})
            QVERIFY2(message.strSource.contains(pHolder) == message.strTranslation.contains(pHolder),
                     qPrintable(message.strContext + ": " + message.strSource));
    }
}

void tst_Translations::OperateTexts_LeadingBlank_IsKept()
{
    int nBlanks = 0;
    for (const Message &message :
         Messages(QString(PROJECT_SOURCE_DIR "/translations/Import_Export_Features_zh_CN.ts"))) {
        QCOMPARE(message.strTranslation.startsWith(' '), message.strSource.startsWith(' '));
        nBlanks += int(message.strSource.startsWith(' '));
    }
    QCOMPARE(nBlanks, 4);
}

QTEST_APPLESS_MAIN(tst_Translations)
#include "tst_translations.moc"
