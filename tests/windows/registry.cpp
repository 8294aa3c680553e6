// Looks the component's registry entries up. Arguments: machine, user or gone, and the path of the
// component.
#include "check.hpp"

namespace {

#ifdef _WIN64
constexpr const char* kSystem = "win64";
#else
constexpr const char* kSystem = "win32";
#endif

std::string braced(const GUID& guid) {
  wchar_t text[40];
  StringFromGUID2(guid, text, 40);
  return Text(std::string(text, text + 38)).ascii();
}

struct Entry {
  std::string key;
  const char* name;
  std::string value;
};

std::vector<Entry> entries(const std::string& file) {
  const std::string library = braced(LIBID_vq140Analyse);
  const std::string version = "TypeLib\\" + library + "\\6.3";
  std::vector<Entry> all = {{version, nullptr, "Quorvane Statistical Analysis 6.3"},
                            {version + "\\0\\" + kSystem, nullptr, file},
                            {version + "\\FLAGS", nullptr, "0"}};
  for (const ClassRow& row : kClasses) {
    const std::string id = std::string("vq140Analyse.") + row.name;
    const std::string clsid = braced(row.clsid), iid = "Interface\\" + braced(row.iid);
    const std::string key = "CLSID\\" + clsid;
    all.insert(all.end(),
               {{id + "\\CLSID", nullptr, clsid},
                {id + "\\CurVer", nullptr, id + ".1"},
                {id + ".1\\CLSID", nullptr, clsid},
                {key + "\\ProgID", nullptr, id + ".1"},
                {key + "\\VersionIndependentProgID", nullptr, id},
                {key + "\\InprocServer32", nullptr, file},
                {key + "\\InprocServer32", "ThreadingModel", "Apartment"},
                {key + "\\TypeLib", nullptr, library},
                {iid, nullptr, std::string("_") + row.name},
                {iid + "\\TypeLib", nullptr, library},
                {iid + "\\TypeLib", "Version", "6.3"},
                {iid + "\\ProxyStubClsid32", nullptr, "{00020424-0000-0000-C000-000000000046}"}});
  }
  return all;
}

std::string read(HKEY root, const std::string& key, const char* name) {
  char text[1024] = {};
  DWORD size = sizeof text;
  const LSTATUS result = RegGetValueA(root, key.c_str(), name, RRF_RT_REG_SZ, nullptr, text, &size);
  return result == ERROR_SUCCESS ? text : "missing";
}

void check_root(HKEY root, bool wanted, const std::string& file) {
  const std::string above = "Software\\Classes\\";
  for (const Entry& entry : entries(file)) {
    const std::string key = above + entry.key;
    if (wanted) {
      const std::string value = read(root, key, entry.name);
      checks.that(value == entry.value, key + ": " + value + ", wanted " + entry.value);
    } else {
      // Its topmost key of ours is gone too, with all it held.
      const std::size_t first = entry.key.find('\\');
      const bool own_key = entry.key.rfind("vq140", 0) == 0;
      const std::string top =
          above + entry.key.substr(0, own_key ? first : entry.key.find('\\', first + 1));
      HKEY opened = nullptr;
      checks.result(RegOpenKeyExA(root, top.c_str(), 0, KEY_READ, &opened), ERROR_FILE_NOT_FOUND,
                    top + " is gone");
    }
  }
}

}  // namespace

int main(int count, char** words) {
  if (count != 3) return 2;
  const std::string where = words[1];
  check_root(HKEY_LOCAL_MACHINE, where == "machine", words[2]);
  check_root(HKEY_CURRENT_USER, where == "user", words[2]);
  return checks.close();
}
