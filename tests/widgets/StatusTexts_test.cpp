// Whether the status line of the smallest window has room for what it may say, in every language that is installed.
#include "base/IniText.h"
#include "base/Texts.h"
#include "widgets/StatusLine.h"
#include "widgets/Theme.h"

#include "support/TestFiles.h"

#include <QRegularExpression>
#include <gtest/gtest.h>

namespace lumora {
namespace {

constexpr int smallestWindow = 800; // pixels

TEST(StatusTexts, FitInEveryLanguage) {
    applyTheme(*qApp);
    StatusLine line("SBar");
    line.resize(smallestWindow, line.sizeHint().height());
    const QRegularExpression said("^(Status(?!bar|Version|Photo|Resized)|Scan(?!n)|Print(?!_)).*");
    ASSERT_GT(test::languageFiles().size(), 1);
    for (const QString &file : test::languageFiles()) {
        const IniText texts(test::contents(file));
        int shown = 0;
        for (const TextRow &row : allTexts()) {
            const bool isSentence = QString::fromUtf8(row.defaultText).contains(QRegularExpression("[.?]$"));
            if (*row.control != '-' || !isSentence || !said.match(row.identifier).hasMatch()) {
                continue;
            }
            const QString text = texts.value(row.identifier, "Caption").value_or(QString()).replace("%1", "30000");
            line.showMessage(text);
            EXPECT_TRUE(line.isTextWhole()) << qPrintable(file + ": " + row.identifier + " \"" + text + '"');
            ++shown;
        }
        EXPECT_GT(shown, 40);
    }
}

} // namespace
} // namespace lumora
