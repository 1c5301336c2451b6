// The user guide: every page, picture and place that it points at is there.
#include <QDir>
#include <QFile>
#include <QRegularExpression>
#include <gtest/gtest.h>

namespace {

TEST(Guide, EveryLinkAndPictureIsThere) {
    const QDir guide(qEnvironmentVariable("LUMORA_SOURCE") + "/resources/guide");
    const QStringList pages = guide.entryList({"*.html"});
    ASSERT_TRUE(pages.contains("index.html"));
    const QRegularExpression reference(R"re((?:href|src)="([^"#]*)(?:#([^"]*))?")re");
    for (const QString &page : pages) {
        QFile in(guide.filePath(page));
        ASSERT_TRUE(in.open(QIODevice::ReadOnly));
        const QString html = QString::fromUtf8(in.readAll());
        for (auto match = reference.globalMatch(html); match.hasNext();) {
            const auto found = match.next();
            const QString file = found.captured(1);
            const QString place = found.captured(2);
            EXPECT_TRUE(file.isEmpty() || QFile::exists(guide.filePath(file))) << qPrintable(page + ": " + file);
            EXPECT_TRUE(place.isEmpty() || html.contains("name=\"" + place + '"')) << qPrintable(page + "#" + place);
        }
    }
}

} // namespace
