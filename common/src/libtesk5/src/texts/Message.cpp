#include "texts/Message.h"

#include <tesk5/Texts.h>

#include "texts/FrameworkTexts.h"
#include "texts/TextCatalogue.h"

namespace tesk5 {

Message::Message(TeskString key, Event::Variables variables)
    : m_key(std::move(key)), m_variables(std::move(variables)) {}

Message Message::ofOthers(const std::string& words) {
    Message message;
    message.m_words = words;
    return message;
}

std::string Message::text() const {
    return m_key.empty() ? m_words : message(m_key, m_variables);
}

std::string Message::inEnglish() const {
    static const TextCatalogue english({{{}, frameworkTexts()}}, "en");
    return m_key.empty() ? m_words : fillPlaceholders(english.find(m_key).utf8(), m_variables);
}

} // namespace tesk5
