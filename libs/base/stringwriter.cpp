#include "base/stringwriter.h"

#include "base/failure.h"
#include "base/stringconversion.h"

namespace quillon {

void StringWriter::write(Memory const& bytes, unsigned count) {
    if (count > bytes.size())
        fail<EStringWriter>("StringWriter", "write",
                            "more bytes to write than there are: " + toString(count));
    put(bytes.array(), count);
}

} // namespace quillon
