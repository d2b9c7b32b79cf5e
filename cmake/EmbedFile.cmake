# Writes OUTPUT, a C++ file that holds the bytes of INPUT as orbelcast::resources::SYMBOL.
file(READ "${INPUT}" hex HEX)
string(REGEX REPLACE "([0-9a-f][0-9a-f])" "0x\\1," bytes "${hex}")
file(WRITE "${OUTPUT}"
"#include <cstdint>
#include <span>
namespace orbelcast::resources {
static const std::uint8_t ${SYMBOL}_bytes[] = {${bytes}};
extern const std::span<const std::uint8_t> ${SYMBOL};
constinit const std::span<const std::uint8_t> ${SYMBOL}{${SYMBOL}_bytes};
}  // namespace orbelcast::resources
")
