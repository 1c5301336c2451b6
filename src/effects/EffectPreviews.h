// The previews of the effects on the user's own photo in the lists FT3 and FT4, made again after every change once they
// are wanted.
#pragma once

#include <QImage>
#include <QObject>
#include <QTimer>
#include <deque>
#include <functional>

namespace lumora {

struct AppContext;
class FloatingToolbar;
enum class EffectGroup;

class EffectPreviews : public QObject {
    Q_OBJECT

  public:
    static constexpr int delay = 60; ///< milliseconds after a change: the photo is shown first

    /// Sets the pictures of the items of both lists: those of the basic and of the special effects.
    EffectPreviews(AppContext &ctx, FloatingToolbar *FT3, FloatingToolbar *FT4, QObject *parent = nullptr);

    /// From now on the previews are made. Whoever only looks at a photo does not need them, and they cost as much time
    /// as opening it.
    void begin();
    /// Starts making the previews of the current photo, one per event loop iteration. Pending previews of an earlier
    /// photo are dropped.
    void SetupFoto4FX();
    bool isDone() const { return m_jobs.empty() && !tmrLoadFX.isActive(); }

  Q_SIGNALS:
    void done();

  private:
    void add(EffectGroup group, FloatingToolbar *bar);
    void next();

    AppContext &m_ctx;
    FloatingToolbar *m_FT3;
    FloatingToolbar *m_FT4;
    QImage picSFX; ///< the small copy of the photo that the effects run on
    std::deque<std::function<void()>> m_jobs;
    bool m_wanted = false;
    QTimer tmrLoadFX;
    QTimer m_turn;
};

} // namespace lumora
