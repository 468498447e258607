// A message in two languages: that of the user for people, and English for the log.
#pragma once

#include <tesk5/Event.h>

#include <string>

namespace tesk5 {

/// A text of the framework by its key, with its variables, or foreign words that are not
/// translated.
class Message {
public:
    explicit Message(TeskString key, Event::Variables variables = {});
    /// `words` in every language: the system's or a parser's.
    static Message ofOthers(const std::string& words);

    /// In the language in force. Not to be called while the files of texts are read: it would
    /// deadlock.
    std::string text() const;
    /// In English, from the compiled-in texts alone: for the log, which is English on every PC.
    std::string inEnglish() const;

private:
    Message() = default;

    TeskString m_key;
    Event::Variables m_variables;
    std::string m_words;
};

} // namespace tesk5
