// The pages of the user guide: one row a page. A page is an HTML file in resources/guide; a new page is a row here.
#pragma once

#include <QString>
#include <span>

namespace lumora {

/// One page. The guide is in English, its captions too; a tool's page has the caption and the picture of its button.
struct GuidePage {
    const char *file;    ///< in ":/guide"
    const char *title;   ///< below its picture in the contents
    const char *icon;    ///< as iconPixmap takes it
    const char *heading; ///< of the group that begins with this page; empty within a group
};

/// All pages in the order of the contents.
std::span<const GuidePage> guidePages();

/// The row of that file; nullptr when there is none.
const GuidePage *guidePage(const QString &file);

/// What stands in that file of the guide, as HTML; empty when there is no such file.
QString guideHtml(const QString &file);

} // namespace lumora
