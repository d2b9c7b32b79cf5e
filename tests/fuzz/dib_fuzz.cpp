// Any bytes as a bitmap file and as a packed bitmap.

#include <unistd.h>

#include <cstdint>
#include <cstdlib>
#include <fstream>
#include <string>

#include "imaging/dib.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const std::string name = "/tmp/dib_fuzz_" + std::to_string(::getpid());
  std::ofstream(name, std::ios::binary | std::ios::trunc)
      .write(reinterpret_cast<const char*>(data), static_cast<std::streamsize>(size));
  orbelcast::cDIB dib;
  if (dib.CreateFromFile(name)) {
    if (dib.PointerToBits().size() > size || dib.PointerToBitmapInfo().size() > size) std::abort();
    dib.WriteToFile(name);
  }
  dib.CreateFromPackedDIBPointer({data, size});
  if (dib.PointerToBits().size() > size) std::abort();
  ::unlink(name.c_str());
  return 0;
}
