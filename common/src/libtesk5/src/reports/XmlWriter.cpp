#include "reports/XmlWriter.h"

#include "reports/Markup.h"

namespace tesk5 {

namespace {
constexpr std::size_t INDENT = 2;
} // namespace

XmlWriter::XmlWriter() : m_text("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n") {}

void XmlWriter::begin(const char* element, const Attributes& attributes) {
    m_text += std::string(INDENT * m_open.size(), ' ') + "<" + element;
    for (const auto& [name, value] : attributes) {
        m_text += std::string(" ") + name + "=\"" + inMarkup(value) + "\"";
    }
}

void XmlWriter::open(const char* element, const Attributes& attributes) {
    begin(element, attributes);
    m_text += ">\n";
    m_open.push_back(element);
}

void XmlWriter::close() {
    const char* element = m_open.back();
    m_open.pop_back();
    m_text += std::string(INDENT * m_open.size(), ' ') + "</" + element + ">\n";
}

void XmlWriter::leaf(const char* element, const Attributes& attributes,
                     const std::vector<std::string>& lines) {
    begin(element, attributes);
    if (lines.empty()) {
        m_text += "/>\n";
        return;
    }
    m_text += ">";
    for (std::size_t i = 0; i < lines.size(); ++i) {
        m_text += (i == 0 ? "" : "\n") + inMarkup(lines[i]);
    }
    m_text += std::string("</") + element + ">\n";
}

} // namespace tesk5
