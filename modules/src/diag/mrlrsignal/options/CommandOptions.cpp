#include <options/CommandOptions.h>

#include <readings/DriverNumbers.h>

#include <tesk5/Number.h>
#include <tesk5/ReportFile.h>
#include <tesk5/TextLayout.h>
#include <tesk5/Texts.h>

#include <algorithm>
#include <iterator>

namespace options {

using tesk5::BadInput;
using tesk5::CommandCall;
using tesk5::message;
using tesk5::Number;

std::string givenOption(const CommandCall& call, const char* name) {
    const auto found = call.options.find(name);
    return found == call.options.end() ? std::string() : found->second;
}

std::string neededOption(const CommandCall& call, const char* name, const char* command) {
    std::string text = givenOption(call, name);
    if (text.empty()) {
        throw BadInput{message("COMMAND_NEEDS_FROM", {{"Command", command}})};
    }
    return text;
}

void refuseSharedFiles(const CommandCall& call, std::initializer_list<const char*> options) {
    std::vector<const char*> given;
    std::ranges::copy_if(options, std::back_inserter(given),
                         [&call](const char* name) { return !givenOption(call, name).empty(); });
    for (auto one = given.begin(); one != given.end(); ++one) {
        for (auto other = one + 1; other != given.end(); ++other) {
            tesk5::refuseSharedFile(*other, givenOption(call, *other), *one,
                                    givenOption(call, *one));
        }
    }
}

std::optional<double> decimalOption(const CommandCall& call, const char* name, int greatest,
                                    const char* refusal) {
    const std::string text = givenOption(call, name);
    if (text.empty()) {
        return std::nullopt;
    }
    const std::optional<Number> number = Number::parse(text);
    if (!number || *number < Number(0) || *number > Number(greatest)) {
        throw BadInput{message(refusal, {{"Text", text}, {"Greatest", greatest}})};
    }
    return number->toDouble();
}

int wholeOption(const CommandCall& call, const char* name, int otherwise) {
    const Number number = Number::parse(givenOption(call, name)).value_or(Number(otherwise));
    return static_cast<int>(number.toDouble());
}

std::optional<double> levelOption(const CommandCall& call, const char* name) {
    const std::string text = givenOption(call, name);
    if (text.empty()) {
        return std::nullopt;
    }
    const std::optional<Number> number = Number::parse(text);
    if (!number || !readings::isLevelInDbm(number->toDouble())) {
        throw BadInput{message("OPTION_NO_LEVEL", {{"Option", name}, {"Text", text}})};
    }
    return number->toDouble();
}

void printLines(tesk5::RunContext& context, const std::vector<std::string>& lines,
                const char* indent) {
    for (const std::string& line : lines) {
        tesk5::writeLine(context.output, indent + line);
    }
}

} // namespace options
