// The pop-art row: the photo as four prints side by side, at once or by its panel, with the row shown live on the
// table. The ideas window asks for it.
#pragma once

#include "imaging/transforms/PopArtRow.h"
#include "tools/canvas/CanvasTool.h"

#include <QImage>
#include <QObject>

namespace lumora {

struct AppContext;
class CanvasMouse;
class PopArtPanel;
class SlidingPanel;

class PopArtTool : public QObject, public CanvasTool {
    Q_OBJECT

  public:
    /// The panel becomes a child of the window. All four outlive the tool.
    PopArtTool(AppContext &ctx, PhotoView &view, CanvasMouse &mouse, QWidget *window);

    SlidingPanel *panel() const;

    /// Makes the row at once in the usual colours while txtAndyStyle is off; else the panel slides in. Nothing without
    /// a photo.
    void open();
    /// Ends the tool: panel, and what was shown but not applied.
    void close();

    void start() override;
    void end() override;
    /// Esc ends the tool.
    bool wantsKey(const QKeyEvent &key) const override;
    void keyPress(const QKeyEvent &key) override;
    void paint(QPainter &painter) override;

  Q_SIGNALS:
    void hideFloatingToolbars();
    /// The Arrow tool is to become the current one.
    void arrowWanted();
    /// The whole photo is to be in view.
    void fitWanted();
    void message(const QString &text, bool good);

  private:
    void leave();
    void apply();
    void make(const PopArtPairs &pairs);
    void refresh();
    void showPairs();
    QRect tablePlace() const;

    AppContext &m_ctx;
    PhotoView &m_view;
    CanvasMouse &m_mouse;
    PopArtPanel *m_panel;
    QImage m_photo;    ///< small, for the row on the table
    QImage m_tableRow; ///< what is shown there
};

} // namespace lumora
