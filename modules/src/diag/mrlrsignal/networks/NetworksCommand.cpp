#include <networks/NetworksCommand.h>

#include <levels/TargetParameters.h>
#include <networks/Listing.h>
#include <networks/NetworkRecords.h>
#include <networks/Table.h>
#include <records/FormatOption.h>

#include <tesk5/ModuleInfo.h>
#include <tesk5/RunContext.h>
#include <tesk5/TestResult.h>
#include <tesk5/TextLayout.h>
#include <tesk5/Texts.h>

#include <networkadapters/MachineCheck.h>

#include <algorithm>

namespace networks {

namespace {

using tesk5::message;
using tesk5::RunContext;
using tesk5::TestResult;

void note(const RunContext& context, const std::string& text) {
    tesk5::writeLine(context.errors, std::string(tesk5::moduleInfo().name) + ": " + text);
}

// Why a call failed, and the remedy.
std::string reasonText(const tesk5::TeskString& device, const char* function, DWORD error) {
    if (error == ERROR_ACCESS_DENIED) {
        return message(networkadapters::accessDenied(device, function, error));
    }
    return message(error == ERROR_NDIS_DOT11_POWER_STATE_INVALID ? "NETWORKS_RADIO_OFF"
                                                                 : "NETWORKS_CALL_FAILED",
                   {{"Device", device}, {"Function", function}, {"Error", error}});
}

// What is missing in the list, and why.
void explain(const Listing& listing, const tesk5::TeskString& device, const RunContext& context) {
    const tesk5::Event::Variables variables = {{"Device", device},
                                               {"Count", std::to_string(listing.others)}};
    if (listing.error != ERROR_SUCCESS) {
        note(context, reasonText(device, listing.function, listing.error));
        return;
    }
    if (listing.scanError != ERROR_SUCCESS) {
        note(context, message("NETWORKS_NOT_SCANNED", variables));
        note(context, reasonText(device, "WlanScan", listing.scanError));
    } else if (listing.scanFailed) {
        note(context, message("NETWORKS_SCAN_FAILED", variables));
    }
    if (listing.networks.empty()) {
        note(context,
             message(listing.others == 0 ? "NETWORKS_NONE" : "NETWORKS_NO_MATCH", variables));
    }
}

void showTable(const std::vector<Network>& networks, const RunContext& context) {
    for (const std::string& line : tableOf(networks, context.output.columns())) {
        tesk5::writeLine(context.output, line);
    }
    const bool devices =
        std::ranges::any_of(networks, [](const Network& network) { return network.device != 0; });
    if (devices) {
        tesk5::writeLine(context.output, message("NETWORKS_DEVICE_NOTE"));
    }
}

void writeRecords(const std::vector<Network>& networks, const std::string& adapter,
                  records::Writer& writer) {
    for (const Network& network : networks) {
        if (!writer.write(recordOf(network, adapter))) {
            return; // the framework says so with its exit value
        }
    }
}

} // namespace

int run(const tesk5::CommandCall& call, RunContext& context) {
    std::optional<records::Writer> writer;
    if (const std::optional<records::Format> format = records::formatOf(call)) {
        writer.emplace(context.output, *format);
    }
    bool shown = false;
    for (const tesk5::DiagDevice& device : call.devices) {
        const Listing listing =
            listNetworks(levels::interfaceOf(device), levels::targetOfParameters(),
                         [&context] { return context.stopRequest.raised(); });
        if (listing.interrupted) {
            return TestResult::USERABORTED().value();
        }
        explain(listing, device.name(), context);
        if (listing.networks.empty()) {
            continue;
        }
        shown = true;
        if (writer) {
            writeRecords(listing.networks, device.name().utf8(), *writer);
            continue;
        }
        if (call.devices.size() > 1) {
            tesk5::writeLine(context.output,
                             message("NETWORKS_OF_DEVICE", {{"Device", device.name()}}));
        }
        showTable(listing.networks, context);
    }
    return shown ? 0 : TestResult::CANNOTRUN().value();
}

} // namespace networks
