// Counts by replacing the C library's allocator, which offers its own functions under a second name.

#include "frame_pipeline_memory.h"

#include <cstddef>
#include <cstdlib>
#include <new>

extern "C" {
void* __libc_malloc(std::size_t size);
void* __libc_calloc(std::size_t count, std::size_t size);
void* __libc_realloc(void* memory, std::size_t size);
void* __libc_memalign(std::size_t alignment, std::size_t size);
void __libc_free(void* memory);
}

namespace {

std::uint64_t by_new = 0;
std::uint64_t by_malloc = 0;

void* New(std::size_t size) {
  ++by_new;
  if (void* memory = __libc_malloc(size)) return memory;
  throw std::bad_alloc();
}

}  // namespace

extern "C" {
void* malloc(std::size_t size) {
  ++by_malloc;
  return __libc_malloc(size);
}
void* calloc(std::size_t count, std::size_t size) {
  ++by_malloc;
  return __libc_calloc(count, size);
}
void* realloc(void* memory, std::size_t size) {
  ++by_malloc;
  return __libc_realloc(memory, size);
}
void* memalign(std::size_t alignment, std::size_t size) {
  ++by_malloc;
  return __libc_memalign(alignment, size);
}
void* aligned_alloc(std::size_t alignment, std::size_t size) {
  return memalign(alignment, size);
}
int posix_memalign(void** memory, std::size_t alignment, std::size_t size) {
  *memory = memalign(alignment, size);
  return *memory ? 0 : 12;
}
void free(void* memory) {
  __libc_free(memory);
}
}

void* operator new(std::size_t size) {
  return New(size);
}
void* operator new[](std::size_t size) {
  return New(size);
}
void* operator new(std::size_t size, std::align_val_t alignment) {
  ++by_new;
  if (void* memory = __libc_memalign(static_cast<std::size_t>(alignment), size)) return memory;
  throw std::bad_alloc();
}
void operator delete(void* memory, std::align_val_t) noexcept {
  __libc_free(memory);
}
void operator delete(void* memory) noexcept {
  __libc_free(memory);
}
void operator delete[](void* memory) noexcept {
  __libc_free(memory);
}
void operator delete(void* memory, std::size_t) noexcept {
  __libc_free(memory);
}
void operator delete[](void* memory, std::size_t) noexcept {
  __libc_free(memory);
}

orbelcast::bench::MemoryRequests orbelcast::bench::CountMemoryRequests() {
  return {by_new, by_malloc};
}
