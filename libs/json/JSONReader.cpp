#include "json/JSONReader.h"

#include "base/log.h"

namespace quillon::json {

void JSONReader::refuse() const {
    fail("read", "the value is of another type");
}

void JSONReader::fail(char const* method, String const& text) const {
    log(ERROR, getClassName(), method, text);
    throw EJsonKeyReader("EJsonKeyReader", "libs/json/JSONReader.cpp", __LINE__);
}

} // namespace quillon::json
