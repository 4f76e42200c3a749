// Kel::Ptr<T> is a counted reference to an entity derived from PtrInterface; Ptr<T const> is the
// read-only view that show code is handed. Copies add a reference, destruction drops one.
#pragma once

#include <compare>
#include <concepts>
#include <cstddef>
#include <functional>
#include <utility>

#include "Kel/PtrInterface.h"

namespace Kel {

template <typename T>
class Ptr {
 public:
   using element_type = T;

   constexpr Ptr() noexcept = default;
   constexpr Ptr(std::nullptr_t) noexcept {}
   Ptr(T* object) noexcept : object_(object) { acquire(); }
   Ptr(Ptr const& other) noexcept : object_(other.object_) { acquire(); }
   Ptr(Ptr&& other) noexcept : object_(std::exchange(other.object_, nullptr)) {}

   template <typename U>
   requires std::convertible_to<U*, T*> Ptr(Ptr<U> const& other)
   noexcept : object_(other.get()) { acquire(); }

   template <typename U>
   requires std::convertible_to<U*, T*> Ptr(Ptr<U>&& other)
   noexcept : object_(other.release()) {}

   ~Ptr() { drop(); }

   Ptr& operator=(Ptr other) noexcept {
      std::swap(object_, other.object_);
      return *this;
   }

   T* get() const noexcept { return object_; }
   T* operator->() const noexcept { return object_; }
   T& operator*() const noexcept { return *object_; }
   explicit operator bool() const noexcept { return object_ != nullptr; }

   void reset() noexcept { Ptr().swap(*this); }
   void swap(Ptr& other) noexcept { std::swap(object_, other.object_); }

   // Hands the reference over to the caller, who must drop it.
   T* release() noexcept { return std::exchange(object_, nullptr); }

   template <typename U>
   bool operator==(Ptr<U> const& other) const noexcept {
      return object_ == other.get();
   }
   bool operator==(std::nullptr_t) const noexcept { return object_ == nullptr; }
   template <typename U>
   auto operator<=>(Ptr<U> const& other) const noexcept {
      return std::compare_three_way{}(object_, other.get());
   }

 private:
   void acquire() const noexcept {
      if (object_) {
         object_->newRef();
      }
   }
   void drop() noexcept {
      if (object_) {
         object_->delRef();
      }
   }

   T* object_ = nullptr;
};

// Allocates an entity and returns its first counted reference.
template <typename T, typename... Args>
Ptr<T> make(Args&&... args) {
   return Ptr<T>(new T(std::forward<Args>(args)...));
}

template <typename To, typename From>
Ptr<To> ptrCast(Ptr<From> const& from) noexcept {
   return Ptr<To>(static_cast<To*>(from.get()));
}

template <typename To, typename From>
Ptr<To> dynamicPtrCast(Ptr<From> const& from) noexcept {
   return Ptr<To>(dynamic_cast<To*>(from.get()));
}

}  // namespace Kel

template <typename T>
struct std::hash<Kel::Ptr<T>> {
   std::size_t operator()(Kel::Ptr<T> const& ptr) const noexcept {
      return std::hash<T*>{}(ptr.get());
   }
};
