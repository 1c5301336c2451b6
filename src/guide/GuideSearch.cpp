#include "guide/GuideSearch.h"

#include "guide/GuidePages.h"

#include <QRegularExpression>
#include <QSet>
#include <QTextDocument>
#include <algorithm>
#include <numeric>
#include <vector>

namespace lumora {

namespace {

constexpr int titleWorth = 40;
constexpr int keywordWorth = 15;
constexpr int textWorth = 2;
constexpr int mostInText = 5;       // occurrences that count
constexpr int sentenceLength = 170; // characters
constexpr int leastForLikes = 4;    // letters of a word that may be a slip
constexpr int shortestStem = 3;     // letters that are left without an ending

bool isWordCharacter(QChar character) {
    return character.isLetterOrNumber();
}

QStringList wordsOf(const QString &folded) {
    static const QRegularExpression others("[^\\p{L}\\p{N}]+");
    return folded.split(others, Qt::SkipEmptyParts);
}

int countOf(const QString &text, const QString &word) {
    int count = 0;
    for (qsizetype at = findWord(text, word); at >= 0; at = findWord(text, word, at + 1)) {
        ++count;
    }
    return count;
}

/// What a page's <meta name="NAME" content="..."> holds; empty where there is none.
QString metaOf(const QString &html, const QString &name) {
    const QRegularExpression meta("<meta name=\"" + name + "\" content=\"([^\"]*)\"");
    return meta.match(html).captured(1);
}

/// How many letters have to be put in, left out or replaced to make one word of the other (Levenshtein's distance),
/// where two neighbours that changed places count once.
int distanceOf(const QString &one, const QString &other) {
    std::vector<int> before, last(static_cast<std::size_t>(other.size() + 1)), current(last.size());
    std::iota(last.begin(), last.end(), 0);
    for (qsizetype i = 1; i <= one.size(); ++i) {
        current[0] = static_cast<int>(i);
        for (qsizetype j = 1; j <= other.size(); ++j) {
            const auto at = static_cast<std::size_t>(j);
            const bool same = one[i - 1] == other[j - 1];
            current[at] = std::min({last[at] + 1, current[at - 1] + 1, last[at - 1] + (same ? 0 : 1)});
            if (i > 1 && j > 1 && one[i - 1] == other[j - 2] && one[i - 2] == other[j - 1]) {
                current[at] = std::min(current[at], before[at - 2] + 1);
            }
        }
        before = last;
        std::swap(last, current);
    }
    return last.back();
}

/// Sentences as parts of the text: first character and length.
QList<std::pair<qsizetype, qsizetype>> sentencesOf(const QString &text) {
    static const QRegularExpression sentence("[^\\n.!?]+[.!?]*");
    QList<std::pair<qsizetype, qsizetype>> found;
    for (auto matches = sentence.globalMatch(text); matches.hasNext();) {
        const auto match = matches.next();
        if (!match.captured().trimmed().isEmpty()) {
            found << std::pair(match.capturedStart(), match.capturedLength());
        }
    }
    return found;
}

/// The part as HTML with the words bold, cut to a length that can be read at a glance.
QString withBoldWords(QString part, const QStringList &words) {
    const QString folded = foldedForSearch(part);
    QList<bool> bold(part.size(), false);
    qsizetype first = part.size();
    for (const QString &word : words) {
        for (qsizetype at = findWord(folded, word); at >= 0; at = findWord(folded, word, at + 1)) {
            first = std::min(first, at);
            std::fill_n(bold.begin() + at, word.size(), true);
        }
    }
    const bool isLong = part.size() > sentenceLength;
    const qsizetype begin = isLong && first < part.size() ? std::max<qsizetype>(0, first - sentenceLength / 2) : 0;
    const qsizetype end = std::min<qsizetype>(part.size(), begin + sentenceLength);
    QString html = begin > 0 ? "… " : "";
    for (qsizetype at = begin; at < end; ++at) {
        const bool was = at > begin && bold[at - 1];
        html += bold[at] == was ? "" : bold[at] ? "<b>" : "</b>";
        html += QString(part[at]).toHtmlEscaped();
    }
    html += end > begin && bold[end - 1] ? "</b>" : "";
    return end < part.size() ? html + " …" : html;
}

} // namespace

QString foldedForSearch(const QString &text) {
    QString folded = text;
    for (QChar &character : folded) {
        const QString parts = character.decomposition();
        character = parts.isEmpty() || !parts[0].isLetter() ? character.toCaseFolded() : parts[0].toCaseFolded();
    }
    return folded;
}

qsizetype findWord(const QString &text, const QString &folded, qsizetype from) {
    if (folded.isEmpty()) {
        return -1;
    }
    qsizetype at = text.indexOf(folded, from);
    while (at > 0 && isWordCharacter(text[at - 1])) {
        at = text.indexOf(folded, at + 1);
    }
    return at;
}

GuideSearch::GuideSearch(const QList<Page> &pages, const QStringList &littleWords, const QStringList &endings)
    : m_littleWords(littleWords), m_endings(endings) {
    QSet<QString> vocabulary;
    for (const Page &page : pages) {
        m_entries << Entry{page, foldedForSearch(page.title), foldedForSearch(page.keywords),
                           foldedForSearch(page.text)};
        for (const QString &text : {m_entries.last().title, m_entries.last().keywords, m_entries.last().text}) {
            for (const QString &word : wordsOf(text)) {
                vocabulary << word;
            }
        }
    }
    m_vocabulary = QStringList(vocabulary.begin(), vocabulary.end());
    m_vocabulary.sort();
    for (const QString &word : std::as_const(m_vocabulary)) {
        for (const QString &stem : stemsOf(word)) {
            m_forms[stem] << word;
        }
    }
}

GuideSearch GuideSearch::overGuide(const Texts &texts) {
    const QString language = guideLanguage(texts);
    QList<Page> pages;
    for (const GuidePage &row : guidePages()) {
        const QString html = guideHtml(language, row.file);
        QTextDocument document;
        document.setHtml(html);
        const QString text = document.toPlainText().remove(QChar::ObjectReplacementCharacter);
        pages << Page{row.file, guideTitle(texts, row.title), metaOf(html, "keywords"), text};
    }
    // English ones too: a question may be about a page that exists in English only.
    QStringList littleWords;
    for (const QString &spoken : {language, QString("en")}) {
        littleWords << wordsOf(foldedForSearch(metaOf(guideHtml(spoken, "index.html"), "littlewords")));
    }
    const QString endings = foldedForSearch(metaOf(guideHtml(language, "index.html"), "endings"));
    return GuideSearch(pages, littleWords, endings.split(", ", Qt::SkipEmptyParts));
}

QStringList GuideSearch::stemsOf(const QString &word) const {
    QStringList stems{word};
    for (const QString &ending : m_endings) {
        const bool isBeginning = ending.endsWith(u'-');
        const QString part = isBeginning ? ending.chopped(1) : ending;
        const qsizetype known = stems.size(); // an ending may follow another, and a beginning goes with an ending
        for (qsizetype i = 0; i < (isBeginning ? known : 1); ++i) {
            const QString whole = stems[i];
            if (whole.size() - part.size() < shortestStem ||
                !(isBeginning ? whole.startsWith(part) : whole.endsWith(part))) {
                continue;
            }
            const QString stem = isBeginning ? whole.sliced(part.size()) : whole.chopped(part.size());
            stems << stem;
            const bool isDoubled = stem.size() > shortestStem && stem.back() == stem[stem.size() - 2];
            if (isDoubled && !isBeginning) {
                stems << stem.chopped(1); // "cropping"
            }
        }
    }
    stems.removeDuplicates();
    return stems;
}

QStringList GuideSearch::meant(const QString &word) const {
    const auto stands = [&](const QString &known) { return known.startsWith(word); };
    QStringList forms;
    if (word.size() >= leastForLikes) {
        for (const QString &stem : stemsOf(word)) {
            forms << m_forms.value(stem);
        }
        forms.removeDuplicates();
    }
    if (word.size() < leastForLikes || std::any_of(m_vocabulary.begin(), m_vocabulary.end(), stands)) {
        forms.removeAll(word);
        return QStringList{word} + forms;
    }
    if (!forms.isEmpty()) {
        return forms;
    }
    QStringList likes;
    int nearest = word.size() < 2 * leastForLikes ? 1 : 2; // slips
    for (const QString &known : m_vocabulary) {
        const int distance = known.size() < leastForLikes ? nearest + 1 : distanceOf(word, known);
        if (distance < nearest) {
            likes.clear();
            nearest = distance;
        }
        if (distance <= nearest) {
            likes << known;
        }
    }
    return likes;
}

int GuideSearch::score(const Entry &entry, const QStringList &alternatives) {
    int best = 0;
    for (const QString &word : alternatives) {
        const int inTitle = std::min(1, countOf(entry.title, word));
        const int inKeywords = std::min(1, countOf(entry.keywords, word));
        const int inText = std::min(mostInText, countOf(entry.text, word));
        best = std::max(best, inTitle * titleWorth + inKeywords * keywordWorth + inText * textWorth);
    }
    return best;
}

GuideSearch::Hit GuideSearch::hitOn(const Entry &entry, const QStringList &words) {
    const QString &text = entry.page.text;
    std::pair<qsizetype, qsizetype> best(0, 0);
    int most = -1;
    for (const auto &[begin, length] : sentencesOf(text)) {
        const QString sentence = entry.text.mid(begin, length);
        const int found = static_cast<int>(std::count_if(
            words.begin(), words.end(), [&](const QString &word) { return findWord(sentence, word) >= 0; }));
        // The title is shown above the sentence already.
        if (found > most && text.mid(begin, length).trimmed() != entry.page.title) {
            most = found;
            best = {begin, length};
        }
    }
    return {entry.page.file, withBoldWords(text.mid(best.first, best.second).trimmed(), words), words};
}

QList<GuideSearch::Hit> GuideSearch::find(const QString &question) const {
    QStringList asked = wordsOf(foldedForSearch(question));
    const QStringList all = asked;
    asked.removeIf([this](const QString &word) { return m_littleWords.contains(word); });
    asked = asked.isEmpty() ? all : asked;
    struct Found {
        const Entry *entry;
        int words;
        int score;
        QStringList by;
    };
    std::vector<Found> found;
    int most = 1;
    for (const Entry &entry : m_entries) {
        Found one{&entry, 0, 0, {}};
        for (const QString &word : asked) {
            const QStringList alternatives = meant(word);
            const int worth = score(entry, alternatives);
            one.score += worth;
            one.words += worth > 0 ? 1 : 0;
            one.by += worth > 0 ? alternatives : QStringList();
        }
        most = std::max(most, one.words);
        found.push_back(one);
    }
    std::erase_if(found, [&](const Found &one) { return one.words < most; });
    std::stable_sort(found.begin(), found.end(),
                     [](const Found &one, const Found &other) { return one.score > other.score; });
    QList<Hit> hits;
    for (const Found &one : found) {
        hits << hitOn(*one.entry, one.by);
    }
    return hits;
}

} // namespace lumora
