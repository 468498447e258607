#include <tesk5/Page.h>

#include <tesk5/Language.h>
#include <tesk5/ModuleInfo.h>
#include <tesk5/Texts.h>

#include "reports/PageHead.h"
#include "reports/ReportTemplates.h"
#include "reports/Template.h"
#include "texts/NumberText.h"

#include <mrl/Languages.h>

#include <cctype>

namespace tesk5 {

bool isPageMirrored() {
    return mrl::isRightToLeft(Language::current().tag());
}

mrl::Json pageHead(const std::string& title, const ModuleVersion& version) {
    return {{"lang", Language::current().tag()},
            {"dir", isPageMirrored() ? "rtl" : "ltr"},
            {"title", title},
            {"program", message("REPORT_PROGRAM", {{"Name", std::string(moduleInfo().name)},
                                                   {"Version", version.text()},
                                                   {"Build", version.build}})}};
}

void setTexts(mrl::Json& page, std::string_view text) {
    constexpr std::string_view OPEN = "{{";
    for (std::size_t tag = text.find(OPEN); tag != std::string_view::npos;
         tag = text.find(OPEN, tag + 1)) {
        const std::size_t start = tag + OPEN.size();
        const std::string key(text.substr(start, text.find("}}", start) - start));
        if (!key.empty() && std::isupper(static_cast<unsigned char>(key.front())) != 0) {
            page[key] = translation(TeskString(key)).utf8();
        }
    }
}

mrl::Json timeJson(mrl::Clock::UtcTime time) {
    return {{"machine", mrl::utcText(time)}, {"people", localTimeText(time)}};
}

std::string pageOf(const std::string& title, std::string_view content, const mrl::Json& data,
                   const std::map<std::string, std::string_view>& parts) {
    mrl::Json page = data;
    page.update(pageHead(title, RunContext::current().version));
    page["made"] = timeJson(mrl::Clock::current().utcNow());
    std::map<std::string, std::string_view> all = parts;
    all["head"] = headTemplate();
    all["mark"] = markTemplate();
    all["content"] = content;
    for (const auto& [name, part] : all) {
        setTexts(page, part);
    }
    return filled(pageTemplate(), page, all);
}

std::string percentOf(double share) {
    constexpr int DIGITS = 2;
    return fixedPoint(share, DIGITS) + "%";
}

} // namespace tesk5
