// The quick ways for every processor.
#include "elementary/ways/arc_tangent.hpp"
#include "elementary/ways/circular.hpp"
#include "elementary/ways/exponential.hpp"
#include "elementary/ways/hypotenuse.hpp"
#include "elementary/ways/logarithm.hpp"
#include "elementary/ways/power.hpp"
