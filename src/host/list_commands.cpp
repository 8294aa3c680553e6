// The commands that tell what the component has: classes and members, and its version.
#include <algorithm>
#include <iostream>
#include <memory>

#include "host/commands.hpp"
#include "host/description.hpp"
#include "host/dispatch_client.hpp"
#include "host/failure.hpp"
#include "host/message_sink.hpp"
#include "host/text.hpp"
#include "host/values.hpp"

namespace vqmath63::host {

void add_classes(CommandLine& program) {
  program.add("classes", "List the classes of the component")
      .notes("Example: vqhost classes")
      .does([] {
        const auto classes = describe_classes();
        std::size_t width = 0;
        for (const auto& each : classes) width = std::max(width, each.name.size());
        for (const auto& each : classes) {
          std::cout << left_aligned(each.name, width + 2) << each.help << '\n';
        }
        return kSuccess;
      });
}

void add_members(CommandLine& program) {
  const auto name = std::make_shared<std::string>();
  program.add("members", "List the members of a class, as Basic declares them")
      .argument("CLASS", *name, "Class name or programmatic id")
      .notes("Example: vqhost members ztIntegrate")
      .does([name] {
        for (const MemberDescription& member : describe_members(*name)) {
          std::cout << basic_declaration(member) << "\n    " << member.help << '\n';
        }
        return kSuccess;
      });
}

std::string version_text() {
  const MessageSink sink;
  std::vector<Argument> arguments;
  arguments.push_back({Value::boolean(false), "qLogToFile"});  // asking starts no log
  DispatchObject info = DispatchObject::create("ztAnalyseInfo");
  return value_text(info.get("DLLVersion", std::move(arguments)).get(), true);
}

}  // namespace vqmath63::host
