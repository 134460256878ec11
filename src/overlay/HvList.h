// Doubly linked list with a built-in cursor: an action on the current element may remove it from the list.
#pragma once

namespace vblur {

// Owns its nodes, not its elements. One iteration at a time: a second one takes over the cursor.
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

  Node* First() const { return first_; }
  Node* Last() const { return last_; }
  Node* Cursor() const { return cursor_; }

  T Append(T element) {
    Node* node = new Node{element, nullptr, last_};
    (last_ == nullptr ? first_ : last_->next) = node;
    last_ = node;
    return element;
  }

  // Returns the node's element. A cursor on the node moves to the previous node, or to the next if there is none.
  T RemoveNode(Node* node) {
    if (cursor_ == node) cursor_ = node->previous != nullptr ? node->previous : node->next;
    (node->previous == nullptr ? first_ : node->previous->next) = node->next;
    (node->next == nullptr ? last_ : node->next->previous) = node->previous;
    const T element = node->element;
    delete node;
    return element;
  }

  // An iteration: Start, then Step until null. Step moves the cursor past the node that it returns.
  void Start() { cursor_ = first_; }
  Node* Step() {
    Node* node = cursor_;
    if (node != nullptr) cursor_ = node->next;
    return node;
  }

  // Does not move the cursor.
  bool Contains(const T& element) const {
    for (const Node* node = first_; node != nullptr; node = node->next) {
      if (node->element == element) return true;
    }
    return false;
  }
  // Removes every node with the element; true if there was one. Uses the cursor: an iteration in progress ends.
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
