#include <QtTest>

#include <StyleCtl/tarncustom.h>
#include <ToolBase/lumointerface.h>
#include <language/languageversion.h>

class tst_LanguageVersion : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void Set_Chinese_AllThreeLibrariesAreTranslated();
    void Set_ChineseTwice_StaysChinese();
    void Set_EnglishAfterChineseTwice_IsEnglish();
    void Set_EnglishAtStart_ChangesNothing();
    void Set_UnknownCode_ChangesNothing_data();
    void Set_UnknownCode_ChangesNothing();
    void Set_OwnFileMissing_NothingIsTranslated();
    void Set_StyleFileMissing_OnlyTheOwnTextsAreTranslated();
    void Set_ServicesFileMissing_TheFirstTwoAreTranslated();
    void Set_Chinese_WidgetsAreTold();

private:
    static QString Texts();
    void Remove(const QString &strFile)
    {
        QVERIFY(QFile::remove(m_pDirectory->filePath("Translation/" + strFile)));
    }

    std::unique_ptr<QTemporaryDir> m_pDirectory;
};

/// Which of tool, widget library and services are Chinese: "tool style services", and the library's setting.
QString tst_LanguageVersion::Texts()
{
    QStringList listChinese;
    if (QCoreApplication::translate("MainWidget", "Import") == QString::fromUtf8("导入"))
        listChinese.append("tool");
    if (QCoreApplication::translate("TarnCustom", "Cancel") == QString::fromUtf8("取消"))
        listChinese.append("style");
    if (LumoInterface::GenerateLumoErrorDesc(1143) != "The camera did not answer in time.")
        listChinese.append("services");
    listChinese.append(TarnCustom::language() == TarnCustom::Chinese ? "0" : "1");
    return listChinese.join(' ');
}

void tst_LanguageVersion::init()
{
    m_pDirectory = std::make_unique<QTemporaryDir>();
    QVERIFY(QDir(m_pDirectory->path()).mkpath("Translation"));
    for (const char *pFile : {"Import_Export_Features_zh_CN.qm", "StyleCtl_zh_CN.qm", "ToolBase_zh_CN.qm"})
        QVERIFY(QFile::copy(QString(PROJECT_TRANSLATION_DIR "/%1").arg(pFile),
                            m_pDirectory->filePath(QString("Translation/%1").arg(pFile))));
    qputenv("LUMO_READONLY_CFG_PATH", QFile::encodeName(m_pDirectory->path()));
}

void tst_LanguageVersion::cleanup()
{
    SetLanguageVersion("ENG");
}

void tst_LanguageVersion::Set_Chinese_AllThreeLibrariesAreTranslated()
{
    QCOMPARE(Texts(), QString("1"));
    QVERIFY(SetLanguageVersion("CH"));
    QCOMPARE(Texts(), QString("tool style services 0"));
}

void tst_LanguageVersion::Set_ChineseTwice_StaysChinese()
{
    QVERIFY(SetLanguageVersion("CH"));
    QVERIFY(SetLanguageVersion("CH"));
    QCOMPARE(Texts(), QString("tool style services 0"));
}

void tst_LanguageVersion::Set_EnglishAfterChineseTwice_IsEnglish()
{
    QVERIFY(SetLanguageVersion("CH"));
    QVERIFY(SetLanguageVersion("CH"));
    QVERIFY(SetLanguageVersion("ENG"));
    QCOMPARE(Texts(), QString("1"));
}

void tst_LanguageVersion::Set_EnglishAtStart_ChangesNothing()
{
    QVERIFY(SetLanguageVersion("ENG"));
    QCOMPARE(Texts(), QString("1"));
}

void tst_LanguageVersion::Set_UnknownCode_ChangesNothing_data()
{
    QTest::addColumn<QString>("strCode");
    QTest::newRow("lower case chinese") << "ch";
    QTest::newRow("lower case english") << "eng";
    QTest::newRow("two letters") << "en";
    QTest::newRow("empty") << "";
    QTest::newRow("blank behind") << "ENG ";
}

void tst_LanguageVersion::Set_UnknownCode_ChangesNothing()
{
    QFETCH(QString, strCode);
    QVERIFY(SetLanguageVersion(strCode));
    QCOMPARE(Texts(), QString("1"));
    QVERIFY(SetLanguageVersion("CH"));
    QVERIFY(SetLanguageVersion(strCode));
    QCOMPARE(Texts(), QString("tool style services 0"));
}

void tst_LanguageVersion::Set_OwnFileMissing_NothingIsTranslated()
{
    Remove("Import_Export_Features_zh_CN.qm");
    QVERIFY(!SetLanguageVersion("CH"));
    QCOMPARE(Texts(), QString("0"));
}

void tst_LanguageVersion::Set_StyleFileMissing_OnlyTheOwnTextsAreTranslated()
{
    Remove("StyleCtl_zh_CN.qm");
    QVERIFY(!SetLanguageVersion("CH"));
    QCOMPARE(Texts(), QString("tool 0"));
}

void tst_LanguageVersion::Set_ServicesFileMissing_TheFirstTwoAreTranslated()
{
    Remove("ToolBase_zh_CN.qm");
    QVERIFY(!SetLanguageVersion("CH"));
    QCOMPARE(Texts(), QString("tool style 0"));
}

/// Counts the language changes that it is told of.
class Listener : public QWidget
{
public:
    int m_nChanges = 0;

protected:
    void changeEvent(QEvent *pEvent) override
    {
        if (pEvent->type() == QEvent::LanguageChange)
            ++m_nChanges;
    }
};

void tst_LanguageVersion::Set_Chinese_WidgetsAreTold()
{
    Listener listener;
    SetLanguageVersion("CH");
    QTRY_VERIFY(listener.m_nChanges > 0);
    listener.m_nChanges = 0;
    SetLanguageVersion("ENG");
    QTRY_VERIFY(listener.m_nChanges > 0);
}

QTEST_MAIN(tst_LanguageVersion)
#include "tst_languageversion.moc"
