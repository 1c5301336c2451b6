// The size panel: four fixed sizes, or any width and height up to 5000 pixels. ResizeTool opens it.
#pragma once

#include "widgets/SlidingPanel.h"

#include <QImage>
#include <QLineEdit>
#include <array>

class QHBoxLayout;

namespace lumora {

struct AppContext;

/// A box for pixels: takes typed digits only, selects its text when it gets the focus. What is pasted is not filtered.
class PixelBox : public QLineEdit {
    Q_OBJECT

  public:
    using QLineEdit::QLineEdit;

  protected:
    void keyPressEvent(QKeyEvent *event) override;
    void focusInEvent(QFocusEvent *event) override;
};

class ResizePanel : public SlidingPanel {
    Q_OBJECT

  public:
    static constexpr int longestSide = 5000; ///< pixels

    ResizePanel(AppContext &ctx, QWidget *window);

    /// Slides in with the photo's own size in the boxes and its shape at each fixed size on the buttons.
    void open();

  Q_SIGNALS:
    /// cmdApplyResize with a size up to longestSide; a side may be 0.
    void sizeWanted(QSize size);
    /// cmdApplyResize with a size beyond longestSide.
    void sizeRefused();
    /// cmdFreeResize.
    void freeResizeWanted();

  protected:
    void changeEvent(QEvent *event) override;

  private:
    void addOptions(QHBoxLayout &row);
    void nameOptions();
    void addBoxes(QHBoxLayout &row);
    void addButtons(QHBoxLayout &row);
    void choose(size_t option);
    void showPhoto();
    void apply();

    AppContext &m_ctx;
    std::array<PictureButton *, 5> m_options{};
    PixelBox *txtWidth = nullptr;
    PixelBox *txtHeight = nullptr;
};

} // namespace lumora
