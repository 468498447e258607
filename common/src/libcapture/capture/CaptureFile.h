// The file of a capture: JSON Lines, each line one step of the run. docs/captures.md describes it.
//
// A capture comes from another PC, perhaps damaged or forged. So the reader bounds what it takes,
// and checks each block against its own counts: the program reads the lists as far as these say.
#pragma once

#include <nativewifi/WlanTypes.h>

#include <mrl/Json.h>

#include <chrono>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace capture {

using Bytes = std::vector<unsigned char>;
/// Since the capture began.
using Moment = std::chrono::microseconds;

inline constexpr int VERSION = 1;

// More than half an hour of polling a hundred networks makes; and enough for one list of a
// thousand.
inline constexpr std::size_t LARGEST_FILE = 0x10000000;
inline constexpr std::size_t LONGEST_LINE = 0x400000;
inline constexpr std::size_t LARGEST_BLOCK = 0x100000;
inline constexpr std::size_t MOST_LINES = 1000000;

/// Why a capture cannot be used. what() is the reason, in English.
class CaptureError : public std::runtime_error {
public:
    CaptureError(std::size_t inLine, const std::string& reason)
        : std::runtime_error(reason), line(inLine) {}

    std::size_t line; ///< from 1
};

/// What a call asked for. Pointers are "set" or null in the arguments, handles "h1", "h2", ..., in
/// the order in which they were opened, blocks likewise "b1", "b2", ...
struct Request {
    std::string function;
    mrl::Json arguments = mrl::Json::object();

    friend bool operator==(const Request&, const Request&) = default;
    /// The call in one line, for people.
    std::string text() const;
};

/// A block of memory that a call handed out.
struct Block {
    std::string name;           ///< empty: a null pointer
    std::optional<Bytes> bytes; ///< none: a null pointer
};

/// What a call answered: what it returned and wrote. Outputs that it left alone are absent.
struct Answer {
    DWORD result = 0;
    std::optional<std::string> handle = {};
    std::optional<DWORD> version = {}; ///< negotiated
    std::optional<DWORD> dataSize = {};
    std::optional<std::int32_t> valueType = {};
    std::optional<DWORD> previousSource = {};
    std::optional<GUID> guid = {};
    std::optional<std::string> text = {}; ///< UTF-8
    std::optional<Block> block = {};
};

struct Call {
    Request request;
    Answer answer;
    Moment took{0};
};

struct Notification {
    std::string client; ///< the handle that it was registered with
    DWORD source = 0;
    DWORD code = 0;
    GUID interfaceGuid{};
    Bytes data = {};
};

/// One network adapter as the system's IP layer lists it.
struct Adapter {
    std::string name; ///< UTF-8
    GUID guid{};
    bool mobileBroadband = false;
};
using Adapters = std::vector<Adapter>;

/// The end of the captured command.
struct End {
    int exitValue = 0;
};

struct Step {
    Moment at{0};
    std::uint32_t thread = 1; ///< in the order of their first step
    std::variant<Call, Notification, Adapters, End> what;
    std::size_t line = 0; ///< in the file; 0 for a step that was not read
};

/// The first line, and the steps that follow it.
struct Capture {
    std::chrono::system_clock::time_point started; ///< to the millisecond
    mrl::Json run;                                 ///< what was captured; an object
    std::vector<Step> steps;
};

/// The first line, without its end.
std::string headerLine(std::chrono::system_clock::time_point started, bool namesHidden,
                       const mrl::Json& run);
/// The line of a step, without its end. What people read besides the exact bytes is in it.
std::string stepLine(const Step& step);

/// Whether a text begins as a capture does.
bool looksLikeCapture(std::string_view text);

/// The capture in `text`. A last line without an end is left out: the program ended while it was
/// written.
/// Failure: throws CaptureError
Capture readCapture(std::string_view text);

} // namespace capture
