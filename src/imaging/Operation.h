// An operation of the effect engine: the function of an effect with its parameters, ready to be run on a picture.
#pragma once

#include "imaging/Region.h"

#include <QImage>
#include <functional>
#include <type_traits>
#include <utility>

namespace lumora {

/// Made of a free function and its parameters: Operation(applyBlur, {6}). The function's header says what it does,
/// which ranges the parameters have and what is refused. Copies are cheap and may run in several threads at a time.
class Operation {
  public:
    /// A function that fills an area of a picture of the same size, from the whole source; see imaging/effects. One
    /// that answers false has refused.
    template <typename Answer, typename Parameters, typename... Opaque>
    Operation(Answer (*fill)(const Parameters &, ConstPixelView source, PixelView target, PixelRect area, Opaque...),
              std::type_identity_t<Parameters> parameters)
        : m_run([fill, parameters = std::move(parameters)](const QImage &picture, PixelRect area) {
              return filled(picture, [&](ConstPixelView source, PixelView target, [[maybe_unused]] bool opaque) {
                  const auto run = [&] {
                      if constexpr (sizeof...(Opaque) > 0) {
                          return fill(parameters, source, target, area, opaque);
                      } else {
                          return fill(parameters, source, target, area);
                      }
                  };
                  if constexpr (std::is_void_v<Answer>) {
                      run();
                      return true;
                  } else {
                      return run();
                  }
              });
          }) {}
    /// A function that makes a whole picture of another one, perhaps of other sides; a null one where it refuses.
    template <typename Parameters>
    Operation(QImage (*change)(const QImage &, const Parameters &), std::type_identity_t<Parameters> parameters)
        : m_run([change, parameters = std::move(parameters)](const QImage &picture, PixelRect) {
              return change(picture, parameters);
          }) {}
    Operation(QImage (*change)(const QImage &))
        : m_run([change](const QImage &picture, PixelRect) { return change(picture); }) {}
    /// Anything else that gives the changed picture, of which only the area counts, and a null one where it refuses.
    template <typename Function>
    requires(!std::is_same_v<Function, Operation> &&
             std::is_invocable_r_v<QImage, const Function &, const QImage &, PixelRect>) Operation(Function run)
        : m_run(std::move(run)) {}

    /// The changed picture. The area lies within the picture; what the result holds around it is undefined. A null
    /// picture where the operation or the memory refuses; std::bad_alloc may come through.
    QImage operator()(const QImage &picture, PixelRect area) const { return m_run(picture, area); }

  private:
    using Fill = std::function<bool(ConstPixelView source, PixelView target, bool opaque)>;
    static QImage filled(const QImage &picture, const Fill &fill);

    std::function<QImage(const QImage &picture, PixelRect area)> m_run;
};

} // namespace lumora
