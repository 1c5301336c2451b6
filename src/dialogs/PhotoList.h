// Photos as thumbnails with their names beneath, of one folder or from several: `File1` of the Simple open dialog.
#pragma once

#include "view/Thumbnails.h"

#include <QCache>
#include <QListWidget>
#include <QPixmap>
#include <QTimer>

namespace lumora {

struct ListedPhoto {
    QString path;
    QString caption;
    QString remark = {}; ///< its tool tip; a photo with a remark was thrown away, which a small basket shows
};

/// Lists names at once and loads the thumbnails of visible items. A file that is not a picture shows a broken frame and
/// cannot be chosen any more.
class PhotoList : public QListWidget {
    Q_OBJECT

  public:
    explicit PhotoList(QWidget *parent = nullptr);

    /// Lists the files of that folder whose names match one of the patterns ("*.jpg"), without regard to case, in the
    /// order of their names. Folders are never listed. Returns an empty text, or an error message; then the list is
    /// unchanged.
    QString showFolder(const QString &folder, const QStringList &patterns);

    /// Lists these, in that order.
    void showPhotos(const QList<ListedPhoto> &photos);

    /// The message of an empty list, with an icon before it (":/icons/NAME.svg"); nothing when it is not set. Set
    /// before a list is shown.
    void setEmptyHint(const QString &text, const QString &icon);

    /// The caption and the path of the chosen photo, or an empty text.
    QString chosenName() const;
    QString chosenPath() const;
    /// The thumbnail of that file of the list; null until it is made or when that fails.
    QPixmap thumbnail(const QString &path) const;
    bool isUnreadable(const QString &path) const { return m_unreadable.contains(path); }

    /// Four columns on a small screen, six on a large one.
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
    QListWidgetItem *itemOf(const QString &path) const;

    QString m_emptyHint;
    QString m_emptyIcon;
    Thumbnails m_thumbnails;
    mutable QCache<QString, QPixmap> m_kept;
    QSet<QString> m_unreadable;
    QTimer m_settle;
};

} // namespace lumora
