#include <QtTest>

#include <sys/stat.h>

#include <featurefile/featurefilereader.h>
#include <xml/xmlguard.h>

using FeatureFile::Pass;
using FeatureFile::Record;

class tst_FeatureFileReader : public QObject
{
    Q_OBJECT

private slots:
    void DecodeText_Bytes_AreUtf8UpToTheFirstNul();
    void ReadText_MissingFile_IsEmpty();
    void ReadText_HugeFile_IsReadInPartAndRefused();
    void ReadText_NoRegularFile_IsEmptyAtOnce();
    void Parse_RecordsAndNodes_AreBounded();
    void Parse_Text_IsWellFormedOrNot_data();
    void Parse_Text_IsWellFormedOrNot();
    void ReadRecord_Record_IsRead_data();
    void ReadRecord_Record_IsRead();
    void ReadRecord_UsedRecord_IsCleared();
    void BelongsToPass_Type_OnlyInItsPasses();
    void ModelElement_AnyTag_IsFirstChildElement();
    void WalkRecords_CommentsAndTextBetween_AreIgnored();
    void WalkRecords_RefusedRecord_IsReadAgainBeforeTheNext();
    void FindEndlessRecord_File_NamesFirstRecordThatIsNotStreamable_data();
    void FindEndlessRecord_File_NamesFirstRecordThatIsNotStreamable();

private:
    static QDomDocument Document(const QString &strText)
    {
        QDomDocument document;
        document.setContent(strText);
        return document;
    }
};

void tst_FeatureFileReader::DecodeText_Bytes_AreUtf8UpToTheFirstNul()
{
    QCOMPARE(FeatureFile::DecodeText("Gr\xC3\xB6\xC3\x9F"), QString::fromUtf8("Größ"));
    QCOMPARE(FeatureFile::DecodeText(QByteArray("ab\0cd", 5)), QString("ab"));
    QVERIFY(FeatureFile::DecodeText(QByteArray("\0cd", 3)).isEmpty());
    QVERIFY(FeatureFile::DecodeText(QByteArray()).isEmpty());
    QCOMPARE(FeatureFile::DecodeText("\xEF\xBB\xBF<a/>"), QString("<a/>"));
}

void tst_FeatureFileReader::ReadText_MissingFile_IsEmpty()
{
    const QTemporaryDir folder;
    QVERIFY(FeatureFile::ReadText(folder.filePath("none.kfb")).isEmpty());
}

void tst_FeatureFileReader::ReadText_HugeFile_IsReadInPartAndRefused()
{
    const QTemporaryDir folder;
    QFile file(folder.filePath("huge.kfb"));
    QVERIFY(file.open(QIODevice::WriteOnly));
    // Well-formed as far as it is read: the length alone speaks against it.
    file.write("<Features/>" + QByteArray(FeatureFile::kLongestFile, ' '));
    QVERIFY(file.flush() && file.resize(qint64{4} << 30)); // zeros to the end, which take no room on the disk
    const QString text = FeatureFile::ReadText(file.fileName());
    QCOMPARE(text.size(), FeatureFile::kLongestFile + 1);
    QDomDocument document;
    QVERIFY(!FeatureFile::Parse(text, &document));
    QVERIFY(FeatureFile::Parse(text.left(FeatureFile::kLongestFile), &document));
}

void tst_FeatureFileReader::ReadText_NoRegularFile_IsEmptyAtOnce()
{
    const QTemporaryDir folder;
    const QByteArray fifo = QFile::encodeName(folder.filePath("fifo"));
    QCOMPARE(mkfifo(fifo.constData(), 0600), 0);
    QVERIFY(FeatureFile::ReadText(folder.filePath("fifo")).isEmpty()); // whose writer may never come
    QVERIFY(FeatureFile::ReadText(folder.path()).isEmpty());
}

void tst_FeatureFileReader::Parse_RecordsAndNodes_AreBounded()
{
    const auto parses = [](const QString &strInside) {
        QDomDocument document;
        return FeatureFile::Parse("<F><M>m</M>" + strInside + "</F>", &document);
    };
    const QString strRecord =
        "<R><Name>N</Name><Type>T</Type><Value>V</Value><Streamable>Yes</Streamable></R>";
    QVERIFY(parses(strRecord.repeated(FeatureFile::kMostRecords)));
    QVERIFY(!parses(strRecord.repeated(FeatureFile::kMostRecords) + "<R/>"));
    const int nInside = FeatureFile::kMostNodes - 3; // root, model and record
    QVERIFY(parses("<R>" + QStringLiteral("<x/>").repeated(nInside) + "</R>"));
    QVERIFY(!parses("<R>" + QStringLiteral("<x/>").repeated(nInside + 1) + "</R>"));
}

void tst_FeatureFileReader::Parse_Text_IsWellFormedOrNot_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<bool>("wellFormed");
    QTest::newRow("features") << "<Features/>" << true;
    QTest::newRow("any root") << "<Other/>" << true;
    QTest::newRow("undeclared prefix") << "<x:Features/>" << true;
    QTest::newRow("truncated") << "<Features><Feature>" << false;
    QTest::newRow("ampersand") << "<F><M>A&B</M></F>" << false;
    QTest::newRow("bracket") << "<F><M>A<B</M></F>" << false;
    QTest::newRow("nested 256 deep") << QStringLiteral("<a>").repeated(256) +
                                            QStringLiteral("</a>").repeated(256)
                                     << true;
    QTest::newRow("nested 257 deep") << QStringLiteral("<a>").repeated(257) +
                                            QStringLiteral("</a>").repeated(257)
                                     << false;
    QTest::newRow("document type") << "<!DOCTYPE F [<!ENTITY e 'x'>]><F>&e;</F>" << false;
}

void tst_FeatureFileReader::Parse_Text_IsWellFormedOrNot()
{
    QFETCH(QString, text);
    QDomDocument document;
    QTEST(FeatureFile::Parse(text, &document), "wellFormed");
}

void tst_FeatureFileReader::ReadRecord_Record_IsRead_data()
{
    QTest::addColumn<QString>("children");
    QTest::addColumn<QStringList>("texts");
    QTest::addColumn<bool>("streamable");
    const QStringList all({"N", "T", "V"});
    const QString strTexts = "<Name>N</Name><Type>T</Type><Value>V</Value>";
    QTest::newRow("complete") << strTexts + "<Streamable>Yes</Streamable>" << all << true;
    QTest::newRow("any order") << "<Streamable>Yes</Streamable><Value>V</Value><Type>T</Type><Name>N</Name>"
                               << all << true;
    QTest::newRow("yes") << strTexts + "<Streamable>yes</Streamable>" << all << true;
    QTest::newRow("YES") << strTexts + "<Streamable>YES</Streamable>" << all << true;
    QTest::newRow("No") << strTexts + "<Streamable>No</Streamable>" << all << false;
    QTest::newRow("empty streamable") << strTexts + "<Streamable/>" << all << false;
    QTest::newRow("missing streamable") << strTexts << all << false;
    QTest::newRow("blank around Yes") << strTexts + "<Streamable> Yes</Streamable>" << all << false;
    QTest::newRow("streamable tag in other case")
        << strTexts + "<streamable>Yes</streamable>" << all << false;
    QTest::newRow("last streamable wins")
        << "<Streamable>Yes</Streamable><Streamable>No</Streamable>" << QStringList({"", "", ""}) << false;
    QTest::newRow("last name wins") << strTexts + "<Name>N2</Name><Streamable>Yes</Streamable>"
                                    << QStringList({"N2", "T", "V"}) << true;
    QTest::newRow("tags in other case")
        << "<name>n</name><TYPE>t</TYPE><Streamable>Yes</Streamable>" << QStringList({"", "", ""}) << true;
    QTest::newRow("not trimmed") << "<Name> N </Name><Value>\t1\n</Value><Streamable>Yes</Streamable>"
                                 << QStringList({" N ", "", "\t1\n"}) << true;
    QTest::newRow("text of nested elements")
        << "<Name>A<b>B</b>C</Name><Streamable>Yes</Streamable>" << QStringList({"ABC", "", ""}) << true;
    QTest::newRow("tags one level down do not count")
        << "<x><Name>N</Name></x>" << QStringList({"", "", ""}) << false;
}

void tst_FeatureFileReader::ReadRecord_Record_IsRead()
{
    QFETCH(QString, children);
    QFETCH(QStringList, texts);
    const QDomDocument document = Document("<Feature>" + children + "</Feature>");
    Record record;
    QTEST(FeatureFile::ReadRecord(document.documentElement(), &record), "streamable");
    QCOMPARE(QStringList({record.strName, record.strType, record.strValue}), texts);
}

void tst_FeatureFileReader::ReadRecord_UsedRecord_IsCleared()
{
    Record record = {"N", "T", "V"};
    FeatureFile::ReadRecord(Document("<Feature/>").documentElement(), &record);
    QCOMPARE(record.strName + record.strType + record.strValue, QString());
}

void tst_FeatureFileReader::BelongsToPass_Type_OnlyInItsPasses()
{
    const QStringList types = {"Boolean", "Enumeration", "Integer", "IntReg",
                               "Float",   "String",      "boolean", ""};
    QMap<Pass, QStringList> taken;
    for (const Pass pass : {Pass::Booleans, Pass::Enumerations, Pass::Numbers, Pass::NumbersAgain}) {
        QStringList found;
        for (const QString &strType : types) {
            if (FeatureFile::BelongsToPass(strType, pass))
                found.append(strType);
        }
        taken.insert(pass, found);
    }
    QCOMPARE(taken.value(Pass::Booleans), QStringList({"Boolean"}));
    QCOMPARE(taken.value(Pass::Enumerations), QStringList({"Enumeration"}));
    QCOMPARE(taken.value(Pass::Numbers), QStringList({"Integer", "IntReg", "Float"}));
    QCOMPARE(taken.value(Pass::NumbersAgain), QStringList({"Integer", "IntReg", "Float"}));
}

void tst_FeatureFileReader::ModelElement_AnyTag_IsFirstChildElement()
{
    const QDomDocument document = Document("<F><!-- c -->text<Any>M<b>1</b></Any><Feature/></F>");
    QCOMPARE(FeatureFile::ModelElement(document).text(), QString("M1"));
    QVERIFY(FeatureFile::ModelElement(Document("<F>text</F>")).isNull());
}

void tst_FeatureFileReader::WalkRecords_CommentsAndTextBetween_AreIgnored()
{
    const QDomDocument document =
        Document("<F><M/>text<A><Name>a</Name><Type>Float</Type><Streamable>Yes</Streamable></A><!-- c -->"
                 "<?p i?><B><Name>b</Name><Type>IntReg</Type><Streamable>Yes</Streamable></B></F>");
    QStringList names;
    FeatureFile::WalkRecords(FeatureFile::ModelElement(document), Pass::Numbers, FeatureFile::ReadRecord,
                             [&names](const Record &record) { names.append(record.strName); });
    QCOMPARE(names, QStringList({"a", "b"}));
}

void tst_FeatureFileReader::WalkRecords_RefusedRecord_IsReadAgainBeforeTheNext()
{
    const QDomDocument document = Document("<F><M/><A/><B/><C/></F>");
    QStringList read;
    const auto reader = [&read](const QDomElement &element, Record *pRecord) {
        read.append(element.tagName());
        pRecord->strType = "Boolean";
        return element.tagName() != "B" || read.count("B") == 4; // the record reader would never give in
    };
    int nApplied = 0;

    FeatureFile::WalkRecords(FeatureFile::ModelElement(document), Pass::Booleans, reader,
                             [&nApplied](const Record &) { ++nApplied; });

    QCOMPARE(read, QStringList({"A", "B", "B", "B", "B", "C"}));
    QCOMPARE(nApplied, 3);
}

void tst_FeatureFileReader::FindEndlessRecord_File_NamesFirstRecordThatIsNotStreamable_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<bool>("endless");
    QTest::addColumn<QString>("name");
    const QString strGood = "<F><Name>good</Name><Streamable>yes</Streamable></F>";
    QTest::newRow("all streamable") << "<R><M/>" + strGood + strGood + "</R>" << false << "";
    QTest::newRow("second is not") << "<R><M/>" + strGood +
                                          "<F><Name>bad</Name><Streamable>No</Streamable></F>" +
                                          "<F><Name>worse</Name></F></R>"
                                   << true << "bad";
    QTest::newRow("without a name") << "<R><M/><F/></R>" << true << "";
    QTest::newRow("record of a type that is never applied")
        << "<R><M/><F><Name>text</Name><Type>String</Type></F></R>" << true << "text";
    QTest::newRow("first element is the model, never a record")
        << "<R><F><Name>M</Name></F></R>" << false << "";
    QTest::newRow("no elements") << "<R/>" << false << "";
    QTest::newRow("not well-formed") << "<R><M/><F>" << false << "";
    QTest::newRow("empty") << "" << false << "";
}

void tst_FeatureFileReader::FindEndlessRecord_File_NamesFirstRecordThatIsNotStreamable()
{
    QFETCH(QString, text);
    const std::optional<QString> found = FeatureFile::FindEndlessRecord(text);
    QTEST(found.has_value(), "endless");
    QTEST(found.value_or(QString("")), "name");
}

QTEST_GUILESS_MAIN(tst_FeatureFileReader)
#include "tst_featurefilereader.moc"
