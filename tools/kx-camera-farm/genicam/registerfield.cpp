#include "genicam/nodeevaluator.h"
#include "wire/bytes.h"

#include <algorithm>
#include <utility>

/// The part of NodeEvaluator that knows how numbers lie in registers.
namespace KxFarm {

std::optional<std::uint32_t> NodeEvaluator::Address(const Node &node, std::size_t length)
{
    // An address is the sum of all its parts (GenApi 2.1, 2.8.3).
    std::int64_t address = 0;
    for (const NodeProperty &property : node.properties) {
        if (property.tag == "Address") {
            address += ParseDescriptionInteger(property.text);
        } else if (property.tag == "pAddress") {
            const auto part = Integer(property.target);
            if (!part)
                return std::nullopt;
            address += *part;
        } else if (property.tag == "pIndex") {
            const int pointed = m_map.Find(property.offset);
            const auto index = Integer(property.target);
            std::optional<std::int64_t> offset = static_cast<std::int64_t>(length);
            if (pointed >= 0)
                offset = Integer(pointed);
            else if (!property.offset.isEmpty())
                offset = ParseDescriptionInteger(property.offset);
            if (!index || !offset)
                return std::nullopt;
            address += *index * *offset;
        }
    }
    return static_cast<std::uint32_t>(address & 0xFFFFFFFF);
}

std::optional<RegisterSpan> NodeEvaluator::Span(int index)
{
    constexpr std::int64_t kLongest = 1 << 20; // no register is longer; a damaged description may say so
    const Node &node = m_map.At(index);
    const auto length = node.Find("pLength")
                            ? Integer(node.Target("pLength"))
                            : std::optional<std::int64_t>(ParseDescriptionInteger(node.Text("Length")));
    if (!length || *length < 1 || *length > kLongest)
        return std::nullopt;
    const auto size = static_cast<std::size_t>(*length);
    const auto address = Address(node, size);
    if (!address || std::uint64_t{*address} + size > (std::uint64_t{1} << 32U))
        return std::nullopt;
    return RegisterSpan{*address, size};
}

std::optional<RegisterField> NodeEvaluator::Field(int index)
{
    const Node &node = m_map.At(index);
    const auto span = Span(index);
    if (!IsRegisterNode(node) || !span || span->size > 8)
        return std::nullopt;
    RegisterField field;
    field.address = span->address;
    field.size = span->size;
    field.bigEndian = node.Text("Endianess") == "BigEndian";
    field.isSigned = node.Text("Sign") == "Signed";
    field.isFloat = node.Is("FloatReg");
    if (field.isFloat && field.size != 4 && field.size != 8)
        return std::nullopt;
    const auto bits = static_cast<unsigned>(field.size * 8);
    field.width = bits;
    if (!node.Is("MaskedIntReg") && !node.Is("StructEntry"))
        return field;
    const QByteArray bit = node.Text("Bit");
    auto low = static_cast<unsigned>(ParseDescriptionInteger(bit.isEmpty() ? node.Text("LSB") : bit));
    auto high = static_cast<unsigned>(ParseDescriptionInteger(bit.isEmpty() ? node.Text("MSB") : bit));
    if (low >= bits || high >= bits)
        return std::nullopt;
    if (field.bigEndian) { // numbered from the most significant bit
        low = bits - 1 - low;
        high = bits - 1 - high;
    }
    if (low > high)
        std::swap(low, high);
    field.shift = low;
    field.width = high - low + 1;
    return field;
}

namespace {

std::uint64_t Mask(const RegisterField &field)
{
    return field.width >= 64 ? ~std::uint64_t{0} : (std::uint64_t{1} << field.width) - 1;
}

std::uint64_t Load(const RegisterField &field, const std::uint8_t *data)
{
    std::uint64_t word = 0;
    for (std::size_t i = 0; i < field.size; ++i)
        word = (word << 8U) | data[field.bigEndian ? i : field.size - 1 - i];
    return word;
}

void Store(const RegisterField &field, std::uint64_t word, std::uint8_t *data)
{
    for (std::size_t i = 0; i < field.size; ++i, word >>= 8U)
        data[field.bigEndian ? field.size - 1 - i : i] = static_cast<std::uint8_t>(word & 0xFFU);
}

} // namespace

std::optional<std::uint64_t> NodeEvaluator::Raw(const RegisterField &field)
{
    std::uint8_t data[8] = {};
    if (!m_pAccess->Read(field.address, data, field.size))
        return std::nullopt;
    return (Load(field, data) >> field.shift) & Mask(field);
}

bool NodeEvaluator::SetRaw(const RegisterField &field, std::uint64_t bits)
{
    std::uint8_t data[8] = {};
    const bool whole = field.width == field.size * 8;
    if (!whole && !m_pAccess->Read(field.address, data, field.size))
        return false;
    const std::uint64_t mask = Mask(field) << field.shift;
    const std::uint64_t word = (Load(field, data) & ~mask) | ((bits << field.shift) & mask);
    Store(field, word, data);
    return m_pAccess->Write(field.address, data, field.size);
}

} // namespace KxFarm
