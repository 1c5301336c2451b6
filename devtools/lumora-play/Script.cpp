#include "Script.h"

#include <QRegularExpression>
#include <algorithm>
#include <iterator>

namespace lumora::play {

namespace {

/// How a verb is written: at least and at most so many words; the last one takes the rest of the line.
struct Verb {
    const char *name;
    int least;
    int most;
    const char *usage;
};

const Verb verbs[] = {
    {"setting", 1, 1, "setting SECTION/KEY=VALUE"},
    {"site-setting", 1, 1, "site-setting SECTION/KEY=VALUE"},
    {"language", 1, 1, "language CODE | language longer | language mirrored"},
    {"resize", 1, 1, "resize WIDTHxHEIGHT | resize restored | resize maximised"},
    {"expect-fits", 0, 1, "expect-fits | expect-fits whole | expect-fits simple"},
    {"start", 0, 2, "start | start simple | start advanced [PHOTO]"},
    {"click", 1, 1, "click CONTROL"},
    {"item", 2, 2, "item BAR KEY"},
    {"type", 2, 2, "type CONTROL TEXT"},
    {"set", 2, 2, "set CONTROL VALUE"},
    {"point", 1, 1, "point CONTROL | point X Y"},
    {"press", 1, 1, "press X Y"},
    {"drag", 1, 1, "drag X Y X Y ..."},
    {"key", 1, 1, "key KEYS"},
    {"undo", 1, 1, "undo all"},
    {"redo", 1, 1, "redo all"},
    {"choose", 1, 1, "choose FILE"},
    {"desktop", 2, 2, "desktop type TEXT | desktop key KEYS"},
    {"drop", 1, 1, "drop FILE"},
    {"close", 0, 0, "close"},
    {"kill", 0, 0, "kill"},
    {"meanwhile", 1, 1, "meanwhile on | meanwhile off"},
    {"monkey", 2, 3, "monkey SEED COUNT [FOLDER]"},
    {"wait", 1, 1, "wait MILLISECONDS"},
    {"expect", 2, 2, "expect CONTROL TEXT"},
    {"expect-not", 2, 2, "expect-not CONTROL TEXT"},
    {"expect-gone", 1, 1, "expect-gone CONTROL"},
    {"look", 1, 2, "look NAME [CONTROL]"},
    {"expect-look", 1, 2, "expect-look NAME-OR-FILE [CONTROL]"},
    {"state", 0, 0, "state"},
    {"hash", 0, 3, "hash [NAME] | hash outside MASK [NAME]"},
    {"mask", 1, 1, "mask NAME"},
    {"shot", 1, 2, "shot FILE [CONTROL ...]"},
    {"pointer", 1, 1, "pointer on | pointer off"},
    {"film", 1, 2, "film FILE FRAMES-PER-SECOND | film end"},
    {"cue", 1, 1, "cue NAME"},
    {"quit", 0, 0, "quit"},
};

/// The first `most` words of the line; the last of them keeps everything that follows.
QStringList wordsOf(QString rest, int most) {
    QStringList words;
    rest = rest.trimmed();
    while (!rest.isEmpty()) {
        const auto blank = rest.indexOf(QRegularExpression("\\s"));
        if (blank < 0 || words.size() + 1 == most) {
            words << rest;
            break;
        }
        words << rest.left(blank);
        rest = rest.mid(blank).trimmed();
    }
    return words;
}

constexpr int mostFrames = 60; // a second

bool isFilm(const Step &step) {
    const int frames = step.word(1).toInt();
    return step.word(0) == "end" ? step.words.size() == 1 : frames > 0 && frames <= mostFrames;
}

bool isCount(const QString &word) {
    bool isNumber = false;
    return word.toInt(&isNumber) >= 0 && isNumber;
}

bool isBeforeStart(const QString &verb) {
    return QStringList{"start", "setting", "site-setting", "language"}.contains(verb);
}

QString misread(const Step &step, const Verb &verb, bool started) {
    if (!started && !isBeforeStart(step.verb)) {
        return "a script begins with start";
    }
    if (started && isBeforeStart(step.verb)) {
        return "the program is started already";
    }
    QString how = QString("write it so: %1").arg(verb.usage);
    if (step.words.size() < verb.least || step.words.size() > verb.most) {
        return how;
    }
    if (step.verb == "start" && !step.words.isEmpty()) {
        const bool simple = step.word(0) == "simple" && step.words.size() == 1;
        return simple || step.word(0) == "advanced" ? QString() : how;
    }
    const auto numbers = coordinates(step.word(0)).size();
    static const QRegularExpression assignment("^[^/=]+/[^/=]+=");
    if (step.verb.endsWith("setting") && !assignment.match(step.word(0)).hasMatch()) {
        return how;
    }
    static const QRegularExpression size("^([1-9][0-9]*x[1-9][0-9]*|restored|maximised)$");
    const bool outside = step.word(0) == "outside";
    const bool wrong =
        (step.verb == "wait" && !isCount(step.word(0))) ||
        (step.verb == "monkey" && !(isCount(step.word(0)) && isCount(step.word(1)))) ||
        (step.verb == "film" && !isFilm(step)) ||
        (step.verb == "expect-fits" && !step.words.isEmpty() && step.word(0) != "whole" && step.word(0) != "simple") ||
        ((step.verb == "pointer" || step.verb == "meanwhile") && step.word(0) != "on" && step.word(0) != "off") ||
        (step.verb == "desktop" && step.word(0) != "type" && step.word(0) != "key") ||
        (step.verb == "resize" && !size.match(step.word(0)).hasMatch()) ||
        ((step.verb == "undo" || step.verb == "redo") && step.word(0) != "all") ||
        (step.verb == "hash" && (outside ? step.words.size() < 2 : step.words.size() > 1)) ||
        (step.verb == "press" && numbers != 2) || (step.verb == "drag" && numbers < 4);
    return wrong ? how : QString();
}

} // namespace

Script readScript(const QString &text) {
    Script script;
    bool started = false;
    const QStringList lines = text.split('\n');
    for (qsizetype index = 0; index < lines.size(); ++index) {
        const QString line = lines[index].trimmed();
        if (line.isEmpty() || line.startsWith('#')) {
            continue;
        }
        const QStringList halves = wordsOf(line, 2);
        const auto *verb = std::find_if(std::begin(verbs), std::end(verbs),
                                        [&](const Verb &row) { return halves[0] == QLatin1String(row.name); });
        const bool known = verb != std::end(verbs);
        Step step{static_cast<int>(index) + 1, halves[0],
                  wordsOf(halves.value(1), known ? std::max(verb->most, 1) : 1)};
        const QString problem =
            known ? misread(step, *verb, started) : QString("there is no step \"%1\"").arg(halves[0]);
        if (!problem.isEmpty()) {
            script.problemLine = step.line;
            script.problem = problem;
            break;
        }
        started = started || step.verb == "start";
        script.steps.push_back(std::move(step));
    }
    return script;
}

QString withVariables(const QString &text, const QHash<QString, QString> &variables) {
    static const QRegularExpression name("\\$\\{?([A-Za-z_][A-Za-z_0-9]*)\\}?");
    QString result;
    qsizetype end = 0;
    for (auto matches = name.globalMatch(text); matches.hasNext();) {
        const auto match = matches.next();
        result += text.mid(end, match.capturedStart() - end);
        result += variables.value(match.captured(1), match.captured());
        end = match.capturedEnd();
    }
    return result + text.mid(end);
}

std::vector<int> coordinates(const QString &words) {
    static const QRegularExpression blanks("\\s+");
    std::vector<int> numbers;
    for (const QString &word : words.split(blanks, Qt::SkipEmptyParts)) {
        bool isNumber = false;
        numbers.push_back(word.toInt(&isNumber));
        if (!isNumber) {
            return {};
        }
    }
    return numbers.size() % 2 == 0 ? numbers : std::vector<int>();
}

} // namespace lumora::play
