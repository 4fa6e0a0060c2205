// How the process asks the system for memory.
#pragma once

namespace frt {

// Has the allocator take its memory from one region in large pages, where the system offers them: on many machines
// touching fresh memory in small pages costs more than converting what is put there. For the program's entry, before
// anything is allocated; without effect on other systems, or where the system says no.
void prefer_large_pages();

}  // namespace frt
