// Writes netlink attributes: the other direction of Messages.h.
#pragma once

#include "Records.h"

#include <linux/netlink.h>

#include <cstring>
#include <span>

namespace nativewifi::linux_radio {

/// Attributes one behind the other, each padded to four bytes.
class AttributeWriter {
public:
    AttributeWriter& add(unsigned type, std::span<const std::uint8_t> body) {
        const nlattr head{static_cast<std::uint16_t>(sizeof head + body.size()),
                          static_cast<std::uint16_t>(type)};
        const std::size_t place = m_bytes.size();
        m_bytes.resize(place + NLA_ALIGN(head.nla_len));
        std::memcpy(m_bytes.data() + place, &head, sizeof head);
        std::copy(body.begin(), body.end(),
                  m_bytes.begin() + static_cast<std::ptrdiff_t>(place + sizeof head));
        return *this;
    }
    template <typename Number>
    AttributeWriter& addNumber(unsigned type, Number value) {
        std::uint8_t body[sizeof value];
        std::memcpy(body, &value, sizeof value);
        return add(type, body);
    }
    AttributeWriter& addNested(unsigned type, const AttributeWriter& inside) {
        return add(type | NLA_F_NESTED, inside.m_bytes);
    }

    const Bytes& bytes() const { return m_bytes; }

private:
    Bytes m_bytes;
};

} // namespace nativewifi::linux_radio
