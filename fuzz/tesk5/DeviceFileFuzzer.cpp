// Device files: devices whose every text can be shown, or one line that says what is wrong.
#include "Refusal.h"

#include <support/Captured.h>
#include <support/InputFile.h>

#include <console/Console.h>
#include <devices/DeviceList.h>
#include <reports/ReportJson.h>

#include <tesk5/Registry.h>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static fuzz::InputFile file("devices.json");
    file.write(fuzz::viewOf(data, size));
    try {
        const tesk5::DeviceList list = tesk5::devicesFromFile(file.path());
        fuzz::Captured output(mrl::cout);
        tesk5::showList(tesk5::Registry::instance(), list, "Card");
        fuzz::promiseNone(test::offenceInLines(output.text()), "the list of devices");
        for (const tesk5::DiagDevice& device : list.devices) {
            const tesk5::Json json = tesk5::jsonOf(device);
            fuzz::promise(tesk5::Json::parse(json.dump()) == json, "a device is whole in JSON");
        }
    } catch (const tesk5::BadInput& refused) {
        fuzz::promiseRefusal(refused);
    }
    return 0;
}
