// Writes an XML document from front to back, indented for people.
#pragma once

#include <string>
#include <utility>
#include <vector>

namespace tesk5 {

/// Elements nest as they are opened and closed; names are the program's own, everything else may
/// come from strangers and goes through inMarkup(). Not synchronised.
class XmlWriter {
public:
    using Attributes = std::vector<std::pair<const char*, std::string>>;

    XmlWriter();

    void open(const char* element, const Attributes& attributes = {});
    void close();
    /// A whole element with lines of text, or none.
    void leaf(const char* element, const Attributes& attributes,
              const std::vector<std::string>& lines = {});

    /// The document; every element must be closed.
    const std::string& text() const { return m_text; }

private:
    void begin(const char* element, const Attributes& attributes);

    std::string m_text;
    std::vector<const char*> m_open;
};

} // namespace tesk5
