// The script and the pictures that the build writes, read back.
#include "tools/resources/ResourceScript.h"

#include <algorithm>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "resources/Bitmaps.h"
#include "resources/Dialogs.h"
#include "resources/Strings.h"
#include "tests/resources/ScriptReader.h"
#include "tests/support/host/ScratchFolder.h"
#include "tests/support/process/Process.h"

namespace vblur::resources {
namespace {

std::string Content(const std::filesystem::path& path) {
  std::ifstream stream(path, std::ios::binary);
  EXPECT_TRUE(stream) << path;
  std::ostringstream text;
  text << stream.rdbuf();
  return text.str();
}

const std::filesystem::path kFolder = VBLUR_RESOURCE_FOLDER;

Script Written() {
  const std::string text = Content(kFolder / "V_Blur.rc");
  return ScriptReader(text).Read();
}

std::vector<std::string> NamesIn(const std::filesystem::path& folder) {
  std::vector<std::string> names;
  for (const auto& entry : std::filesystem::directory_iterator(folder))
    names.push_back(entry.path().filename().string());
  std::ranges::sort(names);
  return names;
}

std::string WindowClassOf(ModuleControlKind kind) {
  if (kind == ModuleControlKind::List) return "ComboBox";
  return kind == ModuleControlKind::Static || kind == ModuleControlKind::Picture ? "Static" : "Button";
}

TEST(ResourceScript, HasEachString) {
  const Script script = Written();
  for (const ModuleString& string : Strings()) {
    ASSERT_TRUE(script.strings.contains(string.id)) << string.id;
    EXPECT_EQ(script.strings.at(string.id), string.text) << string.id;
  }
  EXPECT_EQ(script.strings.size(), Strings().size());
}

TEST(ResourceScript, HasEachControlOfEachDialog) {
  const Script script = Written();
  EXPECT_EQ(script.dialogs.size(), Dialogs().size());
  for (const ModuleDialog& dialog : Dialogs()) {
    ASSERT_TRUE(script.dialogs.contains(dialog.id)) << dialog.id;
    const ScriptDialog& written = script.dialogs.at(dialog.id);
    EXPECT_EQ(written.width, dialog.width) << dialog.id;
    EXPECT_EQ(written.height, dialog.height) << dialog.id;
    EXPECT_EQ(written.style, dialog.style) << dialog.id;
    EXPECT_EQ(written.font, dialog.font) << dialog.id;
    EXPECT_EQ(written.fontPoints, dialog.fontPoints) << dialog.id;
    ASSERT_EQ(written.controls.size(), dialog.controls.size()) << dialog.id;
    for (std::size_t i = 0; i < dialog.controls.size(); ++i) {
      const ModuleControl& control = dialog.controls[i];
      const ScriptControl& found = written.controls[i];
      SCOPED_TRACE("dialog " + std::to_string(dialog.id) + ", control " + std::to_string(i));
      EXPECT_EQ(found.id, control.id);
      EXPECT_EQ(found.windowClass, WindowClassOf(control.kind));
      EXPECT_EQ(found.text, control.text);
      EXPECT_EQ(found.bitmap, control.bitmap);
      EXPECT_EQ(found.style, control.style);
      EXPECT_EQ(found.x, control.x);
      EXPECT_EQ(found.y, control.y);
      EXPECT_EQ(found.width, control.width);
      EXPECT_EQ(found.height, control.height);
    }
  }
}

std::uint32_t Bytes(const std::string& file, std::size_t at, std::size_t count) {
  std::uint32_t number = 0;
  for (std::size_t i = count; i-- != 0;)
    number = number << 8 | static_cast<std::uint8_t>(file.at(at + i));
  return number;
}

TEST(ResourceScript, NamesPicturesOfTheModulesPixels) {
  const Script script = Written();
  EXPECT_EQ(script.bitmaps.size(), Bitmaps().size());
  for (const ModuleBitmap& bitmap : Bitmaps()) {
    ASSERT_TRUE(script.bitmaps.contains(bitmap.id)) << bitmap.id;
    const std::string file = Content(kFolder / script.bitmaps.at(bitmap.id));
    ASSERT_EQ(file.size(), 54 + bitmap.pixels.size()) << bitmap.id;
    EXPECT_EQ(file.substr(0, 2), "BM");
    EXPECT_EQ(Bytes(file, 2, 4), file.size());
    EXPECT_EQ(Bytes(file, 10, 4), 54u) << "where the pixels begin";
    EXPECT_EQ(Bytes(file, 14, 4), 40u) << "bytes of the header";
    const auto width = Bytes(file, 18, 4);
    const auto height = Bytes(file, 22, 4);
    EXPECT_EQ(width, static_cast<std::uint32_t>(bitmap.width));
    EXPECT_EQ(height, static_cast<std::uint32_t>(bitmap.height)) << "from the lowest row up";
    EXPECT_EQ(Bytes(file, 26, 2), 1u) << "planes";
    EXPECT_EQ(Bytes(file, 28, 2), 32u) << "bits a pixel";
    EXPECT_EQ(Bytes(file, 30, 4), 0u) << "compression";
    EXPECT_EQ(Bytes(file, 34, 4), bitmap.pixels.size());
    EXPECT_EQ(Bytes(file, 38, 8), 0u);
    EXPECT_EQ(Bytes(file, 46, 8), 0u);
    for (std::size_t i = 0; i < bitmap.pixels.size() / 4; ++i) {
      const std::size_t x = i % width;
      const std::size_t y = i / width;
      const std::uint8_t* const pixel = &bitmap.pixels[4 * i];
      const auto byte = [&](std::size_t component) { return std::uint32_t{pixel[component]}; };
      const std::uint32_t expected = byte(2) | byte(1) << 8 | byte(0) << 16 | byte(3) << 24;
      ASSERT_EQ(Bytes(file, 54 + 4 * ((height - 1 - y) * width + x), 4), expected)
          << bitmap.id << ": " << x << ' ' << y;
    }
  }
}

TEST(ResourceScript, EscapesQuotesBackslashesAndLineFeeds) {
  constexpr ModuleString kStrings[] = {{7, "say \"Blur\"\n\\name\\ \"\""}, {8, ""}};
  constexpr ModuleControl kControls[] = {{-1, ModuleControlKind::Static, "\"a\\b\"\n", 1, -2, 3, 4, 0x50000000}};
  const ModuleDialog kDialogs[] = {{5, 10, 20, "A \"font\"", 9, 0x80000000, kControls}};
  const std::string text = ResourceScript({kStrings, {}, kDialogs});
  EXPECT_NE(text.find(R"(7, "say ""Blur""\n\\name\\ """"")"), std::string::npos) << text;
  const Script script = ScriptReader(text).Read();
  EXPECT_EQ(script.strings.at(7), kStrings[0].text);
  EXPECT_EQ(script.strings.at(8), "");
  const ScriptDialog& dialog = script.dialogs.at(5);
  EXPECT_EQ(dialog.font, kDialogs[0].font);
  EXPECT_EQ(dialog.style, 0x80000000u);
  EXPECT_EQ(dialog.controls.at(0).text, kControls[0].text);
  EXPECT_EQ(dialog.controls.at(0).y, -2);
}

TEST(ResourceScript, TellsTheVersionInNumbersAndTexts) {
  constexpr ModuleString kStrings[] = {{1, "Name"}, {2, "A \"blur\""}, {1102, "Owner"}};
  const std::string text = VersionScript({kStrings, {}, {}}, "1.2.3");
  EXPECT_NE(text.find("1 VERSIONINFO FILEVERSION 1,2,3,0 PRODUCTVERSION 1,2,3,0\n"), std::string::npos) << text;
  for (const char* const line : {R"(VALUE "FileDescription", "A ""blur""")", R"(VALUE "FileVersion", "1.2.3")",
                                 R"(VALUE "InternalName", "Name")", R"(VALUE "LegalCopyright", "Owner")",
                                 R"(VALUE "OriginalFilename", "Name.dll")", R"(VALUE "ProductName", "Name")",
                                 R"(VALUE "ProductVersion", "1.2.3")", R"(VALUE "Translation", 0x409, 0x4B0)"})
    EXPECT_NE(text.find(line), std::string::npos) << line;
}

cli::ProcessResult RunScript(const std::filesystem::path& folder, std::vector<std::string> arguments) {
  arguments.insert(arguments.begin(), VBLUR_RESOURCE_SCRIPT);
  return cli::Process(folder, std::move(arguments)).Wait();
}

TEST(ResourceScript, IsWrittenIntoANewFolderOrOverAnOldOne) {
  const host::ScratchFolder scratch;
  for (int i = 0; i < 2; ++i) {
    EXPECT_EQ(RunScript(scratch.path(), {"new/folder"}).exit, 0);
    EXPECT_EQ(NamesIn(scratch.path() / "new/folder"),
              (std::vector<std::string>{"102.bmp", "103.bmp", "V_Blur.rc", "Version.rc"}));
    for (const char* const name : {"102.bmp", "103.bmp", "V_Blur.rc", "Version.rc"})
      EXPECT_EQ(Content(scratch.path() / "new/folder" / name), Content(kFolder / name)) << name;
    scratch.Write("new/folder/V_Blur.rc", "old");
  }
}

TEST(ResourceScript, RefusesInOneLineAndLeavesNothingBehind) {
  const host::ScratchFolder scratch;
  const std::string program = VBLUR_RESOURCE_SCRIPT;
  const cli::ProcessResult none = RunScript(scratch.path(), {});
  EXPECT_EQ(none.exit, 2);
  EXPECT_EQ(none.err, program + ": 0 arguments, expected one: the folder to write V_Blur.rc and its pictures into\n");
  EXPECT_EQ(RunScript(scratch.path(), {"a", "b"}).exit, 2);
  scratch.Write("file", "");
  const cli::ProcessResult file = RunScript(scratch.path(), {"file"});
  EXPECT_EQ(file.exit, 4);
  EXPECT_EQ(file.err, "file: Not a directory, expected a folder\n");
  // The last picture cannot be replaced: nothing of the others appears.
  scratch.Write("folder/103.bmp.part/x", "");
  const cli::ProcessResult last = RunScript(scratch.path(), {"folder"});
  EXPECT_EQ(last.exit, 4);
  EXPECT_EQ(last.err, "folder/103.bmp: cannot be written\n");
  EXPECT_EQ(NamesIn(scratch.path() / "folder"), std::vector<std::string>{"103.bmp.part"});
}

}  // namespace
}  // namespace vblur::resources
