// The elementary functions by themselves, which members reach with some of their arguments only.
#include <bit>
#include <cmath>

#include "elementary/functions.hpp"
#include "world.hpp"

namespace vqmath63::fuzz {
namespace {

using Function = double (*)(double, double);

template <double kFunction(double)>
double alone(double x, double) {
  return kFunction(x);
}

#define VQ_FUNCTIONS(way)                                                                    \
  {                                                                                          \
    alone<way::exp>, alone<way::log>, alone<way::log1p>, alone<way::log10>, alone<way::sin>, \
        alone<way::cos>, alone<way::tan>, alone<way::atan>, way::pow, way::atan2, way::hypot \
  }

constexpr Function kPortable[] = VQ_FUNCTIONS(elementary::portable);
#ifdef __x86_64__
constexpr Function kFused[] = VQ_FUNCTIONS(elementary::fused);
#endif

}  // namespace

void call_elementary(Bytes head) {
  const std::size_t which = head.below(std::size(kPortable));
  const double x = number(head);
  const double y = number(head);
  const double value = kPortable[which](x, y);
#ifdef __x86_64__
  if (!elementary::kFused) return;
  const double fused = kFused[which](x, y);
  require(std::bit_cast<std::uint64_t>(value) == std::bit_cast<std::uint64_t>(fused) ||
              (std::isnan(value) && std::isnan(fused)),
          "the ways of an elementary function differ");
#endif
}

}  // namespace vqmath63::fuzz
