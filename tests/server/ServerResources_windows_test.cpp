// The resources of the library as the system reads them from its file.
#include <array>
#include <cstring>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "resources/Bitmaps.h"
#include "resources/Dialogs.h"
#include "resources/Strings.h"

#include <windows.h>

namespace vblur {
namespace {

class ServerResources : public testing::Test {
 protected:
  ServerResources() : library_(::LoadLibraryExW(L"V_Blur.dll", nullptr, LOAD_LIBRARY_AS_DATAFILE)) {
    EXPECT_NE(library_, nullptr);
  }
  ~ServerResources() override { ::FreeLibrary(library_); }

  const std::byte* Find(int number, LPCWSTR kind) const {
    HRSRC const found = ::FindResourceW(library_, MAKEINTRESOURCEW(number), kind);
    if (found == nullptr) return nullptr;
    return static_cast<const std::byte*>(::LockResource(::LoadResource(library_, found)));
  }

  HINSTANCE library_;
};

// Reads the parts of a dialog's template in their order.
class TemplateReader {
 public:
  explicit TemplateReader(const std::byte* at) : begin_(at), at_(at) {}

  template <class Number>
  Number Take() {
    Number number;
    std::memcpy(&number, at_, sizeof number);
    at_ += sizeof number;
    return number;
  }
  // A text, or a number as "#1".
  std::string Name() {
    std::string text;
    auto letter = Take<std::uint16_t>();
    if (letter == 0xFFFF) return "#" + std::to_string(Take<std::uint16_t>());
    for (; letter != 0; letter = Take<std::uint16_t>())
      text += static_cast<char>(letter);
    return text;
  }
  void AlignTo4() {
    while ((at_ - begin_) % 4 != 0)
      ++at_;
  }

 private:
  const std::byte* begin_;
  const std::byte* at_;
};

// As the resource compiler writes the system's classes.
std::string ClassOf(ModuleControlKind kind) {
  switch (kind) {
    case ModuleControlKind::Group:
    case ModuleControlKind::PushButton:
    case ModuleControlKind::CheckBox: return "BUTTON";
    case ModuleControlKind::List: return "COMBOBOX";
    default: return "STATIC";
  }
}

TEST_F(ServerResources, EachStringIsTheTables) {
  for (const ModuleString& string : resources::Strings()) {
    std::array<wchar_t, 1024> text{};
    const int length = ::LoadStringW(library_, static_cast<UINT>(string.id), text.data(), 1024);
    EXPECT_EQ(std::wstring(text.data(), static_cast<std::size_t>(length)),
              std::wstring(string.text.begin(), string.text.end()))
        << string.id;
  }
  std::array<wchar_t, 8> text{};
  EXPECT_EQ(::LoadStringW(library_, 1071, text.data(), 8), 0) << "the viewer tool has no description";
}

TEST_F(ServerResources, EachDialogIsTheTables) {
  for (const ModuleDialog& dialog : resources::Dialogs()) {
    const std::byte* const found = Find(dialog.id, RT_DIALOG);
    ASSERT_NE(found, nullptr) << dialog.id;
    TemplateReader reader(found);
    EXPECT_EQ(reader.Take<std::uint16_t>(), 1) << "version";
    EXPECT_EQ(reader.Take<std::uint16_t>(), 0xFFFF) << "an extended template";
    reader.Take<std::uint64_t>();  // help and extended style
    EXPECT_EQ(reader.Take<std::uint32_t>(), dialog.style);
    ASSERT_EQ(reader.Take<std::uint16_t>(), dialog.controls.size());
    reader.Take<std::uint32_t>();  // place
    EXPECT_EQ(reader.Take<std::int16_t>(), 190);
    EXPECT_EQ(reader.Take<std::int16_t>(), 160);
    EXPECT_EQ(reader.Name() + reader.Name() + reader.Name(), "") << "menu, class, title";
    EXPECT_EQ(reader.Take<std::uint16_t>(), 11) << "points";
    reader.Take<std::uint32_t>();  // weight, slant, character set
    EXPECT_EQ(reader.Name(), "Arial");
    for (const ModuleControl& control : dialog.controls) {
      reader.AlignTo4();
      reader.Take<std::uint64_t>();
      EXPECT_EQ(reader.Take<std::uint32_t>(), control.style) << control.id;
      EXPECT_EQ(reader.Take<std::int16_t>(), control.x) << control.id;
      EXPECT_EQ(reader.Take<std::int16_t>(), control.y) << control.id;
      EXPECT_EQ(reader.Take<std::int16_t>(), control.width) << control.id;
      EXPECT_EQ(reader.Take<std::int16_t>(), control.height) << control.id;
      EXPECT_EQ(reader.Take<std::int32_t>(), control.id);
      EXPECT_EQ(reader.Name(), ClassOf(control.kind)) << control.id;
      const std::string text = reader.Name();
      EXPECT_EQ(text, control.kind == ModuleControlKind::Picture ? "#103" : std::string(control.text)) << control.id;
      EXPECT_EQ(reader.Take<std::uint16_t>(), 0) << "data of its own";
    }
  }
}

TEST_F(ServerResources, EachPictureIsTheTables) {
  for (const ModuleBitmap& bitmap : resources::Bitmaps()) {
    const std::byte* const found = Find(bitmap.id, RT_BITMAP);
    ASSERT_NE(found, nullptr) << bitmap.id;
    BITMAPINFOHEADER header;
    std::memcpy(&header, found, sizeof header);
    ASSERT_EQ(header.biWidth, bitmap.width);
    ASSERT_EQ(header.biHeight, bitmap.height);
    ASSERT_EQ(header.biBitCount, 32);
    for (std::int32_t y = 0; y < bitmap.height; ++y) {
      for (std::int32_t x = 0; x < bitmap.width; ++x) {
        const auto at = static_cast<std::size_t>(4 * ((bitmap.height - 1 - y) * bitmap.width + x));
        const std::uint8_t* const expected = &bitmap.pixels[static_cast<std::size_t>(4 * (y * bitmap.width + x))];
        const std::byte* const pixel = found + sizeof header + at;
        for (std::size_t i = 0; i < 3; ++i)
          ASSERT_EQ(std::to_integer<std::uint8_t>(pixel[2 - i]), expected[i]) << bitmap.id << ": " << x << ' ' << y;
      }
    }
  }
}

TEST_F(ServerResources, TheVersionIsTheProjects) {
  DWORD unused = 0;
  const DWORD size = ::GetFileVersionInfoSizeW(L"V_Blur.dll", &unused);
  ASSERT_GT(size, 0u);
  std::vector<std::byte> block(size);
  ASSERT_TRUE(::GetFileVersionInfoW(L"V_Blur.dll", 0, size, block.data()));
  const auto text = [&](const std::wstring& name) {
    void* value = nullptr;
    UINT length = 0;
    const std::wstring key = L"\\StringFileInfo\\040904B0\\" + name;
    if (!::VerQueryValueW(block.data(), key.c_str(), &value, &length)) return std::wstring(L"none");
    return std::wstring(static_cast<const wchar_t*>(value));
  };
  EXPECT_EQ(text(L"ProductName"), L"V_Blur");
  EXPECT_EQ(text(L"FileDescription"), L"Halvern's Blur and Sharpen Effect");
  EXPECT_EQ(text(L"LegalCopyright"), L"Copyright (c) Halvern");
  EXPECT_EQ(text(L"OriginalFilename"), L"V_Blur.dll");
  EXPECT_EQ(text(L"FileVersion"), VBLUR_WIDE_VERSION);
  EXPECT_EQ(text(L"ProductVersion"), VBLUR_WIDE_VERSION);
}

}  // namespace
}  // namespace vblur
