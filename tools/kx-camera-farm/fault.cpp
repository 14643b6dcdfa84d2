#include "fault.h"

namespace KxFarm {

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

std::vector<FaultKind> AllFaultKinds()
{
    std::vector<FaultKind> kinds;
    // The wire last: what it delays or loses is the answer as the other faults left it.
    for (const auto &group : {CommandFaultKinds(), AnswerFaultKinds(), NetworkFaultKinds()})
        kinds.insert(kinds.end(), group.begin(), group.end());
    return kinds;
}

} // namespace KxFarm
