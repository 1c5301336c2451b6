// A choice among a few that is told apart by its picture: a card with a large drawing above the dot and the caption.
// The options offer the two kinds of dialogs with it.
#pragma once

#include <QRadioButton>

namespace lumora {

/// The whole card can be clicked. Keys and exclusiveness are those of a radio button.
class PictureChoice : public QRadioButton {
    Q_OBJECT

  public:
    /// The drawing ":/icons/ICON.svg", `pictureSize` pixels square.
    PictureChoice(const QString &icon, int pictureSize, QWidget *parent = nullptr);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }

  protected:
    void paintEvent(QPaintEvent *event) override;
    bool hitButton(const QPoint &position) const override { return rect().contains(position); }

  private:
    QString m_icon;
    int m_pictureSize;
};

} // namespace lumora
