// A study as a page for people.
#pragma once

#include <study/StudyFile.h>

#include <string>
#include <string_view>

namespace study {

/// The page, in UTF-8 and in the language in force: verdict, figures, and the usual drawings, which
/// are the components of variation, ranges and averages by operator, readings by part, and the
/// interaction of both. It has no script and loads nothing.
std::string studyPage(const StudyResult& result);

/// Its Mustache template: res/study_page.html.
std::string_view studyPageTemplate();

} // namespace study
