// Blurs a picture in memory through the effect's server: embed SERVER, as in
//   embed /usr/local/lib/vblur/V_Blur.so
#include <cstdio>
#include <vector>

#include <dlfcn.h>
#include <vblur/platform/ComPtr.h>
#include <vblur/platform/IDSImageEffect.h>
#include <vblur/platform/IDSProperties.h>
#include <vblur/properties/ClassIds.h>
#include <vblur/properties/PropertyTable.h>

using namespace vblur;

// 8 bits a component, red, green, blue, alpha, the bottom row first. The effect only borrows it.
struct Picture : IDSImage {
  std::vector<unsigned char> pixels = std::vector<unsigned char>(64 * 64 * 4);
  HRESULT IsUsable() const override { return kOk; }
  GUID Format() const override { return MFIF_RGBA_RAW_32; }
  DSPixelPair Size() const override { return {64, 64}; }
  void* FirstPixel() const override { return const_cast<unsigned char*>(pixels.data()); }
  DSWorldPair WorldPosition() const override { return {0, 0}; }
  DSWorldPair WorldSize() const override { return {64, 64}; }
};

int main(int, char** argv) {
  if (argv[1] == nullptr) return std::fprintf(stderr, "usage: embed SERVER\n"), 2;
  void* library = dlopen(argv[1], RTLD_NOW);
  if (library == nullptr) return std::fprintf(stderr, "%s\n", dlerror()), 1;
  auto* getClass = reinterpret_cast<DllGetClassObjectFunction*>(dlsym(library, "DllGetClassObject"));
  ComPtr<IClassFactory> factory;
  ComPtr<IDSImageEffect> effect;
  if (getClass == nullptr || getClass(classes::kBlur, IClassFactory::kIid, factory.Receive()) != kOk ||
      factory->CreateInstance(nullptr, IDSImageEffect::kIid, effect.Receive()) != kOk) {
    return std::fprintf(stderr, "%s does not make the effect\n", argv[1]), 1;
  }

  Picture source, result;
  for (std::size_t i = 0; i < source.pixels.size(); ++i)
    source.pixels[i] = i / 4 % 64 < 32 ? 0 : 255;  // black on the left, white on the right
  const auto properties = effect.As<IDSProperties>();
  const auto put = [&](PropertyId id, DSVariant value) { properties->PutValue(PropertyOf(id).guid, value); };
  put(PropertyId::Blur, DSVariant::Of(12.0));      // pixels
  put(PropertyId::Channels, DSVariant::Of(1));     // RGBA
  put(PropertyId::XEdgeMethod, DSVariant::Of(1));  // repeat the pixels at the edge
  effect->SetInput(&source);
  effect->SetOutput(&result);
  if (effect->Verify() != kOk || effect->RenderFrame(0.0) != kOk) return 1;
  for (int x = 20; x < 44; x += 4)
    std::printf("x = %d: %d\n", x, result.pixels[static_cast<std::size_t>(32 * 64 + x) * 4]);
  effect->SetInput(nullptr), effect->SetOutput(nullptr);
  return 0;
}
