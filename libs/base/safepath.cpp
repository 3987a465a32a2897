#include "base/safepath.h"

#include "base/splitter.h"

namespace quillon {

bool isSafeRelativePath(String const& name) noexcept {
    if (name.starts('/') || name.starts('\\') || name.find('\0') != String::npos)
        return false;
    for (FirstOfSplitter components(name, "/\\"); components.valid();)
        if (components.next() == "..")
            return false;
    return true;
}

} // namespace quillon
