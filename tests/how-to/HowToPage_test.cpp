// docs/how-to.md names only existing files.
#include <QFile>
#include <QRegularExpression>
#include <gtest/gtest.h>

namespace {

TEST(HowToPage, NamesFilesThatExist) {
    const QString root = qEnvironmentVariable("LUMORA_SOURCE") + '/';
    QFile page(root + "docs/how-to.md");
    ASSERT_TRUE(page.open(QIODevice::ReadOnly));
    const QString text = QString::fromUtf8(page.readAll());
    const QRegularExpression path("`((?:content|resources|scripts|src|tests)/[^` ]*)`");
    int seen = 0;
    for (auto match = path.globalMatch(text); match.hasNext(); ++seen) {
        // For a placeholder name only the folder has to exist.
        QString named = match.next().captured(1).remove(QRegularExpression("[^/]*(NAME|\\*).*$"));
        if (!named.endsWith('/') && !named.section('/', -1).contains('.') && !QFile::exists(root + named)) {
            named += ".cpp"; // a file pair is named without its ending
        }
        EXPECT_TRUE(QFile::exists(root + named)) << qPrintable(named);
    }
    EXPECT_GT(seen, 10);
}

} // namespace
