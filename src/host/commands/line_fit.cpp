#include "host/commands/line_fit.hpp"

#include <algorithm>

#include "host/client/dispatch_client.hpp"
#include "host/client/message_sink.hpp"

namespace vqmath63::host {

std::optional<Line> fit_line(ArrayOwner x, ArrayOwner y, const char* type) {
  const std::size_t count = x.get()->rgsabound[0].cElements;
  ArrayOwner weights(new_array(VT_R4, count));
  std::fill_n(static_cast<float*>(weights.get()->pvData), count, 1.0F);
  const MessageSink sink;
  DispatchObject object = DispatchObject::create("ztRegression");
  object.put("RegressionType", Value::text(type));
  std::vector<Argument> arguments;
  for (ArrayOwner* const each : {&x, &y, &weights}) {
    arguments.push_back({Value::array_reference(VT_R4, each->place())});
  }
  // The flag qOK does not tell of the fit itself.
  if (!object.succeeds("Regression", std::move(arguments)) || sink.errors() > 0) {
    return std::nullopt;
  }
  return Line{object.get("A").get().fltVal, object.get("B").get().fltVal,
              object.get("R").get().fltVal};
}

}  // namespace vqmath63::host
