#include "tools/resources/ResourceScript.h"

#include <algorithm>
#include <sstream>

#include "resources/Numbers.h"

namespace vblur {
namespace {

std::string Quoted(std::string_view text) {
  std::string quoted = "\"";
  for (const char letter : text) {
    switch (letter) {
      case '"': quoted += "\"\""; break;
      case '\\': quoted += "\\\\"; break;
      case '\n': quoted += "\\n"; break;
      default: quoted += letter;
    }
  }
  return quoted + '"';
}

std::string Hexadecimal(std::uint32_t number) {
  std::ostringstream text;
  text << "0x" << std::hex << number;
  return text.str();
}

std::string_view WindowClass(ModuleControlKind kind) {
  switch (kind) {
    case ModuleControlKind::Group:
    case ModuleControlKind::PushButton:
    case ModuleControlKind::CheckBox: return "Button";
    case ModuleControlKind::List: return "ComboBox";
    case ModuleControlKind::Static:
    case ModuleControlKind::Picture: break;
  }
  return "Static";
}

void WriteDialog(std::ostream& script, const ModuleDialog& dialog) {
  script << '\n' << dialog.id << " DIALOGEX 0, 0, " << dialog.width << ", " << dialog.height << '\n';
  script << "STYLE " << Hexadecimal(dialog.style) << '\n';
  script << "FONT " << dialog.fontPoints << ", " << Quoted(dialog.font) << "\nBEGIN\n";
  for (const ModuleControl& control : dialog.controls) {
    script << "  CONTROL ";
    if (control.kind == ModuleControlKind::Picture)
      script << control.bitmap;
    else
      script << Quoted(control.text);
    script << ", " << control.id << ", " << Quoted(WindowClass(control.kind)) << ", " << Hexadecimal(control.style)
           << ", " << control.x << ", " << control.y << ", " << control.width << ", " << control.height << '\n';
  }
  script << "END\n";
}

}  // namespace

std::string ResourceScript(const Module& module) {
  std::ostringstream script;
  script << "// Made from src/resources when the project is built: changes belong there.\n";
  script << "LANGUAGE 9, 1\n";
  script << "\nSTRINGTABLE\nBEGIN\n";
  for (const ModuleString& string : module.strings)
    script << "  " << string.id << ", " << Quoted(string.text) << '\n';
  script << "END\n";
  for (const ModuleDialog& dialog : module.dialogs)
    WriteDialog(script, dialog);
  script << '\n';
  for (const ModuleBitmap& bitmap : module.bitmaps)
    script << bitmap.id << " BITMAP " << Quoted(BitmapFileName(bitmap)) << '\n';
  return script.str();
}

std::string VersionScript(const Module& module, std::string_view version) {
  const auto text = [&](std::int32_t id) {
    const auto found = std::ranges::find(module.strings, id, &ModuleString::id);
    return found == module.strings.end() ? std::string() : std::string(found->text);
  };
  std::string numbers(version);
  std::ranges::replace(numbers, '.', ',');
  const std::string name = text(resources::strings::kName);
  std::ostringstream script;
  script << "LANGUAGE 9, 1\n";
  script << "1 VERSIONINFO FILEVERSION " << numbers << ",0 PRODUCTVERSION " << numbers << ",0\n";
  // An application's library for 32-bit Windows and its successors.
  script << "FILEFLAGSMASK 0x3F FILEFLAGS 0 FILEOS 0x4 FILETYPE 2 FILESUBTYPE 0\nBEGIN\n";
  // English texts in Unicode.
  script << "  BLOCK \"StringFileInfo\"\n  BEGIN\n    BLOCK \"040904B0\"\n    BEGIN\n";
  const auto value = [&](std::string_view key, std::string_view shown) {
    script << "      VALUE " << Quoted(key) << ", " << Quoted(shown) << '\n';
  };
  value("FileDescription", text(resources::strings::kDescription));
  value("FileVersion", version);
  value("InternalName", name);
  value("LegalCopyright", text(resources::strings::kOwnerLine));
  value("OriginalFilename", name + ".dll");
  value("ProductName", name);
  value("ProductVersion", version);
  script << "    END\n  END\n  BLOCK \"VarFileInfo\"\n  BEGIN\n    VALUE \"Translation\", 0x409, 0x4B0\n  END\nEND\n";
  return script.str();
}

}  // namespace vblur
