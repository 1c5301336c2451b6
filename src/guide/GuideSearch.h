// Full-text search over the pages of the user guide. Used by GuideWindow; knows nothing of windows.
#pragma once

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

    /// `littleWords`, folded, do not count beside others.
    explicit GuideSearch(const QList<Page> &pages, const QStringList &littleWords = {});
    /// Over the whole guide in the language of those texts.
    static GuideSearch overGuide(const Texts &texts);

    /// The pages that contain most of the words of the question, the best first: a word in the title counts most, a
    /// keyword more than one in the text. Words count from their beginning ("rot" finds "rotate"), without regard to
    /// capitals and accents; one that no page has counts as a typing error for the words most like it. Little
    /// words ("how") do not count beside others. Nothing for a question without a letter or digit.
    QList<Hit> find(const QString &question) const;

  private:
    struct Entry {
        Page page;
        QString title, keywords, text; ///< folded
    };
    /// What to look for in place of a word: itself where any page has it, else the words most like it.
    QStringList meant(const QString &word) const;
    static int score(const Entry &entry, const QStringList &alternatives);
    static Hit hitOn(const Entry &entry, const QStringList &words);

    QList<Entry> m_entries;
    QStringList m_littleWords;
    QStringList m_vocabulary;
};

} // namespace lumora
