#include "overlay/HvTObject.h"

#include <cstring>

#include "overlay/Drawing.h"
#include "overlay/HvTManager.h"

namespace vblur {
namespace {

std::unique_ptr<char[]> CopyText(const char* text) {
  if (text == nullptr) return nullptr;
  const std::size_t size = std::strlen(text) + 1;
  auto copy = std::make_unique<char[]>(size);
  std::memcpy(copy.get(), text, size);
  return copy;
}

}  // namespace

HvTObject::HvTObject(const char* name) : name_(CopyText(name)) {}

HvTObject::~HvTObject() = default;

void HvTObject::SetTip(const char* tip) {
  tip_ = CopyText(tip);
}

std::int32_t HvTObject::Press(HvPoint) {
  PutFlag(kPressed, true);
  return 1;
}

std::int32_t HvTObject::Release() {
  PutFlag(kPressed, false);
  return 1;
}

std::int32_t HvTObject::Enter(HvPoint) {
  PutFlag(kHover, true);
  return 1;
}

std::int32_t HvTObject::Leave() {
  PutFlag(kHover, false);
  return 1;
}

void HvTObject::DrawTip(HvPoint pos) {
  if (tip_ != nullptr && !IsPressed()) DrawShadowText(tip_.get(), pos.x, pos.y);
}

void HvTObject::ChildChanged(HvTObject*) {}

HvPoint HvTObject::ToLocal(HvPoint pos) {
  return pos - origin_;
}

void HvTObject::SetSize(HvPoint size) {
  if (HasFlag(kSizeSettable)) PutBox(origin_, size);
}

void HvTObject::SetOrigin(HvPoint pos) {
  if (HasFlag(kOriginSettable)) PutBox(pos, size_);
}

void HvTObject::PutBox(HvPoint origin, HvPoint size) {
  StoreBox(origin, size);
  if (parent_ != nullptr) parent_->ChildChanged(this);
}

void HvTObject::SetManager(HvTManager* manager) {
  if (manager_ != nullptr && manager_ != manager) manager_->Forget(*this);
  manager_ = manager;
}

HvTObject* HvTObject::FindByName(const char* name) {
  const bool found = name != nullptr && name_ != nullptr && std::strcmp(name_.get(), name) == 0;
  return found ? this : nullptr;
}

std::int32_t HvTObject::AddChild(HvTObject*) {
  return 0;
}

std::int32_t HvTObject::RemoveChild(HvTObject*) {
  return 0;
}

void HvTObject::SetTarget(HvTObject* object) {
  target_ = object != nullptr ? object : this;
}

void HvTObject::SetParent(HvTObject* parent) {
  if (parent == nullptr) {
    parent_ = nullptr;
    SetManager(nullptr);
    return;
  }
  // HvTGroup::AddChild calls SetParent again; the nested AddChild returns 0.
  if (parent->AddChild(this) == 0) return;
  parent_ = parent;
  SetManager(parent->manager_);
  parent->ChildChanged(this);
}

void HvTObject::Detach() {
  if (parent_ != nullptr) {
    parent_->RemoveChild(this);
  } else if (manager_ != nullptr) {
    manager_->Remove(this);
  }
  SetParent(nullptr);
}

void HvTObject::MarkDirty() {
  if (manager_ != nullptr) manager_->WantRepaint();
}

}  // namespace vblur
