// Colour focus: the user picks a colour in the photo; colours near it stay, the others turn grey.
#pragma once

#include "effects/LivePreview.h"
#include "effects/SelectionFlow.h"
#include "tools/canvas/PanelTool.h"

#include <QColor>
#include <optional>

namespace lumora {

class ColourFocusPanel;

class ColourFocusTool : public PanelTool {
    Q_OBJECT

  public:
    /// The panel becomes a child of the window. All four outlive the tool.
    ColourFocusTool(AppContext &ctx, PhotoView &view, CanvasMouse &mouse, QWidget *window);

    const LivePreview &livePreview() const { return m_live; }

    /// The panel slides in and the photo waits for a colour to be picked. The selection is kept.
    bool open(const QString &key = {}) override;

    /// The colour that stays; invalid until one is picked in this photo.
    QColor chosenColour() const { return m_colour.value_or(QColor()); }
    /// Turns everything grey that is not similar to the chosen colour, in the selection or in the whole photo. Reports
    /// when no colour was chosen.
    EffectOutcome similarclr();
    /// Makes picCM1 to picCM4: the photo, small, with each of the strengths.
    void CreateCMSFX();
    void makeSmallPictures() override { CreateCMSFX(); }

    void start() override;
    void end() override;
    void press(const PointerEvent &at) override;
    void move(const PointerEvent &at) override;
    /// Picks the pixel's colour.
    void clicked(QPoint pixel) override;
    bool hasKeyboardPointer() const override { return true; }
    void paint(QPainter &painter) override;
    bool eventFilter(QObject *watched, QEvent *event) override;

  private:
    void setColour(std::optional<QColor> colour);
    void showLevel();
    void showMagnifier(std::optional<QPointF> at);
    void photoChanged(PhotoChanges what);

    AppContext &m_ctx;
    PhotoView &m_view;
    SelectionFlow m_flow;
    LivePreview m_live;
    ColourFocusPanel *m_panel;
    std::optional<QColor> m_colour;
    std::optional<QPointF> m_magnifierAt; ///< the pointer in the view's pixels while it is over the photo
};

} // namespace lumora
