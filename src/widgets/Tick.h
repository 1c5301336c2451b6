// Check boxes and radio buttons for fingers.
#pragma once

#include <QCheckBox>
#include <QRadioButton>

namespace lumora {

/// Is hit anywhere in its place. The toolkit's own is as high as a finger needs but is only hit on its box and words.
class Tick : public QCheckBox {
  public:
    using QCheckBox::QCheckBox;

  protected:
    bool hitButton(const QPoint &position) const override { return rect().contains(position); }
};

/// The same for one among a few.
class Choice : public QRadioButton {
  public:
    using QRadioButton::QRadioButton;

  protected:
    bool hitButton(const QPoint &position) const override { return rect().contains(position); }
};

} // namespace lumora
