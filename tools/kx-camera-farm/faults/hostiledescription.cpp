#include "faults/hostiledescription.h"

#include "device/descriptionfile.h"

#include <QList>
#include <map>
#include <utility>

namespace KxFarm {

namespace {

constexpr std::uint32_t kAddress = 0xF0000000;
using Description = PublishedDescription;

QByteArray Url(const QByteArray &name, qint64 size)
{
    return "Local:" + name + ';' + QByteArray::number(kAddress, 16) + ';' + QByteArray::number(size, 16);
}

Description Plain(const QByteArray &content)
{
    return {Url("hostile.xml", content.size()), content, kAddress};
}

Description Zipped(const QByteArray &content)
{
    return {Url("hostile.zip", content.size()), content, kAddress};
}

Description WithUrl(const QByteArray &url, const QByteArray &xml)
{
    return {url, xml, kAddress};
}

QByteArray ZipOfXml(const QByteArray &xml)
{
    return ZipOf("hostile.xml", xml);
}

/// Nodes in front of the end of the root element.
QByteArray WithNodes(const QByteArray &xml, const QByteArray &nodes)
{
    QByteArray text = xml;
    return text.insert(text.lastIndexOf("</"), nodes);
}

/// A first node with this tool tip: what a parser gives up behind it has none of the features.
QByteArray WithToolTip(const QByteArray &xml, const QByteArray &content)
{
    const QByteArray node =
        "<Integer Name=\"Tipped\"><ToolTip>" + content + "</ToolTip><Value>1</Value></Integer>";
    const int root = xml.indexOf("<RegisterDescription");
    QByteArray text = xml;
    return text.insert(xml.indexOf('>', root) + 1, node);
}

QByteArray WithPrologue(const QByteArray &xml, const QByteArray &prologue)
{
    const int end = xml.indexOf("?>");
    QByteArray text = xml;
    return text.insert(end < 0 ? 0 : end + 2, prologue);
}

QByteArray Utf16(const QByteArray &xml)
{
    QString text = QString::fromUtf8(xml);
    text.replace(QLatin1String("utf-8"), QLatin1String("utf-16"), Qt::CaseInsensitive);
    text.prepend(QChar(0xFEFF));
    return QByteArray(reinterpret_cast<const char *>(text.utf16()), text.size() * 2);
}

/// Overwrites bytes counted from the signature `signature`, from the end when `last`.
QByteArray Patched(QByteArray archive, const char *signature, bool last, int offset, const QByteArray &bytes)
{
    const int place = last ? archive.lastIndexOf(signature) : archive.indexOf(signature);
    return place < 0 ? archive : archive.replace(place + offset, bytes.size(), bytes);
}

constexpr const char *kLocalHeader = "PK\003\004";
constexpr const char *kDirectoryEntry = "PK\001\002";
constexpr const char *kDirectoryEnd = "PK\005\006";

/// A register that every client meets when it reads all features: Width's.
QByteArray RegisterOfLength(const QByteArray &length)
{
    return "<IntReg Name=\"Width\"><Streamable>Yes</Streamable><Address>0x10000</Address><Length>" + length +
           "</Length><AccessMode>RW</AccessMode><pPort>Device</pPort></IntReg>";
}

const QByteArray kExpansion =
    "<!DOCTYPE RegisterDescription [<!ENTITY a \"aaaaaaaaaa\">"
    "<!ENTITY b \"&a;&a;&a;&a;&a;&a;&a;&a;&a;&a;\"><!ENTITY c \"&b;&b;&b;&b;&b;&b;&b;&b;&b;&b;\">"
    "<!ENTITY d \"&c;&c;&c;&c;&c;&c;&c;&c;&c;&c;\"><!ENTITY e \"&d;&d;&d;&d;&d;&d;&d;&d;&d;&d;\">"
    "<!ENTITY f \"&e;&e;&e;&e;&e;&e;&e;&e;&e;&e;\"><!ENTITY g \"&f;&f;&f;&f;&f;&f;&f;&f;&f;&f;\">"
    "<!ENTITY h \"&g;&g;&g;&g;&g;&g;&g;&g;&g;&g;\"><!ENTITY i \"&h;&h;&h;&h;&h;&h;&h;&h;&h;&h;\">]>";

struct Hostile
{
    const char *name;
    Description (*make)(const QByteArray &xml);
};

const Hostile kHostile[] = {
    {"url-huge-size", [](const QByteArray &xml) { return WithUrl(Url("hostile.xml", 0xFFFFFFFF), xml); }},
    {"url-unknown-scheme",
     [](const QByteArray &xml) { return WithUrl("gopher://nowhere/hostile.xml", xml); }},
    {"url-garbage", [](const QByteArray &xml) { return WithUrl("\xFF\xFE\x01Local;;;", xml); }},
    {"url-empty", [](const QByteArray &xml) { return WithUrl("", xml); }},
    {"url-unterminated", [](const QByteArray &xml) { return WithUrl("Local:" + QByteArray(506, 'A'), xml); }},
    {"url-no-memory", [](const QByteArray &) { return WithUrl("Local:hostile.xml;30000000;1000", ""); }},
    {"zip-bad-directory",
     [](const QByteArray &xml) {
         return Zipped(Patched(ZipOfXml(xml), kDirectoryEnd, true, 16, QByteArray(4, '\xEE')));
     }},
    {"zip-bad-header",
     [](const QByteArray &xml) {
         return Zipped(Patched(ZipOfXml(xml), kLocalHeader, false, 26, QByteArray(4, '\xFF')));
     }},
    {"zip-bad-size",
     [](const QByteArray &xml) {
         return Zipped(Patched(ZipOfXml(xml), kDirectoryEntry, true, 20,
                               QByteArray("\xFF\xFF\xFF\x7F\xFF\xFF\xFF\x7F", 8)));
     }},
    {"zip-truncated",
     [](const QByteArray &xml) {
         const QByteArray archive = ZipOfXml(xml);
         return Zipped(archive.left(archive.size() / 2));
     }},
    {"zip-encrypted",
     [](const QByteArray &xml) {
         const QByteArray once = Patched(ZipOfXml(xml), kLocalHeader, false, 6, QByteArray("\x01\x00", 2));
         return Zipped(Patched(once, kDirectoryEntry, true, 8, QByteArray("\x01\x00", 2)));
     }},
    {"zip-two-files",
     [](const QByteArray &xml) { return Zipped(ZipOfTwo("other.txt", "not this one", "hostile.xml", xml)); }},
    {"zip-bomb",
     [](const QByteArray &xml) { return Zipped(ZipOfXml(xml + QByteArray(100 * 1024 * 1024, ' '))); }},
    {"text-before", [](const QByteArray &xml) { return Plain("garbage\r\n" + xml); }},
    {"bom", [](const QByteArray &xml) { return Plain("\xEF\xBB\xBF" + xml); }},
    {"utf-16", [](const QByteArray &xml) { return Plain(Utf16(xml)); }},
    {"trailing-nuls", [](const QByteArray &xml) { return Plain(xml + QByteArray(1000, '\0')); }},
    {"not-xml", [](const QByteArray &) { return Plain("This is no description.\n"); }},
    {"truncated", [](const QByteArray &xml) { return Plain(xml.left(xml.size() / 2)); }},
    {"dtd", [](const QByteArray &xml) { return Plain(WithPrologue(xml, "<!DOCTYPE RegisterDescription>")); }},
    {"entity-bomb",
     [](const QByteArray &xml) {
         return Plain(
             WithNodes(WithPrologue(xml, kExpansion), "<String Name=\"Bomb\"><Value>&i;</Value></String>"));
     }},
    {"deep",
     [](const QByteArray &xml) {
         return Plain(WithNodes(xml, QByteArray("<Group>").repeated(200000) +
                                         QByteArray("</Group>").repeated(200000)));
     }},
    {"big",
     [](const QByteArray &xml) {
         return Plain(WithNodes(
             xml, QByteArray("<Group Comment=\"padding\"></Group>\n").repeated(5 * 1024 * 1024 / 35)));
     }},
    {"many-elements",
     [](const QByteArray &xml) {
         return Zipped(ZipOfXml(WithNodes(xml, QByteArray("<a b=\"\"/>").repeated(6 * 1024 * 1024))));
     }},
    {"nested-pointers",
     [](const QByteArray &xml) {
         const QByteArray open = QByteArray("<Integer Name=\"Deep\"><pValue>").repeated(100);
         const QByteArray close = QByteArray("</pValue></Integer>").repeated(100);
         return Zipped(ZipOfXml(WithNodes(xml, open + QByteArray(10 * 1024 * 1024, 'x') + close)));
     }},
    {"stray-ampersand", [](const QByteArray &xml) { return Plain(WithToolTip(xml, "Gain & Offset")); }},
    {"undefined-entity", [](const QByteArray &xml) { return Plain(WithToolTip(xml, "50 &deg;C")); }},
    {"mismatched-tags", [](const QByteArray &xml) { return Plain(WithToolTip(xml, "<b><i></b></i>")); }},
    {"doubled-attribute", [](const QByteArray &xml) { return Plain(WithToolTip(xml, "<b a='' a=''/>")); }},
    {"latin-1", [](const QByteArray &xml) { return Plain(WithToolTip(xml, "50 \xB0 C")); }},
    {"cycle",
     [](const QByteArray &xml) {
         return Plain(WithNodes(
             xml, "<Integer Name=\"Width\"><Streamable>Yes</Streamable><pValue>Round</pValue></Integer>"
                  "<Integer "
                  "Name=\"Round\"><pInvalidator>UserSetLoad</pInvalidator><pValue>Width</pValue></Integer>"));
     }},
    {"dangling",
     [](const QByteArray &xml) {
         return Plain(WithNodes(xml,
                                "<Integer Name=\"Width\"><Streamable>Yes</Streamable><pValue>Nowhere</pValue>"
                                "<pMin>WidthReg</pMin></Integer>"));
     }},
    {"duplicate-names",
     [](const QByteArray &xml) {
         return Plain(WithNodes(xml, RegisterOfLength("4") + RegisterOfLength("4")));
     }},
    {"length-negative", [](const QByteArray &xml) { return Plain(WithNodes(xml, RegisterOfLength("-4"))); }},
    {"length-zero", [](const QByteArray &xml) { return Plain(WithNodes(xml, RegisterOfLength("0"))); }},
    {"length-2gb",
     [](const QByteArray &xml) { return Plain(WithNodes(xml, RegisterOfLength("2147483648"))); }},
    {"renamed",
     [](const QByteArray &xml) { return Plain(QByteArray(xml).replace("\"Width\"", "\"Breadth\"")); }},
};

} // namespace

QList<QByteArray> HostileDescriptionNames()
{
    QList<QByteArray> names;
    for (const Hostile &hostile : kHostile)
        names.append(hostile.name);
    return names;
}

std::shared_ptr<const PublishedDescription> MakeHostileDescription(const QByteArray &name,
                                                                   const CameraModel &model)
{
    // Some are large; all cameras that play the same one share it.
    static std::map<std::pair<const CameraModel *, QByteArray>, std::weak_ptr<const PublishedDescription>>
        s_made;
    const auto key = std::make_pair(&model, name);
    if (auto pMade = s_made[key].lock())
        return pMade;
    for (const Hostile &hostile : kHostile) {
        if (name != hostile.name)
            continue;
        auto pMade = std::make_shared<const PublishedDescription>(hostile.make(model.xml));
        s_made[key] = pMade;
        return pMade;
    }
    return nullptr;
}

} // namespace KxFarm
