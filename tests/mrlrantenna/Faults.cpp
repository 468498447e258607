#include "Faults.h"

#include <nativewifi/Api.h>

#include <algorithm>
#include <iostream>
#include <iterator>

namespace test {

namespace {

// A stopped service; of the RPC runtime: server unavailable, server too busy, call failed, no such
// endpoint.
constexpr std::uint32_t SERVICE_ERRORS[] = {ERROR_SERVICE_NOT_ACTIVE, 1722, 1723, 1726, 1753};

std::vector<std::uint32_t> andServiceErrors(std::vector<std::uint32_t> codes) {
    for (const std::uint32_t code : SERVICE_ERRORS) {
        if (std::find(codes.begin(), codes.end(), code) == codes.end()) {
            codes.push_back(code);
        }
    }
    return codes;
}

// Printed when the program ends.
struct CombinationCount {
    ~CombinationCount() {
        if (count != 0) {
            std::cout << "[ FAULTS   ] " << count
                      << " combinations of a call and what goes wrong at it\n";
        }
    }
    std::size_t count = 0;
};

CombinationCount g_combinations;

} // namespace

const std::vector<FunctionErrors>& documentedErrors() {
#define NATIVEWIFI_ERROR(code, meaning) static_cast<std::uint32_t>(code),
#define TEST_ROW(result, name, arguments, errors) {#name, {errors}},
#define TEST_SERVICE_ROW(result, name, arguments, errors) {#name, andServiceErrors({errors})},
    static const std::vector<FunctionErrors> all = {NATIVEWIFI_WLAN_FUNCTIONS(TEST_SERVICE_ROW)
                                                        NATIVEWIFI_RPC_FUNCTIONS(TEST_ROW)};
#undef TEST_SERVICE_ROW
#undef TEST_ROW
#undef NATIVEWIFI_ERROR
    return all;
}

std::vector<std::uint32_t> errorsOf(const std::string& function) {
    if (function == "WlanFreeMemory") {
        return {};
    }
    const auto& all = documentedErrors();
    const auto row = std::find_if(all.begin(), all.end(), [&function](const FunctionErrors& each) {
        return function == each.function;
    });
    std::vector<std::uint32_t> codes = row == all.end() ? std::vector<std::uint32_t>() : row->codes;
    codes.insert(codes.end(), std::begin(UNDOCUMENTED_ERRORS), std::end(UNDOCUMENTED_ERRORS));
    return codes;
}

std::string Place::name() const {
    return function + (opcode ? "_opcode" + std::to_string(*opcode) : std::string()) + "_call" +
           std::to_string(nth);
}

std::string querySentence(std::uint32_t code) {
    switch (code) {
    case ERROR_INVALID_PARAMETER:
        return "# Client Handle is NULL or invalid, Interface Guid is NULL, Reserved is not NULL, "
               "pointer of pointer to Data is NULL, or Data Size is NULL.";
    case ERROR_INVALID_HANDLE:
        return "# The handle to Client Handle was not found in the handle table.";
    case ERROR_INVALID_STATE:
        return "# The Op Code is set to wlan_intf_opcode_current_connection and the client is not "
               "currently connected to a network";
    case ERROR_NOT_ENOUGH_MEMORY:
        return "# Failed to allocate memory for the query results.";
    case ERROR_ACCESS_DENIED:
        return "# The user does not have sufficient permissions to query the parameters";
    default:
        return "# Unknown error code";
    }
}

ListFailure listFailure(std::uint32_t code) {
    constexpr const char* SOURCE = "modules/src/windows/diag/mrlrantenna/WirelessDevice.cpp:";
    switch (code) {
    case ERROR_INVALID_PARAMETER:
        return {{"1172 The win32 call of WlanGetAvailableNetworkList returned an error related to "
                 "Client Handle is NULL or invalid, Interface Guid is NULL, Reserved is not NULL, "
                 "Available Network List is NULL, or the dwFlags parameter value is not set to one "
                 "of the valid values"},
                {}};
    case ERROR_INVALID_HANDLE:
        return {{"1180 The win32 call of WlanGetAvailableNetworkList returned an error related to "
                 "client handle where the client handle was not found in the handle table."},
                {}};
    case ERROR_NDIS_DOT11_POWER_STATE_INVALID:
        return {{"1188 The win32 call of WlanGetAvailableNetworkList returned an error related to "
                 "the radio being turned off. The radio for the interface is turned off. There are "
                 "no available networks when the radio is off."},
                {std::string("error ERROR_NDIS_DOT11_POWER_STATE_INVALID ") + SOURCE + "1189"}};
    case ERROR_NOT_ENOUGH_MEMORY:
        return {{"1195 The win32 call of WlanGetAvailableNetworkList returned an error related to "
                 "memory allocation. Failed to allocate memory for the query results."},
                {std::string("error ERROR_NOT_ENOUGH_MEMORY ") + SOURCE + "1196"}};
    default:
        return {};
    }
}

std::vector<std::string> withNumbersLike(const std::vector<std::string>& expected,
                                         std::vector<std::string> lines) {
    for (std::size_t i = 0; i < lines.size() && i < expected.size(); ++i) {
        if (expected[i].starts_with("# ")) {
            lines[i].replace(0, lines[i].find_first_not_of("0123456789"), "#");
        }
    }
    return lines;
}

void expectDeliberateLeaksAlone(const radiosim::Engine& radio, std::size_t handles,
                                std::size_t texts) {
    radiosim::Leaks kept{.handles = handles, .texts = texts};
    for (const char* function :
         {"WlanQueryInterface", "WlanEnumInterfaces", "WlanGetNetworkBssList"}) {
        const radiosim::Leaks given = radio.handedOutBy(function);
        EXPECT_EQ(radio.leaksOf(function), given) << function;
        kept.blocks += given.blocks;
        kept.bytes += given.bytes;
    }
    EXPECT_EQ(radio.leaks(), kept) << radio.leaks().handles << " handles, " << radio.leaks().blocks
                                   << " blocks, " << radio.leaks().texts << " texts";
    EXPECT_EQ(radio.badFrees(), 0U);
}

void countCombination() {
    ++g_combinations.count;
}

} // namespace test
