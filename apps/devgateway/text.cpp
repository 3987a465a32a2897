#include "devgateway/text.h"

#include <charconv>
#include <fstream>
#include <iterator>
#include <stdexcept>

namespace devgateway {

std::string percentDecoded(std::string_view text) {
    std::string decoded;
    decoded.reserve(text.size());
    for (size_t i = 0; i < text.size(); ++i) {
        unsigned char byte = 0;
        char const* digits = text.data() + i + 1;
        if (text[i] == '%' && i + 2 < text.size() &&
            std::from_chars(digits, digits + 2, byte, 16).ptr == digits + 2) {
            decoded += static_cast<char>(byte);
            i += 2;
        } else {
            decoded += text[i];
        }
    }
    return decoded;
}

std::string printable(std::string_view text) {
    std::string shown(text);
    for (char& character : shown) {
        auto const byte = static_cast<unsigned char>(character);
        if (byte < 0x20 || byte == 0x7f)
            character = '?';
    }
    return shown;
}

std::string readFile(std::string const& path) {
    std::ifstream file(path, std::ios::binary);
    std::string content{std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
    if (!file.is_open() || file.bad())
        throw std::runtime_error("cannot read " + path);
    return content;
}

void writeFile(std::string const& path, std::string_view content) {
    std::ofstream file(path, std::ios::binary | std::ios::trunc);
    file << content;
    file.close();
    if (!file)
        throw std::runtime_error("cannot write " + path);
}

} // namespace devgateway
