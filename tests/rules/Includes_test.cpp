// Rules that no compiler checks: allowed includes, and forbidden content of files.
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

/// The modules that each module may include; itself always. docs/architecture.md shows the same rows.
const QMap<QString, QStringList> mayUse = {
    {"app", {"base", "devices", "dialogs", "document", "guide", "session", "widgets", "window"}},
    {"base", {}},
    {"devices", {"base"}},
    {"dialogs", {"base", "document", "imaging", "session", "view", "widgets"}},
    {"document", {"base", "imaging"}},
    {"effects", {"base", "document", "imaging", "session", "view", "widgets"}},
    {"guide", {"base", "session", "widgets"}},
    {"ideas", {"base", "session", "widgets"}},
    {"imaging", {"base"}},
    {"options", {"base", "devices", "session", "widgets"}},
    {"output", {"base", "devices", "document", "imaging", "session", "view", "widgets"}},
    {"session", {"base", "document", "imaging"}},
    {"tools", {"base", "document", "effects", "imaging", "session", "view", "widgets"}},
    {"view", {"base", "document", "imaging"}},
    {"widgets", {"base"}},
    {"window",
     {"base", "dialogs", "document", "effects", "ideas", "imaging", "options", "output", "session", "tools", "view",
      "widgets"}},
};

/// "base/Texts.h" belongs to base, "imaging/effects/Blur.h" to imaging; empty for what is not Lumora's.
QString moduleOf(const QString &path) {
    const QString module = path.section('/', 0, 0);
    return path.contains('/') && mayUse.contains(module) ? module : QString();
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

/// The error of an include of a file in src/; empty when it is allowed.
QString includeFault(const QString &file, const QString &include) {
    const QString from = moduleOf(file);
    const QString name = include.mid(1);
    if (include.startsWith('"')) {
        const QString to = moduleOf(name);
        if (to.isEmpty()) {
            // What the build makes, and the second pass that the vector library takes over a kernel.
            return name.endsWith(".moc") ? QString() : QString("give the path below src/");
        }
        return from.isEmpty() || to == from || mayUse[from].contains(to) ? QString() : from + " must not see " + to;
    }
    static const QRegularExpression windows(
        "^(QtWidgets|QWidget|QDialog|QMainWindow|QMessageBox|QPushButton|QLabel|QApplication)");
    static const QStringList windowless = {"base", "devices", "document", "imaging", "session"};
    if (windowless.contains(from) && windows.match(name).hasMatch()) {
        return from + " knows no windows";
    }
    static const QRegularExpression qt("^(Qt|Q[A-Z])");
    if ((file.startsWith("imaging/effects/") || file.startsWith("imaging/kernels/")) && qt.match(name).hasMatch()) {
        return "kernels see plain pixels, not Qt";
    }
    return {};
}

TEST(Rules, IncludesKeepToTheTable) {
    const QStringList files = filesBelow("src", {"*.h", "*.cpp"});
    ASSERT_GT(files.size(), 20) << "is LUMORA_SOURCE set?";
    for (const QString &path : files) {
        const QString file = path.mid(4);
        EXPECT_TRUE(file == "main.cpp" || !moduleOf(file).isEmpty()) << qPrintable(path) << " is in no module";
        for (const QString &include : includesOf(contents(root() + '/' + path))) {
            const QString fault = includeFault(file, include);
            EXPECT_TRUE(fault.isEmpty()) << qPrintable(path + " includes " + include.mid(1) + ": " + fault);
        }
    }
}

/// Kernels may reach Qt through a header as well; no header that they include may include Qt.
TEST(Rules, KernelsReachNoQtThroughHeaders) {
    QStringList kernels =
        filesBelow("src/imaging/effects", {"*.h", "*.cpp"}) + filesBelow("src/imaging/kernels", {"*.h", "*.cpp"});
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

TEST(Rules, TheRulesFindWhatBreaksThem) {
    const struct {
        const char *file, *include;
        bool broken;
    } cases[] = {
        {"tools/Crop.cpp", "\"dialogs/frmExit.h", true}, {"tools/Crop.cpp", "\"effects/BasicEffects.h", false},
        {"effects/Panel.cpp", "\"base/Texts.h", false},  {"effects/Panel.cpp", "\"window/frmMain.h", true},
        {"base/Texts.cpp", "\"widgets/Theme.h", true},   {"view/PhotoView.cpp", "\"tools/crop/CropTool.h", true},
        {"view/PhotoView.cpp", "<QWidget", false},       {"document/PhotoDocument.cpp", "<QWidget", true},
        {"view/PhotoView.cpp", "\"PhotoView.h", true},   {"devices/Scanner.cpp", "<QDialog", true},
        {"imaging/effects/Sepia.cpp", "<QImage", true},  {"imaging/effects/Sepia.cpp", "<cmath", false},
        {"imaging/Scale.cpp", "<QImage", false},         {"widgets/Pager.cpp", "\"view/PhotoView.h", true},
        {"main.cpp", "\"app/basMain.h", false},
    };
    for (const auto &c : cases) {
        EXPECT_EQ(!includeFault(c.file, c.include).isEmpty(), c.broken) << c.file << ' ' << c.include;
    }
    EXPECT_EQ(includesOf("// #include <a>\n #  include \"b/c.h\" // d\n#include <e>\n"),
              (QStringList{"\"b/c.h", "<e"}));
}

TEST(Rules, ArchitecturePageShowsTheSameTable) {
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

TEST(Rules, EverySourceFileSaysWhatItIsFor) {
    const QStringList files = filesBelow("src", {"*.h", "*.cpp"});
    ASSERT_FALSE(files.isEmpty());
    for (const QString &path : files) {
        const QString header = QString(path).replace(QRegularExpression("\\.cpp$"), ".h");
        const bool explained = path != header && QFile::exists(root() + '/' + header);
        EXPECT_TRUE(explained || contents(root() + '/' + path).startsWith("// "))
            << qPrintable(path) << " begins without a comment, and no header explains it";
    }
}

/// What stands between the bracket at `open` and the one that closes it.
QString insideBrackets(const QString &code, qsizetype open) {
    int depth = 0;
    for (qsizetype i = open; i < code.size(); ++i) {
        depth += code[i] == '(' ? 1 : code[i] == ')' ? -1 : 0;
        if (depth == 0) {
            return code.mid(open + 1, i - open - 1);
        }
    }
    return {};
}

/// Texts that the code passes to the user interface without the language file: painted text, status messages and
/// message boxes are not on controls where a test of the windows would find them.
QStringList wordsShownByCode(const QString &code) {
    static const QRegularExpression shows(
        R"(\b(set\w*(?:Text|ToolTip|Title|Name|Description|Html|NameFilters?)|add(?:Item|Items|Action)|showMessage|)"
        R"(showError|message|failed|done|drawText|paintPointerLabel|QMessageBox::\w+)\()");
    static const QRegularExpression fromTheFile(R"(\b(?:text|fileTypeText)\()");
    static const QRegularExpression literal(R"re("((?:[^"\\]|\\.)*)")re");
    static const QRegularExpression words(R"(^[^<:/]*(?:\p{L}[^<]* |[A-Z][a-z]))"); // a sentence or a capital word
    QStringList found;
    for (auto call = shows.globalMatch(code); call.hasNext();) {
        const auto match = call.next();
        if (match.captured(1) == "setObjectName" || match.captured(1) == "setApplicationName") {
            continue;
        }
        QString shown = insideBrackets(code, match.capturedEnd() - 1);
        for (auto text = fromTheFile.match(shown); text.hasMatch(); text = fromTheFile.match(shown)) {
            shown.replace(text.capturedStart(),
                          text.capturedLength() + insideBrackets(shown, text.capturedEnd() - 1).size() + 1, " ");
        }
        for (auto i = literal.globalMatch(shown); i.hasNext();) {
            const QString text = i.next().captured(1);
            if (words.match(text).hasMatch()) {
                found << match.captured(1) + ": " + text;
            }
        }
    }
    return found;
}

TEST(Rules, VisibleTextsAreInTheLanguageFile) {
    EXPECT_EQ(
        wordsShownByCode(R"(box->setText(texts.text("Open", "Open it") + "All Files"); Q_EMIT message("No photo"))"),
        (QStringList{"setText: All Files", "message: No photo"}));
    EXPECT_EQ(
        wordsShownByCode(R"(setObjectName("My Box"); label->setText(QString("%1: %2").arg(1)); setText("<p a b>"))"),
        QStringList());
    const QStringList files = filesBelow("src", {"*.h", "*.cpp"});
    ASSERT_FALSE(files.isEmpty());
    for (const QString &path : files) {
        const QStringList found = wordsShownByCode(contents(root() + '/' + path));
        EXPECT_TRUE(found.isEmpty()) << qPrintable(path + ": " + found.join(", "));
    }
}

/// A name without a drawing shows nothing, and nothing else says so.
TEST(Rules, EveryIconIsThere) {
    const QRegularExpression named(
        R"re((?:PictureButton|PictureChoice|PictureTick|iconPixmap|setPicture|\bpicture|(?:tickBox|addButton|footButton)\("\w+",) ?\(?"([a-z0-9-]+)")re");
    int seen = 0;
    for (const QString &path : filesBelow("src", {"*.cpp"})) {
        for (auto all = named.globalMatch(contents(root() + '/' + path)); all.hasNext(); ++seen) {
            const QString icon = all.next().captured(1);
            EXPECT_TRUE(QFileInfo::exists(root() + "/resources/icons/" + icon + ".svg"))
                << qPrintable(path + ": " + icon);
        }
    }
    EXPECT_GT(seen, 60);
}

TEST(Rules, NoFileLeavesWorkForLater) {
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
            if (path.endsWith("rules/Includes_test.cpp")) {
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
