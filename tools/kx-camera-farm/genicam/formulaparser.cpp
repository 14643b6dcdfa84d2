#include "genicam/formulaparser.h"

#include <algorithm>
#include <cctype>
#include <cmath>
#include <cstring>

namespace KxFarm {

namespace {

constexpr int kMaxDepth = 200;  // of parentheses; a description may be hostile
constexpr int kMaxHeight = 256; // of the tree: "1 + 1 + ..." needs no parentheses; real ones stay below 90

double Sign(double x)
{
    return x > 0 ? 1 : (x < 0 ? -1 : 0);
}
double Negated(double x)
{
    return -x;
}
double Absolute(double x)
{
    return std::fabs(x);
}
double Sine(double x)
{
    return std::sin(x);
}
double Cosine(double x)
{
    return std::cos(x);
}
double Tangent(double x)
{
    return std::tan(x);
}
double ArcSine(double x)
{
    return std::asin(x);
}
double ArcCosine(double x)
{
    return std::acos(x);
}
double ArcTangent(double x)
{
    return std::atan(x);
}
double Exponential(double x)
{
    return std::exp(x);
}
double Logarithm(double x)
{
    return std::log(x);
}
double DecimalLogarithm(double x)
{
    return std::log10(x);
}
double Root(double x)
{
    return std::sqrt(x);
}
double Truncated(double x)
{
    return std::trunc(x);
}
double Rounded(double x)
{
    return std::round(x);
}
double Floor(double x)
{
    return std::floor(x);
}
double Ceiling(double x)
{
    return std::ceil(x);
}

struct Function
{
    const char *name;
    double (*function)(double);
};

constexpr Function kFunctions[] = {{"SGN", Sign},        {"NEG", Negated},     {"ABS", Absolute},
                                   {"SIN", Sine},        {"COS", Cosine},      {"TAN", Tangent},
                                   {"ASIN", ArcSine},    {"ACOS", ArcCosine},  {"ATAN", ArcTangent},
                                   {"EXP", Exponential}, {"LN", Logarithm},    {"LG", DecimalLogarithm},
                                   {"SQRT", Root},       {"TRUNC", Truncated}, {"ROUND", Rounded},
                                   {"FLOOR", Floor},     {"CEIL", Ceiling}};

bool IsNamePart(char c)
{
    return std::isalnum(static_cast<unsigned char>(c)) != 0 || c == '_' || c == '.';
}

} // namespace

FormulaParser::FormulaParser(const QByteArray &text, Formula *pFormula)
    : m_text(text)
    , m_pFormula(pFormula)
{
}

bool FormulaParser::Parse()
{
    return Condition() >= 0 && Peek() == '\0';
}

char FormulaParser::Peek()
{
    while (m_nPosition < m_text.size() &&
           std::isspace(static_cast<unsigned char>(m_text.at(m_nPosition))) != 0)
        ++m_nPosition;
    return m_nPosition < m_text.size() ? m_text.at(m_nPosition) : '\0';
}

bool FormulaParser::Take(const char *token)
{
    Peek();
    if (std::strncmp(m_text.constData() + m_nPosition, token, std::strlen(token)) != 0)
        return false;
    m_nPosition += static_cast<int>(std::strlen(token));
    return true;
}

/// -1 when the tree gets too high.
int FormulaParser::Add(Op op, int a, int b, int c)
{
    Formula::Node node;
    node.op = op;
    node.operands[0] = a;
    node.operands[1] = b;
    node.operands[2] = c;
    for (const int operand : node.operands) {
        if (operand >= 0)
            node.height =
                std::max(node.height, 1 + m_pFormula->m_listNodes[static_cast<std::size_t>(operand)].height);
    }
    m_pFormula->m_listNodes.push_back(node);
    return node.height > kMaxHeight ? -1 : static_cast<int>(m_pFormula->m_listNodes.size()) - 1;
}

int FormulaParser::Condition()
{
    if (++m_nDepth > kMaxDepth)
        return -1;
    const int question = Binary(0);
    int result = question;
    if (question >= 0 && Take("?")) {
        const int yes = Condition();
        const int no = yes >= 0 && Take(":") ? Condition() : -1;
        result = no >= 0 ? Add(Op::Condition, question, yes, no) : -1;
    }
    --m_nDepth;
    return result;
}

const std::pair<const char *, Formula::Op> *FormulaParser::TakeOperator(int level)
{
    // From the loosest to the tightest; within a level the longer spelling first.
    static const std::vector<std::vector<std::pair<const char *, Op>>> kLevels = {
        {{"||", Op::LogicalOr}},
        {{"&&", Op::LogicalAnd}},
        {{"|", Op::Or}},
        {{"^", Op::Xor}},
        {{"&", Op::And}},
        {{"=", Op::Equal}, {"<>", Op::NotEqual}},
        {{"<=", Op::LessEqual}, {">=", Op::GreaterEqual}, {"<", Op::Less}, {">", Op::Greater}},
        {{">>", Op::ShiftRight}, {"<<", Op::ShiftLeft}},
        {{"-", Op::Subtract}, {"+", Op::Add}},
        {{"%", Op::Remainder}, {"/", Op::Divide}, {"*", Op::Multiply}},
    };
    if (level >= static_cast<int>(kLevels.size()))
        return nullptr;
    Peek();
    const char *rest = m_text.constData() + m_nPosition;
    for (const auto &candidate : kLevels[static_cast<std::size_t>(level)]) {
        const std::size_t length = std::strlen(candidate.first);
        if (std::strncmp(rest, candidate.first, length) != 0)
            continue;
        // "|" is not the first half of "||", "<" not of "<<" or "<>", "*" not of "**".
        const char next = rest[length];
        const bool doubled = length == 1 && std::strchr("|&<>*", rest[0]) && next == rest[0];
        const bool unequal = length == 1 && rest[0] == '<' && next == '>';
        if (doubled || unequal)
            continue;
        m_nPosition += static_cast<int>(length);
        return &candidate;
    }
    return nullptr;
}

int FormulaParser::Binary(int level)
{
    constexpr int kLevelCount = 10;
    if (level == kLevelCount)
        return Unary();
    int left = Binary(level + 1);
    while (left >= 0) {
        const auto *found = TakeOperator(level);
        if (!found)
            break;
        const int right = Binary(level + 1);
        left = right >= 0 ? Add(found->second, left, right) : -1;
    }
    return left;
}

int FormulaParser::Unary()
{
    if (++m_nDepth > kMaxDepth)
        return -1;
    int result = -1;
    if (Take("-")) {
        const int operand = Unary();
        result = operand >= 0 ? Add(Op::Negate, operand) : -1;
    } else if (Take("~")) {
        const int operand = Unary();
        result = operand >= 0 ? Add(Op::Complement, operand) : -1;
    } else if (Take("+")) {
        result = Unary();
    } else {
        result = Primary();
        if (result >= 0 && Take("**")) {
            const int exponent = Unary();
            result = exponent >= 0 ? Add(Op::Power, result, exponent) : -1;
        }
    }
    --m_nDepth;
    return result;
}

int FormulaParser::Primary()
{
    if (Take("(")) {
        const int inner = Condition();
        return inner >= 0 && Take(")") ? inner : -1;
    }
    const char c = Peek();
    if (std::isdigit(static_cast<unsigned char>(c)) != 0 || c == '.')
        return Number();
    return IsNamePart(c) ? Name() : -1;
}

int FormulaParser::Number()
{
    const char *start = m_text.constData() + m_nPosition;
    const bool hex = start[0] == '0' && (start[1] == 'x' || start[1] == 'X');
    int length = hex ? 2 : 0;
    const auto isPart = [&](char c) {
        if (hex)
            return std::isxdigit(static_cast<unsigned char>(c)) != 0;
        const bool exponentSign =
            (c == '-' || c == '+') && length > 0 && (start[length - 1] == 'e' || start[length - 1] == 'E');
        return std::isdigit(static_cast<unsigned char>(c)) != 0 || c == '.' || c == 'e' || c == 'E' ||
               exponentSign;
    };
    while (isPart(start[length]))
        ++length;
    const QByteArray text(start, length);
    bool good = false;
    Formula::Node node;
    if (hex) {
        node.integer = static_cast<std::int64_t>(text.mid(2).toULongLong(&good, 16));
        node.number = static_cast<double>(node.integer);
    } else {
        node.number = text.toDouble(&good); // by the C locale
        bool whole = false;
        node.integer = text.toLongLong(&whole);
        if (!whole && good && std::fabs(node.number) < 9e18)
            node.integer = static_cast<std::int64_t>(node.number);
    }
    m_nPosition += length;
    if (!good)
        return -1;
    m_pFormula->m_listNodes.push_back(node);
    return static_cast<int>(m_pFormula->m_listNodes.size()) - 1;
}

int FormulaParser::Name()
{
    const int start = m_nPosition;
    while (m_nPosition < m_text.size() && IsNamePart(m_text.at(m_nPosition)))
        ++m_nPosition;
    const QByteArray name = m_text.mid(start, m_nPosition - start);
    if (Peek() == '(')
        return Call(name.toUpper());
    Formula::Node node;
    node.op = Op::Variable;
    node.name = name;
    m_pFormula->m_listNodes.push_back(node);
    return static_cast<int>(m_pFormula->m_listNodes.size()) - 1;
}

int FormulaParser::Call(const QByteArray &name)
{
    Take("(");
    const int argument = Condition();
    if (argument >= 0 && name == "ROUND" &&
        Take(",")) { // the number of digits: whole numbers do for a camera
        if (Condition() < 0)
            return -1;
    }
    if (argument < 0 || !Take(")"))
        return -1;
    for (const Function &function : kFunctions) {
        if (name == function.name) {
            const int index = Add(Op::Function, argument);
            m_pFormula->m_listNodes.back().function = function.function;
            return index;
        }
    }
    return -1;
}

} // namespace KxFarm
