#include "json/JSONValueReader.h"

namespace quillon::json {

template <class T>
T JSONValueReader::converted(T (JSONWrapper::*conversion)() const) const {
    try {
        return (m_json.*conversion)();
    } catch (EJsonError const&) { // logged by the wrapper
        throw EKeyReader("EKeyReader", "libs/json/JSONReader.cpp", __LINE__);
    }
}

void JSONValueReader::read(String& value) {
    value = converted(&JSONWrapper::asString);
}

void JSONValueReader::read(bool& value) {
    value = converted(&JSONWrapper::asBool);
}

void JSONValueReader::read(int& value) {
    value = converted(&JSONWrapper::asInt);
}

void JSONValueReader::read(unsigned int& value) {
    value = converted(&JSONWrapper::asUInt);
}

void JSONValueReader::read(Memory& value) {
    value = Memory(converted(&JSONWrapper::asString));
}

} // namespace quillon::json
