#include "component/class_list.hpp"
#include "component/describe.hpp"
#include "info/identity.hpp"

namespace vqmath63::component {
namespace {

using automation::ClassInfo;

std::string attribute(const char* name, const std::string& value) {
  return std::string(" ") + name + "=\"" + value + "\"";
}

}  // namespace

std::string manifest_text(ClassList classes) {
  const std::string base = kFileBaseName;
  const std::string library = "{" + guid_text(kLibraryId) + "}";
  std::string text =
      "<?xml version=\"1.0\" encoding=\"UTF-8\" standalone=\"yes\"?>\n"
      "<assembly xmlns=\"urn:schemas-microsoft-com:asm.v1\" manifestVersion=\"1.0\">\n"
      "  <assemblyIdentity type=\"win32\"" +
      attribute("name", base) +
      attribute("version", std::to_string(kMajorVersion) + "." + std::to_string(kMinorVersion) +
                               "." + std::to_string(kRevision) + ".0") +
      "/>\n  <file" + attribute("name", base + ".dll") + ">\n";
  for (const ClassInfo* info : classes) {
    text += "    <comClass" + attribute("clsid", "{" + guid_text(info->clsid) + "}") +
            attribute("progid", versioned_programmatic_id(*info)) + attribute("tlbid", library) +
            attribute("threadingModel", "Apartment") + ">\n      <progid>" +
            programmatic_id(*info) + "</progid>\n    </comClass>\n";
  }
  text +=
      "    <typelib" + attribute("tlbid", library) +
      attribute("version", std::to_string(kLibraryMajor) + "." + std::to_string(kLibraryMinor)) +
      attribute("helpdir", "") + "/>\n  </file>\n";
  for (const ClassInfo* info : classes) {
    // Calls from other apartments go through the system's marshaler for type libraries.
    text += "  <comInterfaceExternalProxyStub" +
            attribute("iid", "{" + guid_text(info->iid) + "}") +
            attribute("name", std::string("_") + info->name) + attribute("tlbid", library) +
            attribute("proxyStubClsid32", "{00020424-0000-0000-C000-000000000046}") + "/>\n";
  }
  return text + "</assembly>\n";
}

}  // namespace vqmath63::component
