#include <QtTest>

#include "commandline.h"

class tst_CommandLine : public QObject
{
    Q_OBJECT

private slots:
    void Parse_List_NeedsNothingElse();
    void Parse_ListWithCameras_IsWrong();
    void Parse_ExportAll_TakesTheFolder();
    void Parse_Import_TakesTheFileBeforeOrBehindTheOptions_data();
    void Parse_Import_TakesTheFileBeforeOrBehindTheOptions();
    void Parse_RepeatedAndListedValues_AreAllTaken();
    void Parse_ModelAndAddress_AreTaken();
    void Parse_JsonAndSearchTime_AreTaken();
    void Parse_Overwrite_IsTakenByExport();
    void Parse_Verbose_IsTakenByEachCommand();
    void Parse_HelpAnywhere_ShowsText();
    void Parse_Help_TellsTheExitCodesOfAnImport();
    void Parse_Version_ShowsText();
    void Parse_WrongUsage_SaysWhatAndHowInOneLine_data();
    void Parse_WrongUsage_SaysWhatAndHowInOneLine();
};

static CommandLine Parse(const QString &words)
{
    return ParseCommandLine(words.split(' ', Qt::SkipEmptyParts));
}

void tst_CommandLine::Parse_List_NeedsNothingElse()
{
    const CommandLine command = Parse("list");
    QCOMPARE(command.action, CommandLine::Action::List);
    QVERIFY(!command.bJson);
}

void tst_CommandLine::Parse_ListWithCameras_IsWrong()
{
    QCOMPARE(Parse("list --all").action, CommandLine::Action::Wrong);
}

void tst_CommandLine::Parse_ExportAll_TakesTheFolder()
{
    const CommandLine command = Parse("export --to out/dir --all");
    QCOMPARE(command.action, CommandLine::Action::Export);
    QCOMPARE(command.strPath, QString("out/dir"));
    QVERIFY(command.choice.bAll);
}

void tst_CommandLine::Parse_Import_TakesTheFileBeforeOrBehindTheOptions_data()
{
    QTest::addColumn<QString>("words");
    QTest::newRow("before") << "import f.kfb --serial A";
    QTest::newRow("behind") << "import --serial A f.kfb";
    QTest::newRow("between") << "import --json f.kfb --serial A";
}

void tst_CommandLine::Parse_Import_TakesTheFileBeforeOrBehindTheOptions()
{
    QFETCH(QString, words);
    const CommandLine command = Parse(words);
    QCOMPARE(command.action, CommandLine::Action::Import);
    QCOMPARE(command.strPath, QString("f.kfb"));
    QCOMPARE(command.choice.serials, QStringList("A"));
}

void tst_CommandLine::Parse_RepeatedAndListedValues_AreAllTaken()
{
    QCOMPARE(Parse("export --to d --serial A B --serial C").choice.serials, QStringList({"A", "B", "C"}));
    QCOMPARE(Parse("import f --address 10.0.0.1 10.0.0.2 --json").choice.addresses,
             QStringList({"10.0.0.1", "10.0.0.2"}));
}

void tst_CommandLine::Parse_ModelAndAddress_AreTaken()
{
    const CommandLine command =
        ParseCommandLine({"export", "--to", "d", "--model", "Model One", "--address", "10.0.0.1"});
    QCOMPARE(command.choice.models, QStringList("Model One"));
    QCOMPARE(command.choice.addresses, QStringList("10.0.0.1"));
    QVERIFY(!command.choice.bAll);
}

void tst_CommandLine::Parse_Overwrite_IsTakenByExport()
{
    QVERIFY(Parse("export --to d --all --overwrite").bOverwrite);
    QVERIFY(!Parse("export --to d --all").bOverwrite);
    QCOMPARE(Parse("import f --all --overwrite").action, CommandLine::Action::Wrong);
}

void tst_CommandLine::Parse_JsonAndSearchTime_AreTaken()
{
    const CommandLine command = Parse("list --json --search-ms 250");
    QVERIFY(command.bJson);
    QCOMPARE(command.nSearchMs, 250);
}

void tst_CommandLine::Parse_Verbose_IsTakenByEachCommand()
{
    for (const char *szCommand : {"list", "export --to d --all", "import f --all"}) {
        QVERIFY(!Parse(szCommand).bVerbose);
        QVERIFY(Parse(szCommand + QStringLiteral(" --verbose")).bVerbose);
    }
}

void tst_CommandLine::Parse_HelpAnywhere_ShowsText()
{
    for (const char *words : {"--help", "help", "-h", "export --help"}) {
        const CommandLine command = Parse(words);
        QCOMPARE(command.action, CommandLine::Action::ShowText);
        QVERIFY(command.strText.contains("kx-features export --to DIR"));
    }
}

void tst_CommandLine::Parse_Help_TellsTheExitCodesOfAnImport()
{
    // As the companion's own tests find them.
    const QString text = Parse("--help").strText.simplified();
    const QString failed = text.section("Exit code: ", 1).section("; 2 for ", 0, 0);
    const QString refused = text.section("; 2 for ", 1).section("; 130 ", 0, 0);
    for (const char *why : {"missing", "empty", "not well-formed", "another model"})
        QVERIFY2(failed.contains(why) && !refused.contains(why), why);
    for (const char *why : {"wrong usage", "folder", "FIFO", "device", "pipe", "not streamable"})
        QVERIFY2(refused.contains(why) && !failed.contains(why), why);
}

void tst_CommandLine::Parse_Version_ShowsText()
{
    QCoreApplication::setApplicationVersion("3.2.1");
    const CommandLine command = Parse("--version");
    QCOMPARE(command.action, CommandLine::Action::ShowText);
    QCOMPARE(command.strText, QString("kx-features 3.2.1\n"));
}

void tst_CommandLine::Parse_WrongUsage_SaysWhatAndHowInOneLine_data()
{
    QTest::addColumn<QString>("words");
    QTest::addColumn<QString>("what");
    QTest::newRow("no command") << ""
                                << "no command";
    QTest::newRow("unknown command") << "copy"
                                     << "'copy'";
    QTest::newRow("unknown option") << "list --fast"
                                    << "'fast'";
    QTest::newRow("export without a folder") << "export --all"
                                             << "no folder";
    QTest::newRow("export without a camera") << "export --to d"
                                             << "no camera";
    QTest::newRow("export with a file") << "export f.kfb --to d --all"
                                        << "'f.kfb'";
    QTest::newRow("import without a file") << "import --all"
                                           << "no file";
    QTest::newRow("import of two files") << "import f.kfb g.kfb --all"
                                         << "'g.kfb'";
    QTest::newRow("import without a camera") << "import f.kfb"
                                             << "no camera";
    QTest::newRow("option without its value") << "export --all --to"
                                              << "'--to'";
    QTest::newRow("search time no number") << "list --search-ms soon"
                                           << "--search-ms";
    QTest::newRow("search time out of range") << "list --search-ms 0"
                                              << "1 to 10000";
}

void tst_CommandLine::Parse_WrongUsage_SaysWhatAndHowInOneLine()
{
    QFETCH(QString, words);
    QFETCH(QString, what);
    const CommandLine command = Parse(words);
    QCOMPARE(command.action, CommandLine::Action::Wrong);
    QVERIFY2(command.strText.contains(what), qPrintable(command.strText));
    QVERIFY2(command.strText.contains("usage: kx-features "), qPrintable(command.strText));
    QVERIFY(!command.strText.contains('\n'));
}

QTEST_GUILESS_MAIN(tst_CommandLine)
#include "tst_commandline.moc"
