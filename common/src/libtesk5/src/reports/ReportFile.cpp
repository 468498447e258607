#include "reports/ReportFile.h"

#include <tesk5/TeskException.h>
#include <tesk5/Texts.h>

#include "texts/BadInput.h"
#include "texts/SystemReason.h"

#include <mrl/Files.h>
#include <mrl/System.h>
#include <mrl/Unicode.h>

#include <cerrno>
#include <fstream>
#include <random>
#include <system_error>
#include <vector>

namespace tesk5 {

namespace {

namespace fs = std::filesystem;

constexpr const char* TEMPORARY = ".tmp";

struct IsDevice {};

// A new file in the folder of `target`, removed again unless it takes the target's place.
// Failure: operations throw mrl::FileFailure, the constructor also IsDevice
class TemporaryFile {
public:
    explicit TemporaryFile(const fs::path& target) : m_path(freeNameBeside(target)) {
        m_file.emplace(m_path);
        if (std::error_code ignored; !fs::is_regular_file(m_path, ignored)) {
            throw IsDevice{}; // NUL.anything is NUL, too
        }
    }
    TemporaryFile(const TemporaryFile&) = delete;
    TemporaryFile& operator=(const TemporaryFile&) = delete;
    ~TemporaryFile() {
        m_file.reset();
        std::error_code ignored;
        fs::remove(m_path, ignored);
    }

    void write(const std::string& text) {
        m_file->write(text);
        m_file->close();
    }

    void takePlaceOf(const fs::path& target) const {
        std::error_code failure;
        fs::rename(m_path, target, failure);
        if (failure) {
            throw mrl::FileFailure{mrl::FileFailure::Reason::system, failure};
        }
    }

private:
    static fs::path freeNameBeside(const fs::path& target) {
        std::random_device random;
        std::error_code ignored;
        fs::path path;
        do {
            path = target;
            path += "." + std::to_string(random()) + TEMPORARY;
        } while (fs::exists(path, ignored));
        return path;
    }

    fs::path m_path;
    std::optional<mrl::FileToWrite> m_file;
};

// Why `use` of a temporary file fails; nothing when it does not.
template <class Use>
std::optional<std::string> whatFails(Use use) {
    try {
        use();
        return std::nullopt;
    } catch (const IsDevice&) {
        return message("INPUT_FILE_IS_DEVICE");
    } catch (const mrl::FileFailure& failure) {
        return systemReason(failure.error, Message("INPUT_FILE_UNWRITABLE")).text();
    }
}

// Removes temporary files beside `target` that a killed process left. One that is being written
// stays: the system does not delete an open file.
void removeLeftovers(const fs::path& target) {
    const fs::path::string_type start = target.filename().native() + fs::path(".").native();
    const fs::path::string_type end = fs::path(TEMPORARY).native();
    const fs::path::string_type digits = fs::path("0123456789").native();
    const auto isLeftover = [&](const fs::path::string_type& name) {
        return name.size() > start.size() + end.size() && name.starts_with(start) &&
               name.ends_with(end) &&
               name.find_first_not_of(digits, start.size()) == name.size() - end.size();
    };
    std::error_code failure;
    std::vector<fs::path> leftovers;
    const fs::path folder = target.parent_path();
    for (fs::directory_iterator entry(folder.empty() ? fs::path(".") : folder, failure), last;
         !failure && entry != last; entry.increment(failure)) {
        if (isLeftover(entry->path().filename().native()) &&
            mrl::fileKind(entry->path()) == mrl::FileKind::ordinary) {
            leftovers.push_back(entry->path());
        }
    }
    for (const fs::path& leftover : leftovers) {
        fs::remove(leftover, failure);
    }
}

// Why `target` cannot be replaced; nothing when it can.
std::optional<std::string> whyNotReplaceable(const fs::path& target) {
    if (target.filename().empty()) {
        return message("INPUT_FILE_IS_DIRECTORY");
    }
    switch (mrl::fileKind(target)) {
    case mrl::FileKind::directory:
        return message("INPUT_FILE_IS_DIRECTORY");
    case mrl::FileKind::other:
        return message("INPUT_FILE_NOT_ORDINARY");
    case mrl::FileKind::missing:
        break;
    case mrl::FileKind::ordinary:
        errno = 0;
        const std::fstream present(target, std::ios::binary | std::ios::in | std::ios::out);
        if (!present) {
            return systemReason({errno, std::generic_category()}, Message("INPUT_FILE_UNWRITABLE"))
                .text();
        }
    }
    return whatFails([&target] { const TemporaryFile file(target); });
}

fs::path followed(const fs::path& path) {
    if (mrl::fileKind(path) == mrl::FileKind::other) {
        return path; // canonical() could open it
    }
    std::error_code failure;
    fs::path target = fs::canonical(path, failure);
    return failure ? path : target;
}

} // namespace

ReportFile::ReportFile(std::string path)
    : m_path(std::move(path)), m_target(followed(mrl::System::path(m_path))) {
    if (const auto reason = whyNotReplaceable(m_target)) {
        throw BadInput{message("INPUT_REPORT_UNWRITABLE", {{"File", m_path}, {"Reason", *reason}})};
    }
}

void ReportFile::replace(const std::string& text) const {
    removeLeftovers(m_target);
    const std::optional<std::string> failure = whatFails([&] {
        TemporaryFile file(m_target);
        file.write(text);
        file.takePlaceOf(m_target);
    });
    if (failure) {
        throw TeskException(TeskString(
            message("INPUT_REPORT_NOT_REPLACED", {{"File", m_path}, {"Reason", *failure}})));
    }
}

std::optional<std::string> whyNotWritable(const std::string& path) {
    return whyNotReplaceable(followed(mrl::System::path(path)));
}

bool nameSameFile(const std::string& a, const std::string& b) {
    std::error_code failure;
    const fs::path first = mrl::System::path(a);
    const fs::path second = mrl::System::path(b);
    if (fs::equivalent(first, second, failure)) {
        return true;
    }
    const fs::path firstWhole = fs::weakly_canonical(fs::absolute(first, failure), failure);
    const fs::path secondWhole = fs::weakly_canonical(fs::absolute(second, failure), failure);
#ifdef _WIN32
    return mrl::equalNoCase(firstWhole.native(), secondWhole.native());
#else
    return firstWhole == secondWhole;
#endif
}

} // namespace tesk5
