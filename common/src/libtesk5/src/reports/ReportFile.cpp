#include <tesk5/ReportFile.h>

#include <tesk5/BadInput.h>
#include <tesk5/TeskException.h>
#include <tesk5/Texts.h>

#include "model/Decimal.h"
#include "texts/SystemReason.h"

#include <mrl/Files.h>
#include <mrl/System.h>
#include <mrl/Unicode.h>

#include <algorithm>
#include <random>
#include <system_error>
#include <vector>

namespace tesk5 {

namespace {

namespace fs = std::filesystem;

// A report is written in a folder of its own beside its target, "report.json.PROCESS-NUMBER.tmp",
// from which it moves to its place. What a killed process leaves is known by that folder's name and
// by the one file in it.
constexpr const char* FOLDER_END = ".tmp";
constexpr const char* REPORT = "mrl-report";

struct IsDevice {};

[[noreturn]] void fail(const std::error_code& error) {
    throw mrl::FileFailure{mrl::FileFailure::Reason::system, error};
}

// A new folder beside `target`, removed again with its report.
// Failure: the constructor throws mrl::FileFailure or IsDevice
class TemporaryFolder {
public:
    explicit TemporaryFolder(const fs::path& target) {
        std::random_device random;
        std::error_code failure;
        do {
            m_path = target;
            m_path += "." + std::to_string(mrl::System::processId()) + "-" +
                      std::to_string(random()) + FOLDER_END;
        } while (!fs::create_directory(m_path, failure) && !failure && fs::exists(m_path));
        if (failure) {
            fail(failure);
        }
        if (!fs::is_directory(m_path, failure)) {
            throw IsDevice{}; // NUL.anything is NUL, too
        }
    }
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;
    ~TemporaryFolder() { remove(m_path); }

    fs::path report() const { return m_path / REPORT; }

    /// Removes the folder at `path`; it stays when it holds something besides a report.
    static void remove(const fs::path& path) {
        std::error_code ignored;
        fs::remove(path / REPORT, ignored);
        fs::remove(path, ignored);
    }

private:
    fs::path m_path;
};

// The file in a temporary folder, until it takes the place of its target.
// Failure: operations throw mrl::FileFailure, the constructor also IsDevice
class TemporaryFile {
public:
    explicit TemporaryFile(const fs::path& target) : m_folder(target), m_file(m_folder.report()) {}

    void write(const std::string& text) {
        m_file.write(text);
        m_file.close();
    }

    void takePlaceOf(const fs::path& target) const {
        std::error_code failure;
        fs::rename(m_folder.report(), target, failure);
        if (failure) {
            fail(failure);
        }
    }

private:
    TemporaryFolder m_folder;
    mrl::FileToWrite m_file;
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
        return writeReason(failure).text();
    }
}

// The process that made a temporary folder of this name beside `target`; nothing for other names.
std::optional<mrl::Uint32> makerOf(const fs::path& name, const fs::path& target) {
    const fs::path::string_type start = target.filename().native() + fs::path(".").native();
    if (!name.native().starts_with(start)) {
        return std::nullopt;
    }
    std::string rest; // PROCESS-NUMBER.tmp
    for (const fs::path::value_type unit : name.native().substr(start.size())) {
        rest += static_cast<unsigned>(unit) < 0x80U ? static_cast<char>(unit) : '?';
    }
    const std::size_t dash = rest.find('-');
    const std::size_t end = rest.find('.');
    if (dash > end || rest.substr(std::min(end, rest.size())) != FOLDER_END ||
        !parseUint32(std::string_view(rest).substr(dash + 1, end - dash - 1))) {
        return std::nullopt;
    }
    return parseUint32(std::string_view(rest).substr(0, dash));
}

// Removes temporary folders beside `target` whose process has ended without doing so, unless one of
// the `kept` files is in it.
void removeLeftovers(const fs::path& target, const std::vector<std::string>& kept) {
    std::error_code failure;
    std::vector<fs::path> leftovers;
    const fs::path folder = target.parent_path();
    for (fs::directory_iterator entry(folder.empty() ? fs::path(".") : folder, failure), last;
         !failure && entry != last; entry.increment(failure)) {
        const std::optional<mrl::Uint32> process = makerOf(entry->path().filename(), target);
        if (process && !mrl::System::processRuns(*process) &&
            mrl::fileKind(entry->path()) == mrl::FileKind::directory) {
            leftovers.push_back(entry->path());
        }
    }
    for (const fs::path& leftover : leftovers) {
        const auto holds = [&leftover](const std::string& file) {
            return mrl::sameFile(mrl::System::path(file).parent_path(), leftover);
        };
        if (std::none_of(kept.begin(), kept.end(), holds)) {
            TemporaryFolder::remove(leftover);
        }
    }
}

// The missing folders above a file, made for as long as this lives.
// Failure: the constructor throws mrl::FileFailure
class FoldersAbove {
public:
    explicit FoldersAbove(const fs::path& file) {
        std::error_code failure;
        for (fs::path folder = file.parent_path(); !folder.empty() && !fs::exists(folder, failure);
             folder = folder.parent_path()) {
            m_made.push_back(folder);
        }
        if (m_made.empty()) {
            return;
        }
        fs::create_directories(m_made.front(), failure);
        if (failure) {
            removeMade();
            fail(failure);
        }
    }
    FoldersAbove(const FoldersAbove&) = delete;
    FoldersAbove& operator=(const FoldersAbove&) = delete;
    ~FoldersAbove() { removeMade(); }

private:
    void removeMade() const {
        std::error_code ignored;
        for (const fs::path& folder : m_made) {
            fs::remove(folder, ignored);
        }
    }

    std::vector<fs::path> m_made; ///< the deepest first
};

// Whether another process that replaces or reads the file just now can be the reason.
bool mayPass(const std::error_code& error) {
    return error == std::errc::permission_denied || error == std::errc::device_or_resource_busy ||
           error == std::errc::no_such_file_or_directory;
}

// Repeats what another process may be the reason for.
// Failure: throws what the last attempt does
template <class Use>
void inTurn(int attempts, Use use) {
    constexpr unsigned PAUSE_MS = 20;
    for (int attempt = 1;; ++attempt) {
        try {
            use();
            return;
        } catch (const mrl::FileFailure& failure) {
            if (attempt == attempts || !mayPass(failure.error)) {
                throw;
            }
        }
        mrl::System::mssleep(PAUSE_MS);
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
    default:
        break;
    }
    return whatFails([&target] {
        mrl::checkWritable(target);
        // Another process that checks a report in the same missing folder removes that again.
        constexpr int ATTEMPTS = 10;
        inTurn(ATTEMPTS, [&target] {
            const FoldersAbove folders(target);
            const TemporaryFile file(target);
        });
    });
}

fs::path followed(const fs::path& path) {
    if (mrl::fileKind(path) == mrl::FileKind::other) {
        return path; // canonical() could open it
    }
    std::error_code failure;
    fs::path target = fs::canonical(path, failure);
    return failure ? path : target;
}

void replaceOnce(const fs::path& target, const std::string& text) {
    std::error_code ignored;
    fs::create_directories(target.parent_path(), ignored);
    TemporaryFile file(target);
    file.write(text);
    file.takePlaceOf(target);
}

// Of two runs that write one report at once, each replaces it in turn. The system refuses that
// while the other one does it.
void replaceInTurn(const fs::path& target, const std::string& text) {
    constexpr int ATTEMPTS = 100;
    inTurn(ATTEMPTS, [&] { replaceOnce(target, text); });
}

bool sameName(const fs::path& a, const fs::path& b) {
#ifdef _WIN32
    return mrl::equalNoCase(a.native(), b.native());
#else
    return a == b;
#endif
}

} // namespace

ReportFile::ReportFile(std::string path, std::vector<std::string> kept)
    : m_path(std::move(path)), m_target(followed(mrl::System::path(m_path))),
      m_kept(std::move(kept)) {
    if (const auto reason = whyNotReplaceable(m_target)) {
        throw BadInput{message("INPUT_REPORT_UNWRITABLE", {{"File", m_path}, {"Reason", *reason}})};
    }
}

void ReportFile::replace(const std::string& text) const {
    removeLeftovers(m_target, m_kept);
    if (const auto reason = whatFails([&] { replaceInTurn(m_target, text); })) {
        throw TeskException(TeskString(
            message("INPUT_REPORT_NOT_REPLACED", {{"File", m_path}, {"Reason", *reason}})));
    }
}

std::optional<std::string> whyNotWritable(const std::string& path) {
    return whyNotReplaceable(followed(mrl::System::path(path)));
}

bool nameSameFile(const std::string& a, const std::string& b) {
    const fs::path first = mrl::fullPath(mrl::System::path(a));
    const fs::path second = mrl::fullPath(mrl::System::path(b));
    if (mrl::sameFile(first, second)) {
        return true;
    }
    // A file that is not there yet: its folder can have several names too.
    if (sameName(first.filename(), second.filename()) &&
        mrl::sameFile(first.parent_path(), second.parent_path())) {
        return true;
    }
    std::error_code failure;
    return sameName(fs::weakly_canonical(first, failure), fs::weakly_canonical(second, failure));
}

void refuseSharedFile(const std::string& option, const std::string& file, const std::string& other,
                      const std::string& otherFile) {
    if (nameSameFile(file, otherFile)) {
        throw BadInput{message("INPUT_FILE_SHARED",
                               {{"Option", option}, {"OtherOption", other}, {"File", otherFile}})};
    }
}

} // namespace tesk5
