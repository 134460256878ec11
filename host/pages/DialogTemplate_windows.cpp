#include "host/pages/DialogTemplate.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <limits>
#include <string_view>

#include "host/base/NameMatch.h"
#include "host/pages/ControlText.h"
#include "platform/WindowStyles.h"

namespace vblur::host {

namespace {

constexpr std::uint16_t kVersion = 1;
constexpr std::uint16_t kExtended = 0xFFFF;
constexpr std::uint16_t kByNumber = 0xFFFF;
constexpr std::uint16_t kButtonClass = 0x80;
constexpr std::uint16_t kStaticClass = 0x82;
constexpr std::uint16_t kListClass = 0x85;
constexpr std::uint16_t kNormalWeight = 400;
constexpr std::uint8_t kDefaultCharacters = 1;
constexpr std::size_t kItemAlignment = 4;
constexpr std::uint32_t kButtonKinds = 0xF;
constexpr std::uint32_t kStaticKinds = 0x1F;

class Writer {
 public:
  template <class Number>
  void Put(Number number) {
    std::array<std::byte, sizeof(Number)> raw;
    std::memcpy(raw.data(), &number, sizeof(Number));
    bytes_.insert(bytes_.end(), raw.begin(), raw.end());
  }
  void PutText(std::u16string_view text) {
    for (const char16_t c : text)
      Put(c);
    Put(u'\0');
  }
  void PutPlace(std::int32_t x, std::int32_t y, std::int32_t width, std::int32_t height) {
    using Limits = std::numeric_limits<std::int16_t>;
    for (const std::int32_t number : {x, y, width, height})
      Put(static_cast<std::int16_t>(std::clamp<std::int32_t>(number, Limits::min(), Limits::max())));
  }
  void Align() { bytes_.resize((bytes_.size() + kItemAlignment - 1) / kItemAlignment * kItemAlignment); }
  std::vector<std::byte> Taken() { return std::move(bytes_); }

 private:
  std::vector<std::byte> bytes_;
};

class Reader {
 public:
  explicit Reader(std::span<const std::byte> bytes) : bytes_(bytes) {}

  bool IsWhole() const { return isWhole_; }
  template <class Number>
  Number Take() {
    Number number{};
    if (bytes_.size() - at_ < sizeof(Number)) {
      isWhole_ = false;
      at_ = bytes_.size();
      return number;
    }
    std::memcpy(&number, bytes_.data() + at_, sizeof(Number));
    at_ += sizeof(Number);
    return number;
  }
  std::int32_t TakePlace() { return Take<std::int16_t>(); }
  // A text, or a number behind kByNumber.
  struct Name {
    std::string text;
    std::optional<std::uint16_t> number;
  };
  Name TakeName() {
    Name name;
    for (char16_t c = Take<char16_t>(); c != 0 && isWhole_; c = Take<char16_t>()) {
      if (name.text.empty() && c == kByNumber) {
        name.number = Take<std::uint16_t>();
        return name;
      }
      name.text += c < 0x100 ? static_cast<char>(c) : '?';
    }
    return name;
  }
  void Skip(std::size_t count) { at_ = std::min(bytes_.size(), at_ + count); }
  void Align() { at_ = std::min(bytes_.size(), (at_ + kItemAlignment - 1) / kItemAlignment * kItemAlignment); }

 private:
  std::span<const std::byte> bytes_;
  std::size_t at_ = 0;
  bool isWhole_ = true;
};

std::optional<ModuleControlKind> KindOf(const Reader::Name& className, std::uint32_t style) {
  const auto is = [&](std::uint16_t number, std::string_view name) {
    return className.number ? *className.number == number : EqualIgnoringCase(className.text, name);
  };
  if (is(kListClass, "ComboBox")) return ModuleControlKind::List;
  if (is(kStaticClass, "Static")) {
    return (style & kStaticKinds) == SS_BITMAP ? ModuleControlKind::Picture : ModuleControlKind::Static;
  }
  if (!is(kButtonClass, "Button")) return std::nullopt;
  switch (style & kButtonKinds) {
    case BS_GROUPBOX: return ModuleControlKind::Group;
    case BS_AUTOCHECKBOX: return ModuleControlKind::CheckBox;
    case BS_PUSHBUTTON: return ModuleControlKind::PushButton;
    default: return std::nullopt;
  }
}

// What the kind of a control needs of the system's style.
std::uint32_t StyleOf(const ModuleControl& control) {
  switch (control.kind) {
    case ModuleControlKind::Group: return control.style | BS_GROUPBOX;
    case ModuleControlKind::CheckBox: return control.style | BS_AUTOCHECKBOX;
    case ModuleControlKind::List: return control.style | CBS_DROPDOWNLIST;
    case ModuleControlKind::Picture: return control.style | SS_BITMAP;
    case ModuleControlKind::Static:
    case ModuleControlKind::PushButton: break;
  }
  return control.style;
}

void PutClassAndText(Writer& writer, const ModuleControl& control, TemplateClasses classes) {
  const auto putNumber = [&](std::uint16_t number) {
    writer.Put(kByNumber);
    writer.Put(number);
  };
  const std::u16string text = Widened(control.text);
  switch (control.kind) {
    case ModuleControlKind::Group:
    case ModuleControlKind::PushButton:
    case ModuleControlKind::CheckBox: putNumber(kButtonClass); break;
    case ModuleControlKind::List: putNumber(kListClass); break;
    case ModuleControlKind::Picture:
      putNumber(kStaticClass);
      return putNumber(static_cast<std::uint16_t>(control.bitmap));
    case ModuleControlKind::Static: {
      const ControlText read = ReadControlText(control.text);
      if (read.kind == PageWindowKind::Label || classes == TemplateClasses::AsInResources) {
        putNumber(kStaticClass);
        break;
      }
      writer.PutText(read.kind == PageWindowKind::Number ? u"dsnewnumberctrl" : u"dsnewcolorchipctrl");
      break;
    }
  }
  writer.PutText(text);
}

}  // namespace

std::optional<ReadDialog> ReadDialog::Of(std::int32_t id, std::span<const std::byte> bytes) {
  Reader reader(bytes);
  if (reader.Take<std::uint16_t>() != kVersion || reader.Take<std::uint16_t>() != kExtended) return std::nullopt;
  reader.Take<std::uint32_t>();  // of its help
  reader.Take<std::uint32_t>();  // extended style
  ReadDialog read;
  read.dialog_.id = id;
  read.dialog_.style = reader.Take<std::uint32_t>();
  const auto count = reader.Take<std::uint16_t>();
  reader.TakePlace();
  reader.TakePlace();
  read.dialog_.width = reader.TakePlace();
  read.dialog_.height = reader.TakePlace();
  for (int name = 0; name < 3; ++name)
    reader.TakeName();  // menu, class, title
  if ((read.dialog_.style & DS_SETFONT) != 0) {
    read.dialog_.fontPoints = reader.Take<std::uint16_t>();
    reader.Take<std::uint32_t>();  // weight, slant, characters
    read.font_ = reader.TakeName().text;
  }
  for (std::uint16_t i = 0; i < count && reader.IsWhole(); ++i) {
    reader.Align();
    ModuleControl control;
    reader.Take<std::uint32_t>();
    reader.Take<std::uint32_t>();
    control.style = reader.Take<std::uint32_t>();
    control.x = reader.TakePlace();
    control.y = reader.TakePlace();
    control.width = reader.TakePlace();
    control.height = reader.TakePlace();
    control.id = reader.Take<std::int32_t>();
    const auto kind = KindOf(reader.TakeName(), control.style);
    const Reader::Name text = reader.TakeName();
    if (!kind) return std::nullopt;
    control.kind = *kind;
    control.bitmap = text.number.value_or(0);
    reader.Skip(reader.Take<std::uint16_t>());
    read.controls_.push_back(control);
    read.texts_.push_back(text.text);
  }
  if (!reader.IsWhole()) return std::nullopt;
  return read;
}

ModuleDialog ReadDialog::Record() {
  // Not before: texts move with the object.
  for (std::size_t i = 0; i < controls_.size(); ++i)
    controls_[i].text = texts_[i];
  ModuleDialog record = dialog_;
  record.font = font_;
  record.controls = controls_;
  return record;
}

std::vector<std::byte> WriteDialogTemplate(const ModuleDialog& dialog, TemplateClasses classes) {
  Writer writer;
  writer.Put(kVersion);
  writer.Put(kExtended);
  writer.Put(std::uint32_t{0});
  writer.Put(std::uint32_t{0});
  writer.Put((dialog.style & ~WS_VISIBLE) | WS_CHILD | DS_SETFONT | DS_CONTROL);
  writer.Put(static_cast<std::uint16_t>(dialog.controls.size()));
  writer.PutPlace(0, 0, dialog.width, dialog.height);
  for (int name = 0; name < 3; ++name)
    writer.PutText({});
  writer.Put(static_cast<std::uint16_t>(dialog.fontPoints));
  writer.Put(kNormalWeight);
  writer.Put(std::uint8_t{0});
  writer.Put(kDefaultCharacters);
  writer.PutText(Widened(dialog.font));
  for (const ModuleControl& control : dialog.controls) {
    writer.Align();
    writer.Put(std::uint32_t{0});
    writer.Put(std::uint32_t{0});
    writer.Put(StyleOf(control) | WS_CHILD);
    writer.PutPlace(control.x, control.y, control.width, control.height);
    writer.Put(control.id);
    PutClassAndText(writer, control, classes);
    writer.Put(std::uint16_t{0});
  }
  return writer.Taken();
}

}  // namespace vblur::host
