#include "guide/GuidePages.h"

#include "base/Texts.h"
#include "base/basMisc.h"
#include "widgets/Theme.h"

#include <QFile>
#include <QRegularExpression>
#include <algorithm>

namespace lumora {

namespace {

const GuidePage pages[] = {
    {"first-steps.html", "GuideFirstSteps", "hand", "GuideBegin"},
    {"open.html", "Open", "open", ""},
    {"save.html", "Save", "save", ""},
    {"scan.html", "Scan", "scan", ""},
    {"print.html", "Print", "print", ""},
    {"crafts.html", "GuideCrafts", "paper-crafts", ""},
    {"zoom.html", "GuideZoom", "setzoom", ""},
    {"undo.html", "GuideUndo", "undo", ""},
    {"email.html", "E-mail", "email", ""},
    {"copy.html", "GuideCopy", "copy", ""},
    {"slideshow.html", "Slideshow", "slideshow", ""},
    {"ideas.html", "Ideas", "ideas", ""},
    {"stickers.html", "Stickers", "stickers", ""},
    {"pop-art.html", "IdeaPopArtName", "pop-art", ""},
    {"read-aloud.html", "ForMeReadAloud", "read-aloud", ""},
    {"rights.html", "GuideRights", "rights", ""},
    {"for-me.html", "ForMe", "for-me", ""},
    {"help.html", "Help", "help", ""},
    {"exit.html", "Exit", "exit", ""},

    {"arrow.html", "Tool1", "tool1", "GuideTools"},
    {"selection.html", "Tool2", "tool2", ""},
    {"crop.html", "Tool3", "tool3", ""},
    {"resize.html", "Tool4", "tool4", ""},
    {"rotate.html", "Tool5", "tool5", ""},
    {"red-eye.html", "Tool6", "tool6", ""},
    {"frames.html", "Tool7", "tool7", ""},
    {"basic-effects.html", "Tool8", "tool8", ""},
    {"adjust.html", "Tool9", "tool9", ""},
    {"special-effects.html", "Tool10", "tool10", ""},
    {"colour-focus.html", "Tool11", "tool11", ""},
    {"cut-out.html", "BtnCutout", "cropcut", ""},

    {"grownups.html", "GuideGrownUps", "grown-ups", "GuideGrownUps"},
    {"lesson.html", "GuideLesson", "lesson", ""},
    {"worksheet.html", "GuideSheet", "worksheet", ""},
    {"options.html", "DlgOptionsTitle", "options", ""},
    {"settings.html", "GuideSettings", "options-general", ""},
    {"languages.html", "GuideLanguages", "language", ""},
    {"keys.html", "GuideKeys", "keys", ""},
    {aboutPage, "BtnAbout", "lumora", ""},
};

QString contentsOf(const QString &file) {
    QFile in(":/guide/" + file);
    return in.open(QIODevice::ReadOnly) ? QString::fromUtf8(in.readAll()) : QString();
}

} // namespace

std::span<const GuidePage> guidePages() {
    return pages;
}

const GuidePage *guidePage(const QString &file) {
    const auto *row = std::find_if(std::begin(pages), std::end(pages),
                                   [&](const GuidePage &page) { return file == QLatin1String(page.file); });
    return row == std::end(pages) ? nullptr : row;
}

QString guideTitle(const Texts &texts, const char *identifier) {
    return texts.text(identifier).replace("&&", "&");
}

QString guideLanguage(const Texts &texts) {
    return texts.text("Language");
}

QString guideHtml(const QString &language, const QString &file) {
    QString html = contentsOf(language + '/' + file);
    if (html.isEmpty()) {
        return contentsOf("en/" + file).replace("{version}", versionNumber());
    }
    static const QRegularExpression picture("\"\\.\\./([\\w-]+\\.jpg)\"");
    qsizetype from = 0;
    for (QRegularExpressionMatch match = picture.match(html, from); match.hasMatch();
         match = picture.match(html, from)) {
        const QString own = match.captured(1);
        if (QFile::exists(":/guide/" + language + '/' + own)) {
            html.replace(match.capturedStart(), match.capturedLength(), "\"../" + language + '/' + own + '"');
        }
        from = match.capturedStart() + 1;
    }
    return html.replace("{version}", versionNumber());
}

QString guideStyle() {
    const QString airy = shownLook().easyLetters ? QStringLiteral("p, li, td { line-height: 125%; }\n") : QString();
    return withColours(contentsOf("guide.css")) + airy;
}

} // namespace lumora
