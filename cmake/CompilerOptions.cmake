# Warnings and sanitizers shared by every target of the project.

add_library(tp_compile_options INTERFACE)
target_compile_options(tp_compile_options INTERFACE
   -Wall -Wextra -Wpedantic -Wshadow -Wnon-virtual-dtor -Woverloaded-virtual
   -Wcast-align -Wformat=2 -Wimplicit-fallthrough
   $<$<BOOL:${TP_WERROR}>:-Werror>
   # GCC 12 reports -Wrestrict for plain std::string concatenation at -O2 and above (GCC bug
   # 105329); the warning has no true positives for code that does not call memcpy itself.
   $<$<CXX_COMPILER_ID:GNU>:-Wno-restrict>)

if(TP_SANITIZE)
   set(tp_sanitizer_flags -fsanitize=address,undefined -fno-sanitize-recover=all
                          -fno-omit-frame-pointer)
   add_compile_options(${tp_sanitizer_flags})
   add_link_options(${tp_sanitizer_flags})
endif()

# Coverage instrumentation for libFuzzer everywhere; only the fuzz targets link the fuzzer itself.
if(TP_FUZZ)
   add_compile_options(-fsanitize=fuzzer-no-link)
endif()
