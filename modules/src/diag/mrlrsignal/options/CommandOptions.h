// What the commands about measurements have in common: their options, and their lines of output.
#pragma once

#include <tesk5/ModuleCommand.h>
#include <tesk5/RunContext.h>

#include <optional>
#include <string>
#include <vector>

namespace options {

/// The option that names the measurements, the same for each command that takes it.
inline constexpr const char* FROM_OPTION = "--from";
inline constexpr const char* FROM_EXAMPLE = "limits --from good.csv";

/// The option that gives a level that is known.
inline constexpr const char* REFERENCE = "--reference";
inline constexpr const char* REFERENCE_EXAMPLE =
    "study --type1 --reference=-50 --from readings.csv";

/// The text of an option; empty when it was not given.
std::string givenOption(const tesk5::CommandCall& call, const char* name);

/// The same for --from, without which `command` can do nothing.
/// Failure: throws tesk5::BadInput
std::string neededOption(const tesk5::CommandCall& call, const char* name, const char* command);

/// Refuses two of the options that name one file: what is written would take the place of what was
/// measured.
/// Failure: throws tesk5::BadInput
void refuseSharedFiles(const tesk5::CommandCall& call, std::initializer_list<const char*> options);

/// The number that an option gives; none when it was not given.
/// Failure: throws tesk5::BadInput with the text `refusal`, which has the placeholders {Text} and
/// {Greatest}, for what is no number from 0 to `greatest`
std::optional<double> decimalOption(const tesk5::CommandCall& call, const char* name, int greatest,
                                    const char* refusal);

/// The whole number of an option that has a range, which the command line has checked; `otherwise`
/// when it was not given.
int wholeOption(const tesk5::CommandCall& call, const char* name, int otherwise);

/// The level in dBm that an option gives; none when it was not given.
/// Failure: throws tesk5::BadInput for what is no level
std::optional<double> levelOption(const tesk5::CommandCall& call, const char* name);

/// Writes lines, each behind `indent`, at once. They may have names in them that come from outside.
void printLines(tesk5::RunContext& context, const std::vector<std::string>& lines,
                const char* indent = "");

} // namespace options
