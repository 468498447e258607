// Something that is said to people and written to the log: the words are chosen when it is said.
#pragma once

#include <tesk5/Event.h>

#include <string>

namespace tesk5 {

/// A text of the framework with its variables, or words that are not ours and stay as they are.
class Message {
public:
    explicit Message(TeskString key, Event::Variables variables = {});
    /// `words` in every language: those of the system or of a parser.
    static Message ofOthers(const std::string& words);

    /// In the language in force. Not to be called while texts are being read.
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
