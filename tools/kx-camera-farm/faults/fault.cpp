#include "faults/fault.h"

#include "faults/faultfilter.h"

namespace KxFarm {

bool Exchange::Succeeded() const
{
    return !dropped && refusedWith == Gvcp::STATUS_SUCCESS &&
           (replies.empty() || LoadBe16(replies.front().bytes.data()) == Gvcp::STATUS_SUCCESS);
}

void Fault::Start(Camera * /*pCamera*/)
{
}
void Fault::BeforeCommand(Exchange * /*pExchange*/)
{
}
void Fault::AfterCommand(Exchange * /*pExchange*/)
{
}
void Fault::Stop(Camera * /*pCamera*/)
{
}

const std::vector<FaultKind> &AllFaultKinds()
{
    static const std::vector<FaultKind> s_kinds = [] {
        std::vector<FaultKind> kinds;
        // The wire last: what it delays or loses is the answer as the other faults left it.
        for (const auto &group : {CommandFaultKinds(), ValueFaultKinds(), RegisterFaultKinds(),
                                  DescriptionFaultKinds(), AnswerFaultKinds(), NetworkFaultKinds()})
            kinds.insert(kinds.end(), group.begin(), group.end());
        return kinds;
    }();
    return s_kinds;
}

namespace {

/// A fault that meets only some of the commands.
class FilteredFault : public Fault
{
public:
    FilteredFault(std::unique_ptr<Fault> pFault, const FaultFilter &filter)
        : m_pFault(std::move(pFault))
        , m_filter(filter)
    {
    }
    void Start(Camera *pCamera) override { m_pFault->Start(pCamera); }
    void Stop(Camera *pCamera) override { m_pFault->Stop(pCamera); }
    void BeforeCommand(Exchange *pExchange) override
    {
        m_bMet = m_filter.Takes(pExchange->request);
        if (m_bMet)
            m_pFault->BeforeCommand(pExchange);
    }
    void AfterCommand(Exchange *pExchange) override
    {
        if (m_bMet)
            m_pFault->AfterCommand(pExchange);
    }

private:
    const std::unique_ptr<Fault> m_pFault;
    FaultFilter m_filter;
    bool m_bMet = false;
};

} // namespace

std::unique_ptr<Fault> MakeFault(const FaultKind &kind, const QByteArray &text, const Camera &camera,
                                 QString *pError)
{
    FaultFilter filter(kind.scope);
    QByteArray value;
    if (!filter.Parse(text, &value, pError))
        return nullptr;
    std::unique_ptr<Fault> pFault = kind.make(value, camera, pError);
    return pFault ? std::make_unique<FilteredFault>(std::move(pFault), filter) : nullptr;
}

} // namespace KxFarm
