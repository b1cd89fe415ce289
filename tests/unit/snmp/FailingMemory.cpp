#include "FailingMemory.h"

#include <cstdlib>
#include <new>
#include <utility>

namespace {

int allocationsLeft = -1;  // no bound
bool ranOut = false;

}  // namespace

void grantAllocations(int count) { allocationsLeft = count; }

bool endShortage() {
  allocationsLeft = -1;
  return std::exchange(ranOut, false);
}

void* operator new(std::size_t size) {
  if (allocationsLeft == 0) ranOut = true;
  if (allocationsLeft > 0) --allocationsLeft;
  void* const memory = ranOut ? nullptr : std::malloc(size);
  if (memory == nullptr) throw std::bad_alloc();
  return memory;
}
void operator delete(void* memory) noexcept { std::free(memory); }
void operator delete(void* memory, std::size_t) noexcept { std::free(memory); }
