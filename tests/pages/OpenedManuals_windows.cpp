#include "tests/pages/OpenedManuals.h"

#include <array>
#include <chrono>
#include <filesystem>
#include <fstream>
#include <string_view>
#include <thread>

#include <gtest/gtest.h>

#include "tests/support/host/ScratchFolder.h"
// After those of the project.
#include <windows.h>
// After the system's header.
#include <shellapi.h>

namespace vblur {

namespace {

namespace fs = std::filesystem;

// The test program itself notes what is opened, instead of running tests: --note-opened FOLDER FILE.
constexpr const wchar_t* kNote = L"--note-opened";

fs::path Program() {
  std::array<wchar_t, MAX_PATH> file{};
  ::GetModuleFileNameW(nullptr, file.data(), MAX_PATH);
  return file.data();
}

void Note(const fs::path& folder, const std::wstring& file) {
  const std::wstring name = std::to_wstring(::GetCurrentProcessId());
  const HANDLE out =
      ::CreateFileW((folder / name).c_str(), GENERIC_WRITE, 0, nullptr, CREATE_NEW, FILE_ATTRIBUTE_NORMAL, nullptr);
  DWORD written = 0;
  ::WriteFile(out, file.data(), static_cast<DWORD>(file.size() * sizeof(wchar_t)), &written, nullptr);
  ::CloseHandle(out);
  // Under its last name once all is in it.
  ::MoveFileW((folder / name).c_str(), (folder / (name + L".txt")).c_str());
}

// Before main.
[[maybe_unused]] const bool kIsTesting = [] {
  int count = 0;
  wchar_t** const words = ::CommandLineToArgvW(::GetCommandLineW(), &count);
  if (count != 4 || std::wstring_view(words[1]) != kNote) return true;
  Note(words[2], words[3]);
  ::ExitProcess(0);
}();

fs::path Programs() {
  std::array<wchar_t, MAX_PATH> folder{};
  DWORD size = sizeof folder;
  EXPECT_EQ(::RegGetValueW(HKEY_LOCAL_MACHINE, L"Software\\Microsoft\\Windows\\CurrentVersion", L"ProgramFilesDir",
                           RRF_RT_REG_SZ, nullptr, folder.data(), &size),
            ERROR_SUCCESS);
  return folder.data();
}

// A document type with a program of its own.
class Handler {
 public:
  explicit Handler(const std::wstring& command) {
    DWORD size = sizeof before_;
    had_ = ::RegGetValueW(HKEY_LOCAL_MACHINE, kExtension, nullptr, RRF_RT_REG_SZ, nullptr, before_.data(), &size) ==
           ERROR_SUCCESS;
    Write(kExtension, L"VBlurTest.Document");
    Write(kCommand, command);
  }
  ~Handler() {
    ::RegDeleteTreeW(HKEY_LOCAL_MACHINE, kType);
    if (had_) {
      Write(kExtension, before_.data());
    } else {
      ::RegDeleteTreeW(HKEY_LOCAL_MACHINE, kExtension);
    }
  }
  Handler(const Handler&) = delete;
  Handler& operator=(const Handler&) = delete;

 private:
  static constexpr const wchar_t* kExtension = L"Software\\Classes\\.pdf";
  static constexpr const wchar_t* kType = L"Software\\Classes\\VBlurTest.Document";
  static constexpr const wchar_t* kCommand = L"Software\\Classes\\VBlurTest.Document\\shell\\open\\command";

  static void Write(const wchar_t* key, const std::wstring& text) {
    EXPECT_EQ(::RegSetKeyValueW(HKEY_LOCAL_MACHINE, key, nullptr, REG_SZ, text.c_str(),
                                static_cast<DWORD>((text.size() + 1) * sizeof(wchar_t))),
              ERROR_SUCCESS);
  }

  std::array<wchar_t, 260> before_{};
  bool had_ = false;
};

}  // namespace

struct OpenedManuals::Seen {
  Seen() {
    fs::create_directories(manual.parent_path());
    std::ofstream(manual) << "the manual";
  }
  ~Seen() {
    std::error_code ignored;
    fs::remove_all(halvern, ignored);
  }

  std::vector<std::u16string> Opened() const {
    std::vector<std::u16string> opened;
    for (const auto& each : fs::directory_iterator(folder.path())) {
      if (each.path().extension() != ".txt") continue;
      std::ifstream in(each.path(), std::ios::binary);
      std::u16string name(fs::file_size(each.path()) / sizeof(char16_t), u'\0');
      in.read(reinterpret_cast<char*>(name.data()), static_cast<std::streamsize>(name.size() * sizeof(char16_t)));
      // The program may still hold it.
      if (in) opened.push_back(name);
    }
    return opened;
  }

  host::ScratchFolder folder;
  fs::path halvern = Programs() / "The Halvern";
  fs::path manual = halvern / "Vessin 4.3 for DS10 (64bit)" / "Documentation" / "Vessin4.3.pdf";
  Handler handler{L"\"" + Program().wstring() + L"\" " + kNote + L" \"" + folder.path().wstring() + L"\" \"%1\""};
};

OpenedManuals::OpenedManuals() : seen_(std::make_unique<Seen>()) {}
OpenedManuals::~OpenedManuals() = default;

std::vector<std::u16string> OpenedManuals::After(std::size_t count) const {
  using std::chrono::steady_clock;
  const auto end = steady_clock::now() + std::chrono::seconds(30);
  std::vector<std::u16string> opened = seen_->Opened();
  while (opened.size() < count && steady_clock::now() < end) {
    std::this_thread::sleep_for(std::chrono::milliseconds(20));
    opened = seen_->Opened();
  }
  return opened;
}

std::u16string OpenedManuals::Place() const {
  return seen_->manual.u16string();
}

}  // namespace vblur
