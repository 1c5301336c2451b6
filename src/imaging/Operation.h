// An operation of the effect engine: the function of an effect with its parameters, ready to be run on a picture.
#pragma once

#include "imaging/Region.h"

#include <QImage>
#include <functional>
#include <type_traits>
#include <utility>

namespace lumora {

/// Made of a free function and its parameters: Operation(applyBlur, {6}). The function's header documents what it does,
/// the parameter ranges and when it fails. Copies are cheap and may run in several threads at the same time.
class Operation {
  public:
    /// A function that fills an area of a picture of the same size, from the whole source; see imaging/effects. It
    /// returns false on failure.
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
    /// A function that makes a new picture from another one, possibly of another size; a null picture on failure.
    template <typename Parameters>
    Operation(QImage (*change)(const QImage &, const Parameters &), std::type_identity_t<Parameters> parameters)
        : m_run([change, parameters = std::move(parameters)](const QImage &picture, PixelRect) {
              return change(picture, parameters);
          }) {}
    Operation(QImage (*change)(const QImage &))
        : m_run([change](const QImage &picture, PixelRect) { return change(picture); }) {}
    /// Any other function that returns the changed picture, of which only the area is used, or a null picture on
    /// failure.
    template <typename Function>
    requires(!std::is_same_v<Function, Operation> &&
             std::is_invocable_r_v<QImage, const Function &, const QImage &, PixelRect>) Operation(Function run)
        : m_run(std::move(run)) {}

    /// The changed picture. The area must be inside the picture; the result outside the area is undefined. A null
    /// picture when the operation or a memory allocation fails; may throw std::bad_alloc.
    QImage operator()(const QImage &picture, PixelRect area) const { return m_run(picture, area); }

  private:
    using Fill = std::function<bool(ConstPixelView source, PixelView target, bool opaque)>;
    static QImage filled(const QImage &picture, const Fill &fill);

    std::function<QImage(const QImage &picture, PixelRect area)> m_run;
};

} // namespace lumora
