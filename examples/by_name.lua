-- The component from LuaJIT, by its ffi: luajit by_name.lua .../libvqmath63.so
local ffi = require("ffi")
local vq = ffi.load(arg[1] or "libvqmath63.so.6")
ffi.cdef [[
  typedef struct { uint16_t rank, features; uint32_t size, locks; float* data;
                   struct { uint32_t count; int32_t low; } bounds[2]; } SafeArray;
  typedef struct { const void* first; int64_t stride; } VqColumn;
  typedef struct Object { struct { void* unknown[3];
    int32_t (*create)(struct Object*, void*, const void*, struct Object**);  // of a class factory
    void* types; int32_t (*find)(struct Object*, void*, void*, uint32_t, uint32_t, int32_t*);
  }* functions; } Object;
  int32_t CLSIDFromProgID(const uint16_t* id, uint8_t* guid);
  int32_t DllGetClassObject(const uint8_t* guid, const void* iid, Object** out);
  int32_t VqCallMany(Object*, int32_t member, uint16_t flags, int64_t calls, const VqColumn* sent,
                     uint32_t count, const VqColumn* results, void* failures);
  int32_t VqSetMessageCallback(void (*take)(const uint16_t*, int32_t, void*), void* context);
  uint16_t* SysAllocString(const uint16_t* text);
  SafeArray* SafeArrayCreate(uint16_t type, uint32_t rank, const uint32_t* bounds);
]]
local function new(type, ...) return ffi.new(type .. "[?]", select("#", ...), ...) end
local function wide(text) return new("uint16_t", (text .. "\0"):byte(1, -1)) end
local function narrow(t, k) return t[k] == 0 and "" or string.char(t[k]) .. narrow(t, k + 1) end
local function made(name)
  local guid, factory, object = ffi.new("uint8_t[16]"), new("Object*", nil), new("Object*", nil)
  assert(vq.CLSIDFromProgID(wide("vq140Analyse." .. name), guid) >= 0, "there is no " .. name)
  vq.DllGetClassObject(guid, "\1\0\0\0\0\0\0\0\192\0\0\0\0\0\0\70", factory)
  factory[0].functions.create(factory[0], nil, "\0\4\2\0\0\0\0\0\192\0\0\0\0\0\0\70", object)
  return object[0]
end
local function singles(rows, columns, ...)  -- indices from 1, column after column
  local array = vq.SafeArrayCreate(4, columns > 1 and 2 or 1, new("uint32_t", rows, 1, columns, 1))
  ffi.copy(array.data, new("float", ...), 4 * rows * columns)
  return new("SafeArray*", array)
end
local function call(object, name, sent, results, flags, calls)
  local stride, columns = calls and 8 or 0, ffi.new("VqColumn[?]", #sent)  -- many calls: of doubles
  local text, member = wide(name), new("int32_t", 0)
  for k, memory in ipairs(sent) do columns[k - 1] = {memory, stride} end
  object.functions.find(object, nil, new("const uint16_t*", text), 1, 0, member)
  local code = vq.VqCallMany(object, member[0], flags or 1, calls or 1, columns, #sent,
    results and ffi.new("VqColumn", results, stride), nil)
  return results, assert(code >= 0, name .. ": result code " .. bit.tohex(code))
end
vq.VqSetMessageCallback(function(line) print(narrow(line, 0)) end, nil)  -- error lines
local well, curve = made("ztAccumulate"), made("ztIntegrate")
local day, month = new("double", 44957), new("uint16_t*", vq.SysAllocString(wide("Month")))
local settings = {StartData = day, StartDate = day, DataPeriod = month, Period = month}
for property, value in pairs(settings) do call(well, property, {value}, nil, 4) end -- 2023-01-31
local result, ok, x = new("SafeArray*", nil), new("int16_t", 0), new("double", 0.5, 1, 2)
call(well, "Accumulate", {singles(4, 2, 0, 1, 2, 3, 5, 20, 30, 40), result, ok})
local name = narrow(call(well, "Period", {}, new("uint16_t*", nil), 2)[0], 0)
print(("by %s, ok: %s"):format(name, ok[0] ~= 0 and "True" or "False"))
local n, days = result[0].bounds[1].count, result[0].data  -- the last dimension's bounds come first
for k = 0, n - 1 do print(("day %3.0f  rate %5.2f"):format(days[k], days[k + n])) end
local erf = call(made("ztMathLib"), "Erf", {x}, new("double", 0, 0, 0), 1, 3)
for k = 0, 2 do print(("Erf(%.1f) = %.14f"):format(x[k], erf[k])) end
call(curve, "IntegrationRule", {new("int32_t", 2)}, nil, 4)  -- Simpson's
local time, area = singles(3, 1, 0, 1, 2), new("float", 0)
print(("area %.9g"):format(call(curve, "Integral", {time, singles(3, 1, 0, 1, 4)}, area)[0]))
call(curve, "Integral", {time, singles(2, 1, 0, 1)}, area)  -- one too few
