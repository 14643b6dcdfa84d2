#ifndef KXCAMERACONTROL_FEATURES_FORMULANODES_H
#define KXCAMERACONTROL_FEATURES_FORMULANODES_H

#include <arv.h>

namespace kxcc {

/// Makes every swiss knife and converter of this process evaluate its formulas by GenApiFormula, with an
/// error (ARV_GC_ERROR_INVALID_PVALUE) when one has no value: Aravis would take it for 0, and write 0. A
/// converter whose formula has no value writes nothing. Registers refuse a length that they cannot have.
///
/// Once is enough; further calls do nothing. Call before the first description is parsed.
void InstallFormulas();

/// Whether the node's own formulas, constants and expressions can be evaluated, given values of its
/// variables. True for a node that has no formula and needs none.
bool AreFormulasSound(ArvGcNode *pNode);

/// "Offset" or "pOffset" of a pIndex; null when it has none. Borrowed.
const char *IndexAttribute(ArvGcPropertyNode *pIndex, const char *szName);

} // namespace kxcc

#endif
