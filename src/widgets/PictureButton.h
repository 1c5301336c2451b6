// The button of Lumora: a picture, and a caption below or beside it where wanted. Tools, tool bars, dialogs and the
// launcher are all made of it.
#pragma once

#include <QAbstractButton>
#include <QColor>
#include <QPixmap>

namespace lumora {

/// Shows hover, pressed, disabled and checked; never smaller than 48 x 48 pixels. Enter and Space press
/// it. A caption wraps to two lines and ends in an ellipsis; the tool tip then shows it whole. "&&" shows as "&".
/// Without a caption the tool tip is the accessible name.
class PictureButton : public QAbstractButton {
    Q_OBJECT

  public:
    enum class CaptionPlace { None, Below, Beside };
    /// Flat shows its edges only while touched; Raised shows them always.
    enum class Look { Flat, Raised };

    explicit PictureButton(QWidget *parent = nullptr);
    PictureButton(const QString &iconName, CaptionPlace place, QWidget *parent = nullptr);

    /// The drawing ":/icons/NAME.svg".
    void setIconName(const QString &name);
    const QString &iconName() const { return m_iconName; }
    /// A live picture instead of the drawing, fitted into the picture's place; a null one brings the drawing back.
    void setPicture(const QPixmap &picture);
    const QPixmap &picture() const { return m_picture; }

    /// Width and height of the picture in pixels (16 to 512), 32 at first.
    void setPictureSize(int pixels) { setPictureSize(QSize(pixels, pixels)); }
    void setPictureSize(QSize pixels);
    QSize pictureSize() const { return m_pictureSize; }

    /// Width and height in pixels that it has at least, smallestButton at first.
    void setLeastSide(int pixels);

    void setCaptionPlace(CaptionPlace place);
    CaptionPlace captionPlace() const { return m_captionPlace; }
    void setLook(Look look);
    /// What the button turns to under the pointer; its edge then, too, where the colour is a tint (not opaque).
    void setHoverColour(const QColor &colour);
    QColor hoverColour() const;

    /// The height that a button of that width needs at least: the lines of a caption below its picture are as close
    /// together as they can be read. In pixels.
    int leastHeightAt(int width) const;

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;
    /// The height that a button of that width needs for its picture and the lines of its caption, in pixels.
    int heightAt(int width) const;
    /// Pixels between the picture and a caption below it, 4 at first.
    void setCaptionGap(int pixels);
    /// False where the caption ends in an ellipsis.
    bool isCaptionWhole() const;

  protected:
    bool event(QEvent *event) override;
    void paintEvent(QPaintEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;

    /// The picture to paint into a square of that size.
    virtual QPixmap currentPicture(QSize size, qreal devicePixelRatio) const;

  private:
    struct Places {
        QRect picture, caption;
    };
    Places places() const;
    void paintSurface(QPainter &painter) const;
    void paintCaption(QPainter &painter, const QRect &place) const;
    QStringList captionLines(int width, const QFont &letters) const;
    /// Smaller letters where the caption does not fit that width otherwise.
    QFont captionFont(int width) const;
    bool isWhole(const QStringList &lines) const;
    bool captionShown() const { return m_captionPlace != CaptionPlace::None && !text().isEmpty(); }
    bool showTip(const QPoint &globalPosition);

    QString m_iconName;
    QPixmap m_picture;
    QSize m_pictureSize{32, 32};
    CaptionPlace m_captionPlace = CaptionPlace::None;
    int m_leastSide;
    int m_gap = 4;
    Look m_look = Look::Flat;
    QColor m_hoverColour; ///< not valid: the theme's
};

} // namespace lumora
