// What the framework must know of the module before the module has said anything.
#pragma once

#include <string_view>

namespace tesk5 {

struct ModuleInfo {
    /// Name of the module, as reports and the resource folder carry it: texts are looked up in
    /// resources/<name>/texts/.
    std::string_view name;
    /// The English text catalogue in JSON, for when the file of it is missing.
    std::string_view builtInTexts;
};

/// Defined once in each program that links the framework.
const ModuleInfo& moduleInfo();

} // namespace tesk5
