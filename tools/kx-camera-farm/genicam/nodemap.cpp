#include "genicam/nodemap.h"

#include <QXmlStreamReader>
#include <algorithm>

namespace KxFarm {

const NodeProperty *Node::Find(const char *wanted) const
{
    const auto found =
        std::find_if(properties.begin(), properties.end(),
                     [wanted](const NodeProperty &property) { return property.tag == wanted; });
    return found == properties.end() ? nullptr : &*found;
}

QByteArray Node::Text(const char *wanted) const
{
    const NodeProperty *pProperty = Find(wanted);
    return pProperty ? pProperty->text : QByteArray();
}

int Node::Target(const char *wanted) const
{
    const NodeProperty *pProperty = Find(wanted);
    return pProperty ? pProperty->target : -1;
}

std::int64_t ParseDescriptionInteger(const QByteArray &text)
{
    bool good = false;
    if (text.startsWith("0x") || text.startsWith("0X"))
        return static_cast<std::int64_t>(text.mid(2).toULongLong(&good, 16));
    const std::int64_t number = text.toLongLong(&good, 10);
    return good ? number : static_cast<std::int64_t>(text.toDouble());
}

/// Walks the XML text into nodes. Groups vanish; their content counts as if it stood outside.
class NodeReader
{
public:
    NodeReader(const QByteArray &xml, NodeMap *pMap)
        : m_reader(xml)
        , m_pMap(pMap)
    {
    }

    bool Read(QString *pError)
    {
        if (m_reader.readNextStartElement()) {
            if (m_reader.name() != QLatin1String("RegisterDescription"))
                m_reader.raiseError(QStringLiteral("the root element is not RegisterDescription"));
            m_pMap->m_model = Attribute("ModelName");
            m_pMap->m_vendor = Attribute("VendorName");
            ReadNodes();
        }
        while (!m_reader.atEnd())
            m_reader.readNext();
        if (!m_reader.hasError())
            return true;
        *pError = QStringLiteral("the description cannot be used: line %1: %2")
                      .arg(m_reader.lineNumber())
                      .arg(m_reader.errorString());
        return false;
    }

private:
    QByteArray Attribute(const char *name) const
    {
        return m_reader.attributes().value(QLatin1String(name)).toUtf8();
    }

    void ReadNodes()
    {
        // Groups may be nested; counted rather than recursed into.
        for (int depth = 0; !m_reader.atEnd();) {
            m_reader.readNext();
            if (m_reader.isEndElement() && depth-- == 0)
                return;
            if (!m_reader.isStartElement())
                continue;
            if (m_reader.name() == QLatin1String("Group"))
                ++depth;
            else
                ReadNode();
        }
    }

    int AddNode(bool indexed)
    {
        Node node;
        node.tag = m_reader.name().toUtf8();
        node.name = Attribute("Name");
        const int index = m_pMap->Count();
        m_pMap->m_listNodes.push_back(node);
        if (indexed && !node.name.isEmpty())
            m_pMap->m_hashNames.insert(node.name, index);
        return index;
    }

    Node &At(int index) { return m_pMap->m_listNodes[static_cast<std::size_t>(index)]; }

    void ReadNode()
    {
        const int index = AddNode(true);
        const bool isStruct = At(index).Is("StructReg");
        std::vector<int> entries; // kept apart: reading a leaf moves the list of nodes
        std::vector<int> structEntries;
        while (m_reader.readNextStartElement()) {
            if (m_reader.name() == QLatin1String("EnumEntry"))
                entries.push_back(ReadLeaf(false));
            else if (isStruct && m_reader.name() == QLatin1String("StructEntry"))
                structEntries.push_back(ReadLeaf(true));
            else
                ReadProperty(index);
        }
        At(index).entries = std::move(entries);
        for (const int entry : structEntries)
            Inherit(entry, index);
    }

    int ReadLeaf(bool indexed)
    {
        const int index = AddNode(indexed);
        while (m_reader.readNextStartElement())
            ReadProperty(index);
        return index;
    }

    /// Extensions hold what only the camera itself knows: PowerUp is ours.
    void ReadExtension(int index)
    {
        while (m_reader.readNextStartElement()) {
            if (m_reader.name() == QLatin1String("PowerUp"))
                ReadProperty(index);
            else
                m_reader.skipCurrentElement();
        }
    }

    void ReadProperty(int index)
    {
        if (m_reader.name() == QLatin1String("Extension")) {
            ReadExtension(index);
            return;
        }
        NodeProperty property;
        property.tag = m_reader.name().toUtf8();
        property.name = Attribute("Name");
        for (const char *name : {"Offset", "pOffset", "Index", "Count"}) {
            if (property.offset.isEmpty())
                property.offset = Attribute(name);
        }
        property.text = m_reader.readElementText(QXmlStreamReader::SkipChildElements).trimmed().toUtf8();
        At(index).properties.push_back(property);
    }

    void Inherit(int entry, int from)
    {
        const std::vector<NodeProperty> inherited = At(from).properties;
        for (const NodeProperty &property : inherited) {
            if (!At(entry).Find(property.tag.constData()))
                At(entry).properties.push_back(property);
        }
    }

    QXmlStreamReader m_reader;
    NodeMap *m_pMap;
};

bool NodeMap::Parse(const QByteArray &xml, QString *pError)
{
    NodeReader reader(xml, this);
    if (!reader.Read(pError))
        return false;
    ResolvePointers();
    CompileFormulas();
    return true;
}

void NodeMap::ResolvePointers()
{
    for (Node &node : m_listNodes) {
        for (NodeProperty &property : node.properties) {
            if (property.tag.startsWith('p'))
                property.target = Find(property.text);
        }
    }
}

void NodeMap::CompileFormulas()
{
    for (Node &node : m_listNodes) {
        if (const NodeProperty *pFormula = node.Find("Formula"))
            node.formula.Compile(pFormula->text);
        else if (const NodeProperty *pFrom = node.Find("FormulaFrom"))
            node.formula.Compile(pFrom->text);
        if (const NodeProperty *pTo = node.Find("FormulaTo"))
            node.formulaTo.Compile(pTo->text);
    }
}

} // namespace KxFarm
