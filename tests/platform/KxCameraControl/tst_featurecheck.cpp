#include <QElapsedTimer>
#include <QTest>

#include <memory>

#include "opencamera.h"
#include "scriptedcamera.h"

// Features whose description gives them no value, all in one camera, through the helper: an error each, in
// reading and in writing, and nothing is written.
class tst_FeatureCheck : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void cleanupTestCase();

    void Access_NoValue_IsBroken_data();
    void Access_NoValue_IsBroken();
    void Set_FormulaHasNoValue_WritesNothing_data();
    void Set_FormulaHasNoValue_WritesNothing();
    void GetInt_UnusualButSound_HasItsValue_data();
    void GetInt_UnusualButSound_HasItsValue();
    void GetFloat_FormulaHasNoValue_IsBroken();
    void GetEnum_EntryWithoutNumber_CannotBeChosen();
    void GetBool_TextForANumber_IsFalseOrBroken();
    void Set_LimitsOfAConverter_AreThoseBelow_data();
    void Set_LimitsOfAConverter_AreThoseBelow();
    void Get_SixtyThousandFeaturesInAChain_IsBounded();

private:
    std::unique_ptr<ScriptedCamera> m_pScripted;
    std::unique_ptr<OpenCamera> m_pCamera;
};

namespace {

// The register at 0x10000 holds 0 (nothing is kept of what is written), the one at 0x100000 "<?xm".
const char *const kHead = R"(<?xml version="1.0" encoding="utf-8"?>
<RegisterDescription ModelName="M" VendorName="V" ToolTip="" StandardNameSpace="None" SchemaMajorVersion="1"
 SchemaMinorVersion="1" SchemaSubMinorVersion="0" MajorVersion="1" MinorVersion="0" SubMinorVersion="0"
 ProductGuid="A" VersionGuid="B" xmlns="http://www.genicam.org/GenApi/Version_1_1">
<Category Name="Root"/><Port Name="Device"/>
<Integer Name="Zero"><Value>0</Value></Integer><Integer Name="One"><Value>1</Value></Integer>
<IntReg Name="Reg"><Address>0x10000</Address><Length>4</Length><AccessMode>RW</AccessMode><pPort>Device</pPort></IntReg>
<Command Name="Cmd"><CommandValue>1</CommandValue><pValue>Reg</pValue></Command>
<StringReg Name="Text"><Address>0x10100</Address><Length>8</Length><AccessMode>RW</AccessMode><pPort>Device</pPort></StringReg>
<Boolean Name="Flag"><pValue>Reg</pValue><OnValue>0</OnValue><OffValue>1</OffValue></Boolean>
<IntSwissKnife Name="NoValue"><pVariable Name="Z">Zero</pVariable><Formula>5 / Z</Formula></IntSwissKnife>
<IntSwissKnife Name="Cycle"><pVariable Name="X">Cycle</pVariable><Formula>X</Formula></IntSwissKnife>
)";

/// A row's feature; its name stands for the row in the description.
struct Case
{
    const char *szRow;
    const char *szFeature; ///< with @ for its name
};

#define PORT "<AccessMode>RW</AccessMode><pPort>Device</pPort>"
#define REGISTER "<Length>4</Length>" PORT

const Case kBroken[] = {
    {"register at a division by zero", "<IntReg Name='@'><pAddress>NoValue</pAddress>" REGISTER "</IntReg>"},
    {"index by zero",
     "<IntReg Name='@'><Address>0x10000</Address><pIndex Offset='4'>NoValue</pIndex>" REGISTER "</IntReg>"},
    {"formula inside a register",
     "<IntReg Name='@'><Address>0x10000</Address><IntSwissKnife Name='@K'><Formula>1 % 0</Formula>"
     "</IntSwissKnife>" REGISTER "</IntReg>"},
    {"length divided by zero",
     "<IntReg Name='@'><Address>0x10000</Address><pLength>NoValue</pLength>" PORT "</IntReg>"},
    {"condition", "<Integer Name='@'><pIsAvailable>NoValue</pIsAvailable><pValue>Reg</pValue></Integer>"},
    {"index of values",
     "<Integer Name='@'><pIndex>NoValue</pIndex><pValueIndexed Index='0'>Reg</pValueIndexed>"
     "<pValueDefault>Reg</pValueDefault></Integer>"},
    {"unknown variable",
     "<IntConverter Name='@'><FormulaTo>FROM</FormulaTo><FormulaFrom>TO + Q</FormulaFrom><pValue>Reg</pValue>"
     "</IntConverter>"},
    {"unknown variable in the branch that is not taken",
     "<IntConverter Name='@'><FormulaTo>FROM</FormulaTo><FormulaFrom>1 ? TO : Q</FormulaFrom>"
     "<pValue>Reg</pValue></IntConverter>"},
    {"no formula",
     "<IntConverter Name='@'><FormulaTo>FROM +</FormulaTo><FormulaFrom>TO</FormulaFrom><pValue>Reg</pValue>"
     "</IntConverter>"},
    {"empty formula",
     "<IntConverter Name='@'><FormulaTo>FROM</FormulaTo><FormulaFrom></FormulaFrom><pValue>Reg</pValue>"
     "</IntConverter>"},
    {"missing formula",
     "<IntConverter Name='@'><FormulaFrom>TO</FormulaFrom><pValue>Reg</pValue></IntConverter>"},
    {"converter of nothing",
     "<IntConverter Name='@'><FormulaTo>FROM</FormulaTo><FormulaFrom>TO</FormulaFrom></IntConverter>"},
    {"function that integers do not have",
     "<IntConverter Name='@'><FormulaTo>FROM</FormulaTo><FormulaFrom>SQRT(TO)</FormulaFrom>"
     "<pValue>Reg</pValue></IntConverter>"},
    {"constant that is no number",
     "<IntSwissKnife Name='@'><Constant Name='C'>five</Constant><Formula>C</Formula></IntSwissKnife>"},
    {"expressions that need each other",
     "<IntConverter Name='@'><Expression Name='A'>B</Expression><Expression Name='B'>A</Expression>"
     "<FormulaTo>FROM</FormulaTo><FormulaFrom>A</FormulaFrom><pValue>Reg</pValue></IntConverter>"},
    {"value of a category", "<Integer Name='@'><pValue>Root</pValue></Integer>"},
    {"value of a port", "<Integer Name='@'><pValue>Device</pValue></Integer>"},
    {"value of a command", "<Integer Name='@'><pValue>Cmd</pValue></Integer>"},
    {"value of a text", "<Integer Name='@'><pValue>Text</pValue></Integer>"},
    {"variable of a category",
     "<IntSwissKnife Name='@'><pVariable Name='V'>Root</pVariable><Formula>V</Formula></IntSwissKnife>"},
    {"address of a command", "<IntReg Name='@'><pAddress>Cmd</pAddress>" REGISTER "</IntReg>"},
    {"port that is none",
     "<IntReg Name='@'><Address>0x10000</Address><Length>4</Length><pPort>Zero</pPort></IntReg>"},
    {"value that is no number", "<Integer Name='@'><Value>abc</Value></Integer>"},
    {"value with a tail", "<Integer Name='@'><Value>12x</Value></Integer>"},
    {"value beyond 64 bits", "<Integer Name='@'><Value>99999999999999999999</Value></Integer>"},
    {"empty value", "<Integer Name='@'><Value/></Integer>"},
    {"no value", "<Integer Name='@'><Min>0</Min></Integer>"},
    {"limit that is no number", "<Integer Name='@'><pValue>Reg</pValue><Max>many</Max></Integer>"},
    {"limit below that is no number",
     "<Integer Name='@'><pValue>@L</pValue></Integer><Integer Name='@L'><pValue>Reg</pValue><Max>many</Max>"
     "</Integer>"},
    {"register without an address", "<IntReg Name='@'>" REGISTER "</IntReg>"},
    {"address that is no number", "<IntReg Name='@'><Address>here</Address>" REGISTER "</IntReg>"},
    {"register without a port", "<IntReg Name='@'><Address>0x10000</Address><Length>4</Length></IntReg>"},
    {"register without a length", "<IntReg Name='@'><Address>0x10000</Address>" PORT "</IntReg>"},
    {"length of 0", "<IntReg Name='@'><Address>0x10000</Address><Length>0</Length>" PORT "</IntReg>"},
    {"length of 9", "<IntReg Name='@'><Address>0x10000</Address><Length>9</Length>" PORT "</IntReg>"},
    {"negative length", "<IntReg Name='@'><Address>0x10000</Address><Length>-4</Length>" PORT "</IntReg>"},
    {"computed length of 0",
     "<IntReg Name='@'><Address>0x10000</Address><pLength>Zero</pLength>" PORT "</IntReg>"},
    {"computed length of 9, masked",
     "<MaskedIntReg Name='@'><Address>0x10000</Address><pLength>@L</pLength>" PORT "<LSB>3</LSB><MSB>0</MSB>"
     "</MaskedIntReg><Integer Name='@L'><Value>9</Value></Integer>"},
    {"bits outside the computed length",
     "<MaskedIntReg Name='@'><Address>0x10000</Address><pLength>@L</pLength>" PORT "<LSB>8</LSB><MSB>8</MSB>"
     "</MaskedIntReg><Integer Name='@L'><Value>1</Value></Integer>"},
    {"computed length of 9 around an entry",
     "<StructReg Comment='S'><Address>0x10000</Address><pLength>@L</pLength>" PORT
     "<StructEntry Name='@'><LSB>3</LSB><MSB>0</MSB></StructEntry></StructReg>"
     "<Integer Name='@L'><Value>9</Value></Integer>"},
    {"negative computed length around an entry",
     "<StructReg Comment='S'><Address>0x10000</Address><pLength>@L</pLength>" PORT
     "<StructEntry Name='@'><LSB>3</LSB><MSB>0</MSB></StructEntry></StructReg>"
     "<Integer Name='@L'><Value>-3</Value></Integer>"},
    {"negative computed length of a float",
     "<Integer Name='@'><pValue>@F</pValue></Integer><FloatReg Name='@F'><Address>0x10000</Address>"
     "<pLength>@L</pLength>" PORT "</FloatReg><Integer Name='@L'><Value>-3</Value></Integer>"},
    {"length of 0 around an entry",
     "<StructReg Comment='S'><Address>0x10000</Address><Length>0</Length>" PORT
     "<StructEntry Name='@'><LSB>15</LSB><MSB>0</MSB></StructEntry></StructReg>"},
    {"bits outside the register", "<MaskedIntReg Name='@'><Address>0x10000</Address>" REGISTER
                                  "<LSB>32</LSB><MSB>30</MSB></MaskedIntReg>"},
    {"cycle in the condition of the second node",
     "<Integer Name='@'><pValue>@S</pValue></Integer><Integer Name='@S'><pIsAvailable>Cycle</pIsAvailable>"
     "<pValue>Reg</pValue></Integer>"},
    {"cycle in the lock of the register",
     "<Integer Name='@'><pValue>@R</pValue></Integer><IntReg Name='@R'><pIsLocked>Cycle</pIsLocked>"
     "<Address>0x10000</Address>" REGISTER "</IntReg>"},
    {"cycle in the limit of the second node",
     "<Integer Name='@'><pValue>@S</pValue></Integer><Integer Name='@S'><pValue>Reg</pValue>"
     "<pMax>Cycle</pMax></Integer>"},
    {"cycle behind an indexed value",
     "<Integer Name='@'><pIndex>One</pIndex><ValueIndexed Index='0'>1</ValueIndexed><pValueDefault>@S"
     "</pValueDefault></Integer><Integer Name='@S'><pValue>Reg</pValue><pMax>Cycle</pMax></Integer>"},
    {"cycle in the offset of an index",
     "<IntReg Name='@'><Address>0x10000</Address><pIndex pOffset='@'>One</pIndex>" REGISTER "</IntReg>"},
    {"offset that is no number",
     "<IntReg Name='@'><Address>0x10000</Address><pIndex Offset='x'>One</pIndex>" REGISTER "</IntReg>"},
};

const Case kUnwritable[] = {
    {"minimum", "<Integer Name='@'><pValue>Reg</pValue><pMin>NoValue</pMin></Integer>"},
    {"division by zero", "<IntConverter Name='@'><pVariable Name='Z'>Zero</pVariable><FormulaTo>FROM / Z"
                         "</FormulaTo><FormulaFrom>TO + 42</FormulaFrom><pValue>Reg</pValue></IntConverter>"},
    {"smallest number divided by -1",
     "<IntConverter Name='@'><FormulaTo>(FROM &lt;&lt; 63) % -1</FormulaTo><FormulaFrom>TO + 42</FormulaFrom>"
     "<pValue>Reg</pValue></IntConverter>"},
    {"power of zero", "<IntConverter Name='@'><FormulaTo>0 ** (0 - FROM)</FormulaTo><FormulaFrom>TO + 42"
                      "</FormulaFrom><pValue>Reg</pValue></IntConverter>"},
    {"integer that is a boolean's", "<Integer Name='@'><pValue>@B</pValue></Integer><Boolean Name='@B'>"
                                    "<pValue>@C</pValue><OnValue>42</OnValue></Boolean><Integer Name='@C'>"
                                    "<Value>42</Value></Integer>"},
};

struct SoundCase
{
    const char *szRow;
    const char *szFeature;
    unsigned int nValue;
};

const SoundCase kSound[] = {
    {"division by zero in the other branch",
     "<IntSwissKnife Name='@'><pVariable Name='Z'>Zero</pVariable><Formula>(Z = 0) ? 7 : (5 / Z)</Formula>"
     "</IntSwissKnife>",
     7},
    {"variable of a boolean",
     "<IntSwissKnife Name='@'><pVariable Name='F'>Flag</pVariable><Formula>F + 1</Formula></IntSwissKnife>",
     2},
    {"expressions within expressions",
     "<IntSwissKnife Name='@'><Constant Name='C'>5</Constant><Expression Name='A'>C + 1</Expression>"
     "<Expression Name='B'>A * A</Expression><Formula>B + A</Formula></IntSwissKnife>",
     42},
    {"expression with the converter's value",
     "<IntConverter Name='@'><Expression Name='A'>TO + 6</Expression><FormulaTo>FROM</FormulaTo><FormulaFrom>"
     "A * 7</FormulaFrom><pValue>Reg</pValue></IntConverter>",
     42},
    {"conditions of each other",
     "<Integer Name='@'><pIsAvailable>@A</pIsAvailable><Value>3</Value></Integer><Integer Name='@A'>"
     "<pIsAvailable>@</pIsAvailable><Value>1</Value></Integer>",
     3},
    {"number with space around and a sign", "<Integer Name='@'><Value> +0x1F\n</Value></Integer>", 31},
    {"unsigned limit of 64 bits", "<Integer Name='@'><Value>5</Value><Max>0xFFFFFFFFFFFFFFFF</Max></Integer>",
     5},
    {"computed length",
     "<IntReg Name='@'><Address>0x100000</Address><pLength>@L</pLength>" PORT
     "<Endianess>BigEndian</Endianess></IntReg><Integer Name='@L'><Value>4</Value></Integer>",
     0x3C3F786D},
    {"computed length around an entry",
     "<StructReg Comment='S'><Address>0x100000</Address><pLength>@L</pLength>" PORT "<StructEntry "
     "Name='@'><LSB>31</LSB><MSB>16</MSB></StructEntry><Endianess>BigEndian</Endianess></StructReg>"
     "<Integer Name='@L'><Value>4</Value></Integer>",
     0x786D},
    {"computed offset",
     "<IntReg Name='@'><Address>0xFFFFF</Address><pIndex pOffset='One'>One</pIndex>" REGISTER
     "<Endianess>BigEndian</Endianess></IntReg>",
     0x3C3F786D},
};

/// Over a number of the description's own, which an import does not write to the camera.
const char *const kConverters = R"(
<Integer Name="From2"><Value>5</Value><Min>2</Min></Integer>
<Integer Name="To10"><Value>5</Value><Max>10</Max></Integer>
<Integer Name="From2To10"><Value>5</Value><Min>2</Min><Max>10</Max></Integer>
<IntConverter Name="RisesFrom"><FormulaTo>FROM - 1</FormulaTo><FormulaFrom>TO + 1</FormulaFrom>
 <pValue>From2</pValue></IntConverter>
<IntConverter Name="FallsFrom"><FormulaTo>100 - FROM</FormulaTo><FormulaFrom>100 - TO</FormulaFrom>
 <pValue>From2</pValue></IntConverter>
<IntConverter Name="RisesTo"><FormulaTo>FROM - 1</FormulaTo><FormulaFrom>TO + 1</FormulaFrom>
 <pValue>To10</pValue></IntConverter>
<IntConverter Name="FallsTo"><FormulaTo>100 - FROM</FormulaTo><FormulaFrom>100 - TO</FormulaFrom>
 <pValue>To10</pValue></IntConverter>
<IntConverter Name="Between"><FormulaTo>100 - FROM</FormulaTo><FormulaFrom>100 - TO</FormulaFrom>
 <pValue>From2To10</pValue></IntConverter>
<Boolean Name="False"><Value>false</Value></Boolean><Boolean Name="True"><Value>true</Value></Boolean>
)";

QByteArray Feature(const char *szXml, const QByteArray &name)
{
    return QByteArray(szXml).replace('@', name) + '\n';
}

QByteArray NameOf(const char *szKind, int nRow)
{
    return szKind + QByteArray::number(nRow);
}

/// Each of 24 levels needs the one below twice.
QByteArray Doubling()
{
    QByteArray xml = "<IntSwissKnife Name='D0'><Formula>1</Formula></IntSwissKnife>";
    for (int i = 1; i <= 24; ++i)
        xml += QByteArray("<IntSwissKnife Name='@'><pVariable Name='A'>#</pVariable><pVariable Name='B'>#"
                          "</pVariable><Formula>A + B</Formula></IntSwissKnife>")
                   .replace('@', NameOf("D", i))
                   .replace('#', NameOf("D", i - 1));
    return xml;
}

QByteArray Chain(int nLength)
{
    QByteArray xml = "<Integer Name='Chain0'><Value>42</Value></Integer>";
    for (int i = 1; i <= nLength; ++i)
        xml += "<Integer Name='Chain" + QByteArray::number(i) + "'><pValue>Chain" +
               QByteArray::number(i - 1) + "</pValue></Integer>";
    return xml;
}

} // namespace

void tst_FeatureCheck::initTestCase()
{
    QByteArray description = kHead;
    int nRow = 0;
    for (const Case &broken : kBroken)
        description += Feature(broken.szFeature, NameOf("Broken", nRow++));
    for (const Case &unwritable : kUnwritable)
        description += Feature(unwritable.szFeature, NameOf("Unwritable", nRow++));
    for (const SoundCase &sound : kSound)
        description += Feature(sound.szFeature, NameOf("Sound", nRow++));
    description += Doubling() + Chain(60000) + kConverters +
                   "<SwissKnife Name='Real'><pVariable Name='Z'>Zero</pVariable><Formula>1.0 / Z</Formula>"
                   "</SwissKnife><Converter Name='Log'><FormulaTo>LN(FROM)</FormulaTo><FormulaFrom>LN(TO)"
                   "</FormulaFrom><pValue>Reg</pValue></Converter><Float Name='Empty'><Unit>s</Unit></Float>"
                   "<Enumeration Name='Choice'><EnumEntry Name='Bad'><Value>none</Value></EnumEntry>"
                   "<pValue>Reg</pValue></Enumeration></RegisterDescription>";
    m_pScripted = std::make_unique<ScriptedCamera>(
        TestAddress(1), "Local:a.xml;100000;" + QByteArray::number(description.size(), 16), description);
    QVERIFY(m_pScripted->IsThere());
    m_pCamera = std::make_unique<OpenCamera>(TestAddress(1));
    QCOMPARE(m_pCamera->Code(), KX_CC_OK);
}

void tst_FeatureCheck::cleanupTestCase()
{
    m_pCamera.reset();
    m_pScripted.reset();
}

void tst_FeatureCheck::Access_NoValue_IsBroken_data()
{
    QTest::addColumn<QByteArray>("feature");
    int nRow = 0;
    for (const Case &broken : kBroken)
        QTest::newRow(broken.szRow) << NameOf("Broken", nRow++);
    QTest::newRow("2^24 evaluations") << QByteArray("D24");
    QTest::newRow("more than 500 pointers") << QByteArray("Chain501");
    QTest::newRow("60000 pointers") << QByteArray("Chain60000");
}

void tst_FeatureCheck::Access_NoValue_IsBroken()
{
    QFETCH(QByteArray, feature);
    QCOMPARE(m_pCamera->Get(feature.constData()), KX_CC_E_FEATURE_BROKEN);
    QCOMPARE(m_pCamera->Set(feature.constData(), 1), KX_CC_E_FEATURE_BROKEN);
    QCOMPARE(m_pScripted->Writes(), 0);
}

void tst_FeatureCheck::Set_FormulaHasNoValue_WritesNothing_data()
{
    QTest::addColumn<QByteArray>("feature");
    int nRow = static_cast<int>(std::size(kBroken));
    for (const Case &unwritable : kUnwritable)
        QTest::newRow(unwritable.szRow) << NameOf("Unwritable", nRow++);
}

void tst_FeatureCheck::Set_FormulaHasNoValue_WritesNothing()
{
    QFETCH(QByteArray, feature);
    QCOMPARE(m_pCamera->Get(feature.constData()), KX_CC_OK);
    QCOMPARE(m_pCamera->Set(feature.constData(), 51), KX_CC_E_FEATURE_BROKEN);
    QCOMPARE(m_pScripted->Writes(), 0);
}

void tst_FeatureCheck::GetInt_UnusualButSound_HasItsValue_data()
{
    QTest::addColumn<QByteArray>("feature");
    QTest::addColumn<uint32_t>("value");
    int nRow = static_cast<int>(std::size(kBroken) + std::size(kUnwritable));
    for (const SoundCase &sound : kSound)
        QTest::newRow(sound.szRow) << NameOf("Sound", nRow++) << uint32_t{sound.nValue};
    // Asked for after the longer ones, which does not matter.
    QTest::newRow("500 nodes in a row") << QByteArray("Chain499") << 42U;
    QTest::newRow("2^8 evaluations") << QByteArray("D8") << 256U;
}

void tst_FeatureCheck::GetInt_UnusualButSound_HasItsValue()
{
    QFETCH(QByteArray, feature);
    uint32_t nValue = 0;
    QCOMPARE(m_pCamera->Get(feature.constData(), &nValue), KX_CC_OK);
    QTEST(nValue, "value");
}

void tst_FeatureCheck::GetFloat_FormulaHasNoValue_IsBroken()
{
    KX_CC_FLOAT_VALUE value{};
    for (const char *szName : {"Real", "Log", "Empty"})
        QCOMPARE(KX_CC_GetFloatValue(m_pCamera->Handle(), szName, &value), KX_CC_E_FEATURE_BROKEN);
    QCOMPARE(KX_CC_SetFloatValue(m_pCamera->Handle(), "Log", 0.0F), KX_CC_E_FEATURE_BROKEN);
    QCOMPARE(KX_CC_SetFloatValue(m_pCamera->Handle(), "Empty", 1.0F), KX_CC_E_FEATURE_BROKEN);
    QCOMPARE(m_pScripted->Writes(), 0);
}

void tst_FeatureCheck::GetEnum_EntryWithoutNumber_CannotBeChosen()
{
    QCOMPARE(KX_CC_SetEnumValue(m_pCamera->Handle(), "Choice", 0), KX_CC_E_FEATURE_BROKEN);
    QCOMPARE(m_pScripted->Writes(), 0);
}

void tst_FeatureCheck::GetBool_TextForANumber_IsFalseOrBroken()
{
    bool bValue = true;
    QCOMPARE(KX_CC_GetBoolValue(m_pCamera->Handle(), "False", &bValue), KX_CC_OK);
    QVERIFY(!bValue);
    QCOMPARE(KX_CC_GetBoolValue(m_pCamera->Handle(), "True", &bValue), KX_CC_E_FEATURE_BROKEN);
}

void tst_FeatureCheck::Set_LimitsOfAConverter_AreThoseBelow_data()
{
    QTest::addColumn<QByteArray>("feature");
    QTest::addColumn<uint32_t>("value");
    QTest::addColumn<int>("code");
    const auto row = [](const char *szName, const char *szFeature, uint32_t nValue, int nCode) {
        QTest::newRow(szName) << QByteArray(szFeature) << nValue << nCode;
    };
    row("rising, at the minimum", "RisesFrom", 3, KX_CC_OK);
    row("rising, below the minimum", "RisesFrom", 2, KX_CC_E_FEATURE_VALUE);
    row("rising, far above", "RisesFrom", 2000000000, KX_CC_OK);
    row("falling, at the maximum", "FallsFrom", 98, KX_CC_OK);
    row("falling, above the maximum", "FallsFrom", 99, KX_CC_E_FEATURE_VALUE);
    row("falling, far below", "FallsFrom", 0, KX_CC_OK);
    row("rising, at the only maximum", "RisesTo", 11, KX_CC_OK);
    row("rising, above the only maximum", "RisesTo", 12, KX_CC_E_FEATURE_VALUE);
    row("falling, at the only minimum", "FallsTo", 90, KX_CC_OK);
    row("falling, below the only minimum", "FallsTo", 89, KX_CC_E_FEATURE_VALUE);
    row("falling between two, at the minimum", "Between", 90, KX_CC_OK);
    row("falling between two, below", "Between", 89, KX_CC_E_FEATURE_VALUE);
    row("falling between two, at the maximum", "Between", 98, KX_CC_OK);
    row("falling between two, above", "Between", 99, KX_CC_E_FEATURE_VALUE);
}

void tst_FeatureCheck::Set_LimitsOfAConverter_AreThoseBelow()
{
    QFETCH(QByteArray, feature);
    QFETCH(uint32_t, value);
    QTEST(m_pCamera->Set(feature.constData(), value), "code");
}

void tst_FeatureCheck::Get_SixtyThousandFeaturesInAChain_IsBounded()
{
    QElapsedTimer timer;
    timer.start();
    for (int i = 60000; i > 0; i -= 10)
        QVERIFY(m_pCamera->Get(NameOf("Chain", i).constData()) ==
                (i < 500 ? KX_CC_OK : KX_CC_E_FEATURE_BROKEN));
    QVERIFY(timer.elapsed() < 30000); // 1 s on an idle machine
}

QTEST_GUILESS_MAIN(tst_FeatureCheck)
#include "tst_featurecheck.moc"
