#include "base/stringwriter.h"

#include "base/log.h"

namespace quillon {

void StringWriter::write(Memory const& bytes, unsigned count) {
    if (count > bytes.size()) {
        log(ERROR, "StringWriter", "write", "more bytes to write than there are: " + toString(count));
        throw EStringWriter("EStringWriter", "libs/base/stringwriter.cpp", __LINE__);
    }
    put(bytes.array(), count);
}

} // namespace quillon
