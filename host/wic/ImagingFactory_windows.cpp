#include "host/wic/ImagingFactory.h"

#include <array>
#include <cstdio>
#include <stdexcept>
#include <utility>

namespace vblur::host {

namespace {

ComPtr<IWICImagingFactory> MakeFactory() {
  CO_MTA_USAGE_COOKIE kept{};
  ::HRESULT result = ::CoIncrementMTAUsage(&kept);
  ComPtr<IWICImagingFactory> factory;
  if (SUCCEEDED(result)) {
    result = ::CoCreateInstance(CLSID_WICImagingFactory, nullptr, CLSCTX_INPROC_SERVER, IID_IWICImagingFactory,
                                factory.Receive());
  }
  if (SUCCEEDED(result)) return factory;
  if (kept != nullptr) ::CoDecrementMTAUsage(kept);
  throw std::runtime_error("the system has no imaging component: " + ImagingErrorText(result));
}

}  // namespace

IWICImagingFactory& TheImagingFactory() {
  // Lives as long as the process: COM may be gone when static objects are destroyed.
  static IWICImagingFactory* const factory = [] {
    static ComPtr<IWICImagingFactory>& kept = *new ComPtr<IWICImagingFactory>(MakeFactory());
    return kept.get();
  }();
  return *factory;
}

std::string ImagingErrorText(::HRESULT error) {
  static constexpr std::pair<::HRESULT, const char*> kTexts[] = {
      {E_OUTOFMEMORY, "not enough memory"},
      {WINCODEC_ERR_BADHEADER, "its header is damaged"},
      {WINCODEC_ERR_BADIMAGE, "its pixels are damaged"},
      {WINCODEC_ERR_BADSTREAMDATA, "its data are damaged"},
      {WINCODEC_ERR_STREAMREAD, "its pixels end early"},
      {WINCODEC_ERR_FRAMEMISSING, "it has no pixels"},
      {WINCODEC_ERR_UNSUPPORTEDPIXELFORMAT, "pixels of this kind are not supported"},
      {WINCODEC_ERR_COMPONENTNOTFOUND, "the system has no codec for it"},
      {WINCODEC_ERR_UNKNOWNIMAGEFORMAT, "unknown format"},
      {WINCODEC_ERR_UNSUPPORTEDOPERATION, "the system's codec does not support it"}};
  for (const auto& [code, text] : kTexts) {
    if (code == error) return text;
  }
  std::array<char, 24> text{};
  std::snprintf(text.data(), text.size(), "error 0x%08lx", static_cast<unsigned long>(error));
  return text.data();
}

}  // namespace vblur::host
