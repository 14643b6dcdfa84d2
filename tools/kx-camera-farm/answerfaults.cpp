#include "fault.h"

namespace KxFarm {

std::vector<FaultKind> AnswerFaultKinds()
{
    return {};
}

} // namespace KxFarm
