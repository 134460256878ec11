// loading_probe render|paint: renders a frame by the server, with `paint` also paints the viewer tool, and prints what
// it did and every OpenGL library that the process has loaded.
#include <cstdio>
#include <cstring>

#include <dlfcn.h>
#include <link.h>

#include "host/hosted/HostImage.h"
#include "platform/ComPtr.h"
#include "platform/IDSImageEffect.h"
#include "platform/Viewer.h"

namespace vblur {
namespace {

constexpr GUID kEffect = MakeGuid("{9D2E2FA1-AE89-11D5-9414-0800690F2F3F}");
constexpr GUID kTool = MakeGuid("{0DDF6A46-E387-49E6-A334-827E9F4CB919}");

// Accepts painting without an OpenGL context.
class Surface : public IVWSurface {
 public:
  HRESULT BeginRenderOpenGL(tagVWOPENGLSURFACE& info) override {
    info = {};
    info.width = info.height = 8;
    info.worldWidth = info.worldHeight = 8.0;
    return kOk;
  }
  HRESULT EndRenderOpenGL(const tagVWOPENGLSURFACE&) override { return kOk; }
};

template <class Interface>
ComPtr<Interface> Make(DllGetClassObjectFunction* getClassObject, const GUID& clsid) {
  ComPtr<IClassFactory> factory;
  ComPtr<Interface> object;
  if (getClassObject(clsid, IClassFactory::kIid, factory.Receive()) == kOk) {
    factory->CreateInstance(nullptr, Interface::kIid, object.Receive());
  }
  return object;
}

bool Render(IDSImageEffect& effect) {
  host::HostImage output, input;
  for (host::HostImage* image : {&output, &input}) {
    image->Reset(8, 4, 8, 8);
    image->Clear();
  }
  std::memset(input.Row(0), 200, input.ByteCount());
  effect.SetOutput(&output);
  effect.SetInput(&input);
  return effect.RenderFrame(0.0) == kOk && static_cast<const unsigned char*>(output.FirstPixel())[0] != 0;
}

int PrintIfOpenGl(dl_phdr_info* library, std::size_t, void*) {
  for (const char* name : {"libOpenGL", "libGL", "libEGL", "libX11"}) {
    if (const char* found = std::strstr(library->dlpi_name, name)) return std::printf("%s\n", found), 0;
  }
  return 0;
}

int Probe(bool paints) {
  void* const library = ::dlopen(VBLUR_SERVER, RTLD_NOW | RTLD_LOCAL);
  if (library == nullptr) return std::printf("%s\n", ::dlerror()), 1;
  auto* const getClassObject = reinterpret_cast<DllGetClassObjectFunction*>(::dlsym(library, "DllGetClassObject"));
  const auto effect = Make<IDSImageEffect>(getClassObject, kEffect);
  if (!effect || !Render(*effect)) return 1;
  std::printf("rendered\n");
  if (paints) {
    const auto tool = Make<IViewerLayer>(getClassObject, kTool);
    Surface surface;
    if (!tool || tool->OnRender(&surface) < 0) return 1;
    std::printf("painted\n");
  }
  ::dl_iterate_phdr(&PrintIfOpenGl, nullptr);
  return 0;
}

}  // namespace
}  // namespace vblur

int main(int count, char** arguments) {
  return vblur::Probe(count > 1 && std::strcmp(arguments[1], "paint") == 0);
}
