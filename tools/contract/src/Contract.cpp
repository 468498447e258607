#include "Session.h"

#include <capture/Recording.h>

namespace contract {

namespace {

constexpr WLAN_INTF_OPCODE capturedOpcodes[] = {
    wlan_intf_opcode_autoconf_enabled,
    wlan_intf_opcode_background_scan_enabled,
    wlan_intf_opcode_media_streaming_mode,
    wlan_intf_opcode_radio_state,
    wlan_intf_opcode_bss_type,
    wlan_intf_opcode_interface_state,
    wlan_intf_opcode_current_connection,
    wlan_intf_opcode_channel_number,
    wlan_intf_opcode_supported_infrastructure_auth_cipher_pairs,
    wlan_intf_opcode_supported_adhoc_auth_cipher_pairs,
    wlan_intf_opcode_supported_country_or_region_string_list,
    wlan_intf_opcode_statistics,
    wlan_intf_opcode_rssi,
};

constexpr struct {
    Verdict verdict;
    const char* word;
} verdictWords[] = {
    {Verdict::HELD, "held"},
    {Verdict::BROKEN, "broken"},
    {Verdict::NOT_OBSERVABLE, "not observable"},
};

} // namespace

const std::vector<Check>& checks() {
    static const std::vector<Check> all = [] {
        std::vector<Check> list;
        for (const auto& part :
             {handleChecks(), queryChecks(), listChecks(), scanChecks(), radioChecks()}) {
            list.insert(list.end(), part.begin(), part.end());
        }
        return list;
    }();
    return all;
}

Finding run(const Check& check, const Options& options, const std::atomic<bool>& interrupted) {
    if (interrupted) {
        return notObservable({{"reason", "interrupted"}});
    }
    if (check.switches == Switches::SCAN && !options.scan) {
        return notObservable({{"reason", "needs --scan"}});
    }
    Session session(options, interrupted);
    if (const std::string reason = session.missing(check.need); !reason.empty()) {
        return notObservable({{"reason", reason}});
    }
    Finding finding = check.look(session);
    if (interrupted) {
        return notObservable({{"reason", "interrupted"}});
    }
    return finding;
}

void captureAnswers(const std::filesystem::path& file) {
    capture::Recording recording(file, {{"command", "contract"}, {"settings", mrl::Json::array()}},
                                 true);
    const std::atomic<bool> interrupted = false;
    const Session session({}, interrupted);
    if (!session.missing(Need::ADAPTER).empty()) {
        return;
    }
    for (const WLAN_INTF_OPCODE opcode : capturedOpcodes) {
        session.resultOf(opcode);
    }
    nativewifi::WlanMemory<WLAN_AVAILABLE_NETWORK_LIST> list;
    session.networks(out(list));
    nativewifi::WlanMemory<WLAN_BSS_LIST> stations;
    session.stations(out(stations));
}

const char* word(Verdict verdict) {
    for (const auto& entry : verdictWords) {
        if (entry.verdict == verdict) {
            return entry.word;
        }
    }
    return "";
}

std::string line(const Check& check, const Finding& finding) {
    const mrl::Json object{{"check", check.id},
                           {"assumption", check.assumption},
                           {"verdict", word(finding.verdict)},
                           {"seen", finding.seen}};
    return object.dump();
}

} // namespace contract
