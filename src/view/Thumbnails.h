// Small pictures of files, made away from the window's thread, a few at a time. Asked by the lists that show files.
#pragma once

#include <QImage>
#include <QObject>
#include <QSet>
#include <QStringList>

namespace lumora {

/// What is asked last is made first, so that a list that is scrolled first fills what is visible. Not cached: the
/// caller keeps what it needs.
class Thumbnails : public QObject {
    Q_OBJECT

  public:
    /// `longerSide` of the thumbnails in pixels (1 to 2000).
    explicit Thumbnails(int longerSide, QObject *parent = nullptr);

    /// These files are wanted now, the first of them first. What was asked before and has not begun is forgotten; a
    /// file under way is not begun again.
    void want(const QStringList &paths);
    /// Another folder is shown: forgets what waits, and drops what is under way when it comes.
    void cancel();

  Q_SIGNALS:
    /// One file is done; a null picture says that it cannot be read.
    void made(const QString &path, const QImage &thumbnail);

  private:
    void beginNext();
    void finish(int round, const QString &path, const QImage &thumbnail);

    int m_longerSide;
    int m_round = 0; ///< grows with cancel(): what an older round brings is dropped
    QStringList m_waiting;
    QSet<QString> m_underWay;
};

} // namespace lumora
