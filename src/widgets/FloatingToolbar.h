// A floating bar of picture items beside its tool button: FT1 to FT6 of the main window.
#pragma once

#include "widgets/PictureButton.h"

#include <QPointer>
#include <QTimer>
#include <QWidget>

namespace lumora {

/// A child of the main window, hidden until showBeside(). Items are in rows, as many beside each other as the width
/// and the window allow, the last row as full as the others where it can be. Each item carries its key in the dynamic
/// property "key". Arrow keys move between items; Esc hides the bar and gives the focus back.
class FloatingToolbar : public QWidget {
    Q_OBJECT

  public:
    FloatingToolbar(const QString &name, QWidget *window);

    /// Adds an item with the drawing of that name; its caption is set later. Returns it.
    PictureButton *addItem(const QString &key, const QString &iconName);
    /// The item of that key, or null.
    PictureButton *item(const QString &key) const;
    const QList<PictureButton *> &items() const { return m_items; }
    /// A live picture for the item of that key; unknown keys change nothing.
    void setItemPicture(const QString &key, const QPixmap &picture);
    void setItemEnabled(const QString &key, bool enabled);

    /// The width that the bar takes where the window is wide enough, in twips; 0 for as wide as its items.
    void setWidthTwips(int width);
    int widthTwips() const { return m_widthTwips; }
    /// Width and height of the items' pictures in pixels, 64 at first.
    void setPictureSize(int pixels);
    /// What the button stands in with others: the bar opens beside the whole of it.
    void setColumn(QWidget *column) { m_column = column; }

    /// Opens the bar beside that button, wholly inside the window.
    void showBeside(QWidget *button);

  Q_SIGNALS:
    void itemClicked(const QString &key);
    void hidden();
    /// The pointer rests on the item of that key; with an empty key it has left the items.
    void itemPointed(const QString &key);

  protected:
    void hideEvent(QHideEvent *event) override;
    void paintEvent(QPaintEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    bool eventFilter(QObject *watched, QEvent *event) override;

  private:
    QSize itemSize(int room) const;
    void layOut(int room);
    /// With smaller pictures where it would be higher than the window.
    bool fitInto(int room, int height);
    void place();
    QSize pictureRoom(int side) const;
    void point(const QString &key);
    bool moveFocus(int key);

    QList<PictureButton *> m_items;
    QPointer<QWidget> m_button, m_column;
    int m_widthTwips = 0;
    int m_pictureSize = 64;
    int m_columns = 1;
    QTimer m_rest; ///< until the pointer has rested, or has left for good
    QString m_pointed, m_nextPointed;
};

} // namespace lumora
