// Colour focus: the user picks a colour in the photo; colours near it stay, the others turn grey.
#pragma once

#include "effects/LivePreview.h"
#include "effects/SelectionFlow.h"
#include "tools/canvas/CanvasTool.h"

#include <QColor>
#include <QObject>
#include <optional>

namespace lumora {

class CanvasMouse;
class ColourFocusPanel;
class SlidingPanel;

class ColourFocusTool : public QObject, public CanvasTool {
    Q_OBJECT

  public:
    /// The panel becomes a child of the window. All four outlive the tool.
    ColourFocusTool(AppContext &ctx, PhotoView &view, CanvasMouse &mouse, QWidget *window);

    SlidingPanel *panel() const;
    const LivePreview &livePreview() const { return m_live; }

    /// cmdTool11 was pressed: the panel slides in and the photo waits for a colour to be picked. What is marked on the
    /// photo stays marked. Nothing without a photo.
    void open();
    void close() { CloseColourFocus(); }
    /// Ends the tool: panel, pointer, magnifier, flag, and what was shown but not applied.
    void CloseColourFocus();
    /// Switches colour picking off and leaves the canvas as it normally is. The panel stays.
    void ColorPickerMode();

    /// The colour that stays; none (an invalid one) until one was picked in this photo.
    QColor chosenColour() const { return m_colour.value_or(QColor()); }
    /// Turns everything grey that is not similar to the chosen colour, in what is marked or in the whole photo. Says so
    /// when no colour was chosen.
    EffectOutcome similarclr();
    /// Makes picCM1 to picCM4: the photo, small, with each of the strengths.
    void CreateCMSFX();

    void start() override;
    void end() override;
    void press(const PointerEvent &at) override;
    void move(const PointerEvent &at) override;
    /// Esc ends the tool.
    bool wantsKey(const QKeyEvent &key) const override;
    void keyPress(const QKeyEvent &key) override;
    void paint(QPainter &painter) override;
    bool eventFilter(QObject *watched, QEvent *event) override;

  Q_SIGNALS:
    void hideFloatingToolbars();
    /// The Arrow tool is to become the current one.
    void arrowWanted();
    /// The tip that a selection has to be made first.
    void tipWanted();
    void message(const QString &text, bool good);

  private:
    void leave();
    void pick(QPoint pixel);
    void setColour(std::optional<QColor> colour);
    void showLevel();
    void showMagnifier(std::optional<QPointF> at);
    void photoChanged(PhotoChanges what);

    AppContext &m_ctx;
    PhotoView &m_view;
    CanvasMouse &m_mouse;
    SelectionFlow m_flow;
    LivePreview m_live;
    ColourFocusPanel *m_panel;
    std::optional<QColor> m_colour;
    std::optional<QPointF> m_magnifierAt; ///< the pointer in the view's pixels while it is over the photo
};

} // namespace lumora
