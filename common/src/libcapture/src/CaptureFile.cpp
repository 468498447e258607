#include <capture/CaptureFile.h>

#include "Blocks.h"
#include "Shown.h"

#include <nativewifi/Guid.h>

#include <mrl/Clock.h>
#include <mrl/Unicode.h>

#include <algorithm>
#include <cmath>
#include <functional>

namespace capture {

namespace {

using mrl::Json;
using std::chrono::system_clock;

constexpr const char* MARK = "capture";

std::string guidInText(const GUID& guid) {
    return mrl::toUtf8(nativewifi::guidText(guid).view());
}

std::string hex(const Bytes& bytes) {
    constexpr char DIGITS[] = "0123456789abcdef";
    std::string text;
    text.reserve(bytes.size() * 2);
    for (const unsigned char byte : bytes) {
        text += DIGITS[byte >> 4];
        text += DIGITS[byte & 0xF];
    }
    return text;
}

// Texts come from drivers too; what is no UTF-8 is mended rather than thrown at.
std::string compact(const Json& value) {
    return value.dump(-1, ' ', false, Json::error_handler_t::replace);
}

Json millisecondsOf(Moment moment) {
    constexpr double MICROSECONDS = 1000.0;
    return static_cast<double>(moment.count()) / MICROSECONDS;
}

Json outputOf(const Answer& answer) {
    Json output = Json::object();
    const auto put = [&output](const char* key, const auto& value) {
        if (value) {
            output[key] = *value;
        }
    };
    put("handle", answer.handle);
    put("version", answer.version);
    put("dataSize", answer.dataSize);
    put("valueType", answer.valueType);
    put("previousSource", answer.previousSource);
    if (answer.guid) {
        output["guid"] = guidInText(*answer.guid);
    }
    put("text", answer.text);
    if (answer.block) {
        output["block"] = answer.block->bytes ? Json(answer.block->name) : Json(nullptr);
        if (answer.block->bytes) {
            output["bytes"] = hex(*answer.block->bytes);
        }
    }
    return output;
}

void put(Json& line, const Call& call) {
    line["call"] = call.request.function;
    line["arguments"] = call.request.arguments;
    line["result"] = call.answer.result;
    if (const Json name = shownResult(call.answer.result); !name.is_null()) {
        line["resultName"] = name;
    }
    line["took"] = millisecondsOf(call.took);
    line["output"] = outputOf(call.answer);
    if (const Json shown = shownCall(call); !shown.empty()) {
        line["shown"] = shown;
    }
}

void put(Json& line, const Notification& notification) {
    line["notification"] = {{"client", notification.client},
                            {"source", notification.source},
                            {"code", notification.code},
                            {"interface", guidInText(notification.interfaceGuid)},
                            {"data", hex(notification.data)}};
    if (const Json shown = shownNotification(notification); !shown.is_null()) {
        line["shown"] = shown;
    }
}

void put(Json& line, const Adapters& adapters) {
    Json& list = line["adapters"] = Json::array();
    for (const Adapter& adapter : adapters) {
        list.push_back({{"name", adapter.name},
                        {"guid", guidInText(adapter.guid)},
                        {"mobileBroadband", adapter.mobileBroadband}});
    }
}

void put(Json& line, const End& end) {
    line["end"] = {{"exitValue", end.exitValue}};
}

// One value of a line, with what refuses it.
class Reader {
public:
    Reader(const Json& value, std::size_t line) : m_value(value), m_line(line) {}

    [[noreturn]] void refuse(const std::string& reason) const {
        throw CaptureError(m_line, reason);
    }
    bool has(const char* key) const { return m_value.is_object() && m_value.contains(key); }
    Reader at(const char* key) const {
        if (!has(key)) {
            refuse(std::string("\"") + key + "\" is missing");
        }
        return {m_value.at(key), m_line};
    }
    bool isNull() const { return m_value.is_null(); }
    const Json& object() const { return as(&Json::is_object, "an object was expected"); }
    std::vector<Reader> items() const {
        std::vector<Reader> all;
        for (const Json& item : as(&Json::is_array, "a list was expected")) {
            all.emplace_back(item, m_line);
        }
        return all;
    }
    std::string text() const {
        return as(&Json::is_string, "a text was expected").get<std::string>();
    }
    bool flag() const { return as(&Json::is_boolean, "true or false was expected").get<bool>(); }
    template <typename Number>
    Number number() const {
        as(&Json::is_number_integer, "a whole number was expected");
        const bool positive = m_value.is_number_unsigned();
        if (positive ? !std::in_range<Number>(m_value.get<std::uint64_t>())
                     : !std::in_range<Number>(m_value.get<std::int64_t>())) {
            refuse("the number is out of range");
        }
        return m_value.get<Number>();
    }
    Moment moment() const {
        constexpr double MICROSECONDS = 1000.0;
        constexpr double LONGEST = 1e10; // four months
        const double value =
            as(&Json::is_number, "a time in milliseconds was expected").get<double>();
        if (!(value >= 0 && value <= LONGEST)) {
            refuse("the time is out of range");
        }
        return Moment(std::llround(value * MICROSECONDS));
    }
    GUID guid() const {
        const std::optional<GUID> parsed = nativewifi::parseGuid(mrl::toUtf16(text()));
        if (!parsed) {
            refuse("a GUID of 36 characters was expected");
        }
        return *parsed;
    }
    Bytes bytes() const {
        const std::string digits = text();
        if (digits.size() % 2 != 0 || digits.size() / 2 > LARGEST_BLOCK) {
            refuse("the block has an odd number of digits, or more than " +
                   std::to_string(LARGEST_BLOCK) + " bytes");
        }
        const auto valueOf = [this](char digit) -> unsigned {
            if (digit >= '0' && digit <= '9') {
                return static_cast<unsigned>(digit - '0');
            }
            if (digit < 'a' || digit > 'f') {
                refuse("a block has other characters than hexadecimal digits");
            }
            return static_cast<unsigned>(digit - 'a' + 10);
        };
        Bytes all(digits.size() / 2);
        for (std::size_t i = 0; i < all.size(); ++i) {
            all[i] = static_cast<unsigned char>(valueOf(digits[2 * i]) << 4 |
                                                valueOf(digits[2 * i + 1]));
        }
        return all;
    }
    std::size_t line() const { return m_line; }

private:
    const Json& as(bool (Json::*is)() const noexcept, const char* reason) const {
        if (!(m_value.*is)()) {
            refuse(reason);
        }
        return m_value;
    }

    const Json& m_value;
    std::size_t m_line;
};

template <typename Target, typename Read>
void readOptional(const Reader& from, const char* key, Target& target, Read read) {
    if (from.has(key)) {
        target = std::invoke(read, from.at(key));
    }
}

Answer readAnswer(const Reader& line, const std::string& function) {
    Answer answer;
    answer.result = line.at("result").number<DWORD>();
    const Reader output = line.at("output");
    output.object();
    readOptional(output, "handle", answer.handle, &Reader::text);
    readOptional(output, "version", answer.version, &Reader::number<DWORD>);
    readOptional(output, "dataSize", answer.dataSize, &Reader::number<DWORD>);
    readOptional(output, "valueType", answer.valueType, &Reader::number<std::int32_t>);
    readOptional(output, "previousSource", answer.previousSource, &Reader::number<DWORD>);
    readOptional(output, "guid", answer.guid, &Reader::guid);
    readOptional(output, "text", answer.text, &Reader::text);
    if (!output.has("block")) {
        return answer;
    }
    Block& block = answer.block.emplace();
    if (output.at("block").isNull()) {
        return answer;
    }
    block.name = output.at("block").text();
    block.bytes = output.at("bytes").bytes();
    if (const ListShape* shape = listShapeOf(function)) {
        const std::string mistake = mistakeIn(*shape, *block.bytes);
        if (!mistake.empty()) {
            line.refuse(mistake);
        }
    } else if (answer.dataSize != block.bytes->size()) {
        line.refuse("\"dataSize\" is not the size of the block");
    }
    return answer;
}

Call readCall(const Reader& line) {
    Call call;
    call.request = {line.at("call").text(), line.at("arguments").object()};
    call.took = line.at("took").moment();
    call.answer = readAnswer(line, call.request.function);
    return call;
}

Notification readNotification(const Reader& value) {
    return {.client = value.at("client").text(),
            .source = value.at("source").number<DWORD>(),
            .code = value.at("code").number<DWORD>(),
            .interfaceGuid = value.at("interface").guid(),
            .data = value.at("data").bytes()};
}

Adapters readAdapters(const Reader& value) {
    Adapters all;
    for (const Reader& item : value.items()) {
        all.push_back({.name = item.at("name").text(),
                       .guid = item.at("guid").guid(),
                       .mobileBroadband = item.at("mobileBroadband").flag()});
    }
    return all;
}

Step readStep(const Reader& line) {
    Step step;
    step.line = line.line();
    step.at = line.at("at").moment();
    step.thread = line.at("thread").number<std::uint32_t>();
    if (line.has("call")) {
        step.what = readCall(line);
    } else if (line.has("notification")) {
        step.what = readNotification(line.at("notification"));
    } else if (line.has("adapters")) {
        step.what = readAdapters(line.at("adapters"));
    } else if (line.has("end")) {
        step.what = End{line.at("end").at("exitValue").number<int>()};
    } else {
        line.refuse("the line is neither a call nor a notification, adapters or the end");
    }
    return step;
}

system_clock::time_point timeOf(const Reader& value) {
    const std::optional<system_clock::time_point> time = mrl::parseUtc(value.text());
    if (!time) {
        value.refuse("\"started\" is no time such as 2026-11-20T19:55:01.123Z");
    }
    return *time;
}

void readHeader(const Reader& line, Capture& capture) {
    if (line.at(MARK).number<int>() != VERSION) {
        line.refuse("the capture is of another version; this program reads version " +
                    std::to_string(VERSION));
    }
    capture.started = timeOf(line.at("started"));
    capture.run = line.at("run").object();
}

} // namespace

std::string Request::text() const {
    return function + " " + compact(arguments);
}

std::string headerLine(system_clock::time_point started, bool namesHidden, const Json& run) {
    return compact({{MARK, VERSION},
                    {"started", mrl::utcText(started)},
                    {"names", namesHidden ? "hidden" : "shown"},
                    {"run", run}});
}

std::string stepLine(const Step& step) {
    Json line{{"at", millisecondsOf(step.at)}, {"thread", step.thread}};
    std::visit([&line](const auto& what) { put(line, what); }, step.what);
    return compact(line);
}

bool looksLikeCapture(std::string_view text) {
    return text.starts_with(std::string("{\"") + MARK + "\":");
}

Capture readCapture(std::string_view text) {
    Capture capture;
    std::size_t number = 0;
    for (std::size_t end = text.find('\n'); end != std::string_view::npos; end = text.find('\n')) {
        const std::string_view line = text.substr(0, end);
        text.remove_prefix(end + 1);
        ++number;
        if (line.size() > LONGEST_LINE || number > MOST_LINES) {
            throw CaptureError(number, line.size() > LONGEST_LINE ? "the line is too long"
                                                                  : "there are too many lines");
        }
        Json value;
        try {
            value = mrl::parseJson(line);
        } catch (const mrl::JsonFailure& failure) {
            throw CaptureError(number, failure.what());
        }
        const Reader reader(value, number);
        if (number == 1) {
            readHeader(reader, capture);
        } else {
            capture.steps.push_back(readStep(reader));
        }
    }
    if (number == 0) {
        throw CaptureError(1, "there is no whole line");
    }
    return capture;
}

} // namespace capture
