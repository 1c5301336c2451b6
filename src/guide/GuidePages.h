// The pages of the user guide: one row a page. A page is an HTML file in resources/guide/LANGUAGE; a new page is a row
// here.
#pragma once

#include <QString>
#include <span>

namespace lumora {

class Texts;

/// One page. A tool's page has the caption and the picture of the tool's button.
struct GuidePage {
    const char *file;    ///< the same in every language's folder, ":/guide/en" and so on
    const char *title;   ///< identifier of the text below its picture in the contents
    const char *icon;    ///< as iconPixmap takes it
    const char *heading; ///< identifier of the title of the group that begins with this page; empty within a group
};

/// Version, licence and credits.
inline constexpr const char *aboutPage = "about.html";

/// All pages in the order of the contents.
std::span<const GuidePage> guidePages();

/// The row of that file; nullptr when there is none.
const GuidePage *guidePage(const QString &file);

/// The title of a page or a group as a reader sees it; "&&" in the text is one ampersand.
QString guideTitle(const Texts &texts, const char *identifier);

/// The language file's choice of guide, the name of a folder in ":/guide".
QString guideLanguage(const Texts &texts);

/// A page, or the greeting "index.html", as HTML: in that language where the guide has it, else in English. A picture
/// "../NAME.jpg" is the language's own, "../LANGUAGE/NAME.jpg", where
/// there is one. "{version}" becomes the program's. Empty when there is no such file.
QString guideHtml(const QString &language, const QString &file);

/// The style sheet of all pages.
QString guideStyle();

} // namespace lumora
