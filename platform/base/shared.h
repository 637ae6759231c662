// Shared ownership for everything that has an identity: views, pages, modules,
// collections, requests.
//
// Shared counts its own references; Ref<T> owns, WeakRef<T> observes and reads
// as null once the last Ref is gone. Counts are atomic, so a Ref may be handed
// to another thread; what the object does besides is that class's own affair.
// A Shared may carry one Attachment, a side object that dies with it; the
// runtime keeps the attached properties of any object there.
// Nothing here throws.
#pragma once

#include <atomic>
#include <cstdint>
#include <memory>
#include <string_view>
#include <type_traits>
#include <utility>

namespace platform {

class Shared;

// Owned by a Shared; used on the thread that uses the owner.
class Attachment {
 public:
  virtual ~Attachment() = default;
};

namespace detail {
class WeakBlock;
void addWeak(WeakBlock*) noexcept;
void dropWeak(WeakBlock*) noexcept;
// A new strong reference to the block's object, or null when it is gone.
const Shared* lockWeak(WeakBlock*) noexcept;
// The block's object as an address to compare with, null when it is gone.
const Shared* peekWeak(const WeakBlock*) noexcept;
WeakBlock* weakBlockOf(const Shared&) noexcept;  // the result holds one weak count
}  // namespace detail

class Shared {
 public:
  Shared() = default;
  // A copy is a new object: it starts with no references, observers or attachment.
  Shared(const Shared&) noexcept {}
  Shared& operator=(const Shared&) noexcept { return *this; }
  virtual ~Shared();

  // The class's name as messages and logs print it.
  virtual std::string_view className() const { return "Object"; }

  void retain() const noexcept { refs_.fetch_add(1, std::memory_order_relaxed); }
  void release() const noexcept {
    if (refs_.fetch_sub(1, std::memory_order_acq_rel) == 1) lastReleased();
  }
  std::uint32_t references() const noexcept { return refs_.load(std::memory_order_relaxed); }

  Attachment* attachment() const noexcept { return attachment_.get(); }
  void attach(std::unique_ptr<Attachment> a) noexcept { attachment_ = std::move(a); }

 protected:
  // Ends the object once nothing refers to it. Overridden by what is not made with new.
  virtual void dispose() const noexcept { delete this; }

 private:
  friend class detail::WeakBlock;
  friend class Keep;
  friend const Shared* detail::lockWeak(detail::WeakBlock*) noexcept;
  friend detail::WeakBlock* detail::weakBlockOf(const Shared&) noexcept;
  void lastReleased() const noexcept;
  void end() const noexcept;  // for weak references first, then altogether

  mutable std::atomic<std::uint32_t> refs_{0};
  mutable std::atomic<detail::WeakBlock*> weak_{nullptr};
  std::unique_ptr<Attachment> attachment_;
};

// Keeps an object alive for a scope of this thread without touching its count: when the
// last Ref goes meanwhile, the object ends with the scope instead, or later if somebody in
// the scope took it up again. Inside the scope weak references still find it. For what
// dispatches to an object many times a second. The last Ref must not go on another thread
// meanwhile.
class Keep {
 public:
  explicit Keep(const Shared* object) noexcept : object_(object), outer_(innermost_) {
    innermost_ = this;
  }
  ~Keep() {
    innermost_ = outer_;
    if (ended_) finish();
  }
  Keep(const Keep&) = delete;
  Keep& operator=(const Keep&) = delete;

 private:
  friend class Shared;
  friend const Shared* detail::lockWeak(detail::WeakBlock*) noexcept;
  // The outermost scope of this thread that keeps the object, or null.
  static Keep* of(const Shared* object) noexcept;
  void finish() noexcept;

  const Shared* object_;
  Keep* outer_;
  bool ended_ = false;  // the last Ref has gone
  static constinit thread_local Keep* innermost_;
};

template <class T>
class Ref {
 public:
  Ref() = default;
  Ref(std::nullptr_t) {}
  explicit Ref(T* p) noexcept : p_(p) {
    if (p_) p_->retain();
  }
  Ref(const Ref& o) noexcept : Ref(o.p_) {}
  Ref(Ref&& o) noexcept : p_(std::exchange(o.p_, nullptr)) {}
  template <class U, class = std::enable_if_t<std::is_convertible_v<U*, T*>>>
  Ref(const Ref<U>& o) noexcept : Ref(static_cast<T*>(o.get())) {}
  template <class U, class = std::enable_if_t<std::is_convertible_v<U*, T*>>>
  Ref(Ref<U>&& o) noexcept : p_(o.leak()) {}
  ~Ref() {
    if (p_) p_->release();
  }
  Ref& operator=(Ref o) noexcept {
    std::swap(p_, o.p_);
    return *this;
  }

  T* get() const noexcept { return p_; }
  T* operator->() const noexcept { return p_; }
  T& operator*() const noexcept { return *p_; }
  explicit operator bool() const noexcept { return p_ != nullptr; }
  // Gives the reference up without releasing it; adopt() takes it back.
  T* leak() noexcept { return std::exchange(p_, nullptr); }
  static Ref adopt(T* p) noexcept {
    Ref r;
    r.p_ = p;
    return r;
  }

  template <class U>
  bool operator==(const Ref<U>& o) const noexcept {
    return p_ == o.get();
  }
  bool operator==(std::nullptr_t) const noexcept { return p_ == nullptr; }

 private:
  T* p_ = nullptr;
};

template <class T>
class WeakRef {
 public:
  WeakRef() = default;
  WeakRef(const T* p) noexcept : block_(p ? detail::weakBlockOf(*p) : nullptr) {}
  template <class U>
  WeakRef(const Ref<U>& r) noexcept : WeakRef(static_cast<const T*>(r.get())) {}
  WeakRef(const WeakRef& o) noexcept : block_(o.block_) {
    if (block_) detail::addWeak(block_);
  }
  WeakRef(WeakRef&& o) noexcept : block_(std::exchange(o.block_, nullptr)) {}
  ~WeakRef() {
    if (block_) detail::dropWeak(block_);
  }
  WeakRef& operator=(WeakRef o) noexcept {
    std::swap(block_, o.block_);
    return *this;
  }

  // The object, kept alive by the result, or null when it is gone or was never set.
  Ref<T> lock() const noexcept {
    if (!block_) return nullptr;
    return Ref<T>::adopt(const_cast<T*>(static_cast<const T*>(detail::lockWeak(block_))));
  }
  // True for a reference that was never set, as opposed to one whose object is gone.
  bool unset() const noexcept { return block_ == nullptr; }
  // True when the object that was set is gone.
  bool expired() const noexcept { return block_ && !detail::peekWeak(block_); }
  // The address of the object while it lives; for the thread on which it lives and dies.
  T* peek() const noexcept {
    return block_ ? const_cast<T*>(static_cast<const T*>(detail::peekWeak(block_))) : nullptr;
  }
  // True when this observes exactly p, which the caller keeps alive.
  bool refersTo(const Shared* p) const noexcept {
    return p && block_ && detail::peekWeak(block_) == p;
  }

 private:
  detail::WeakBlock* block_ = nullptr;
};

// A new T in its first Ref.
template <class T, class... A>
Ref<T> makeShared(A&&... args) {
  return Ref<T>(new T(std::forward<A>(args)...));
}

}  // namespace platform
