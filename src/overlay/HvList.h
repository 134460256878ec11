// A doubly linked list that is walked by a cursor of its own, so that what is done to an element may remove
// that element from the list.
#pragma once

namespace vblur {

// Owns its nodes, never its elements. One walk at a time: a second one takes the cursor from the first.
template <class T>
class HvList {
 public:
  struct Node {
    T element;
    Node* next;      // appended later
    Node* previous;  // appended earlier
  };

  HvList() = default;
  HvList(const HvList&) = delete;
  HvList& operator=(const HvList&) = delete;
  virtual ~HvList() { Clear(); }

  Node* first() const { return first_; }
  Node* last() const { return last_; }
  Node* cursor() const { return cursor_; }

  T Append(T element) {
    Node* node = new Node{element, nullptr, last_};
    (last_ == nullptr ? first_ : last_->next) = node;
    last_ = node;
    return element;
  }

  // Returns the element that the node held. A cursor on the node goes to the one before, or to the next when
  // there is none before.
  T RemoveNode(Node* node) {
    if (cursor_ == node) cursor_ = node->previous != nullptr ? node->previous : node->next;
    (node->previous == nullptr ? first_ : node->previous->next) = node->next;
    (node->next == nullptr ? last_ : node->next->previous) = node->previous;
    const T element = node->element;
    delete node;
    return element;
  }

  // A walk: Start, then Step until it gives null. The cursor is already behind the node that Step gives.
  void Start() { cursor_ = first_; }
  Node* Step() {
    Node* node = cursor_;
    if (node != nullptr) cursor_ = node->next;
    return node;
  }

  // Leaves the cursor alone.
  bool Contains(const T& element) const {
    for (const Node* node = first_; node != nullptr; node = node->next) {
      if (node->element == element) return true;
    }
    return false;
  }
  // Every node that holds it; whether there was one. A walk of its own: one that is under way ends.
  bool Remove(const T& element) {
    bool removed = false;
    Start();
    while (Node* node = Step()) {
      if (node->element != element) continue;
      RemoveNode(node);
      removed = true;
    }
    return removed;
  }

  void Clear() {
    Start();
    while (Node* node = Step())
      RemoveNode(node);
  }

 private:
  Node* first_ = nullptr;
  Node* last_ = nullptr;
  Node* cursor_ = nullptr;
};

}  // namespace vblur
