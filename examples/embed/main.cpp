// Blurs a picture in memory through the effect's server: embed SERVER, as in
//   embed /usr/local/lib/vblur/V_Blur.so
#include <cstdio>
#include <vector>

#include <dlfcn.h>
#include <vblur/platform/ComPtr.h>
#include <vblur/platform/IDSImageEffect.h>
#include <vblur/platform/IDSProperties.h>

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
  constexpr GUID kBlurClass = MakeGuid("{9D2E2FA1-AE89-11D5-9414-0800690F2F3F}");
  constexpr GUID kBlur = MakeGuid("{9D2E3005-AE89-11D5-9414-0800690F2F3F}");
  constexpr GUID kChannels = MakeGuid("{9D2E3007-AE89-11D5-9414-0800690F2F3F}");
  constexpr GUID kXEdgeMethod = MakeGuid("{F2A92C68-2302-11D3-AB91-0000E8D8077F}");

  void* library = argv[1] != nullptr ? dlopen(argv[1], RTLD_NOW) : nullptr;
  if (library == nullptr) return std::fprintf(stderr, "usage: embed SERVER\n"), 2;
  auto* getClass = reinterpret_cast<DllGetClassObjectFunction*>(dlsym(library, "DllGetClassObject"));
  ComPtr<IClassFactory> factory;
  ComPtr<IDSImageEffect> effect;
  if (getClass == nullptr || getClass(kBlurClass, IClassFactory::kIid, factory.Receive()) != kOk ||
      factory->CreateInstance(nullptr, IDSImageEffect::kIid, effect.Receive()) != kOk) {
    return std::fprintf(stderr, "%s does not make the effect\n", argv[1]), 1;
  }

  Picture source, result;
  for (std::size_t i = 0; i < source.pixels.size(); ++i)
    source.pixels[i] = i / 4 % 64 < 32 ? 0 : 255;  // black on the left, white on the right
  const auto properties = effect.As<IDSProperties>();
  properties->PutValue(kBlur, DSVariant::Of(12.0));      // pixels
  properties->PutValue(kChannels, DSVariant::Of(1));     // RGBA
  properties->PutValue(kXEdgeMethod, DSVariant::Of(1));  // repeat what stands at the edge
  effect->SetInput(&source);
  effect->SetOutput(&result);
  if (effect->Verify() != kOk || effect->RenderFrame(0.0) != kOk) return 1;
  for (int x = 20; x < 44; x += 4)
    std::printf("x = %d: %d\n", x, result.pixels[static_cast<std::size_t>(32 * 64 + x) * 4]);
  effect->SetInput(nullptr), effect->SetOutput(nullptr);
  return 0;
}
