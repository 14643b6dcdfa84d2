#include <QTest>

#include "protocol/idtext.h"

class tst_IdText : public QObject
{
    Q_OBJECT

private slots:
    void Clean_data();
    void Clean();
    void SetField_FullField_LeavesTheZerosBehindIt();
};

void tst_IdText::Clean_data()
{
    QTest::addColumn<QByteArray>("sent");
    QTest::addColumn<int>("width");
    QTest::addColumn<QByteArray>("expected");

    QTest::newRow("plain") << QByteArray("acA1920-40gm") << 32 << QByteArray("acA1920-40gm");
    QTest::newRow("empty") << QByteArray() << 16 << QByteArray();
    QTest::newRow("ends at its first NUL") << QByteArray("ab\0cd", 5) << 16 << QByteArray("ab");
    QTest::newRow("fills the field") << QByteArray("0123456789ABCDEF") << 16
                                     << QByteArray("0123456789ABCDEF");
    QTest::newRow("longer than the field")
        << QByteArray("0123456789ABCDEFG") << 16 << QByteArray("0123456789ABCDEF");
    QTest::newRow("path separators") << QByteArray("../a\\b") << 16 << QByteArray(".._a_b");
    QTest::newRow("control characters") << QByteArray("a\tb\nc\x7f") << 16 << QByteArray("a_b_c_");
    QTest::newRow("C1 control character") << QByteArray("a\xc2\x85"
                                                        "b")
                                          << 16 << QByteArray("a_b");
    QTest::newRow("UTF-8 is kept") << QByteArray("K\xc3\xbc"
                                                 "che")
                                   << 16
                                   << QByteArray("K\xc3\xbc"
                                                 "che");
    QTest::newRow("not UTF-8") << QByteArray("K\xfc"
                                             "che")
                               << 16 << QByteArray("K_che");
    QTest::newRow("character cut off by the camera") << QByteArray("ab\xe4\xb8") << 16 << QByteArray("ab__");
    QTest::newRow("character that does not fit")
        << QByteArray("0123456789ABCDE\xc3\xbc") << 16 << QByteArray("0123456789ABCDE");
    QTest::newRow("overlong encoding of '/'") << QByteArray("a\xc0\xaf"
                                                            "b")
                                              << 16 << QByteArray("a__b");
    QTest::newRow("surrogate") << QByteArray("\xed\xa0\x80") << 16 << QByteArray("___");
}

void tst_IdText::Clean()
{
    QFETCH(QByteArray, sent);
    QFETCH(int, width);

    const std::string text =
        kxcc::CleanIdText(sent.constData(), static_cast<size_t>(sent.size()), static_cast<size_t>(width));

    QTEST(QByteArray::fromStdString(text), "expected");
}

void tst_IdText::SetField_FullField_LeavesTheZerosBehindIt()
{
    struct
    {
        unsigned char field[4];
        unsigned char behind[4];
    } record{};

    kxcc::SetIdField(record.field, "abcdefgh", 8);

    QCOMPARE(QByteArray(reinterpret_cast<const char *>(record.field)), QByteArray("abcd"));
}

QTEST_APPLESS_MAIN(tst_IdText)
#include "tst_idtext.moc"
