#include <QtTest>

#include <KxCameraControl/kxerrors.h>
#include <ToolBase/lumointerface.h>

// One class for programs with and without widgets: this one is built without.
#ifdef QT_WIDGETS_LIB
#    error "this test must not be built for widgets"
#endif
static_assert(std::is_same_v<decltype(&LumoInterface::getOpenFileName),
                             QString (*)(QWidget *, const QString &, const QString &, const QString &,
                                         QString *, QFileDialog::Options)>);

// Conversions, texts of error codes, paths and the settings of the installation.
class tst_LumoInterface : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void uchar2QString_Null_IsEmpty();
    void uchar2QString_TextShorterThanField_EndsAtNul();
    void uchar2QString_TextFillsField_StopsAtItsWidth();
    void uchar2QString_NegativeLength_ReadsCString();
    void uchar2QString_Utf8_IsDecoded();
    void uchar2QString_OtherCodec_IsUsed();
    void uchar2QString_UnknownCodec_CountsAsUtf8();
    void int2StringMacAddress_data();
    void int2StringMacAddress();
    void SDKCode2LumoCode_Ok_IsZero();
    void SDKCode2LumoCode_KnownCodes_AreDistinctAndDescribed();
    void SDKCode2LumoCode_UnknownCode_IsTheUnknownError();
    void GenerateSDKCode_Zero_IsEmpty();
    void GenerateSDKCode_Code_StandsBetweenBlanks();
    void GenerateLumoErrorDesc_Zero_IsEmpty();
    void readonlyCfgPath_Default_LiesBesideTheProgram();
    void readonlyCfgPath_Environment_PointsElsewhere();
    void userDataPath_IsAnExistingDirectory();
    void language_NothingSet_IsEnglish();
    void language_InstallationFile_IsRead();
    void language_UserFile_ComesFirst();
    void language_ChangedWhileRunning_IsReadAnew();
    void language_UnknownLanguage_IsIgnored();
    void toolsSupportNum_NothingSet_Is64();
    void toolsSupportNum_Set_IsRead();
    void toolsSupportNum_NotANumberOrNotPositive_Is64_data();
    void toolsSupportNum_NotANumberOrNotPositive_Is64();
    void curExeVersion_FollowsTheApplication();

private:
    void Write(const QString &file, const QByteArray &content);
    QString UserFile() const { return m_dir->path() + "/config/lumo/installation.conf"; }
    QString InstallationFile() const { return m_dir->path() + "/share/installation.conf"; }

    QScopedPointer<QTemporaryDir> m_dir;
};

void tst_LumoInterface::init()
{
    m_dir.reset(new QTemporaryDir);
    QVERIFY(m_dir->isValid());
    qputenv("XDG_CONFIG_HOME", QFile::encodeName(m_dir->path() + "/config"));
    qputenv("LUMO_READONLY_CFG_PATH", QFile::encodeName(m_dir->path() + "/share"));
}

void tst_LumoInterface::cleanup()
{
    qunsetenv("XDG_CONFIG_HOME");
    qunsetenv("LUMO_READONLY_CFG_PATH");
}

void tst_LumoInterface::Write(const QString &file, const QByteArray &content)
{
    QVERIFY(QDir().mkpath(QFileInfo(file).path()));
    QFile out(file);
    QVERIFY(out.open(QIODevice::WriteOnly));
    QCOMPARE(out.write(content), content.size());
}

void tst_LumoInterface::uchar2QString_Null_IsEmpty()
{
    QCOMPARE(LumoInterface::uchar2QString(nullptr, 16, "UTF-8"), QString());
    QCOMPARE(LumoInterface::uchar2QString(nullptr, -1, "UTF-8"), QString());
}

void tst_LumoInterface::uchar2QString_TextShorterThanField_EndsAtNul()
{
    const unsigned char field[8] = {'A', 'B', 0, 'C', 0, 0, 0, 0};
    QCOMPARE(LumoInterface::uchar2QString(field, 8, "UTF-8"), QString("AB"));
}

void tst_LumoInterface::uchar2QString_TextFillsField_StopsAtItsWidth()
{
    const unsigned char field[6] = {'A', 'B', 'C', 'D', 'E', 'F'};
    QCOMPARE(LumoInterface::uchar2QString(field, 4, "UTF-8"), QString("ABCD"));
}

void tst_LumoInterface::uchar2QString_NegativeLength_ReadsCString()
{
    const unsigned char field[6] = {'A', 'B', 'C', 'D', 'E', 0};
    QCOMPARE(LumoInterface::uchar2QString(field, -1, "UTF-8"), QString("ABCDE"));
}

void tst_LumoInterface::uchar2QString_Utf8_IsDecoded()
{
    const unsigned char field[] = "\xE7\x9B\xB8\xE6\x9C\xBA";
    QCOMPARE(LumoInterface::uchar2QString(field, sizeof field, "UTF-8"), QStringLiteral("相机"));
}

void tst_LumoInterface::uchar2QString_OtherCodec_IsUsed()
{
    const unsigned char field[] = "\xE9";
    QCOMPARE(LumoInterface::uchar2QString(field, 1, "ISO-8859-1"), QStringLiteral("é"));
}

void tst_LumoInterface::uchar2QString_UnknownCodec_CountsAsUtf8()
{
    const unsigned char field[] = "\xC3\xA9";
    QCOMPARE(LumoInterface::uchar2QString(field, 2, "no such codec"), QStringLiteral("é"));
    QCOMPARE(LumoInterface::uchar2QString(field, 2, nullptr), QStringLiteral("é"));
}

void tst_LumoInterface::int2StringMacAddress_data()
{
    QTest::addColumn<uint>("high");
    QTest::addColumn<uint>("low");
    QTest::addColumn<QString>("text");
    QTest::newRow("usual") << 0x0011U << 0x1CF01234U << "00:11:1C:F0:12:34";
    QTest::newRow("zero") << 0U << 0U << "00:00:00:00:00:00";
    QTest::newRow("all bits") << 0xFFFFU << 0xFFFFFFFFU << "FF:FF:FF:FF:FF:FF";
    QTest::newRow("bits above 16 ignored") << 0xABCD0001U << 2U << "00:01:00:00:00:02";
}

void tst_LumoInterface::int2StringMacAddress()
{
    QFETCH(uint, high);
    QFETCH(uint, low);
    QTEST(LumoInterface::int2StringMacAddress(high, low), "text");
}

void tst_LumoInterface::SDKCode2LumoCode_Ok_IsZero()
{
    QCOMPARE(LumoInterface::SDKCode2LumoCode(KX_CC_OK), 0);
}

void tst_LumoInterface::SDKCode2LumoCode_KnownCodes_AreDistinctAndDescribed()
{
    const QVector<uint> codes = {
        KX_CC_E_HANDLE,        KX_CC_E_PARAMETER,        KX_CC_E_NOT_OPEN,      KX_CC_E_ALREADY_OPEN,
        KX_CC_E_UNSUPPORTED,   KX_CC_E_BUFFER_TOO_SMALL, KX_CC_E_RESOURCE,      KX_CC_E_SESSION,
        KX_CC_E_UNREACHABLE,   KX_CC_E_ACCESS_DENIED,    KX_CC_E_TIMEOUT,       KX_CC_E_LOST,
        KX_CC_E_SESSION_ENDED, KX_CC_E_DEVICE_STATUS,    KX_CC_E_DESCRIPTION,   KX_CC_E_FEATURE_UNKNOWN,
        KX_CC_E_FEATURE_TYPE,  KX_CC_E_FEATURE_ACCESS,   KX_CC_E_FEATURE_VALUE, KX_CC_E_FEATURE_BROKEN,
        KX_CC_E_FILE_OPEN,     KX_CC_E_FILE_FORMAT,      KX_CC_E_FILE_WRITE,    KX_CC_E_FILE_PARTIAL,
    };
    QSet<int> lumoCodes;
    QSet<QString> texts;
    for (const uint code : codes) {
        const int lumoCode = LumoInterface::SDKCode2LumoCode(code);
        lumoCodes.insert(lumoCode);
        texts.insert(LumoInterface::GenerateLumoErrorDesc(lumoCode));
    }
    QCOMPARE(lumoCodes.size(), codes.size());
    QCOMPARE(texts.size(), codes.size());
    QVERIFY(!texts.contains(QString()));
    QVERIFY(!texts.contains("An unknown error occurred."));
}

void tst_LumoInterface::SDKCode2LumoCode_UnknownCode_IsTheUnknownError()
{
    const int lumoCode = LumoInterface::SDKCode2LumoCode(0x80000000U);
    QVERIFY(lumoCode != 0);
    QCOMPARE(LumoInterface::GenerateLumoErrorDesc(lumoCode), QString("An unknown error occurred."));
    QCOMPARE(LumoInterface::GenerateLumoErrorDesc(-7), QString("An unknown error occurred."));
}

void tst_LumoInterface::GenerateSDKCode_Zero_IsEmpty()
{
    QCOMPARE(LumoInterface::GenerateSDKCode(0), QString());
}

void tst_LumoInterface::GenerateSDKCode_Code_StandsBetweenBlanks()
{
    const int lumoCode = LumoInterface::SDKCode2LumoCode(KX_CC_E_TIMEOUT);
    QCOMPARE(LumoInterface::GenerateSDKCode(static_cast<uint>(lumoCode)),
             QString(" (Error %1) ").arg(lumoCode));
}

void tst_LumoInterface::GenerateLumoErrorDesc_Zero_IsEmpty()
{
    QCOMPARE(LumoInterface::GenerateLumoErrorDesc(0), QString());
}

void tst_LumoInterface::readonlyCfgPath_Default_LiesBesideTheProgram()
{
    qunsetenv("LUMO_READONLY_CFG_PATH");
    const QString expected =
        QDir::cleanPath(QCoreApplication::applicationDirPath() + "/../share/lumo-import-export-features");
    QCOMPARE(LumoInterface::readonlyCfgPath(), expected);
}

void tst_LumoInterface::readonlyCfgPath_Environment_PointsElsewhere()
{
    qputenv("LUMO_READONLY_CFG_PATH", "/some/where/");
    QCOMPARE(LumoInterface::readonlyCfgPath(), QString("/some/where"));
}

void tst_LumoInterface::userDataPath_IsAnExistingDirectory()
{
    const QString path = LumoInterface::userDataPath();
    QVERIFY(QFileInfo(path).isDir());
    QVERIFY(path == "/" || !path.endsWith('/'));
}

void tst_LumoInterface::language_NothingSet_IsEnglish()
{
    QCOMPARE(LumoInterface::language(), QString("ENG"));
}

void tst_LumoInterface::language_InstallationFile_IsRead()
{
    Write(InstallationFile(), "Language=CH\n");
    QCOMPARE(LumoInterface::language(), QString("CH"));
}

void tst_LumoInterface::language_UserFile_ComesFirst()
{
    Write(InstallationFile(), "Language=CH\n");
    Write(UserFile(), "Language=ENG\n");
    QCOMPARE(LumoInterface::language(), QString("ENG"));
}

void tst_LumoInterface::language_ChangedWhileRunning_IsReadAnew()
{
    Write(UserFile(), "Language=ENG\n");
    QCOMPARE(LumoInterface::language(), QString("ENG"));
    Write(UserFile(), "Language=CH\n#\n");
    QCOMPARE(LumoInterface::language(), QString("CH"));
}

void tst_LumoInterface::language_UnknownLanguage_IsIgnored()
{
    Write(UserFile(), "Language=ch\n");
    Write(InstallationFile(), "Language=CH\n");
    QCOMPARE(LumoInterface::language(), QString("CH"));
}

void tst_LumoInterface::toolsSupportNum_NothingSet_Is64()
{
    QCOMPARE(LumoInterface::toolsSupportNum(), 64);
}

void tst_LumoInterface::toolsSupportNum_Set_IsRead()
{
    Write(InstallationFile(), "ToolsSupportNum=400\n");
    QCOMPARE(LumoInterface::toolsSupportNum(), 400);
    Write(InstallationFile(), "ToolsSupportNum=1\n");
    QCOMPARE(LumoInterface::toolsSupportNum(), 1);
}

void tst_LumoInterface::toolsSupportNum_NotANumberOrNotPositive_Is64_data()
{
    QTest::addColumn<QByteArray>("line");
    QTest::newRow("text") << QByteArray("ToolsSupportNum=many\n");
    QTest::newRow("zero") << QByteArray("ToolsSupportNum=0\n");
    QTest::newRow("negative") << QByteArray("ToolsSupportNum=-3\n");
    QTest::newRow("too large for an int") << QByteArray("ToolsSupportNum=99999999999\n");
}

void tst_LumoInterface::toolsSupportNum_NotANumberOrNotPositive_Is64()
{
    QFETCH(QByteArray, line);
    Write(InstallationFile(), line);
    QCOMPARE(LumoInterface::toolsSupportNum(), 64);
}

void tst_LumoInterface::curExeVersion_FollowsTheApplication()
{
    QCoreApplication::setApplicationVersion(QString());
    QCOMPARE(LumoInterface::curExeVersion(), QString());
    QCoreApplication::setApplicationVersion("2.5.1");
    QCOMPARE(LumoInterface::curExeVersion(), QString("V2.5.1"));
}

QTEST_GUILESS_MAIN(tst_LumoInterface)
#include "tst_lumointerface.moc"
