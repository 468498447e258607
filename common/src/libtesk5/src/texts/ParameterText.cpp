#include "texts/ParameterText.h"

#include <tesk5/Texts.h>

#include "texts/Lists.h"
#include "texts/NumberText.h"
#include "texts/UnknownName.h"

namespace tesk5 {

namespace {

std::vector<std::string> choicesOf(const Parameter& parameter) {
    return textsOf(parameter.choices(), &TeskString::utf8);
}

std::string refusedChoice(const Parameter& parameter, const TeskString& text) {
    const std::string nearest = nearestName(text.utf8(), choicesOf(parameter));
    return message(nearest.empty() ? "INPUT_NO_CHOICE" : "INPUT_NO_CHOICE_NEAREST",
                   {{"Value", text}, {"Nearest", nearest}, {"Choices", domainText(parameter)}});
}

} // namespace

std::string rangeText(const NumberRange& range) {
    return message("NUMBER_RANGE", {{"Lowest", numberText(range.lowest)},
                                    {"Highest", withUnit(range.highest, range.unit)}});
}

std::string domainText(const Parameter& parameter) {
    return parameter.ranged() ? rangeText(parameter.range()) : listInQuotes(choicesOf(parameter));
}

std::string defaultText(const Parameter& parameter, const TeskString& text) {
    const std::optional<Number> number = Number::parse(text.utf8());
    return parameter.ranged() && number
               ? message("LIST_DEFAULT_NUMBER",
                         {{"Value", withUnit(*number, parameter.range().unit)}})
               : message("LIST_DEFAULT", {{"Value", text}});
}

std::string refusalText(const Parameter& parameter, const TeskString& text) {
    const char* const refusal = parameter.refusal(text);
    if (refusal == nullptr) {
        return {};
    }
    if (parameter.type() == DataType::CHOICE()) {
        return refusedChoice(parameter, text);
    }
    // A module's text under the parameter's own name says the range of an unsigned number.
    const TeskString meaning = translation(parameter.name());
    const bool meant = parameter.type() == DataType::UINT32() && meaning != parameter.name();
    return message(meant ? "INPUT_NOT_A_NUMBER_FOR" : refusal,
                   {{"Value", text},
                    {"Meaning", meaning},
                    {"Most", static_cast<mrl::Uint32>(parameter.mostBytes())},
                    {"Range", rangeText(parameter.range())},
                    {"Meant", Number::parse(text.utf8()).value_or(Number()).negated()},
                    {"WithPoint", withDecimalPoint(text.utf8()).value_or(std::string())},
                    {"Decimals", static_cast<mrl::Uint32>(Parameter::MOST_DECIMALS)}});
}

} // namespace tesk5
