// A heap that gives each block pages of its own. With --page-heap among its arguments a 64-bit test program
// allocates there (scripts/page-heap.sh): what is read or written behind a block's pages, or after its end,
// is an access violation at that instruction. The few bytes between a block and the end of its pages are
// looked at when it is given back.
#pragma once

#include <cstddef>

namespace page_heap {

// The same during the whole run, so that no block goes from one heap to the other.
bool isOn();
// Null where there is no memory.
void* allocate(size_t size);
// In bytes, of all its pages.
size_t sizeOf(void* block);
// Ends the program where a byte behind the block has changed.
void checkEnd(const void* block, size_t size);
void release(void* block);

}  // namespace page_heap
