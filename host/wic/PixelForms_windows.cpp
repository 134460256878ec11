#include "host/wic/PixelForms.h"

#include <algorithm>

namespace vblur::host {

namespace {

constexpr std::array<int, 4> kGreyAt{0, 0, 0, -1};
constexpr std::array<int, 4> kRgbAt{0, 1, 2, -1};
constexpr std::array<int, 4> kBgrAt{2, 1, 0, -1};
constexpr std::array<int, 4> kRgbaAt{0, 1, 2, 3};
constexpr std::array<int, 4> kBgraAt{2, 1, 0, 3};
using enum ColourModel;

const std::array kForms = {
    PixelForm{&GUID_WICPixelFormatBlackWhite, Grey, 1, 1, kGreyAt},
    PixelForm{&GUID_WICPixelFormat2bppGray, Grey, 2, 1, kGreyAt},
    PixelForm{&GUID_WICPixelFormat4bppGray, Grey, 4, 1, kGreyAt},
    PixelForm{&GUID_WICPixelFormat8bppGray, Grey, 8, 1, kGreyAt},
    PixelForm{&GUID_WICPixelFormat16bppGray, Grey, 16, 1, kGreyAt},
    PixelForm{&GUID_WICPixelFormat32bppGrayFloat, Grey, 32, 1, kGreyAt, false, true},
    PixelForm{&GUID_WICPixelFormat1bppIndexed, Palette, 1, 1, kGreyAt},
    PixelForm{&GUID_WICPixelFormat2bppIndexed, Palette, 2, 1, kGreyAt},
    PixelForm{&GUID_WICPixelFormat4bppIndexed, Palette, 4, 1, kGreyAt},
    PixelForm{&GUID_WICPixelFormat8bppIndexed, Palette, 8, 1, kGreyAt},
    PixelForm{&GUID_WICPixelFormat16bppBGR555, Packed555, 16, 1, kRgbAt},
    PixelForm{&GUID_WICPixelFormat16bppBGR565, Packed565, 16, 1, kRgbAt},
    PixelForm{&GUID_WICPixelFormat24bppBGR, Rgb, 8, 3, kBgrAt},
    PixelForm{&GUID_WICPixelFormat24bppRGB, Rgb, 8, 3, kRgbAt},
    PixelForm{&GUID_WICPixelFormat32bppBGR, Rgb, 8, 4, kBgrAt},
    PixelForm{&GUID_WICPixelFormat32bppBGRA, Rgb, 8, 4, kBgraAt},
    PixelForm{&GUID_WICPixelFormat32bppRGBA, Rgb, 8, 4, kRgbaAt},
    PixelForm{&GUID_WICPixelFormat32bppPBGRA, Rgb, 8, 4, kBgraAt, true},
    PixelForm{&GUID_WICPixelFormat32bppPRGBA, Rgb, 8, 4, kRgbaAt, true},
    PixelForm{&GUID_WICPixelFormat48bppRGB, Rgb, 16, 3, kRgbAt},
    PixelForm{&GUID_WICPixelFormat48bppBGR, Rgb, 16, 3, kBgrAt},
    PixelForm{&GUID_WICPixelFormat64bppRGB, Rgb, 16, 4, kRgbAt},
    PixelForm{&GUID_WICPixelFormat64bppRGBA, Rgb, 16, 4, kRgbaAt},
    PixelForm{&GUID_WICPixelFormat64bppBGRA, Rgb, 16, 4, kBgraAt},
    PixelForm{&GUID_WICPixelFormat64bppPRGBA, Rgb, 16, 4, kRgbaAt, true},
    PixelForm{&GUID_WICPixelFormat64bppPBGRA, Rgb, 16, 4, kBgraAt, true},
    PixelForm{&GUID_WICPixelFormat96bppRGBFloat, Rgb, 32, 3, kRgbAt, false, true},
    PixelForm{&GUID_WICPixelFormat128bppRGBFloat, Rgb, 32, 4, kRgbAt, false, true},
    PixelForm{&GUID_WICPixelFormat128bppRGBAFloat, Rgb, 32, 4, kRgbaAt, false, true},
    PixelForm{&GUID_WICPixelFormat128bppPRGBAFloat, Rgb, 32, 4, kRgbaAt, true, true},
    PixelForm{&GUID_WICPixelFormat32bppCMYK, Inks, 8, 4, kRgbaAt},
};

constexpr std::array kGrey8{&GUID_WICPixelFormat8bppGray, &GUID_WICPixelFormat24bppBGR};
constexpr std::array kGreyBmp{&GUID_WICPixelFormat8bppIndexed, &GUID_WICPixelFormat24bppBGR};
constexpr std::array kGrey16{&GUID_WICPixelFormat16bppGray, &GUID_WICPixelFormat48bppRGB};
constexpr std::array kRgb8{&GUID_WICPixelFormat24bppBGR};
constexpr std::array kRgb16{&GUID_WICPixelFormat48bppRGB};
constexpr std::array kRgba8{&GUID_WICPixelFormat32bppBGRA};
constexpr std::array kRgba16{&GUID_WICPixelFormat64bppRGBA};

}  // namespace

const PixelForm* FindPixelForm(const ::GUID& id) {
  const auto found = std::ranges::find_if(kForms, [&](const PixelForm& form) { return *form.id == id; });
  return found == kForms.end() ? nullptr : &*found;
}

std::span<const ::GUID* const> FormsFor(std::string_view format, PixelLayout layout, SampleType type) {
  if (format == "bmp" && IsGrey(layout)) return kGreyBmp;
  const bool isWide = type == SampleType::Unsigned16;
  if (layout == PixelLayout::Grey) return isWide ? std::span(kGrey16) : std::span(kGrey8);
  if (layout == PixelLayout::Rgb) return isWide ? std::span(kRgb16) : std::span(kRgb8);
  return isWide ? std::span(kRgba16) : std::span(kRgba8);
}

}  // namespace vblur::host
