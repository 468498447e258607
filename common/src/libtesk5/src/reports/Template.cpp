#include "reports/Template.h"

#include "reports/Markup.h"

#include <kainjow/mustache.hpp>

#include <cctype>

namespace tesk5 {

namespace {

using Data = kainjow::mustache::data;

std::string flagOf(std::string list) {
    list.front() = static_cast<char>(std::toupper(static_cast<unsigned char>(list.front())));
    return "has" + list;
}

Data dataOf(const mrl::Json& json) {
    switch (json.type()) {
    case mrl::Json::value_t::object: {
        Data object(Data::type::object);
        for (const auto& [name, value] : json.items()) {
            object.set(name, dataOf(value));
            if (value.is_array()) {
                object.set(flagOf(name), !value.empty());
            }
        }
        return object;
    }
    case mrl::Json::value_t::array: {
        Data list(Data::type::list);
        for (const mrl::Json& value : json) {
            list << dataOf(value);
        }
        return list;
    }
    case mrl::Json::value_t::string:
        return {json.get<std::string>()};
    case mrl::Json::value_t::boolean:
        return {json.get<bool>()};
    case mrl::Json::value_t::null:
        return {false};
    default:
        return {json.dump()};
    }
}

} // namespace

std::string filled(std::string_view text, const mrl::Json& data,
                   const std::map<std::string, std::string_view>& parts) {
    Data values = dataOf(data);
    for (const auto& [name, part] : parts) {
        values.set(name, kainjow::mustache::partial([body = part] { return std::string(body); }));
    }
    kainjow::mustache::mustache mustache{std::string(text)};
    mustache.set_custom_escape([](const std::string& value) { return inMarkup(value); });
    return mustache.render(values);
}

} // namespace tesk5
