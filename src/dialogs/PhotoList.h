// The photos of one folder as thumbnails with their names beneath: `File1` of the Simple open dialog.
#pragma once

#include "view/Thumbnails.h"

#include <QCache>
#include <QListWidget>
#include <QPixmap>
#include <QTimer>

namespace lumora {

/// Lists names at once and fills in the thumbnails of what is in view. A file that turns out to be no picture shows a
/// broken frame and can no longer be chosen.
class PhotoList : public QListWidget {
    Q_OBJECT

  public:
    explicit PhotoList(QWidget *parent = nullptr);

    /// Lists the files of that folder whose names match one of the patterns ("*.jpg"), without regard to case, in the
    /// order of their names. Folders never. Returns an empty text, or what went wrong, and then the list stays as it
    /// was.
    QString showFolder(const QString &folder, const QStringList &patterns);

    /// What an empty list says, with an icon before it (":/icons/NAME.svg"); nothing when it is not set. Set before
    /// showFolder.
    void setEmptyHint(const QString &text, const QString &icon);

    /// The name of the chosen file, or an empty text.
    QString chosenName() const;
    /// The thumbnail of that row's file; null while it is not made or when it cannot be.
    QPixmap thumbnail(const QString &name) const;
    bool isUnreadable(const QString &name) const { return m_unreadable.contains(name); }

    /// Four photos beside each other on a small screen, six on a large one.
    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return {360, 200}; }

  Q_SIGNALS:
    /// The file that was chosen cannot be read after all, and is not chosen any more.
    void chosenUnreadable();

  protected:
    void resizeEvent(QResizeEvent *event) override;
    void paintEvent(QPaintEvent *event) override;
    void scrollContentsBy(int dx, int dy) override;

  private:
    void wantVisible();
    void take(const QString &path, const QImage &thumbnail);
    QListWidgetItem *itemOf(const QString &name) const;

    QString m_folder;
    QString m_emptyHint;
    QString m_emptyIcon;
    Thumbnails m_thumbnails;
    mutable QCache<QString, QPixmap> m_kept;
    QSet<QString> m_unreadable;
    QTimer m_settle;
};

} // namespace lumora
