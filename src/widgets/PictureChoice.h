// What is told apart by its picture: a card with a large drawing above the caption. PictureChoice is one among a few
// (the two kinds of dialogs in the options), PictureTick is switched on and off by itself (the page "For me").
#pragma once

#include "widgets/Tick.h"

class QStyleOption;

namespace lumora {

/// How such a card is drawn; the same for both kinds.
struct PictureCard {
    QString icon;    ///< ":/icons/ICON.svg"
    int pictureSize; ///< pixels, square
    int mostLines;   ///< of the caption, which wraps at this many
    bool isTick;     ///< a tick box, not a dot

    QSize sizeHint(const QAbstractButton &button) const;
    void paint(const QAbstractButton &button, const QStyleOption &option) const;
    /// Whether the caption is shown whole.
    bool isWhole(const QAbstractButton &button) const;
};

/// Keys and exclusiveness are those of a radio button.
class PictureChoice : public Choice {
    Q_OBJECT

  public:
    /// The drawing ":/icons/ICON.svg", `pictureSize` pixels square.
    PictureChoice(const QString &icon, int pictureSize, QWidget *parent = nullptr);

    const PictureCard &card() const { return m_card; }
    QSize sizeHint() const override { return m_card.sizeHint(*this); }
    QSize minimumSizeHint() const override { return sizeHint(); }

  protected:
    void paintEvent(QPaintEvent *event) override;

  private:
    PictureCard m_card;
};

/// The same as a check box, whose caption may take two lines.
class PictureTick : public Tick {
    Q_OBJECT

  public:
    PictureTick(const QString &icon, int pictureSize, QWidget *parent = nullptr);

    const PictureCard &card() const { return m_card; }
    QSize sizeHint() const override { return m_card.sizeHint(*this); }
    /// As high, but narrower: the letters of the caption may become smaller.
    QSize minimumSizeHint() const override;

  protected:
    void paintEvent(QPaintEvent *event) override;

  private:
    PictureCard m_card;
};

} // namespace lumora
