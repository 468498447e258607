#include "texts/SystemReason.h"

#include <algorithm>
#include <iterator>

namespace tesk5 {

namespace {

struct KnownReason {
    std::errc error;
    const char* key;
};
constexpr KnownReason knownReasons[] = {
    {std::errc::no_such_file_or_directory, "INPUT_FILE_MISSING"},
    {std::errc::not_a_directory, "INPUT_FILE_BELOW_A_FILE"},
    {std::errc::permission_denied, "INPUT_FILE_DENIED"},
    {std::errc::operation_not_permitted, "INPUT_FILE_DENIED"},
    {std::errc::is_a_directory, "INPUT_FILE_IS_DIRECTORY"},
    {std::errc::device_or_resource_busy, "INPUT_FILE_BUSY"},
    {std::errc::text_file_busy, "INPUT_FILE_BUSY"},
    {std::errc::no_space_on_device, "INPUT_DISK_FULL"},
    {std::errc::read_only_file_system, "INPUT_DISK_READ_ONLY"},
    {std::errc::filename_too_long, "INPUT_FILE_NAME_TOO_LONG"},
    {std::errc::invalid_argument, "INPUT_FILE_NAME_INVALID"},
};

} // namespace

Message systemReason(const std::error_code& error, const Message& none) {
    if (!error) {
        return none;
    }
    const auto* const known =
        std::find_if(std::begin(knownReasons), std::end(knownReasons),
                     [&error](const KnownReason& candidate) { return error == candidate.error; });
    return known != std::end(knownReasons) ? Message(known->key)
                                           : Message::ofOthers(error.message());
}

Message fileReason(const mrl::FileFailure& failure) {
    using Reason = mrl::FileFailure::Reason;
    switch (failure.reason) {
    case Reason::directory:
        return Message("INPUT_FILE_IS_DIRECTORY");
    case Reason::notOrdinary:
        return Message("INPUT_FILE_NOT_ORDINARY");
    case Reason::tooLarge:
        return Message("CONFIG_FILE_TOO_LARGE");
    case Reason::system:
        break;
    }
    return systemReason(failure.error, Message("INPUT_FILE_UNREADABLE"));
}

Message writeReason(const mrl::FileFailure& failure) {
    return failure.reason == mrl::FileFailure::Reason::system
               ? systemReason(failure.error, Message("INPUT_FILE_UNWRITABLE"))
               : fileReason(failure);
}

} // namespace tesk5
