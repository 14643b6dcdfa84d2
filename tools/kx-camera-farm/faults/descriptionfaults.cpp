#include "faults/fault.h"
#include "faults/faultfilter.h"
#include "faults/hostiledescription.h"

#include <QStringList>

namespace KxFarm {

namespace {

using Published = std::shared_ptr<const PublishedDescription>;

/// Another description than the camera's own, from the start or once the own one has been read.
class OtherDescription : public Fault
{
public:
    OtherDescription(Published pOther, bool atOnce)
        : m_pOther(std::move(pOther))
        , m_bAtOnce(atOnce)
    {
    }
    void Start(Camera *pCamera) override
    {
        m_pOwn = pCamera->Model().pDescription;
        if (m_bAtOnce)
            pCamera->SetDescription(m_pOther);
    }
    void BeforeCommand(Exchange *pExchange) override
    {
        // Each client that opens the camera asks for the URL first; the second one finds it changed.
        if (!m_bAtOnce && Touches(pExchange->request, Bootstrap::FIRST_URL) && ++m_nOpens == 2)
            pExchange->camera.SetDescription(m_pOther);
    }
    void Stop(Camera *pCamera) override { pCamera->SetDescription(m_pOwn); }

private:
    const Published m_pOther;
    Published m_pOwn;
    const bool m_bAtOnce;
    int m_nOpens = 0;
};

template <bool atOnce>
std::unique_ptr<Fault> MakeDescription(const QByteArray &value, const Camera &camera, QString *pError)
{
    Published pOther = MakeHostileDescription(value, camera.Model());
    if (pOther)
        return std::make_unique<OtherDescription>(std::move(pOther), atOnce);
    *pError = QStringLiteral("\"%1\" is none of %2")
                  .arg(QString::fromUtf8(value), QString::fromUtf8(HostileDescriptionNames().join(", ")));
    return nullptr;
}

} // namespace

std::vector<FaultKind> DescriptionFaultKinds()
{
    return {{"description", Scope::Commands, MakeDescription<true>},
            {"description-changes", Scope::Commands, MakeDescription<false>}};
}

} // namespace KxFarm
