#include <QDomDocument>
#include <QFile>
#include <QTest>

#include <algorithm>

// The built-in description keeps the order in which GenApi's schema 1.1 wants a node's elements: other
// evaluators refuse the whole description otherwise.
class tst_BuiltinOrder : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void Description_EveryNode_HasItsElementsInOrder_data();
    void Description_EveryNode_HasItsElementsInOrder();

private:
    QDomDocument m_document;
};

namespace {

/// Elements of one place are divided by '|'.
QStringList Places(const char *pOwn)
{
    static const char *const kCommon =
        "Extension ToolTip Description DisplayName Visibility DocuURL IsDeprecated EventID pIsImplemented "
        "pIsAvailable pIsLocked pBlockPolling ImposedAccessMode pError pAlias pCastAlias ";
    return (QString(kCommon) + pOwn).split(' ', Qt::SkipEmptyParts);
}

const char *const kRegister =
    "Streamable Address|IntSwissKnife|pAddress|pIndex Length|pLength AccessMode pPort "
    "Cachable PollingTime pInvalidator ";

int PlaceOf(const QStringList &places, const QString &element)
{
    const auto found = std::find_if(places.begin(), places.end(),
                                    [&](const QString &place) { return place.split('|').contains(element); });
    return found == places.end() ? -1 : static_cast<int>(found - places.begin());
}

} // namespace

void tst_BuiltinOrder::initTestCase()
{
    QFile file(BUILTIN_DESCRIPTION);
    QVERIFY(file.open(QIODevice::ReadOnly));
    QVERIFY(m_document.setContent(&file));
}

void tst_BuiltinOrder::Description_EveryNode_HasItsElementsInOrder_data()
{
    QTest::addColumn<QStringList>("places");
    const auto row = [](const char *pNode, const QByteArray &own) {
        QTest::newRow(pNode) << Places(own.constData());
    };
    row("Integer",
        "Streamable Value|pValue|pValueCopy|pIndex|ValueIndexed|pValueIndexed|ValueDefault|pValueDefault "
        "Min|pMin Max|pMax Inc|pInc Unit Representation pSelected");
    row("Float",
        "Streamable Value|pValue|pValueCopy|pIndex|ValueIndexed|pValueIndexed|ValueDefault|pValueDefault "
        "Min|pMin Max|pMax Inc|pInc Unit Representation DisplayNotation DisplayPrecision");
    row("IntReg", QByteArray(kRegister) + "Sign Endianess Unit Representation pSelected");
    row("MaskedIntReg", QByteArray(kRegister) + "LSB|Bit MSB Sign Endianess Unit Representation pSelected");
    row("FloatReg", QByteArray(kRegister) + "Endianess Unit Representation DisplayNotation DisplayPrecision");
    row("StringReg", kRegister);
    row("Register", kRegister);
    row("StructReg", QByteArray(kRegister) + "Endianess StructEntry");
    row("StructEntry", "pInvalidator AccessMode Cachable PollingTime Streamable LSB|Bit MSB Sign Unit "
                       "Representation pSelected");
    row("Boolean", "Streamable Value|pValue OnValue OffValue");
    row("Command", "Value|pValue CommandValue|pCommandValue PollingTime");
    row("Enumeration", "Streamable EnumEntry Value|pValue pSelected PollingTime");
    row("EnumEntry", "Value NumericValue Symbolic IsSelfClearing");
    row("String", "Streamable Value|pValue");
    row("Category", "pFeature");
}

void tst_BuiltinOrder::Description_EveryNode_HasItsElementsInOrder()
{
    QFETCH(QStringList, places);
    const QDomNodeList nodes = m_document.elementsByTagName(QTest::currentDataTag());
    QVERIFY(!nodes.isEmpty());
    for (int i = 0; i < nodes.size(); ++i) {
        const QDomElement node = nodes.at(i).toElement();
        int last = 0;
        for (QDomElement e = node.firstChildElement(); !e.isNull(); e = e.nextSiblingElement()) {
            const int place = PlaceOf(places, e.tagName());
            QVERIFY2(place >= last, qPrintable(node.attribute("Name") + ": " + e.tagName()));
            last = place;
        }
    }
}

QTEST_APPLESS_MAIN(tst_BuiltinOrder)
#include "tst_builtinorder.moc"
