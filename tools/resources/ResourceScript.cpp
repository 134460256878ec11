#include "tools/resources/ResourceScript.h"

#include <sstream>

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

}  // namespace vblur
