#include <support/Journal.h>

#include <algorithm>
#include <iterator>
#include <mutex>
#include <stdexcept>

namespace test {

namespace {

std::mutex g_mutex;
Journal* g_journal = nullptr;

} // namespace

Journal::Journal() {
    const std::lock_guard lock(g_mutex);
    if (g_journal != nullptr) {
        throw std::logic_error("another Journal lives");
    }
    g_journal = this;
}

Journal::~Journal() {
    const std::lock_guard lock(g_mutex);
    g_journal = nullptr;
}

void Journal::note(std::string entry) {
    const std::lock_guard lock(g_mutex);
    if (g_journal != nullptr) {
        g_journal->m_entries.push_back(std::move(entry));
    }
}

std::vector<std::string> Journal::entries() const {
    const std::lock_guard lock(g_mutex);
    return m_entries;
}

std::vector<std::string> Journal::entries(const std::vector<std::string>& kinds) const {
    std::vector<std::string> chosen;
    const std::vector<std::string> all = entries();
    std::copy_if(all.begin(), all.end(), std::back_inserter(chosen), [&kinds](const auto& entry) {
        return std::find(kinds.begin(), kinds.end(), entry.substr(0, entry.find(' '))) !=
               kinds.end();
    });
    return chosen;
}

void Journal::clear() {
    const std::lock_guard lock(g_mutex);
    std::vector<std::string>().swap(m_entries);
}

} // namespace test
