// Looks the component's registry entries up. Arguments: machine, user or gone, and the path of the
// component.
#include "check.hpp"

namespace {

constexpr const char* kUserClasses = "Software\\Classes";
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
  std::vector<Entry> all;
  for (const ClassRow& row : kClasses) {
    const std::string id = std::string("vq140Analyse.") + row.name;
    const std::string clsid = "CLSID\\" + braced(row.clsid);
    const std::string versioned = id + ".1";
    all.push_back({id + "\\CLSID", nullptr, braced(row.clsid)});
    all.push_back({id + "\\CurVer", nullptr, versioned});
    all.push_back({versioned + "\\CLSID", nullptr, braced(row.clsid)});
    all.push_back({clsid + "\\ProgID", nullptr, versioned});
    all.push_back({clsid + "\\VersionIndependentProgID", nullptr, id});
    all.push_back({clsid + "\\InprocServer32", nullptr, file});
    all.push_back({clsid + "\\InprocServer32", "ThreadingModel", "Apartment"});
    all.push_back({clsid + "\\TypeLib", nullptr, library});
    const std::string interface_key = "Interface\\" + braced(row.iid);
    all.push_back({interface_key, nullptr, std::string("_") + row.name});
    all.push_back({interface_key + "\\TypeLib", nullptr, library});
    all.push_back({interface_key + "\\TypeLib", "Version", "6.3"});
    all.push_back(
        {interface_key + "\\ProxyStubClsid32", nullptr, "{00020424-0000-0000-C000-000000000046}"});
  }
  const std::string version = "TypeLib\\" + library + "\\6.3";
  all.push_back({version, nullptr, "Quorvane Statistical Analysis 6.3"});
  all.push_back({version + "\\0\\" + kSystem, nullptr, file});
  all.push_back({version + "\\FLAGS", nullptr, "0"});
  return all;
}

std::string read(HKEY root, const std::string& key, const char* name) {
  char text[1024] = {};
  DWORD size = sizeof text;
  const LSTATUS result = RegGetValueA(root, key.c_str(), name, RRF_RT_REG_SZ, nullptr, text, &size);
  return result == ERROR_SUCCESS ? text : "missing";
}

bool exists(HKEY root, const std::string& key) {
  HKEY opened = nullptr;
  if (RegOpenKeyExA(root, key.c_str(), 0, KEY_READ, &opened) != ERROR_SUCCESS) return false;
  RegCloseKey(opened);
  return true;
}

void check_root(HKEY root, const std::string& above, bool wanted, const std::string& file) {
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
      checks.that(!exists(root, top), top + " is gone");
    }
  }
}

}  // namespace

int main(int count, char** words) {
  if (count != 3) return 2;
  const std::string where = words[1];
  const std::string user = std::string(kUserClasses) + "\\";
  check_root(HKEY_LOCAL_MACHINE, user, where == "machine", words[2]);
  check_root(HKEY_CURRENT_USER, user, where == "user", words[2]);
  return checks.close();
}
