// Rules of the house that no compiler holds: who may include whom, and what the files must not say.
#include <QCoreApplication>
#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QHash>
#include <QRegularExpression>
#include <QSet>
#include <gtest/gtest.h>

namespace {

QString root() {
    return qEnvironmentVariable("LUMORA_SOURCE");
}

QString contents(const QString &file) {
    QFile in(file);
    return in.open(QIODevice::ReadOnly) ? QString::fromUtf8(in.readAll()) : QString();
}

/// Paths below the root, for files of these names in that folder and below.
QStringList filesBelow(const QString &folder, const QStringList &names) {
    QStringList files;
    for (QDirIterator i(root() + '/' + folder, names, QDir::Files | QDir::Hidden, QDirIterator::Subdirectories);
         i.hasNext();) {
        files << QDir(root()).relativeFilePath(i.next());
    }
    files.sort();
    return files;
}

/// What each room may include of ours; itself always. docs/architecture.md shows the same rows.
const QMap<QString, QStringList> mayUse = {
    {"imaging", {}},
    {"devices", {"imaging"}},
    {"document", {"imaging"}},
    {"widgets", {}},
    {"settings", {"document", "imaging"}},
    {"effects", {"document", "imaging", "settings", "widgets"}},
    {"tools", {"document", "effects", "imaging", "settings", "widgets"}},
    {"output", {"devices", "document", "imaging", "settings", "widgets"}},
    {"dialogs", {"document", "settings", "widgets"}},
    {"app", {"devices", "dialogs", "document", "effects", "imaging", "output", "settings", "tools", "widgets"}},
};

/// "app/settings/Texts.h" belongs to settings, "imaging/Scale.h" to imaging; empty for what is not ours.
QString roomOf(const QString &path) {
    const QString room = path.startsWith("app/settings/") ? QString("settings") : path.section('/', 0, 0);
    return path.contains('/') && mayUse.contains(room) ? room : QString();
}

QStringList includesOf(const QString &code) {
    static const QRegularExpression line(R"(^[ \t]*#[ \t]*include[ \t]*([<"][^>"]+)[>"])",
                                         QRegularExpression::MultilineOption);
    QStringList found;
    for (auto match = line.globalMatch(code); match.hasNext();) {
        found << match.next().captured(1);
    }
    return found;
}

/// What is wrong with an include of a file in src/; empty when it may stay.
QString includeFault(const QString &file, const QString &include) {
    const QString from = roomOf(file);
    const QString name = include.mid(1);
    if (include.startsWith('"')) {
        const QString to = roomOf(name);
        if (to.isEmpty()) {
            // What the build makes, and the second pass that the vector library takes over a kernel.
            return name.endsWith(".moc") ? QString() : QString("give the path below src/");
        }
        return from.isEmpty() || to == from || mayUse[from].contains(to) ? QString() : from + " must not see " + to;
    }
    static const QRegularExpression windows("^(QtWidgets|QWidget|QDialog|QMainWindow|QMessageBox|QPushButton|QLabel)");
    if (from == "devices" && windows.match(name).hasMatch()) {
        return "devices know no windows";
    }
    if (from == "imaging" && (windows.match(name).hasMatch() || name == "QApplication")) {
        return "imaging knows no windows";
    }
    static const QRegularExpression qt("^(Qt|Q[A-Z])");
    if (file.startsWith("imaging/effects/") && qt.match(name).hasMatch()) {
        return "kernels see plain pixels, not Qt";
    }
    return {};
}

TEST(House, IncludesKeepToTheTable) {
    const QStringList files = filesBelow("src", {"*.h", "*.cpp"});
    ASSERT_GT(files.size(), 20) << "is LUMORA_SOURCE set?";
    for (const QString &path : files) {
        const QString file = path.mid(4);
        EXPECT_TRUE(file == "main.cpp" || !roomOf(file).isEmpty()) << qPrintable(path) << " lies in no room";
        for (const QString &include : includesOf(contents(root() + '/' + path))) {
            const QString fault = includeFault(file, include);
            EXPECT_TRUE(fault.isEmpty()) << qPrintable(path + " includes " + include.mid(1) + ": " + fault);
        }
    }
}

/// Kernels may reach Qt through a header as well; no header that they take in may include any.
TEST(House, KernelsReachNoQtThroughHeaders) {
    QStringList kernels = filesBelow("src/imaging/effects", {"*.h", "*.cpp"});
    for (const QString &path : filesBelow("src/imaging/transforms", {"*.cpp"})) {
        if (contents(root() + '/' + path).contains("hwy/highway.h")) {
            kernels << path;
        }
    }
    ASSERT_TRUE(kernels.contains("src/imaging/effects/Blur.cpp") &&
                kernels.contains("src/imaging/transforms/Rotate.cpp"));
    for (const QString &path : kernels) {
        QStringList open = {path.mid(4)};
        QSet<QString> seen;
        while (!open.isEmpty()) {
            const QString file = open.takeFirst();
            for (const QString &include : includesOf(contents(root() + "/src/" + file))) {
                const QString name = include.mid(1);
                EXPECT_FALSE(include.startsWith('<') && QRegularExpression("^(Qt|Q[A-Z])").match(name).hasMatch())
                    << qPrintable(path + " gets " + name + " through " + file);
                if (include.startsWith('"') && !seen.contains(name)) {
                    seen.insert(name);
                    open << name;
                }
            }
        }
    }
}

TEST(House, TheRulesFindWhatBreaksThem) {
    const struct {
        const char *file, *include;
        bool broken;
    } cases[] = {
        {"tools/Crop.cpp", "\"dialogs/frmExit.h", true},
        {"tools/Crop.cpp", "\"effects/BasicEffects.h", false},
        {"effects/Panel.cpp", "\"app/settings/Texts.h", false},
        {"effects/Panel.cpp", "\"app/frmMain.h", true},
        {"app/settings/Texts.cpp", "\"widgets/Theme.h", true},
        {"document/PhotoView.cpp", "\"tools/Crop.h", true},
        {"document/PhotoView.cpp", "<QWidget", false},
        {"document/PhotoView.cpp", "\"PhotoDocument.h", true},
        {"devices/Scanner.cpp", "<QDialog", true},
        {"imaging/effects/Sepia.cpp", "<QImage", true},
        {"imaging/effects/Sepia.cpp", "<cmath", false},
        {"imaging/Scale.cpp", "<QImage", false},
        {"widgets/Pager.cpp", "\"document/PhotoView.h", true},
        {"main.cpp", "\"app/basMain.h", false},
    };
    for (const auto &c : cases) {
        EXPECT_EQ(!includeFault(c.file, c.include).isEmpty(), c.broken) << c.file << ' ' << c.include;
    }
    EXPECT_EQ(includesOf("// #include <a>\n #  include \"b/c.h\" // d\n#include <e>\n"),
              (QStringList{"\"b/c.h", "<e"}));
}

TEST(House, ArchitecturePageShowsTheSameTable) {
    const QString page = contents(root() + "/docs/architecture.md");
    const QRegularExpression row(R"(^\| `([a-z/]+)` \| [^|]* \| ([^|]*) \|)", QRegularExpression::MultilineOption);
    QMap<QString, QStringList> shown;
    for (auto match = row.globalMatch(page); match.hasNext();) {
        const auto cells = match.next();
        QStringList used;
        const QRegularExpression name("`([a-z/]+)`");
        for (auto use = name.globalMatch(cells.captured(2)); use.hasNext();) {
            used << use.next().captured(1).section('/', -1);
        }
        used.sort();
        shown.insert(cells.captured(1).section('/', -1), used);
    }
    EXPECT_EQ(shown.keys(), mayUse.keys());
    for (auto i = mayUse.begin(); i != mayUse.end(); ++i) {
        EXPECT_EQ(shown.value(i.key()), i.value()) << qPrintable(i.key());
    }
}

TEST(House, EverySourceFileSaysWhatItIsFor) {
    const QStringList files = filesBelow("src", {"*.h", "*.cpp"});
    ASSERT_FALSE(files.isEmpty());
    for (const QString &path : files) {
        const QString header = QString(path).replace(QRegularExpression("\\.cpp$"), ".h");
        const bool explained = path != header && QFile::exists(root() + '/' + header);
        EXPECT_TRUE(explained || contents(root() + '/' + path).startsWith("// "))
            << qPrintable(path) << " begins without a comment, and no header explains it";
    }
}

TEST(House, NoFileLeavesWorkForLater) {
    const QRegularExpression later(R"(\b(TODO|FIXME|XXX)\b)");
    const QStringList names = {"*.h",  "*.cpp", "*.txt",  "*.cmake", "*.json",    "*.md", "*.ini", "*.html",  "*.svg",
                               "*.py", "*.sh",  "*.play", "*.xml",   "*.desktop", "run",  "test",  ".clang-*"};
    int read = 0;
    for (const QFileInfo &entry : QDir(root()).entryInfoList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot)) {
        const QString name = entry.fileName();
        if (name.startsWith("build") || name == "out" || name == ".git") {
            continue;
        }
        const QStringList files = entry.isDir() ? filesBelow(name, names) : QStringList{name};
        for (const QString &path : files) {
            if (path.endsWith("house/Includes_test.cpp")) {
                continue; // it names what it looks for
            }
            ++read;
            const QString text = contents(root() + '/' + path);
            const auto match = later.match(text);
            EXPECT_FALSE(match.hasMatch())
                << qPrintable(path) << ':' << text.left(match.capturedStart()).count('\n') + 1 << ": "
                << qPrintable(match.captured());
        }
    }
    EXPECT_GT(read, 50) << "is LUMORA_SOURCE set?";
}

} // namespace
