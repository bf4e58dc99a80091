// Memory of these tests where they run under Wine, which walks through all that was ever freed to
// find room for a block: the damaged messages, seconds elsewhere, took more than ten minutes there.
// What is freed here is kept for the next block of its size, so that the system's list stays short.
#include <array>
#include <atomic>
#include <bit>
#include <cstddef>
#include <cstdlib>
#include <new>

namespace {

struct Block {
  std::size_t Kind;  // its size is two to this power
  Block* Next;       // while it is free
};

// What is handed out begins behind the kind and is aligned as by malloc.
constexpr std::size_t kHead = 16;
static_assert(sizeof(Block) <= kHead && alignof(std::max_align_t) <= kHead);

std::array<Block*, 64> freeBlocks{};
std::atomic_flag inUse = ATOMIC_FLAG_INIT;

class Alone {
 public:
  Alone() {
    while (inUse.test_and_set(std::memory_order_acquire)) {
    }
  }
  ~Alone() { inUse.clear(std::memory_order_release); }
};

}  // namespace

void* operator new(std::size_t size) {
  if (size > (std::size_t{1} << 40)) throw std::bad_alloc();
  const auto kind = static_cast<std::size_t>(std::bit_width(size + kHead - 1));
  Block* block = nullptr;
  {
    const Alone alone;
    block = freeBlocks[kind];
    if (block != nullptr) freeBlocks[kind] = block->Next;
  }
  if (block == nullptr) block = static_cast<Block*>(std::malloc(std::size_t{1} << kind));
  if (block == nullptr) throw std::bad_alloc();
  block->Kind = kind;
  return reinterpret_cast<std::byte*>(block) + kHead;
}

void operator delete(void* bytes) noexcept {
  if (bytes == nullptr) return;
  auto* const block = reinterpret_cast<Block*>(static_cast<std::byte*>(bytes) - kHead);
  const Alone alone;
  block->Next = freeBlocks[block->Kind];
  freeBlocks[block->Kind] = block;
}

void operator delete(void* bytes, std::size_t) noexcept {
  operator delete(bytes);
}
