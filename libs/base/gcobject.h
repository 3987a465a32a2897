// Reference-counted objects and the intrusive pointer that holds them.
#pragma once

#include <atomic>
#include <cstddef>
#include <utility>

namespace quillon::gc {

/// Base of every reference-counted object. The counter is atomic: references may be taken and dropped on any
/// thread. A new object has no reference; the first Pointer takes it.
class Object {
public:
    constexpr Object() noexcept = default;
    Object(Object const&) = delete;
    Object& operator=(Object const&) = delete;

    /// The class's name, for logs; static storage.
    virtual char const* getClassName() const noexcept = 0;

    /// Takes one reference. The caller holds one already, or has just made the object.
    void gcAddRef() const noexcept { m_references.fetch_add(1, std::memory_order_relaxed); }

    /// Takes one reference; with `onlyIfAlive`, refuses to revive an object whose counter is already 0 and
    /// returns false. For weak references.
    bool gcAddRef(bool onlyIfAlive) const noexcept;

    /// Drops one reference; the last one calls gcDestroy() on this thread.
    void gcRelease() noexcept {
        if (m_references.fetch_sub(1, std::memory_order_acq_rel) == 1)
            gcDestroy();
    }

    /// The number of references at this moment. A caller that holds the only one sees 1 and may rely on it.
    unsigned gcCount() const noexcept { return m_references.load(std::memory_order_acquire); }

    /// Throws NullException when `object` is null.
    static void throwIfNull(Object const* object);

protected:
    /// An object that starts with `references`; for objects that are never destroyed.
    constexpr explicit Object(unsigned references) noexcept : m_references(references) {}
    virtual ~Object() = default;

    /// Called once, when the last reference goes: deletes or recycles the object.
    virtual void gcDestroy() noexcept = 0;

private:
    mutable std::atomic<unsigned> m_references{0};
};

/// An object made with `new` and deleted with its last reference.
class ObjectDelete : public Object {
protected:
    void gcDestroy() noexcept override { delete this; }
};

/// Intrusive shared pointer to an Object. Copies share the object; dereferencing an empty pointer throws
/// NullException. One Pointer is not safe to change on two threads at once, the object it points at is.
template <class T>
class Pointer {
public:
    constexpr Pointer() noexcept = default;
    constexpr Pointer(std::nullptr_t) noexcept {}
    Pointer(T* object) noexcept : m_object(object) { addRef(); }
    Pointer(Pointer const& other) noexcept : m_object(other.m_object) { addRef(); }
    Pointer(Pointer&& other) noexcept : m_object(std::exchange(other.m_object, nullptr)) {}
    ~Pointer() { reset(); }

    Pointer& operator=(Pointer other) noexcept {
        swap(other);
        return *this;
    }

    T* operator->() const {
        Object::throwIfNull(m_object);
        return m_object;
    }
    T& operator*() const {
        Object::throwIfNull(m_object);
        return *m_object;
    }

    /// The object or null; never throws.
    T* get() const noexcept { return m_object; }
    explicit operator bool() const noexcept { return m_object != nullptr; }
    bool operator==(Pointer const& other) const noexcept { return m_object == other.m_object; }

    /// Drops the reference and becomes empty.
    void reset() noexcept {
        if (T* const object = std::exchange(m_object, nullptr))
            object->gcRelease();
    }
    void swap(Pointer& other) noexcept { std::swap(m_object, other.m_object); }

private:
    void addRef() const noexcept {
        if (m_object)
            m_object->gcAddRef();
    }

    T* m_object = nullptr;
};

} // namespace quillon::gc
