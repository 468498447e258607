#include "SignalProgram.h"

#include <levels/ModuleObjects.h>

#include <mrl/Exception.h>
#include <mrl/OutputStream.h>

#include <exception>

namespace {

int exitedAbnormally(const std::string& reason) {
    mrl::cerr << reason.c_str() << mrl::endl;
    return tesk5::TestResult::EXITEDABNORMALLY().value();
}

} // namespace

int runSignalProgram(const std::vector<std::string>& arguments) {
    std::vector<const char*> pointers;
    pointers.reserve(arguments.size());
    for (const std::string& argument : arguments) {
        pointers.push_back(argument.c_str());
    }
    try {
        tesk5::DiagModule::setCmdLineArgs(static_cast<int>(pointers.size()), pointers.data());
        tesk5::DiagModule::setVersion(6, 5, "000000001");
        tesk5::DiagModule::setModuleInitCallback(&initializeSignalModule);
        return tesk5::DiagModule::start();
    } catch (const mrl::Exception& exception) {
        return exitedAbnormally(exception.toString().getUTF8String().c_str());
    } catch (const tesk5::TeskException& exception) {
        return exitedAbnormally(exception.toString().getUTF8String().c_str());
    } catch (const std::exception& exception) {
        return exitedAbnormally(exception.what());
    }
}
