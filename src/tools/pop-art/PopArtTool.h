// The pop-art row: the photo as four prints side by side, at once or by its panel, with the row shown live on the
// table. Started by the ideas window.
#pragma once

#include "imaging/transforms/PopArtRow.h"
#include "tools/canvas/PanelTool.h"

#include <QImage>

namespace lumora {

class PopArtPanel;

class PopArtTool : public PanelTool {
    Q_OBJECT

  public:
    /// The panel becomes a child of the window. All four outlive the tool.
    PopArtTool(AppContext &ctx, PhotoView &view, CanvasMouse &mouse, QWidget *window);

    /// Makes the row at once in the default colours while txtAndyStyle is off; else the panel slides in.
    bool open(const QString &key = {}) override;

    void start() override;
    void end() override;
    void paint(QPainter &painter) override;

  private:
    void apply();
    void make(const PopArtPairs &pairs);
    void refresh();
    void showPairs();
    QRect tablePlace() const;

    AppContext &m_ctx;
    PhotoView &m_view;
    PopArtPanel *m_panel;
    QImage m_photo;    ///< small, for the row on the table
    QImage m_tableRow; ///< what is shown there
};

} // namespace lumora
