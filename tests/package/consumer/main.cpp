// Compares the library with the effect, both installed, in one process: random pictures and settings, bit for bit.
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <random>
#include <vector>

#include <dlfcn.h>
#include <vblur/Blur.h>
#include <vblur/platform/ComPtr.h>
#include <vblur/platform/IDSImageEffect.h>
#include <vblur/platform/IDSProperties.h>
#include <vblur/properties/ClassIds.h>
#include <vblur/properties/PropertyTable.h>

using namespace vblur;

namespace {

struct HostPicture : IDSImage {
  HostPicture(vblur::Format f, int w, int h)
      : format(f), width(w), height(h), pixels(static_cast<std::size_t>(w * h * (f == vblur::Format::RGBA8 ? 4 : 8))) {}

  HRESULT IsUsable() const override { return kOk; }
  GUID Format() const override { return format == vblur::Format::RGBA8 ? MFIF_RGBA_RAW_32 : MFIF_RGBA_S2_14; }
  DSPixelPair Size() const override { return {width, height}; }
  void* FirstPixel() const override { return const_cast<unsigned char*>(pixels.data()); }
  DSWorldPair WorldPosition() const override { return {0, 0}; }
  DSWorldPair WorldSize() const override { return {static_cast<double>(width), static_cast<double>(height)}; }

  Picture asPicture() { return {pixels.data(), format, width, height}; }
  ConstPicture asSource() const { return {pixels.data(), format, width, height}; }

  vblur::Format format;
  int width;
  int height;
  std::vector<unsigned char> pixels;
};

std::mt19937_64 engine(20);

int within(int low, int high) {
  return low + static_cast<int>(engine() % static_cast<unsigned>(high - low + 1));
}

bool render(IDSImageEffect& effect, HostPicture& source, HostPicture& result, const Settings& settings, int method,
            double size, double aspect) {
  const auto properties = ComPtr<IDSImageEffect>(&effect).As<IDSProperties>();
  const auto put = [&](PropertyId id, DSVariant value) { properties->PutValue(PropertyOf(id).guid, value); };
  put(PropertyId::Blur, DSVariant::Of(size));
  put(PropertyId::Aspect, DSVariant::Of(aspect));
  put(PropertyId::Channels, DSVariant::Of(static_cast<std::int32_t>(settings.channels)));
  put(PropertyId::Method, DSVariant::Of(static_cast<std::int32_t>(method)));
  put(PropertyId::XEdgeMethod, DSVariant::Of(static_cast<std::int32_t>(settings.edgeX)));
  put(PropertyId::YEdgeMethod, DSVariant::Of(static_cast<std::int32_t>(settings.edgeY)));
  effect.SetInput(&source);
  effect.SetOutput(&result);
  const bool done = effect.Verify() == kOk && effect.RenderFrame(0.0) == kOk;
  effect.SetInput(nullptr);
  effect.SetOutput(nullptr);
  return done;
}

bool compare(IDSImageEffect& effect) {
  const auto format = within(0, 1) == 0 ? Format::RGBA8 : Format::RGBAS2_14;
  HostPicture source(format, within(1, 70), within(1, 70));
  for (unsigned char& byte : source.pixels)
    byte = static_cast<unsigned char>(engine());
  HostPicture rendered(format, source.width, source.height);
  HostPicture filtered = rendered;

  const double size = within(0, 3) == 0 ? within(0, 300) : within(0, 3000) / 100.0;
  const double aspect = within(0, 2) == 0 ? within(-100, 100) : 0.0;
  const double narrow = static_cast<float>(aspect / 100.0);
  Settings settings;
  settings.sizeX = narrow < 0.0 ? size * (1.0 + narrow) : size;
  settings.sizeY = narrow > 0.0 ? size * (1.0 - narrow) : size;
  settings.channels = static_cast<Channels>(within(VBLUR_RGB, VBLUR_V));
  settings.edgeX = static_cast<Edge>(within(VBLUR_EDGE_COLOUR, VBLUR_EDGE_WRAP));
  settings.edgeY = static_cast<Edge>(within(VBLUR_EDGE_COLOUR, VBLUR_EDGE_WRAP));
  const int method = within(0, 1);
  if (!render(effect, source, rendered, settings, method, size, aspect)) return false;
  const auto call = method == 1 ? &sharpen : &blur;
  const Result done = call(source.asSource(), filtered.asPicture(), settings);
  if (!done) std::puts(done.message.c_str());
  return done && filtered.pixels == rendered.pixels;
}

}  // namespace

int main() {
  void* library = dlopen(SERVER, RTLD_NOW);
  if (library == nullptr) return std::puts(dlerror()), 1;
  auto* getClass = reinterpret_cast<DllGetClassObjectFunction*>(dlsym(library, "DllGetClassObject"));
  ComPtr<IClassFactory> factory;
  ComPtr<IDSImageEffect> effect;
  if (getClass == nullptr || getClass(classes::kBlur, IClassFactory::kIid, factory.Receive()) != kOk ||
      factory->CreateInstance(nullptr, IDSImageEffect::kIid, effect.Receive()) != kOk) {
    return std::puts("no effect"), 1;
  }
  for (int i = 0; i < 500; ++i) {
    if (!compare(*effect.get())) return std::printf("case %d differs\n", i), 1;
  }
  return 0;
}
