// Device files: they give devices whose texts are all safe to show, or are refused with one line.
#include "Refusal.h"

#include <support/CapturedStream.h>
#include <support/InputFile.h>

#include <console/ListOutput.h>
#include <devices/DeviceFile.h>
#include <reports/ReportJson.h>

#include <tesk5/Registry.h>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static fuzz::InputFile file("devices.json");
    file.write(fuzz::viewOf(data, size));
    try {
        const tesk5::DeviceList list = tesk5::devicesFromFile(file.path());
        test::CapturedStream output(mrl::cout);
        tesk5::showList(mrl::cout, tesk5::Registry::instance(), list, "Card");
        fuzz::requireNone(test::findUnsafeInLines(output.text()), "the list of devices");
        for (const tesk5::DiagDevice& device : list.devices) {
            const tesk5::Json json = tesk5::jsonOf(device);
            fuzz::require(tesk5::Json::parse(json.dump()) == json,
                          "a device comes back from its JSON");
        }
    } catch (const tesk5::BadInput& refused) {
        fuzz::requireReadableRefusal(refused);
    }
    return 0;
}
