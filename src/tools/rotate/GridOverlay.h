// The guide grid over the photo: straight lines that stay where they are while the photo turns below them. RotateTool
// switches it on for free rotation.
#pragma once

#include <QObject>
#include <QPen>

class QPainter;

namespace lumora {

class PhotoView;

class GridOverlay : public QObject {
    Q_OBJECT

  public:
    /// Draws over that view, which must outlive it.
    explicit GridOverlay(PhotoView &view, QObject *parent = nullptr);

    /// Shows the grid, with a new pen; hides it.
    void DrawGrid();
    void HideGrid();
    bool GridShown() const { return m_shown; }

  private:
    void paint(QPainter &painter) const;

    PhotoView &m_view;
    QPen GridPen;
    bool m_shown = false;
};

} // namespace lumora
