#include <QTest>

#include "camera/idtext.h"

namespace {

/// QString::fromUcs4() would take a byte-order mark for one.
QByteArray Utf8(uint nCharacter)
{
    if (!QChar::requiresSurrogates(nCharacter))
        return QString(QChar(nCharacter)).toUtf8();
    const QChar pair[] = {QChar(QChar::highSurrogate(nCharacter)), QChar(QChar::lowSurrogate(nCharacter))};
    return QString(pair, 2).toUtf8();
}

QByteArray CleanedBetweenLetters(uint nCharacter)
{
    const QByteArray sent = 'a' + Utf8(nCharacter) + 'b';
    return QByteArray::fromStdString(
        kxcc::CleanIdText(sent.constData(), static_cast<size_t>(sent.size()), 32));
}

} // namespace

class tst_IdText : public QObject
{
    Q_OBJECT

private slots:
    void Clean_data();
    void Clean();
    void Clean_CharacterThatIsNotShown_IsReplaced_data();
    void Clean_CharacterThatIsNotShown_IsReplaced();
    void Clean_ShownCharacter_IsKept_data();
    void Clean_ShownCharacter_IsKept();
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

void tst_IdText::Clean_CharacterThatIsNotShown_IsReplaced_data()
{
    QTest::addColumn<uint>("first");
    QTest::addColumn<uint>("last");

    QTest::newRow("C0 control characters") << 0x01U << 0x1FU;
    QTest::newRow("DEL and C1 control characters") << 0x7FU << 0x9FU;
    QTest::newRow("soft hyphen") << 0xADU << 0xADU;
    QTest::newRow("combining grapheme joiner") << 0x34FU << 0x34FU;
    QTest::newRow("Arabic letter mark") << 0x61CU << 0x61CU;
    QTest::newRow("Hangul fillers") << 0x115FU << 0x1160U;
    QTest::newRow("Khmer inherent vowels") << 0x17B4U << 0x17B5U;
    QTest::newRow("Mongolian selectors and vowel separator") << 0x180BU << 0x180FU;
    QTest::newRow("zero-width space and joiners, direction marks") << 0x200BU << 0x200FU;
    QTest::newRow("line and paragraph separator") << 0x2028U << 0x2029U;
    QTest::newRow("embeddings and overrides of the direction") << 0x202AU << 0x202EU;
    QTest::newRow("word joiner, invisible operators") << 0x2060U << 0x2064U;
    QTest::newRow("isolates of the direction, shaping controls") << 0x2066U << 0x206FU;
    QTest::newRow("Hangul filler") << 0x3164U << 0x3164U;
    QTest::newRow("variation selectors") << 0xFE00U << 0xFE0FU;
    QTest::newRow("byte-order mark") << 0xFEFFU << 0xFEFFU;
    QTest::newRow("halfwidth Hangul filler") << 0xFFA0U << 0xFFA0U;
    QTest::newRow("annotation marks") << 0xFFF9U << 0xFFFBU;
    QTest::newRow("musical format characters") << 0x1D173U << 0x1D17AU;
    QTest::newRow("tags, supplementary variation selectors") << 0xE0000U << 0xE0FFFU;
}

void tst_IdText::Clean_CharacterThatIsNotShown_IsReplaced()
{
    QFETCH(uint, first);
    QFETCH(uint, last);
    for (uint c = first; c <= last; ++c)
        QCOMPARE(CleanedBetweenLetters(c), QByteArray("a_b"));
}

/// The neighbours of those that are not, and what names are written with.
void tst_IdText::Clean_ShownCharacter_IsKept_data()
{
    QTest::addColumn<uint>("character");
    for (const uint c : {0x20U,   0x7EU,   0xA0U,    0xACU,    0xAEU,    0x301U,  0x34EU,  0x350U,  0x61BU,
                         0x115EU, 0x1161U, 0x17B3U,  0x17B6U,  0x180AU,  0x200AU, 0x2010U, 0x2027U, 0x202FU,
                         0x205FU, 0x2070U, 0x3163U,  0x3165U,  0x4E2DU,  0xFDFFU, 0xFE10U, 0xFF9FU, 0xFFA1U,
                         0xFFFCU, 0xFFFDU, 0x1D172U, 0x1F600U, 0xDFFFFU, 0xE1000U})
        QTest::addRow("U+%X", c) << c;
}

void tst_IdText::Clean_ShownCharacter_IsKept()
{
    QFETCH(uint, character);
    QCOMPARE(CleanedBetweenLetters(character), 'a' + Utf8(character) + 'b');
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
