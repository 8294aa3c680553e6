#include "component/class_list.hpp"
#include "component/describe.hpp"

namespace vqmath63::component {

std::string reference_text(ClassList classes) {
  std::string text;
  for (const automation::ClassInfo* info : classes) {
    text.append("class\t").append(info->name).append("\t").append(programmatic_id(*info));
    text.append("\t").append(info->help).append("\n");
    for (const automation::NumberNames* names : number_names({&info, 1})) {
      text.append("numbers\t").append(names->name).append("\t").append(names->help);
      for (const automation::NumberName& number : names->numbers) {
        text.append("\t").append(number.name).append("\t").append(std::to_string(number.number));
      }
      text += "\n";
    }
    text += describe_members(*info);
  }
  return text;
}

}  // namespace vqmath63::component
