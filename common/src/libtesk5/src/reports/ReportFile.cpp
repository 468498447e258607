#include "reports/ReportFile.h"

#include <tesk5/TeskException.h>
#include <tesk5/Texts.h>

#include "texts/BadInput.h"
#include "texts/SystemReason.h"

#include <mrl/Files.h>
#include <mrl/System.h>
#include <mrl/Unicode.h>

#include <algorithm>
#include <cerrno>
#include <fstream>
#include <random>
#include <system_error>
#include <vector>

namespace tesk5 {

namespace {

namespace fs = std::filesystem;

constexpr const char* TEMPORARY = ".tmp";

// A new file in the folder of `target`, removed again unless it takes the target's place.
class TemporaryFile {
public:
    explicit TemporaryFile(const fs::path& target) : m_path(freeNameBeside(target)) {
        m_failure = whatFails([this] { m_file.emplace(m_path); });
        if (std::error_code ignored; !m_failure && !fs::is_regular_file(m_path, ignored)) {
            m_failure = message("INPUT_FILE_IS_DEVICE"); // NUL.anything is NUL, too
        }
    }
    TemporaryFile(const TemporaryFile&) = delete;
    TemporaryFile& operator=(const TemporaryFile&) = delete;
    ~TemporaryFile() {
        m_file.reset();
        std::error_code ignored;
        fs::remove(m_path, ignored);
    }

    /// Why there is no such file; nothing when there is.
    const std::optional<std::string>& failure() const { return m_failure; }

    /// \return why it did not work; nothing when it did
    std::optional<std::string> write(const std::string& text) {
        return whatFails([&] {
            m_file->write(text);
            m_file->close();
        });
    }

    /// \return why it did not work; nothing when it did
    std::optional<std::string> takePlaceOf(const fs::path& target) {
        std::error_code failure;
        fs::rename(m_path, target, failure);
        return failure
                   ? std::optional(systemReason(failure, Message("INPUT_FILE_UNWRITABLE")).text())
                   : std::nullopt;
    }

private:
    template <class Operation>
    static std::optional<std::string> whatFails(Operation operation) {
        try {
            operation();
            return std::nullopt;
        } catch (const mrl::FileFailure& failure) {
            return systemReason(failure.error, Message("INPUT_FILE_UNWRITABLE")).text();
        }
    }
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
    std::optional<std::string> m_failure;
};

// Removes temporary files beside `target` that a killed process left. One that is being written
// stays: the system does not delete an open file.
void removeLeftovers(const fs::path& target) {
    const auto isLeftover = [start = target.filename().native() + fs::path(".").native(),
                             end = fs::path(TEMPORARY).native()](const fs::path& path) {
        const fs::path::string_type name = path.filename().native();
        if (name.size() <= start.size() + end.size() || !name.starts_with(start) ||
            !name.ends_with(end)) {
            return false;
        }
        return std::all_of(name.begin() + static_cast<std::ptrdiff_t>(start.size()),
                           name.end() - static_cast<std::ptrdiff_t>(end.size()),
                           [](auto letter) { return letter >= '0' && letter <= '9'; });
    };
    std::error_code failure;
    std::vector<fs::path> leftovers;
    const fs::path folder = target.parent_path();
    for (fs::directory_iterator entry(folder.empty() ? fs::path(".") : folder, failure), last;
         !failure && entry != last; entry.increment(failure)) {
        if (isLeftover(entry->path()) && mrl::fileKind(entry->path()) == mrl::FileKind::ordinary) {
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
            return lastSystemReason(Message("INPUT_FILE_UNWRITABLE")).text();
        }
    }
    return TemporaryFile(target).failure();
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
    TemporaryFile file(m_target);
    std::optional<std::string> failure = file.failure();
    if (!failure) {
        failure = file.write(text);
    }
    if (!failure) {
        failure = file.takePlaceOf(m_target);
    }
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
