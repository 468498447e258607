// Read without a tree of values in between: every start of the program reads all its texts.
#include "texts/TextFile.h"

#include "texts/JsonFile.h"

#include <optional>
#include <set>
#include <vector>

namespace tesk5 {

namespace {

// Ill-formed JSON and members named twice are refused where they stand, what is no text only at the
// end: the worse of two mistakes is the one to tell.
class TextsReceiver final : public JsonReceiver {
public:
    bool string(string_t& text) override {
        if (m_open.size() == 1 && m_isObject) {
            m_texts.emplace(m_key, std::move(text));
        } else {
            plainValue();
        }
        return true;
    }
    bool key(string_t& name) override {
        if (!m_open.back().insert(name).second) {
            throw memberTwice(name);
        }
        if (m_open.size() == 1 && m_isObject) {
            m_key = std::move(name);
        }
        return true;
    }
    bool start_object(std::size_t) override {
        if (m_open.empty()) {
            m_isObject = true;
        }
        return open();
    }
    bool start_array(std::size_t) override { return open(); }
    bool end_object() override { return close(); }
    bool end_array() override { return close(); }

    TextsByKey texts() {
        if (!m_isObject) {
            throw JsonFailure(Message("INPUT_TEXTS_NO_OBJECT"));
        }
        if (m_keyWithoutText) {
            throw JsonFailure(Message("INPUT_TEXTS_NO_STRING", {{"Key", *m_keyWithoutText}}));
        }
        return std::move(m_texts);
    }

protected:
    void plainValue() override { noText(); }

private:
    void noText() {
        if (m_isObject && !m_keyWithoutText) {
            m_keyWithoutText = m_key;
        }
    }
    bool open() {
        if (!m_open.empty()) {
            noText();
        }
        m_open.emplace_back();
        return true;
    }
    bool close() {
        m_open.pop_back();
        return true;
    }

    TextsByKey m_texts;
    std::string m_key;
    std::optional<std::string> m_keyWithoutText;
    bool m_isObject = false;
    // The members so far of each object or array around the place.
    std::vector<std::set<std::string>> m_open;
};

} // namespace

TextsByKey textsOf(const std::string& json) {
    TextsReceiver receiver;
    parseJson(json, receiver);
    return receiver.texts();
}

} // namespace tesk5
