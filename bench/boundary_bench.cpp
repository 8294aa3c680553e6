// What a call costs: native, through the dual interface's vtable, by name.
#include <benchmark/benchmark.h>

#include <span>
#include <vector>

#include "automation/invoke.hpp"
#include "automation/many_calls.hpp"
#include "automation/types.hpp"
#include "calculus/integrate.hpp"
#include "component/class_list.hpp"
#include "mathlib/math_lib.hpp"

// The dual interfaces as far as they are called here, in vtable order. They have a name that other
// files could see: of types of its own alone, the compiler knows that nothing implements them.
namespace dual {

struct Accumulate : IDispatch {
  virtual HRESULT VQ_API put_StartDate(DATE value) = 0;
  virtual HRESULT VQ_API put_Silent(VARIANT_BOOL value) = 0;
  virtual HRESULT VQ_API put_Frequency(std::int32_t value) = 0;
};
struct Integrate : IDispatch {
  virtual HRESULT VQ_API get_IntegerationRule(std::int32_t* result) = 0;
  virtual HRESULT VQ_API put_IntegrationRule(std::int32_t* rule) = 0;
  virtual HRESULT VQ_API Integral(SAFEARRAY** x, SAFEARRAY** y, float* result) = 0;
};

}  // namespace dual

// With a name that other files could see too, and out of the compiler's sight.
namespace empty_call {

struct Interface {
  virtual HRESULT put(std::int32_t value) = 0;

 protected:
  ~Interface() = default;
};
struct Nothing : Interface {
  [[gnu::noipa]] HRESULT put(std::int32_t) override { return S_OK; }
};

}  // namespace empty_call

namespace {

using dual::Accumulate;
using dual::Integrate;
using vqmath63::component::find_class;

template <class Interface>
Interface* create(const char* programmatic_id) {
  const auto* info = find_class(programmatic_id);
  void* object = nullptr;
  if (info == nullptr || FAILED(info->create(info->iid, &object))) std::abort();
  return static_cast<Interface*>(object);
}

SAFEARRAY* singles(std::size_t n) {
  SAFEARRAYBOUND bound{static_cast<ULONG>(n), 1};
  SAFEARRAY* array = SafeArrayCreate(VT_R4, 1, &bound);
  auto* values = static_cast<float*>(array->pvData);
  for (std::size_t i = 0; i < n; ++i) values[i] = static_cast<float>(i);
  return array;
}

void EmptyVirtualCall(benchmark::State& state) {
  empty_call::Nothing nothing;
  empty_call::Interface* object = &nothing;
  benchmark::DoNotOptimize(object);
  for (auto _ : state) benchmark::DoNotOptimize(object->put(3));
}

void NewAndDelete(benchmark::State& state) {
  for (auto _ : state) {
    void* room = ::operator new(64);
    benchmark::DoNotOptimize(room);
    ::operator delete(room);
  }
}

void ErfNative(benchmark::State& state) {
  const vqmath63::ztMathLib maths;
  double x = 0.25;
  for (auto _ : state) {
    benchmark::DoNotOptimize(x);
    benchmark::DoNotOptimize(maths.Erf(x));
  }
}

void ErfByVtable(benchmark::State& state) {
  using Erf = HRESULT(VQ_API*)(void*, double, double*);
  auto* object = create<IDispatch>("vq140Analyse.ztMathLib");
  constexpr DISPID kErf = 59;
  std::size_t place = 0;
  vqmath63::automation::find_member(*vqmath63::component::class_of(object), kErf, DISPATCH_METHOD,
                                    &place);
  const auto erf = reinterpret_cast<Erf>((*reinterpret_cast<void (***)()>(object))[7 + place]);
  double x = 0.25, result = 0;
  for (auto _ : state) {
    benchmark::DoNotOptimize(x);
    benchmark::DoNotOptimize(erf(object, x, &result));
  }
  object->Release();
}

// As a class factory does it, which a host asks for once.
void CreateAndRelease(benchmark::State& state) {
  const auto& info = *find_class("vq140Analyse.ztIntegrate");
  for (auto _ : state) {
    void* object = nullptr;
    benchmark::DoNotOptimize(info.create(info.iid, &object));
    static_cast<IDispatch*>(object)->Release();
  }
}

void PropertyByVtable(benchmark::State& state) {
  auto* object = create<Accumulate>("vq140Analyse.ztAccumulate");
  for (auto _ : state) benchmark::DoNotOptimize(object->put_Frequency(3));
  object->Release();
}

void PropertyByName(benchmark::State& state) {
  auto* object = create<Accumulate>("vq140Analyse.ztAccumulate");
  VARIANT value;
  VariantInit(&value);
  value.vt = VT_I4;
  value.lVal = 3;
  DISPID put = DISPID_PROPERTYPUT;
  DISPPARAMS params{&value, &put, 1, 1};
  constexpr DISPID kFrequency = 3;
  for (auto _ : state) {
    benchmark::DoNotOptimize(object->Invoke(kFrequency, GUID{}, 0, DISPATCH_PROPERTYPUT, &params,
                                            nullptr, nullptr, nullptr));
  }
  object->Release();
}

void NameToId(benchmark::State& state) {
  auto* object = create<Accumulate>("vq140Analyse.ztAccumulate");
  OLECHAR name[] = VQ_OLESTR("accumulate");  // the last row of the table
  LPOLESTR names = name;
  DISPID id = 0;
  for (auto _ : state) benchmark::DoNotOptimize(object->GetIDsOfNames(GUID{}, &names, 1, 0, &id));
  object->Release();
}

void IntegralNative(benchmark::State& state) {
  std::vector<float> values(static_cast<std::size_t>(state.range(0)), 1.0F);
  vqmath63::Array1<float> x{std::span<float>(values)};
  vqmath63::Array1<float> y{std::span<float>(values)};
  vqmath63::ztIntegrate integrate;
  for (auto _ : state) benchmark::DoNotOptimize(integrate.Integral(x, y));
}

void IntegralByVtable(benchmark::State& state) {
  auto* object = create<Integrate>("vq140Analyse.ztIntegrate");
  SAFEARRAY* x = singles(static_cast<std::size_t>(state.range(0)));
  SAFEARRAY* y = singles(static_cast<std::size_t>(state.range(0)));
  float area = 0.0F;
  for (auto _ : state) benchmark::DoNotOptimize(object->Integral(&x, &y, &area));
  SafeArrayDestroy(x);
  SafeArrayDestroy(y);
  object->Release();
}

// Arguments as a script sends them: by-reference variants.
void integral_by_name(benchmark::State& state, VARTYPE element) {
  auto* object = create<Integrate>("vq140Analyse.ztIntegrate");
  VARIANT held[2];
  VARIANT arguments[2];
  for (int i = 0; i < 2; ++i) {
    SAFEARRAY* array = singles(static_cast<std::size_t>(state.range(0)));
    if (element == VT_VARIANT) {
      SAFEARRAYBOUND bound{static_cast<ULONG>(state.range(0)), 1};
      SAFEARRAY* variants = SafeArrayCreate(VT_VARIANT, 1, &bound);
      auto* values = static_cast<VARIANT*>(variants->pvData);
      for (std::int64_t k = 0; k < state.range(0); ++k) {
        values[k].vt = VT_R8;
        values[k].dblVal = static_cast<double>(k);
      }
      SafeArrayDestroy(array);
      array = variants;
    }
    VariantInit(&held[i]);
    held[i].vt = static_cast<VARTYPE>(VT_ARRAY | element);
    held[i].parray = array;
    VariantInit(&arguments[i]);
    arguments[i].vt = VT_BYREF | VT_VARIANT;
    arguments[i].pvarVal = &held[i];
  }
  DISPPARAMS params{arguments, nullptr, 2, 0};
  VARIANT result;
  constexpr DISPID kIntegral = 3;
  for (auto _ : state) {
    benchmark::DoNotOptimize(
        object->Invoke(kIntegral, GUID{}, 0, DISPATCH_METHOD, &params, &result, nullptr, nullptr));
  }
  VariantClear(&held[0]);
  VariantClear(&held[1]);
  object->Release();
}

void IntegralByName(benchmark::State& state) {
  integral_by_name(state, VT_R4);
}
void IntegralByNameVariants(benchmark::State& state) {
  integral_by_name(state, VT_VARIANT);
}

// A function over an array: the plain loop, the loop of the boundary. `Squared` costs next to
// nothing itself.
void SquaredNative(benchmark::State& state) {
  std::vector<double> x(static_cast<std::size_t>(state.range(0)), 0.5), y(x);
  const vqmath63::ztMathLib maths;
  for (auto _ : state) {
    for (std::size_t i = 0; i < x.size(); ++i) y[i] = maths.Squared(x[i]);
    benchmark::DoNotOptimize(y.data());
  }
  state.SetItemsProcessed(state.iterations() * state.range(0));
}

void SquaredMany(benchmark::State& state) {
  std::vector<double> x(static_cast<std::size_t>(state.range(0)), 0.5), y(x);
  auto* object = create<IDispatch>("vq140Analyse.ztMathLib");
  const auto& info = *vqmath63::component::class_of(object);
  constexpr DISPID kSquared = 42;
  std::size_t place = 0;
  const auto* member = vqmath63::automation::find_member(info, kSquared, DISPATCH_METHOD, &place);
  const vqmath63::automation::Column column{x.data(), sizeof(double)};
  for (auto _ : state) {
    vqmath63::automation::ManyCalls calls{
        info, *member, {&column, 1}, {y.data(), sizeof(double)}, state.range(0)};
    benchmark::DoNotOptimize(member->many_call(object, member->native, calls));
  }
  state.SetItemsProcessed(state.iterations() * state.range(0));
  object->Release();
}

void samples(benchmark::internal::Benchmark* bench) {
  for (const std::int64_t n : {4, 100, 1'000, 10'000}) bench->Arg(n);
}
BENCHMARK(EmptyVirtualCall);
BENCHMARK(NewAndDelete);
BENCHMARK(ErfNative);
BENCHMARK(ErfByVtable);
BENCHMARK(CreateAndRelease);
BENCHMARK(PropertyByVtable);
BENCHMARK(PropertyByName);
BENCHMARK(NameToId);
BENCHMARK(IntegralNative)->Apply(samples);
BENCHMARK(IntegralByVtable)->Apply(samples);
BENCHMARK(IntegralByName)->Apply(samples);
BENCHMARK(IntegralByNameVariants)->Apply(samples);
BENCHMARK(SquaredNative)->Apply(samples);
BENCHMARK(SquaredMany)->Apply(samples);

}  // namespace
