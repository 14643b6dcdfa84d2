#include "faults/fault.h"
#include "faults/faultvalue.h"

#include <QList>
#include <cmath>
#include <limits>

namespace KxFarm {

namespace {

/// What the register behind a feature is to hold, as it was asked for.
struct Content
{
    int feature;
    QByteArray text;
};

QString Text(const QByteArray &text)
{
    return QString::fromUtf8(text);
}

/// Any number that `width` bits can mean, signed or not.
bool ParseBits(const QByteArray &text, unsigned width, std::int64_t *pBits)
{
    const bool hexadecimal = text.startsWith("0x");
    const QByteArray digits = hexadecimal ? text.mid(2) : text;
    bool good = false;
    const qulonglong bits = digits.toULongLong(&good, hexadecimal ? 16 : 10);
    *pBits = static_cast<std::int64_t>(bits);
    if (good)
        return width >= 64 || bits >> width == 0;
    *pBits = digits.toLongLong(&good, 10);
    return good && (width >= 64 || *pBits >= -(std::int64_t{1} << (width - 1)));
}

bool ParseFloat(const QByteArray &text, std::size_t size, double *pValue)
{
    bool good = false;
    *pValue = text.toDouble(&good);
    const bool fits = size == 8 || !std::isfinite(*pValue) ||
                      std::fabs(*pValue) <= double{std::numeric_limits<float>::max()};
    // A number beyond all numbers is no infinity: that is asked for by its name.
    return good && fits;
}

/// Puts one content into the camera's registers. False and one line in *pError when it does not fit.
class Writer
{
public:
    Writer(const NodeMap &map, RegisterMemory *pMemory)
        : m_map(map)
        , m_pMemory(pMemory)
        , m_access(pMemory)
        , m_evaluator(map, &m_access)
    {
    }

    std::optional<RegisterSpan> Span(int feature)
    {
        const int target = m_evaluator.RegisterOf(feature);
        return target >= 0 ? m_evaluator.Span(target) : std::nullopt;
    }

    bool Put(const Content &content, QString *pError)
    {
        const auto span = Span(content.feature);
        if (!span) {
            *pError = QStringLiteral("there is no register behind \"%1\"")
                          .arg(Text(m_map.At(content.feature).name));
            return false;
        }
        const int target = m_evaluator.RegisterOf(content.feature);
        const bool done =
            IsTextRegister(m_map.At(target)) ? PutText(*span, content.text) : PutNumber(target, content.text);
        if (!done)
            *pError = QStringLiteral("\"%1\" does not fit the register behind \"%2\"")
                          .arg(Text(content.text), Text(m_map.At(content.feature).name));
        return done;
    }

private:
    bool PutText(const RegisterSpan &span, const QByteArray &text)
    {
        const QByteArray bytes = Unescaped(text);
        if (static_cast<std::size_t>(bytes.size()) > span.size)
            return false;
        m_pMemory->Fill(span.address, span.size, 0);
        m_pMemory->Write(span.address, reinterpret_cast<const std::uint8_t *>(bytes.constData()),
                         static_cast<std::size_t>(bytes.size()));
        return true;
    }

    bool PutNumber(int target, const QByteArray &text)
    {
        const auto field = m_evaluator.Field(target);
        double value = 0;
        std::int64_t bits = 0;
        if (!field)
            return false;
        if (field->isFloat)
            return ParseFloat(text, field->size, &value) && m_evaluator.SetFloat(target, value);
        return ParseBits(text, field->width, &bits) && m_evaluator.SetInteger(target, bits);
    }

    const NodeMap &m_map;
    RegisterMemory *m_pMemory;
    MemoryAccess m_access;
    NodeEvaluator m_evaluator;
};

/// Registers hold what was put into them past all checks, until somebody writes them.
class Held : public Fault
{
public:
    explicit Held(std::vector<Content> contents)
        : m_listContents(std::move(contents))
    {
    }
    void Start(Camera *pCamera) override
    {
        Writer writer(pCamera->Model().nodes, &pCamera->Memory());
        for (const Content &content : m_listContents) {
            const auto span = writer.Span(content.feature);
            if (!span)
                continue;
            Bytes before = Read(*pCamera, *span);
            QString ignored; // it was tried on a copy
            writer.Put(content, &ignored);
            m_listChanges.push_back({*span, std::move(before), Read(*pCamera, *span)});
        }
    }
    void Stop(Camera *pCamera) override
    {
        // Backwards, because several may share a register.
        for (auto change = m_listChanges.rbegin(); change != m_listChanges.rend(); ++change) {
            if (Read(*pCamera, change->span) == change->after)
                pCamera->Memory().Write(change->span.address, change->before.data(), change->span.size);
        }
    }

private:
    struct Change
    {
        RegisterSpan span;
        Bytes before;
        Bytes after;
    };

    static Bytes Read(const Camera &camera, const RegisterSpan &span)
    {
        Bytes bytes(span.size);
        camera.Memory().Read(span.address, bytes.data(), span.size);
        return bytes;
    }

    const std::vector<Content> m_listContents;
    std::vector<Change> m_listChanges;
};

std::unique_ptr<Fault> MakeHeld(const QByteArray &value, const Camera &camera, QString *pError)
{
    const NodeMap &map = camera.Model().nodes;
    RegisterMemory copy = camera.Memory();
    Writer writer(map, &copy);
    std::vector<Content> contents;
    for (const QByteArray &word : value.split(' ')) {
        const int equals = word.indexOf('=');
        const int feature = map.Find(word.left(equals));
        if (equals < 0 || feature < 0) {
            *pError = QStringLiteral("\"%1\" is no FEATURE=VALUE of the description").arg(Text(word));
            return nullptr;
        }
        contents.push_back({feature, word.mid(equals + 1)});
        if (!writer.Put(contents.back(), pError))
            return nullptr;
    }
    return std::make_unique<Held>(std::move(contents));
}

} // namespace

std::vector<FaultKind> RegisterFaultKinds()
{
    return {{"value", Scope::Commands, MakeHeld}};
}

} // namespace KxFarm
