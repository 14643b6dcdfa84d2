#ifndef UI_OPERATETYPE_H
#define UI_OPERATETYPE_H

/// Kinds of operation. The buttons say 0 and 1, the workers 2 and 3; the bit that differs does not count.
namespace OperateType {

const unsigned int kButtonImport = 0;
const unsigned int kButtonExport = 1;

inline bool IsImport(unsigned int nType)
{
    return (nType | 2u) == 2u;
}

inline bool IsExport(unsigned int nType)
{
    return (nType | 2u) == 3u;
}

} // namespace OperateType

#endif
