#include "history/JournalFiles.h"

#include <tesk5/BadInput.h>
#include <tesk5/Texts.h>

#include "texts/SystemReason.h"

#include <mrl/Files.h>
#include <mrl/System.h>

namespace tesk5 {

namespace {

class Reading {
public:
    explicit Reading(const std::function<void(const JournalEntry&)>& use) : m_use(use) {}

    void begin(const std::string& file) {
        m_file = &file;
        m_line = 0;
        m_begun.clear();
        m_tooLong = false;
    }

    void take(std::string_view bytes) {
        for (std::size_t end = bytes.find('\n'); end != std::string_view::npos;
             end = bytes.find('\n')) {
            if (m_begun.empty() && !m_tooLong) {
                finish(bytes.substr(0, end));
            } else {
                lengthen(bytes.substr(0, end));
                finish(m_begun);
            }
            bytes.remove_prefix(end + 1);
        }
        lengthen(bytes);
    }

    // The last line may have no end: it was cut, or is being written.
    void end() {
        if (!m_begun.empty() || m_tooLong) {
            finish(m_begun);
        }
    }

    const JournalRemains& remains() const { return m_remains; }

private:
    void lengthen(std::string_view bytes) {
        m_tooLong = m_tooLong || m_begun.size() + bytes.size() > LONGEST_JOURNAL_LINE;
        if (m_tooLong) {
            m_begun.clear();
        } else {
            m_begun += bytes;
        }
    }

    void finish(std::string_view line) {
        ++m_line;
        if (m_tooLong || line.size() > LONGEST_JOURNAL_LINE) {
            refuse("HISTORY_LINE_TOO_LONG");
        } else if (line.find_first_not_of(" \t\r") != std::string_view::npos) {
            read(line);
        }
        m_tooLong = false;
        m_begun.clear();
    }

    void read(std::string_view line) {
        switch (readJournalLine(line, m_entry)) {
        case JournalLine::RUN:
            ++m_remains.runs;
            m_use(m_entry);
            break;
        case JournalLine::LATER:
            ++m_remains.laterLines;
            break;
        case JournalLine::NO_JSON:
            refuse("HISTORY_LINE_NO_JSON");
            break;
        case JournalLine::NO_MEMBERS:
            refuse("HISTORY_LINE_NO_RUN");
            break;
        }
    }

    void refuse(const char* reason) {
        ++m_remains.brokenLines;
        if (m_remains.broken.size() < JournalRemains::MOST_NAMED) {
            m_remains.broken.push_back({*m_file, m_line, reason});
        }
    }

    const std::function<void(const JournalEntry&)>& m_use;
    const std::string* m_file = nullptr;
    std::size_t m_line = 0;
    std::string m_begun; ///< the line whose end has not come yet
    bool m_tooLong = false;
    JournalEntry m_entry;
    JournalRemains m_remains;
};

} // namespace

JournalRemains readJournals(const std::vector<std::string>& files,
                            const std::function<void(const JournalEntry&)>& use,
                            const std::function<bool()>& stop) {
    constexpr std::size_t PIECE = 0x40000;
    std::string piece(PIECE, '\0');
    Reading reading(use);
    for (const std::string& path : files) {
        try {
            mrl::FileToRead file(mrl::System::path(path));
            reading.begin(path);
            for (std::size_t count = file.read(piece.data(), PIECE); count > 0 && !stop();
                 count = file.read(piece.data(), PIECE)) {
                reading.take(std::string_view(piece).substr(0, count));
            }
            reading.end();
        } catch (const mrl::FileFailure& failure) {
            throw BadInput{message("INPUT_FILE_UNUSABLE",
                                   {{"File", path}, {"Reason", fileReason(failure).text()}})};
        }
    }
    return reading.remains();
}

} // namespace tesk5
