// What the framework must know of the module without the module having said anything.
#pragma once

#include <tesk5/Examination.h>

#include <string_view>

namespace tesk5 {

struct ModuleInfo {
    /// Name of the module, as reports and the resource folder carry it: texts are looked up in
    /// resources/<name>/texts/.
    std::string_view name;
    /// The English text catalogue in JSON, for when the file of it is missing.
    std::string_view builtInTexts;
    /// The module's own look at a device; null when it has none.
    Examination examine = nullptr;
};

/// Defined once in each program that links the framework.
const ModuleInfo& moduleInfo();

} // namespace tesk5
