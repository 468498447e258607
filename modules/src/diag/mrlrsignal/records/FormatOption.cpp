#include <records/FormatOption.h>

namespace records {

namespace {

constexpr const char* NAME = "--format";

} // namespace

tesk5::CommandOption formatOption(const char* example) {
    return {.name = NAME,
            .argument = "csv|jsonl",
            .help = "HELP_FORMAT",
            .example = example,
            .choices = {"csv", "jsonl"}};
}

std::optional<Format> formatOf(const tesk5::CommandCall& call) {
    const auto given = call.options.find(NAME);
    return given == call.options.end() ? std::nullopt : formatNamed(given->second);
}

} // namespace records
