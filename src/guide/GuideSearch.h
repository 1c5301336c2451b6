// Full-text search over the pages of the user guide. Used by GuideWindow; knows nothing of windows.
#pragma once

#include <QHash>
#include <QList>
#include <QString>
#include <QStringList>

namespace lumora {

class Texts;

/// The text without accents and in small letters, each character at its old place: "Größe" becomes "große".
QString foldedForSearch(const QString &text);

/// Where a word that begins like `folded` begins in a folded text, from `from` on; -1 when none does.
qsizetype findWord(const QString &text, const QString &folded, qsizetype from = 0);

class GuideSearch {
  public:
    struct Page {
        QString file;
        QString title;
        QString keywords; ///< further words by which it is to be found
        QString text;     ///< paragraphs in lines
    };
    struct Hit {
        QString file;
        QString sentence;  ///< HTML: the best one of the page, the found words bold
        QStringList words; ///< the beginnings of words, folded, by which the page was found
    };

    /// `littleWords`, folded, do not count beside others. `endings`, folded, are those of word forms: "cropping" and
    /// "cropped" are the same with "ing" and "ed". One with a hyphen behind it is a beginning ("ge-").
    explicit GuideSearch(const QList<Page> &pages, const QStringList &littleWords = {},
                         const QStringList &endings = {});
    /// Over the whole guide in the language of those texts.
    static GuideSearch overGuide(const Texts &texts);

    /// The pages that contain most of the words of the question, the best first: a word in the title counts most, a
    /// keyword more than one in the text. Words count from their beginning ("rot" finds "rotate") and in their other
    /// forms, without regard to capitals and accents; one that no page has counts as a typing error for the words most
    /// like it. Little words ("how") do not count beside others. Nothing for a question without a letter or digit.
    QList<Hit> find(const QString &question) const;

  private:
    struct Entry {
        Page page;
        QString title, keywords, text; ///< folded
    };
    /// What to look for in place of a word: itself and its other forms where any page has them, else the words most
    /// like it.
    QStringList meant(const QString &word) const;
    /// What may be left of a word without its ending, the word itself first.
    QStringList stemsOf(const QString &word) const;
    static int score(const Entry &entry, const QStringList &alternatives);
    static Hit hitOn(const Entry &entry, const QStringList &words);

    QList<Entry> m_entries;
    QStringList m_littleWords;
    QStringList m_endings;
    QStringList m_vocabulary;
    QHash<QString, QStringList> m_forms; ///< words of the vocabulary by each of their stems
};

} // namespace lumora
