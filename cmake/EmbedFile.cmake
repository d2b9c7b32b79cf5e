# Writes OUTPUT, a C++ file that holds the bytes of INPUT as orbelcast::resources::SYMBOL and SYMBOL_size.
file(READ "${INPUT}" hex HEX)
string(LENGTH "${hex}" digits)
math(EXPR size "${digits} / 2")
string(REGEX REPLACE "([0-9a-f][0-9a-f])" "0x\\1," bytes "${hex}")
file(WRITE "${OUTPUT}"
"#include <cstddef>
namespace orbelcast::resources {
extern const unsigned char ${SYMBOL}[];
extern const std::size_t ${SYMBOL}_size;
const unsigned char ${SYMBOL}[] = {${bytes}};
const std::size_t ${SYMBOL}_size = ${size};
}  // namespace orbelcast::resources
")
