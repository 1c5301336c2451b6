// The items of FT5: the frames, each at once.
#pragma once

#include "effects/Frames.h"
#include "tools/effects/EffectTool.h"

namespace lumora {

class FramesTool : public EffectTool {
    Q_OBJECT

  public:
    FramesTool(AppContext &ctx, FloatingToolbar *FT5, QObject *parent);

    bool open(const QString &key) override;
    void makeSmallPictures() override { m_frames.CreateFrameThumbnails(); }

  private:
    Frames m_frames;
};

} // namespace lumora
