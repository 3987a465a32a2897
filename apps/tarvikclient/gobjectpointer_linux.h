// Ownership of GObjects.
#pragma once

#include <gio/gio.h>

#include <memory>

namespace quillon {

struct GObjectUnref {
    void operator()(gpointer object) const { g_object_unref(object); }
};

/// Holds one reference to a GObject, which is given back with it.
template <class T>
using GObjectPointer = std::unique_ptr<T, GObjectUnref>;

} // namespace quillon
