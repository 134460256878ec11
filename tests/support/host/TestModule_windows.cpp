#include "tests/support/host/TestModule.h"

#include <array>
#include <atomic>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <map>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "host/pages/DialogTemplate.h"
#include "tools/resources/ResourceScript.h"
// After the project's.
#include <windows.h>

namespace vblur {

namespace {

using Bytes = std::vector<std::byte>;

template <class Value>
void Append(Bytes& bytes, const Value& value) {
  const std::size_t at = bytes.size();
  bytes.resize(at + sizeof(Value));
  std::memcpy(bytes.data() + at, &value, sizeof(Value));
}

constexpr DWORD kPage = 0x1000;
constexpr DWORD kHeaders = 0x200;

DWORD Rounded(std::size_t size, DWORD to) {
  return (static_cast<DWORD>(size) + to - 1) / to * to;
}

// Resources by type and number, each of a single language.
using Resources = std::map<WORD, std::map<WORD, Bytes>>;

// 16 texts with neighbouring numbers are one resource.
void AddStrings(Resources& resources, const Module& record) {
  constexpr std::int32_t kInBlock = 16;
  std::map<std::int32_t, std::array<std::string_view, kInBlock>> blocks;
  for (const ModuleString& string : record.strings)
    blocks[string.id / kInBlock][static_cast<std::size_t>(string.id % kInBlock)] = string.text;
  for (const auto& [block, texts] : blocks) {
    Bytes& bytes = resources[6][static_cast<WORD>(block + 1)];
    for (const std::string_view text : texts) {
      Append(bytes, static_cast<WORD>(text.size()));
      for (const char c : text)
        Append(bytes, static_cast<char16_t>(static_cast<unsigned char>(c)));
    }
  }
}

Resources ResourcesOf(const Module& record) {
  constexpr std::size_t kFileHeader = 14;  // of a BMP file, which resources lack
  Resources resources;
  AddStrings(resources, record);
  for (const ModuleDialog& dialog : record.dialogs)
    resources[5][static_cast<WORD>(dialog.id)] =
        host::WriteDialogTemplate(dialog, host::TemplateClasses::AsInResources);
  for (const ModuleBitmap& bitmap : record.bitmaps) {
    const std::string file = BitmapFile(bitmap);
    const auto* const bytes = reinterpret_cast<const std::byte*>(file.data());
    resources[2][static_cast<WORD>(bitmap.id)] = Bytes(bytes + kFileHeader, bytes + file.size());
  }
  return resources;
}

void AppendDirectory(Bytes& section, std::size_t entries) {
  IMAGE_RESOURCE_DIRECTORY directory{};
  directory.NumberOfIdEntries = static_cast<WORD>(entries);
  Append(section, directory);
}

// The tree of types, numbers and languages, then what they lead to.
Bytes SectionOf(const Resources& resources) {
  constexpr std::size_t kDirectory = sizeof(IMAGE_RESOURCE_DIRECTORY);
  constexpr std::size_t kEntry = sizeof(IMAGE_RESOURCE_DIRECTORY_ENTRY);
  constexpr DWORD kIsDirectory = 0x80000000;
  std::size_t count = 0;
  for (const auto& [type, numbers] : resources)
    count += numbers.size();
  const std::size_t types = kDirectory + resources.size() * kEntry;
  const std::size_t languages = types + resources.size() * kDirectory + count * kEntry;
  const std::size_t data = languages + count * (kDirectory + kEntry);
  Bytes section;
  Bytes content;
  const auto entry = [&](DWORD name, std::size_t to, bool isDirectory) {
    Append(section, name);
    Append(section, static_cast<DWORD>(to) | (isDirectory ? kIsDirectory : 0));
  };
  AppendDirectory(section, resources.size());
  std::size_t at = types;
  for (const auto& [type, numbers] : resources) {
    entry(type, at, true);
    at += kDirectory + numbers.size() * kEntry;
  }
  std::size_t index = 0;
  for (const auto& [type, numbers] : resources) {
    AppendDirectory(section, numbers.size());
    for (const auto& [number, bytes] : numbers)
      entry(number, languages + index++ * (kDirectory + kEntry), true);
  }
  for (std::size_t i = 0; i < count; ++i) {
    AppendDirectory(section, 1);
    entry(0, data + i * sizeof(IMAGE_RESOURCE_DATA_ENTRY), false);
  }
  const std::size_t contentAt = data + count * sizeof(IMAGE_RESOURCE_DATA_ENTRY);
  for (const auto& [type, numbers] : resources) {
    for (const auto& [number, bytes] : numbers) {
      Append(section, IMAGE_RESOURCE_DATA_ENTRY{static_cast<DWORD>(kPage + contentAt + content.size()),
                                                static_cast<DWORD>(bytes.size()), 0, 0});
      content.insert(content.end(), bytes.begin(), bytes.end());
      content.resize((content.size() + 7) / 8 * 8);
    }
  }
  section.insert(section.end(), content.begin(), content.end());
  return section;
}

// A library without code, with one section.
Bytes LibraryOf(const Bytes& resources) {
  IMAGE_DOS_HEADER dos{};
  dos.e_magic = IMAGE_DOS_SIGNATURE;
  dos.e_lfanew = sizeof(dos);
  IMAGE_NT_HEADERS64 headers{};
  headers.Signature = IMAGE_NT_SIGNATURE;
  headers.FileHeader.Machine = IMAGE_FILE_MACHINE_AMD64;
  headers.FileHeader.NumberOfSections = 1;
  headers.FileHeader.SizeOfOptionalHeader = sizeof(headers.OptionalHeader);
  headers.FileHeader.Characteristics = IMAGE_FILE_EXECUTABLE_IMAGE | IMAGE_FILE_LARGE_ADDRESS_AWARE | IMAGE_FILE_DLL;
  auto& optional = headers.OptionalHeader;
  optional.Magic = IMAGE_NT_OPTIONAL_HDR64_MAGIC;
  optional.ImageBase = 0x180000000;
  optional.SectionAlignment = kPage;
  optional.FileAlignment = kHeaders;
  optional.MajorOperatingSystemVersion = optional.MajorSubsystemVersion = 6;
  optional.SizeOfHeaders = kHeaders;
  optional.SizeOfImage = kPage + Rounded(resources.size(), kPage);
  optional.SizeOfInitializedData = Rounded(resources.size(), kHeaders);
  optional.Subsystem = IMAGE_SUBSYSTEM_WINDOWS_GUI;
  optional.NumberOfRvaAndSizes = IMAGE_NUMBEROF_DIRECTORY_ENTRIES;
  optional.DataDirectory[IMAGE_DIRECTORY_ENTRY_RESOURCE] = {kPage, static_cast<DWORD>(resources.size())};
  IMAGE_SECTION_HEADER section{};
  std::memcpy(section.Name, ".rsrc", 5);
  section.Misc.VirtualSize = static_cast<DWORD>(resources.size());
  section.VirtualAddress = kPage;
  section.SizeOfRawData = optional.SizeOfInitializedData;
  section.PointerToRawData = kHeaders;
  section.Characteristics = IMAGE_SCN_CNT_INITIALIZED_DATA | IMAGE_SCN_MEM_READ;
  Bytes file;
  Append(file, dos);
  Append(file, headers);
  Append(file, section);
  file.resize(kHeaders);
  file.insert(file.end(), resources.begin(), resources.end());
  file.resize(Rounded(file.size(), kHeaders));
  return file;
}

}  // namespace

struct TestModule::Kept {
  std::filesystem::path file;
  HMODULE handle = nullptr;
};

TestModule::TestModule(const Module& record) : kept_(new Kept) {
  static std::atomic<int> made = 0;
  kept_->file = std::filesystem::temp_directory_path() /
                ("vblur_module_" + std::to_string(GetCurrentProcessId()) + "_" + std::to_string(made++) + ".dll");
  const Bytes library = LibraryOf(SectionOf(ResourcesOf(record)));
  std::ofstream(kept_->file, std::ios::binary)
      .write(reinterpret_cast<const char*>(library.data()), static_cast<std::streamsize>(library.size()));
  kept_->handle = LoadLibraryExW(kept_->file.c_str(), nullptr, LOAD_LIBRARY_AS_DATAFILE);
  if (kept_->handle == nullptr) throw std::runtime_error("the system loads no " + kept_->file.string());
}

TestModule::~TestModule() {
  FreeLibrary(kept_->handle);
  std::error_code ignored;
  std::filesystem::remove(kept_->file, ignored);
}

HMODULE TestModule::Handle() const {
  return kept_->handle;
}

HMODULE ServerResources() {
  return GetModuleHandleW(nullptr);
}

}  // namespace vblur
