#ifndef KXCAMERAFARM_FORMULAPARSER_H
#define KXCAMERAFARM_FORMULAPARSER_H

#include "genicam/formula.h"

namespace KxFarm {

/// Recursive descent over the text of a formula; fills the formula's nodes.
class FormulaParser
{
public:
    FormulaParser(const QByteArray &text, Formula *pFormula);
    bool Parse();

private:
    using Op = Formula::Op;

    int Condition();
    int Binary(int level);
    int Unary();
    int Primary();
    int Number();
    int Name();
    int Call(const QByteArray &name);

    bool Take(const char *token);
    const std::pair<const char *, Op> *TakeOperator(int level);
    char Peek();
    int Add(Op op, int a, int b = -1, int c = -1);

    const QByteArray m_text;
    Formula *m_pFormula;
    int m_nPosition = 0;
    int m_nDepth = 0;
};

} // namespace KxFarm

#endif
