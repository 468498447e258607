#include <tesk5/InputFile.h>

#include <tesk5/BadInput.h>
#include <tesk5/Texts.h>

#include "texts/SystemReason.h"

#include <mrl/System.h>

namespace tesk5 {

std::string readInputFile(const std::string& path, std::size_t limit) {
    try {
        return mrl::readWholeFile(mrl::System::path(path), limit);
    } catch (const mrl::FileFailure& failure) {
        throw BadInput{message("INPUT_FILE_UNUSABLE",
                               {{"File", path}, {"Reason", fileReason(failure).text()}})};
    }
}

} // namespace tesk5
