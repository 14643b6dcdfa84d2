#include "xmlguard.h"

namespace {

/// Steps over markup the way a parser does. Up to the first violation of well-formedness both agree on what
/// is a tag; behind it the parser has given up.
///
/// QXmlStreamReader cannot stand here. It refuses texts that QDomDocument takes, such as a doubled attribute,
/// an entity that is not declared or the version 1.1, and behind its refusal nothing is counted any more; and
/// it takes four times as long.
class Scanner
{
public:
    Scanner(const QString &strText, const XmlLimits &limits)
        : m_strText(strText)
        , m_limits(limits)
    {
    }

    bool IsSafe()
    {
        while ((m_nPos = m_strText.indexOf(QLatin1Char('<'), m_nPos)) >= 0) {
            if (StartsWith("</")) {
                EndTag();
                continue;
            }
            ++m_nNodes;
            if (StartsWith("<!--"))
                SkipBehind("<!--", "-->");
            else if (StartsWith("<![CDATA["))
                SkipBehind("<![CDATA[", "]]>");
            else if (StartsWith("<?"))
                SkipBehind("<?", "?>");
            else if (StartsWith("<!") || !StartTag())
                return false;
            if (m_nNodes > m_limits.nMostNodes || m_nChildren > m_limits.nMostChildren)
                return false;
        }
        return true;
    }

private:
    bool StartsWith(const char *szToken) const
    {
        return m_strText.midRef(m_nPos, static_cast<int>(qstrlen(szToken))) == QLatin1String(szToken);
    }

    /// Goes behind the end token, which may not overlap the start token; to the end when it is missing.
    void SkipBehind(const char *szStart, const char *szEnd)
    {
        const int nFound =
            m_strText.indexOf(QLatin1String(szEnd), m_nPos + static_cast<int>(qstrlen(szStart)));
        m_nPos = nFound < 0 ? m_strText.size() : nFound + static_cast<int>(qstrlen(szEnd));
    }

    void EndTag()
    {
        --m_nDepth;
        SkipBehind("</", ">");
    }

    /// Goes behind the tag's '>', which may stand in a quoted value too. False when it is one level too deep.
    bool StartTag()
    {
        QChar quote;
        int nEnd = m_nPos + 1;
        for (; nEnd < m_strText.size(); ++nEnd) {
            const QChar c = m_strText.at(nEnd);
            if (!quote.isNull()) {
                if (c == quote)
                    quote = QChar();
            } else if (c == QLatin1Char('"') || c == QLatin1Char('\'')) {
                quote = c;
                ++m_nNodes; // the value of an attribute
            } else if (c == QLatin1Char('>')) {
                break;
            }
        }
        const bool bEmpty = nEnd < m_strText.size() && m_strText.at(nEnd - 1) == QLatin1Char('/');
        m_nPos = nEnd;
        if (m_nDepth == 1)
            ++m_nChildren;
        if (m_nDepth + 1 > kMaxXmlDepth)
            return false;
        if (!bEmpty)
            ++m_nDepth;
        return true;
    }

    const QString &m_strText;
    const XmlLimits &m_limits;
    int m_nPos = 0;
    int m_nDepth = 0;
    int m_nNodes = 0;
    int m_nChildren = 0; // of the root
};

} // namespace

bool IsXmlSafeToParse(const QString &strText, const XmlLimits &limits)
{
    return Scanner(strText, limits).IsSafe();
}
