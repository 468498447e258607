#include "commandline/OcpFile.h"

#include <tesk5/ModuleInfo.h>
#include <tesk5/TextLayout.h>

namespace tesk5 {

namespace {

// As a person would type it.
std::string typed(const RunContext& context) {
    std::string line = context.program;
    for (const std::string& argument : context.arguments) {
        const bool plain = !argument.empty() && argument.find(' ') == std::string::npos;
        line += plain ? " " + argument : " \"" + argument + "\"";
    }
    return line;
}

} // namespace

OcpFile::OcpFile(const std::string& path, bool isNamedAnew, const RunContext& context)
    : m_file(path, isNamedAnew), m_stream(m_file, typed(context)) {}

bool OcpFile::end(const RunRecord& record, const RunContext& context) {
    m_stream.end(record);
    const std::optional<std::string> lost = m_file.close();
    if (lost) {
        writeLine(context.errors, std::string(moduleInfo().name) + ": " + *lost);
    }
    return !lost;
}

} // namespace tesk5
