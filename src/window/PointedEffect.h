// While the pointer rests on an effect's picture in a floating bar the photo shows the effect; it is not changed.
#pragma once

#include "effects/LivePreview.h"

namespace lumora {

class PointedEffect : public QObject {
    Q_OBJECT

  public:
    PointedEffect(AppContext &ctx, PhotoView &view, QObject *parent);

    /// Shows the effect of that item beside that tool button; the unchanged photo where the item has none.
    void show(const QString &control, const QString &key);
    void clear();
    bool isShown() const { return m_live.isShown(); }

  private:
    AppContext &m_ctx;
    LivePreview m_live;
};

} // namespace lumora
