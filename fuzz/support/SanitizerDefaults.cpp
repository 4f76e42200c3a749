// AddressSanitizer records the stack of every allocation and release, 30 frames deep by default,
// for the report of a later fault on that memory: under fuzzing that bookkeeping took a tenth of
// each run. A shallower record changes nothing that is detected, nor the stack of the fault
// itself; for the full allocation stacks, replay the input with ASAN_OPTIONS=malloc_context_size=30
// (options given in ASAN_OPTIONS win over these).
extern "C" char const* __asan_default_options() {
   return "malloc_context_size=8";
}
